#include "platform/windows/Painting.h"

namespace platform {

namespace {

bool IsComplete(const Picture& picture) {
    if (picture.width <= 0 || picture.height <= 0) return false;
    return picture.pixels.size() / static_cast<std::size_t>(picture.width) >=
           static_cast<std::size_t>(picture.height);
}

COLORREF Native(Colour colour) {
    return RGB(colour >> 16 & 0xFF, colour >> 8 & 0xFF, colour & 0xFF);
}

}  // namespace

RECT NativeRectangle(const Rectangle& rectangle) {
    return {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom};
}

Rectangle FromNative(const RECT& rectangle) {
    return {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom};
}

void PaintColour(HDC surface, Colour colour, const Rectangle& place) {
    const RECT native = NativeRectangle(place);
    const HBRUSH brush = CreateSolidBrush(Native(colour));
    FillRect(surface, &native, brush);
    DeleteObject(brush);
}

void PaintPicture(HDC surface, const Picture& picture, const Rectangle& place) {
    if (!IsComplete(picture)) return;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = picture.width;
    info.bmiHeader.biHeight = -picture.height;  // the first row is the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    SetStretchBltMode(surface, COLORONCOLOR);
    StretchDIBits(surface, place.left, place.top, place.right - place.left,
                  place.bottom - place.top, 0, 0, picture.width, picture.height,
                  picture.pixels.data(), &info, DIB_RGB_COLORS, SRCCOPY);
}

}  // namespace platform
