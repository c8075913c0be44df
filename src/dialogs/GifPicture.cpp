#include "dialogs/GifPicture.h"

#include <gif_lib.h>

#include <algorithm>
#include <memory>
#include <new>

namespace {

using platform::Colour;
using platform::Picture;

struct CloseGif {
    void operator()(GifFileType* gif) const {
        int error = 0;
        DGifCloseFile(gif, &error);
    }
};
using GifHandle = std::unique_ptr<GifFileType, CloseGif>;

// The bytes not yet read are a view that the handle's user data points to.
int ReadBytes(GifFileType* gif, GifByteType* out, int wanted) {
    auto& rest = *static_cast<std::string_view*>(gif->UserData);
    const std::size_t count = std::min(rest.size(), static_cast<std::size_t>(wanted));
    std::copy_n(rest.data(), count, out);
    rest.remove_prefix(count);
    return static_cast<int>(count);
}

// Takes the index of the transparent colour out of a graphics control extension, and skips others.
bool ReadExtension(GifFileType* gif, int& transparent) {
    int kind = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(gif, &kind, &block) != GIF_OK) return false;
    while (block != nullptr) {
        GraphicsControlBlock control{};
        if (kind == GRAPHICS_EXT_FUNC_CODE &&
            DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) {
            transparent = control.TransparentColor;
        }
        if (DGifGetExtensionNext(gif, &block) != GIF_OK) return false;
    }
    return true;
}

// Up to the first frame's description; false if there is none.
bool FindFrame(GifFileType* gif, int& transparent) {
    GifRecordType record = UNDEFINED_RECORD_TYPE;
    while (DGifGetRecordType(gif, &record) == GIF_OK) {
        if (record == IMAGE_DESC_RECORD_TYPE) return DGifGetImageDesc(gif) == GIF_OK;
        if (record != EXTENSION_RECORD_TYPE || !ReadExtension(gif, transparent)) return false;
    }
    return false;
}

// The screen, grown to hold the frame. Without room for pixels, or with too much: no size.
Picture SizeOf(const GifFileType& gif) {
    const GifImageDesc& frame = gif.Image;
    const int width = std::max(gif.SWidth, frame.Left + frame.Width);
    const int height = std::max(gif.SHeight, frame.Top + frame.Height);
    if (frame.Width <= 0 || frame.Height <= 0) return {};
    if (width > kMaxGifSide || height > kMaxGifSide || width > kMaxGifPixels / height) return {};
    return {width, height, {}};
}

// The rows of a frame in the order in which the file holds them.
std::vector<int> RowOrder(const GifImageDesc& frame) {
    struct Pass {
        int first, step;
    };
    static constexpr Pass kInterlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
    std::vector<int> rows;
    for (const auto& [first, step] : kInterlaced) {
        if (!frame.Interlace) break;
        for (int row = first; row < frame.Height; row += step) rows.push_back(row);
    }
    for (int row = 0; !frame.Interlace && row < frame.Height; ++row) rows.push_back(row);
    return rows;
}

// An index that the table lacks paints as little as the transparent one.
void PaintRow(const std::vector<GifByteType>& indexes, const ColorMapObject& colours,
              int transparent, Colour* out) {
    for (const GifByteType index : indexes) {
        if (index != transparent && index < colours.ColorCount) {
            const GifColorType& colour = colours.Colors[index];
            *out = static_cast<Colour>(colour.Red << 16 | colour.Green << 8 | colour.Blue);
        }
        ++out;
    }
}

Picture DecodeFrame(GifFileType* gif, int transparent, Colour background) {
    const GifImageDesc& frame = gif->Image;
    const ColorMapObject* const colours =
        frame.ColorMap != nullptr ? frame.ColorMap : gif->SColorMap;
    Picture picture = SizeOf(*gif);
    if (colours == nullptr || picture.width == 0) return {};
    std::vector<GifByteType> indexes(static_cast<std::size_t>(frame.Width));
    for (const int row : RowOrder(frame)) {
        if (DGifGetLine(gif, indexes.data(), frame.Width) != GIF_OK) break;
        if (picture.pixels.empty()) {
            picture.pixels.assign(
                static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height),
                background);
        }
        const std::size_t start =
            static_cast<std::size_t>(frame.Top + row) * static_cast<std::size_t>(picture.width) +
            static_cast<std::size_t>(frame.Left);
        PaintRow(indexes, *colours, transparent, picture.pixels.data() + start);
    }
    return picture.pixels.empty() ? Picture{} : picture;
}

}  // namespace

Picture DecodeGif(std::string_view file, Colour background) {
    try {
        int error = 0;
        const GifHandle gif(DGifOpen(&file, ReadBytes, &error));
        int transparent = NO_TRANSPARENT_COLOR;
        if (!gif || !FindFrame(gif.get(), transparent)) return {};
        return DecodeFrame(gif.get(), transparent, background);
    } catch (const std::bad_alloc&) {
        return {};
    }
}
