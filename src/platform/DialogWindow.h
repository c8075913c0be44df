// DialogWindow.h - an open dialog as its logic sees it: controls by their number, and what stands
// in them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/WindowPlacement.h"

namespace platform {

// A node of a tree control. Valid as long as the dialog is open, and never kNoNode.
using TreeNode = std::uintptr_t;
constexpr TreeNode kNoNode = 0;

// 0x00RRGGBB, without transparency.
using Colour = std::uint32_t;

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<Colour> pixels;  // width * height, row by row from the top
};

// Texts are GBK and end at their first zero byte. An operation on a control that the dialog doesn't
// have, or that is of another kind, does nothing and gives nothing. What is read is what the user
// has left there when the event at hand came about.
class DialogWindow : public WindowPlacement {
public:
    // Ends the dialog with `value`: OpenDialog returns it once the event at hand has been handled.
    // No event follows. Only the first call counts.
    virtual void End(int value) = 0;

    // A drop-down list. A new row stands at the end of the list, even if the list sorts.
    virtual void AppendRow(int list, const std::string& text) = 0;
    virtual void SelectRow(int list, int row) = 0;
    // From 0; -1 if none is selected, as when the user typed a text that is no row.
    virtual int SelectedRow(int list) const = 0;

    // The text of an edit field or a label.
    virtual void SetText(int control, const std::string& text) = 0;
    // Its first bytes, one less than `capacity` at the most.
    virtual std::string Text(int control, std::size_t capacity) const = 0;
    // Tells a control that it is disabled, though it isn't: it may look so, but stays usable.
    virtual void TellDisabled(int control) = 0;

    // A new node stands behind its parent's other children, or those at the top for kNoNode. `data`
    // is the caller's own and means nothing here.
    virtual TreeNode AppendNode(int tree, TreeNode parent, const std::string& text,
                                std::intptr_t data) = 0;
    virtual void ExpandNode(int tree, TreeNode node) = 0;
    // kNoNode if none is selected.
    virtual TreeNode SelectedNode(int tree) const = 0;
    virtual std::intptr_t NodeData(int tree, TreeNode node) const = 0;

    // A control's surface. `left` and `top` of its client area are 0. What is painted stays until
    // it is painted over; where a window has no memory of it, at the latest until it is covered.
    // Paint hides the control's text, and a text that is set afterwards hides the paint.
    virtual Rectangle ClientArea(int control) const = 0;
    virtual void Fill(int control, Colour colour) = 0;
    // Scales the picture to fill `place`, without regard to its proportions. A picture without
    // pixels paints nothing.
    virtual void Draw(int control, const Picture& picture, const Rectangle& place) = 0;
};

}  // namespace platform
