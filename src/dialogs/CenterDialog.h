// CenterDialog.h - where a dialog without a place of its own comes up.
#pragma once

#include "platform/WindowPlacement.h"

// Moves the window to the middle of its parent's client area if it is a child; else to the middle
// of its owner, if that is visible and not minimised; else to the middle of the work area of the
// monitor that it is on. It is kept within that area or the monitor's; the left and the top edge
// win where it is larger. Without a monitor nothing moves.
void CenterDialog(platform::WindowPlacement& window);
