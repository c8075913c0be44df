// The GIF of a preview: whatever the bytes, it ends, with as many pixels as its size tells and no
// more than the limit, and the same from the same bytes.

#include "dialogs/GifPicture.h"

#include <cstdint>

#include "fuzz/driver/Require.h"

namespace {

constexpr platform::Colour kPaper = 0xF0F0F0;

// The pixels of the screen that the header tells, 0 where it is cut off.
std::int64_t ScreenPixels(const std::uint8_t* data, std::size_t size) {
    if (size < 10) return 0;
    return std::int64_t{data[6] | data[7] << 8} * (data[8] | data[9] << 8);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr int kMostPixels = 1 << 16;
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    // Larger ones only take longer.
    const std::int64_t pixels = ScreenPixels(data, size);
    if (pixels > kMostPixels && pixels <= kMaxGifPixels) return 0;
    const platform::Picture picture = DecodeGif(file, kPaper);
    REQUIRE(picture.width >= 0 && picture.width <= kMaxGifSide);
    REQUIRE(picture.height >= 0 && picture.height <= kMaxGifSide);
    const auto count =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    REQUIRE(picture.pixels.size() == count && count <= kMaxGifPixels);
    for (const platform::Colour colour : picture.pixels) REQUIRE(colour <= 0xFFFFFF);
    if (count <= kMostPixels) REQUIRE(DecodeGif(file, kPaper).pixels == picture.pixels);
    return 0;
}
