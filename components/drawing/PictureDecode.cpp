#include "components/drawing/Picture.h"
#include "components/picture/GdPicture.h"

namespace {

std::uint8_t AlphaOf(int colour) {
    const int transparency = gdTrueColorGetAlpha(colour);
    return static_cast<std::uint8_t>(255 - (transparency * 255 + 63) / 127);
}

void CopyPixels(const CGdLibrary& gd, gdImage* image, Picture& picture) {
    picture.width = gdImageSX(image);
    picture.height = gdImageSY(image);
    picture.rgba.reserve(std::size_t{4} * picture.width * picture.height);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const int colour = PixelOf(gd, image, x, y);
            picture.rgba.push_back(static_cast<std::uint8_t>(gdTrueColorGetRed(colour)));
            picture.rgba.push_back(static_cast<std::uint8_t>(gdTrueColorGetGreen(colour)));
            picture.rgba.push_back(static_cast<std::uint8_t>(gdTrueColorGetBlue(colour)));
            picture.rgba.push_back(AlphaOf(colour));
        }
    }
}

}  // namespace

bool DecodePicture(std::string_view bytes, Picture& picture, std::string& problem) {
    picture = {};
    PictureInfo info;
    if (bytes.size() > 0x7FFFFFFF || !ReadPictureInfo(bytes, info)) {
        problem = info.format == PictureFormat::kUnknown
                      ? "The picture is neither GIF nor PNG, JPEG or BMP."
                      : "The picture is damaged: its header tells no size.";
        return false;
    }
    if (IsPictureTooLarge(info.width, info.height)) {
        problem = "The picture is too large: " + std::to_string(info.width) + " by " +
                  std::to_string(info.height) + " pixels.";
        return false;
    }
    const CGdLibrary* const gd = CGdLibrary::Get();
    const GdImageHandle image = gd ? DecodeFile(*gd, info.format, bytes) : nullptr;
    if (!image || gdImageSX(image.get()) != info.width || gdImageSY(image.get()) != info.height) {
        problem = "The picture is damaged.";
        return false;
    }
    CopyPixels(*gd, image.get(), picture);
    return true;
}
