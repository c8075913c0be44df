#include "dialogs/CenterDialog.h"

#include <algorithm>

namespace {

using platform::Rectangle;
using Nearest = platform::WindowPlacement::Nearest;

// What the window is centred in, and what it must not leave.
struct Frame {
    Rectangle centre;
    Rectangle area;
};

std::optional<Frame> FrameOf(const platform::WindowPlacement& window) {
    if (const auto parent = window.ParentArea()) return Frame{*parent, *parent};
    const auto owner = window.OwnerWindow();
    const bool kept = owner && owner->visible && !owner->minimised;
    const auto area = window.WorkArea(kept ? Nearest::ToOwner : Nearest::ToWindow);
    if (!area) return {};
    return Frame{kept ? owner->bounds : *area, *area};
}

// One axis. Both halves are rounded toward zero, also where coordinates are negative.
int Position(int centreBegin, int centreEnd, int size, int areaBegin, int areaEnd) {
    const int middle = (centreBegin + centreEnd) / 2 - size / 2;
    return std::max(std::min(middle, areaEnd - size), areaBegin);
}

}  // namespace

void CenterDialog(platform::WindowPlacement& window) {
    const Rectangle bounds = window.Bounds();
    const auto frame = FrameOf(window);
    if (!frame) return;
    const Rectangle& centre = frame->centre;
    const Rectangle& area = frame->area;
    window.MoveTo(
        Position(centre.left, centre.right, bounds.right - bounds.left, area.left, area.right),
        Position(centre.top, centre.bottom, bounds.bottom - bounds.top, area.top, area.bottom));
}
