// Marks on pictures: whatever the bytes, it ends, and what it gives has the form and the size of
// what it got.

#include "components/sealpicture/Watermark.h"

#include <cstdint>
#include <string>

#include "components/picture/PictureHeader.h"
#include "components/sealpicture/PictureCodes.h"
#include "fuzz/driver/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::int64_t kMostPixels = 1 << 16;
    const std::string_view picture(reinterpret_cast<const char*>(data), size);
    const PictureHeader header = ReadPictureHeader(picture);
    // Larger ones only take longer.
    if (header.width <= kPictureMaxSide && header.height <= kPictureMaxSide &&
        header.width * header.height > kMostPixels)
        return 0;
    std::string marked;
    const int code = AddWatermark(picture, marked);
    std::string again;
    REQUIRE(AddWatermark(picture, again) == code);
    REQUIRE(again == marked);
    if (code != kPictureOk) {
        REQUIRE(marked.empty());
        return 0;
    }
    const PictureHeader after = ReadPictureHeader(marked);
    REQUIRE(after.format == header.format);
    REQUIRE(after.width == header.width && after.height == header.height);
    REQUIRE(AddWatermark(marked, again) == kPictureOk);
    return 0;
}
