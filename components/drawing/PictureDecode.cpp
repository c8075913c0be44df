#include <cstdarg>

#include "components/drawing/GdPicture.h"
#include "components/drawing/Picture.h"

namespace {

// libgd would write to standard error, which is its host's.
void Silent(int, const char*, va_list) {}

GdImage Load(PictureFormat format, std::string_view bytes) {
    gdSetErrorMethod(Silent);
    const int size = static_cast<int>(bytes.size());
    void* const data = const_cast<char*>(bytes.data());
    switch (format) {
        case PictureFormat::kGif: return GdImage(gdImageCreateFromGifPtr(size, data));
        case PictureFormat::kPng: return GdImage(gdImageCreateFromPngPtr(size, data));
        // Warnings are errors: a JPEG that is cut off would be grey from there on.
        case PictureFormat::kJpeg: return GdImage(gdImageCreateFromJpegPtrEx(size, data, 0));
        case PictureFormat::kBmp: return GdImage(gdImageCreateFromBmpPtr(size, data));
        case PictureFormat::kUnknown: break;
    }
    return {};
}

// libgd's alpha runs from 0 (opaque) to 127. A PNG without an alpha channel may name one of its
// colours as transparent.
std::uint8_t AlphaOf(gdImagePtr image, int colour) {
    if (image->trueColor != 0 && colour == image->transparent) return 0;
    const int transparency = gdTrueColorGetAlpha(colour);
    return static_cast<std::uint8_t>(255 - (transparency * 255 + 63) / 127);
}

void CopyPixels(gdImagePtr image, Picture& picture) {
    picture.width = gdImageSX(image);
    picture.height = gdImageSY(image);
    picture.rgba.reserve(std::size_t{4} * picture.width * picture.height);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const int colour = gdImageGetTrueColorPixel(image, x, y);
            picture.rgba.push_back(static_cast<std::uint8_t>(gdTrueColorGetRed(colour)));
            picture.rgba.push_back(static_cast<std::uint8_t>(gdTrueColorGetGreen(colour)));
            picture.rgba.push_back(static_cast<std::uint8_t>(gdTrueColorGetBlue(colour)));
            picture.rgba.push_back(AlphaOf(image, colour));
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
    const GdImage image = Load(info.format, bytes);
    if (!image || gdImageSX(image.get()) != info.width || gdImageSY(image.get()) != info.height) {
        problem = "The picture is damaged.";
        return false;
    }
    CopyPixels(image.get(), picture);
    return true;
}
