// WindowPlacement.h - where a window stands, and what there is around it to stand on.
#pragma once

#include <optional>

namespace platform {

// Pixels; `right` and `bottom` lie just outside.
struct Rectangle {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool operator==(const Rectangle&) const = default;
};

// Coordinates are the screen's, which begin at the upper left corner of the primary monitor and are
// negative on one to its left or above it, unless told otherwise.
class WindowPlacement {
public:
    struct Owner {
        Rectangle bounds;
        bool visible = false;
        bool minimised = false;
    };
    enum class Nearest { ToWindow, ToOwner };

    virtual ~WindowPlacement() = default;

    virtual Rectangle Bounds() const = 0;
    // The client rectangle of a child window's parent, in the parent's own coordinates. Nothing for
    // a top-level window.
    virtual std::optional<Rectangle> ParentArea() const = 0;
    // The window that a top-level window belongs to, if any.
    virtual std::optional<Owner> OwnerWindow() const = 0;
    // The screen less the task bar, of the nearest monitor. Nothing where there is no monitor,
    // where it tells nothing about itself, or where windows can't be placed by their program.
    virtual std::optional<Rectangle> WorkArea(Nearest nearest) const = 0;

    // Moves the upper left corner; a child window's is given in its parent's coordinates. The size
    // and the order among the windows stay, and the window isn't activated.
    virtual void MoveTo(int left, int top) = 0;
};

}  // namespace platform
