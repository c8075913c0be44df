#include "components/sealpicture/GifPicture.h"

#include <map>

#include "components/picture/GdPicture.h"
#include "components/sealpicture/PictureCodes.h"

namespace {

constexpr int kColours = 255;
constexpr int kWhite = 0xFFFFFF;

// libgd's alpha runs from 0, opaque, to 127.
bool IsTransparent(int pixel) { return gdTrueColorGetAlpha(pixel) > 114; }

int OverWhite(int pixel) {
    const int transparency = gdTrueColorGetAlpha(pixel);
    const auto blend = [transparency](int colour) {
        return (colour * (127 - transparency) + 255 * transparency + 63) / 127;
    };
    return gdTrueColor(blend(gdTrueColorGetRed(pixel)), blend(gdTrueColorGetGreen(pixel)),
                       blend(gdTrueColorGetBlue(pixel)));
}

// Calls `set` with each pixel's place and colour.
template <typename Set>
void ForEachPixel(const std::vector<int>& colours, int width, Set set) {
    int x = 0;
    int y = 0;
    for (const int colour : colours) {
        set(x, y, colour);
        if (++x < width) continue;
        x = 0;
        ++y;
    }
}

// A palette of exactly these colours; null if they are too many.
GdImageHandle ExactPalette(const CGdLibrary& gd, int width, int height,
                           const std::vector<int>& colours) {
    std::map<int, int> indexes;
    for (const int colour : colours) {
        if (colour >= 0) indexes.emplace(colour, 0);
        if (indexes.size() > kColours) return nullptr;
    }
    GdImageHandle image(gd.createPalette(width, height));
    if (!image) return nullptr;
    for (auto& [colour, index] : indexes)
        index = gd.colorAllocate(image.get(), gdTrueColorGetRed(colour),
                                 gdTrueColorGetGreen(colour), gdTrueColorGetBlue(colour));
    ForEachPixel(colours, width, [&](int x, int y, int colour) {
        if (colour >= 0) gd.setPixel(image.get(), x, y, indexes[colour]);
    });
    return image;
}

// libgd's own choice of colours.
GdImageHandle ReducedPalette(const CGdLibrary& gd, int width, int height,
                             const std::vector<int>& colours) {
    GdImageHandle image(gd.createTrueColor(width, height));
    if (!image) return nullptr;
    ForEachPixel(colours, width, [&](int x, int y, int colour) {
        gd.setPixel(image.get(), x, y, colour < 0 ? kWhite : colour);
    });
    if (!gd.trueColorToPalette(image.get(), 0, kColours)) return nullptr;
    return image;
}

bool MarkTransparent(const CGdLibrary& gd, gdImage* image, const std::vector<int>& colours) {
    const int transparent = gd.colorAllocate(image, 255, 255, 255);
    if (transparent < 0) return false;
    gd.colorTransparent(image, transparent);
    ForEachPixel(colours, gdImageSX(image), [&](int x, int y, int colour) {
        if (colour < 0) gd.setPixel(image, x, y, transparent);
    });
    return true;
}

int Written(const CGdLibrary& gd, gdImage* painted, std::string& gif) {
    int size = 0;
    void* const bytes = gd.gif(painted, &size);
    if (!bytes) return kPictureNoMemory;
    gif.assign(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
    gd.free(bytes);
    return kPictureOk;
}

}  // namespace

std::vector<int> PaintOnWhite(const CGdLibrary& gd, gdImage* picture) {
    std::vector<int> colours;
    colours.reserve(static_cast<std::size_t>(gdImageSX(picture)) *
                    static_cast<std::size_t>(gdImageSY(picture)));
    for (int y = 0; y < gdImageSY(picture); ++y)
        for (int x = 0; x < gdImageSX(picture); ++x) {
            const int pixel = PixelOf(gd, picture, x, y);
            colours.push_back(IsTransparent(pixel) ? kNoPaint : OverWhite(pixel));
        }
    return colours;
}

int GifOfPaint(const CGdLibrary& gd, int width, const std::vector<int>& colours, std::string& gif) {
    const int height = static_cast<int>(colours.size()) / width;
    GdImageHandle painted = ExactPalette(gd, width, height, colours);
    if (!painted) painted = ReducedPalette(gd, width, height, colours);
    if (!painted || !MarkTransparent(gd, painted.get(), colours)) return kPictureNoMemory;
    return Written(gd, painted.get(), gif);
}
