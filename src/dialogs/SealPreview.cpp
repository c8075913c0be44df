#include "dialogs/SealPreview.h"

#include "dialogs/GifPicture.h"
#include "dialogs/Resource.h"

namespace {

constexpr platform::Colour kBackground = 0xF0F0F0;

}  // namespace

void ClearPreview(platform::DialogWindow& window) {
    window.Fill(TESMARK_SEAL_PREVIEW, kBackground);
}

void DrawPreview(platform::DialogWindow& window, std::string_view gif) {
    const platform::Picture picture = DecodeGif(gif, kBackground);
    if (picture.pixels.empty()) return;
    window.Draw(
        TESMARK_SEAL_PREVIEW, picture,
        PreviewPlace(window.ClientArea(TESMARK_SEAL_PREVIEW), picture.width, picture.height));
}

platform::Rectangle PreviewPlace(const platform::Rectangle& area, int width, int height) {
    const int roomAcross = area.right - area.left - width;
    const int roomDown = area.bottom - area.top - height;
    if (roomAcross <= 0 || roomDown <= 0) return area;
    const int left = area.left + roomAcross / 2;
    const int top = area.top + roomDown / 2;
    return {left, top, left + width, top + height};
}
