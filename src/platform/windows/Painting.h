// Painting.h - colours and pictures on a device context.
#pragma once

#include "platform/DialogWindow.h"
#include "platform/windows/Win32.h"

namespace platform {

RECT NativeRectangle(const Rectangle& rectangle);
Rectangle FromNative(const RECT& rectangle);

void PaintColour(HDC surface, Colour colour, const Rectangle& place);
// Scaled to fill `place`; nothing if the picture hasn't as many pixels as it claims.
void PaintPicture(HDC surface, const Picture& picture, const Rectangle& place);

}  // namespace platform
