#include "components/sealpicture/Picture.h"

#include <climits>

#include "components/sealpicture/PictureCodes.h"

namespace {

int CheckHeader(const PictureHeader& header) {
    if (header.format == PictureFormat::kUnknown) return kPictureUnknownFormat;
    if (header.width <= 0 || header.height <= 0) return kPictureDamaged;
    if (IsPictureTooLarge(header.width, header.height)) return kPictureTooLarge;
    return header.complete ? kPictureOk : kPictureDamaged;
}

GdImageHandle Decode(const CGdLibrary& gd, PictureFormat format, std::string_view file) {
    const int size = static_cast<int>(file.size());
    void* const bytes = const_cast<char*>(file.data());
    switch (format) {
        case PictureFormat::kGif: return GdImageHandle(gd.createFromGif(size, bytes));
        case PictureFormat::kPng: return GdImageHandle(gd.createFromPng(size, bytes));
        // Warnings are errors: a JPEG that is cut off would be grey from there on.
        case PictureFormat::kJpeg: return GdImageHandle(gd.createFromJpeg(size, bytes, 0));
        case PictureFormat::kBmp: return GdImageHandle(gd.createFromBmp(size, bytes));
        case PictureFormat::kUnknown: break;
    }
    return nullptr;
}

}  // namespace

int ReadPicture(std::string_view file, Picture& picture) {
    if (file.size() > INT_MAX) return kPictureTooLarge;
    const PictureHeader header = ReadPictureHeader(file);
    if (const int code = CheckHeader(header)) return code;
    const CGdLibrary* const gd = CGdLibrary::Get();
    if (!gd) return kPictureNoDecoder;
    GdImageHandle image = Decode(*gd, header.format, file);
    if (!image) return kPictureDamaged;
    picture.header = header;
    picture.image = std::move(image);
    return kPictureOk;
}

int PixelOf(const CGdLibrary& gd, gdImage* image, int x, int y) {
    const int pixel = gd.getTrueColorPixel(image, x, y);
    // A PNG without an alpha channel may name one of its colours as transparent.
    const bool isNamed = image->trueColor != 0 && pixel == image->transparent;
    return isNamed ? gdTrueColorAlpha(gdTrueColorGetRed(pixel), gdTrueColorGetGreen(pixel),
                                      gdTrueColorGetBlue(pixel), gdAlphaTransparent)
                   : pixel;
}
