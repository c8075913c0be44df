#include "components/sealpicture/Watermark.h"

#include <algorithm>

#include "components/sealpicture/GifPicture.h"
#include "components/sealpicture/PictureCodes.h"
#include "components/sealpicture/PictureFile.h"

namespace {

constexpr int kWhite = 0xFFFFFF;
constexpr int kPaleBlue = 0xA0B4DC;
constexpr int kJpegQuality = 95;

class Stripes {
public:
    Stripes(int width, int height) : m_period(StripePeriod(width, height)), m_width(m_period / 8) {}

    bool Cross(int x, int y) const { return (x + y) % m_period < m_width; }

private:
    int m_period;
    int m_width;
};

// By the eye's weights of the colours.
bool IsLight(int pixel) {
    constexpr int kThreeQuarters = 192;
    return (299 * gdTrueColorGetRed(pixel) + 587 * gdTrueColorGetGreen(pixel) +
            114 * gdTrueColorGetBlue(pixel)) /
               1000 >=
           kThreeQuarters;
}

int Marked(int pixel) {
    const int tint = IsLight(pixel) ? kPaleBlue : kWhite;
    return gdTrueColorAlpha((gdTrueColorGetRed(pixel) + gdTrueColorGetRed(tint)) / 2,
                            (gdTrueColorGetGreen(pixel) + gdTrueColorGetGreen(tint)) / 2,
                            (gdTrueColorGetBlue(pixel) + gdTrueColorGetBlue(tint)) / 2,
                            gdTrueColorGetAlpha(pixel));
}

// libgd knows one frame, without its place in the picture.
int MarkGif(const CGdLibrary& gd, const PictureFile& picture, std::string& marked) {
    const int width = gdImageSX(picture.image.get());
    const int height = gdImageSY(picture.image.get());
    if (width != picture.header.width || height != picture.header.height) {
        return kPicturePartialFrame;
    }
    std::vector<int> colours = PaintOnWhite(gd, picture.image.get());
    const Stripes stripes(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            int& colour = colours[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                  static_cast<std::size_t>(x)];
            if (colour != kNoPaint && stripes.Cross(x, y)) colour = Marked(colour);
        }
    return GifOfPaint(gd, width, colours, marked);
}

// A copy, since the picture itself may have a palette without room for more colours.
GdImageHandle MarkedCopy(const CGdLibrary& gd, gdImage* picture) {
    const int width = gdImageSX(picture);
    const int height = gdImageSY(picture);
    GdImageHandle copy(gd.createTrueColor(width, height));
    if (!copy) return nullptr;
    gd.alphaBlending(copy.get(), 0);
    gd.setResolution(copy.get(), gdImageResolutionX(picture), gdImageResolutionY(picture));
    const Stripes stripes(width, height);
    bool hasAlpha = false;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const int pixel = PixelOf(gd, picture, x, y);
            const int alpha = gdTrueColorGetAlpha(pixel);
            hasAlpha = hasAlpha || alpha != gdAlphaOpaque;
            const bool isMarked = alpha != gdAlphaTransparent && stripes.Cross(x, y);
            gd.setPixel(copy.get(), x, y, isMarked ? Marked(pixel) : pixel);
        }
    gd.saveAlpha(copy.get(), hasAlpha ? 1 : 0);
    return copy;
}

void* Encode(const CGdLibrary& gd, PictureFormat format, gdImage* image, int* size) {
    switch (format) {
        case PictureFormat::kPng: return gd.png(image, size);
        case PictureFormat::kJpeg: return gd.jpeg(image, size, kJpegQuality);
        case PictureFormat::kBmp: return gd.bmp(image, size, 0);
        case PictureFormat::kGif:
        case PictureFormat::kUnknown: break;
    }
    return nullptr;
}

int MarkTrueColour(const CGdLibrary& gd, const PictureFile& picture, std::string& marked) {
    const GdImageHandle copy = MarkedCopy(gd, picture.image.get());
    int size = 0;
    void* const bytes = copy ? Encode(gd, picture.header.format, copy.get(), &size) : nullptr;
    if (!bytes) return kPictureNoMemory;
    marked.assign(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
    gd.free(bytes);
    return kPictureOk;
}

}  // namespace

int StripePeriod(int width, int height) { return std::max(8, std::min(width, height) / 6); }

int AddWatermark(std::string_view picture, std::string& marked) {
    marked.clear();
    PictureFile read;
    if (const int code = ReadPictureFile(picture, read)) return code;
    const CGdLibrary& gd = *CGdLibrary::Get();
    return read.header.format == PictureFormat::kGif ? MarkGif(gd, read, marked)
                                                     : MarkTrueColour(gd, read, marked);
}
