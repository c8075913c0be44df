#include <cstddef>
#include <memory>
#include <set>

#include "components/drawing/Picture.h"
#include "components/picture/GdLibrary.h"

namespace {

constexpr int kLeastVisibleAlpha = 24;
constexpr int kGifColours = 64;
// Sixteen steps from white to the colour look smooth and keep the file a third of its size.
constexpr int kAlphaStep = 17;
// White is what stands behind the transparent index, for readers that know no transparency; so
// a white that is to be seen is another one.
constexpr int kTransparentWhite = 0xFFFFFF;
constexpr int kVisibleWhite = 0xFEFEFE;

// Takes the memory over.
std::string BytesOf(const CGdLibrary& gd, void* data, int size) {
    const std::unique_ptr<void, decltype(gd.free)> owner(data, gd.free);
    if (!owner) return {};
    return {static_cast<const char*>(data), static_cast<std::size_t>(size)};
}

int OverWhite(int colour, int alpha) { return (colour * alpha + 255 * (255 - alpha)) / 255; }

// The pixel's colour on white paper in few steps, or -1 where nothing is to be seen.
int GifColour(const std::uint8_t* pixel) {
    if (pixel[3] < kLeastVisibleAlpha) return -1;
    const int alpha = (pixel[3] + kAlphaStep / 2) / kAlphaStep * kAlphaStep;
    const int colour = gdTrueColor(OverWhite(pixel[0], alpha), OverWhite(pixel[1], alpha),
                                   OverWhite(pixel[2], alpha));
    return colour == kTransparentWhite ? kVisibleWhite : colour;
}

const std::uint8_t* PixelAt(const Picture& picture, int x, int y) {
    return picture.rgba.data() + 4 * (std::size_t(y) * picture.width + x);
}

bool HasFewColours(const Picture& picture) {
    std::set<int> colours;
    for (std::size_t at = 0; at + 4 <= picture.rgba.size(); at += 4) {
        colours.insert(GifColour(&picture.rgba[at]));
        if (colours.size() > kGifColours) return false;
    }
    return true;
}

// libgd's reduction of a picture with many colours, without the transparent pixels.
GdImageHandle ReducedPicture(const CGdLibrary& gd, const Picture& picture) {
    GdImageHandle image(gd.createTrueColor(picture.width, picture.height));
    if (!image) return {};
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const int colour = GifColour(PixelAt(picture, x, y));
            gd.setPixel(image.get(), x, y, colour < 0 ? kTransparentWhite : colour);
        }
    }
    if (!gd.trueColorToPalette(image.get(), 0, kGifColours)) return {};
    return image;
}

GdImageHandle EmptyPalettePicture(const CGdLibrary& gd, const Picture& picture) {
    return GdImageHandle(gd.createPalette(picture.width, picture.height));
}

bool IsComplete(const Picture& picture) {
    return picture.width > 0 && picture.height > 0 &&
           picture.rgba.size() == std::size_t{4} * picture.width * picture.height;
}

}  // namespace

std::string EncodeGif(const Picture& picture) {
    const CGdLibrary* const opened = CGdLibrary::Get();
    if (!opened || !IsComplete(picture)) return {};
    const CGdLibrary& gd = *opened;
    const bool fewColours = HasFewColours(picture);
    const GdImageHandle image =
        fewColours ? EmptyPalettePicture(gd, picture) : ReducedPicture(gd, picture);
    if (!image) return {};
    const int transparent = gd.colorAllocate(image.get(), 255, 255, 255);
    gd.colorTransparent(image.get(), transparent);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const int colour = GifColour(PixelAt(picture, x, y));
            if (colour < 0) {
                gd.setPixel(image.get(), x, y, transparent);
            } else if (fewColours) {
                const int index =
                    gd.colorResolve(image.get(), gdTrueColorGetRed(colour),
                                    gdTrueColorGetGreen(colour), gdTrueColorGetBlue(colour));
                gd.setPixel(image.get(), x, y, index);
            }
        }
    }
    int size = 0;
    void* const data = gd.gif(image.get(), &size);
    return BytesOf(gd, data, size);
}

std::string EncodePng(const Picture& picture, int dpi) {
    const CGdLibrary* const opened = CGdLibrary::Get();
    if (!opened || !IsComplete(picture)) return {};
    const CGdLibrary& gd = *opened;
    const GdImageHandle image(gd.createTrueColor(picture.width, picture.height));
    if (!image) return {};
    gd.alphaBlending(image.get(), 0);
    gd.saveAlpha(image.get(), 1);
    gd.setResolution(image.get(), static_cast<unsigned>(dpi), static_cast<unsigned>(dpi));
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const std::uint8_t* pixel = PixelAt(picture, x, y);
            const int transparency = 127 - pixel[3] * 127 / 255;
            gd.setPixel(image.get(), x, y,
                        gdTrueColorAlpha(pixel[0], pixel[1], pixel[2], transparency));
        }
    }
    int size = 0;
    void* const data = gd.png(image.get(), &size);
    return BytesOf(gd, data, size);
}
