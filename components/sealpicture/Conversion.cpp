#include "components/sealpicture/Conversion.h"

#include <climits>
#include <map>
#include <vector>

#include "components/picture/PictureHeader.h"
#include "components/sealpicture/GdLibrary.h"
#include "components/sealpicture/PictureCodes.h"

namespace {

constexpr int kColours = 255;
constexpr int kWhite = 0xFFFFFF;

int CheckHeader(const PictureHeader& header) {
    if (header.format == PictureFormat::kUnknown) return kPictureUnknownFormat;
    if (header.width <= 0 || header.height <= 0) return kPictureDamaged;
    if (header.width > kMaxPictureSide || header.height > kMaxPictureSide ||
        header.width * header.height > kMaxPicturePixels)
        return kPictureTooLarge;
    return header.complete ? kPictureOk : kPictureDamaged;
}

GdImageHandle Decode(const CGdLibrary& gd, PictureFormat format, std::string_view picture) {
    const int size = static_cast<int>(picture.size());
    void* const bytes = const_cast<char*>(picture.data());
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

// The colours on white paper, row by row; -1 where there is no paint at all.
std::vector<int> PaintOnWhite(const CGdLibrary& gd, gdImage* picture) {
    std::vector<int> colours;
    colours.reserve(static_cast<std::size_t>(gdImageSX(picture)) *
                    static_cast<std::size_t>(gdImageSY(picture)));
    for (int y = 0; y < gdImageSY(picture); ++y)
        for (int x = 0; x < gdImageSX(picture); ++x) {
            const int pixel = gd.getTrueColorPixel(picture, x, y);
            colours.push_back(IsTransparent(pixel) ? -1 : OverWhite(pixel));
        }
    return colours;
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

int Encode(const CGdLibrary& gd, gdImage* painted, std::string& gif) {
    int size = 0;
    void* const bytes = gd.gif(painted, &size);
    if (!bytes) return kPictureNoMemory;
    gif.assign(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
    gd.free(bytes);
    return kPictureOk;
}

}  // namespace

int ConvertToGif(std::string_view picture, std::string& gif) {
    gif.clear();
    if (picture.size() > INT_MAX) return kPictureTooLarge;
    const PictureHeader header = ReadPictureHeader(picture);
    if (const int code = CheckHeader(header)) return code;
    const CGdLibrary* const gd = CGdLibrary::Get();
    if (!gd) return kPictureNoDecoder;
    const GdImageHandle decoded = Decode(*gd, header.format, picture);
    if (!decoded) return kPictureDamaged;
    if (header.format == PictureFormat::kGif) {
        gif = picture;
        return kPictureOk;
    }
    const int width = gdImageSX(decoded.get());
    const int height = gdImageSY(decoded.get());
    const std::vector<int> colours = PaintOnWhite(*gd, decoded.get());
    GdImageHandle painted = ExactPalette(*gd, width, height, colours);
    if (!painted) painted = ReducedPalette(*gd, width, height, colours);
    if (!painted || !MarkTransparent(*gd, painted.get(), colours)) return kPictureNoMemory;
    return Encode(*gd, painted.get(), gif);
}
