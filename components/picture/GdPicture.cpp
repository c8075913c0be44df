#include "components/picture/GdPicture.h"

GdImageHandle DecodeFile(const CGdLibrary& gd, PictureFormat format, std::string_view file) {
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

int PixelOf(const CGdLibrary& gd, gdImage* image, int x, int y) {
    const int pixel = gd.getTrueColorPixel(image, x, y);
    // A PNG without an alpha channel may name one of its colours as transparent.
    const bool isNamed = image->trueColor != 0 && pixel == image->transparent;
    return isNamed ? gdTrueColorAlpha(gdTrueColorGetRed(pixel), gdTrueColorGetGreen(pixel),
                                      gdTrueColorGetBlue(pixel), gdAlphaTransparent)
                   : pixel;
}
