// Conversion of pictures: whatever the bytes, it ends, and what it gives is a GIF of the size that
// the header told.

#include <cstdint>
#include <string>

#include "components/picture/PictureHeader.h"
#include "components/sealpicture/Conversion.h"
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
    std::string gif;
    if (ConvertToGif(picture, gif) != kPictureOk) {
        REQUIRE(gif.empty());
        return 0;
    }
    const PictureHeader converted = ReadPictureHeader(gif);
    REQUIRE(converted.format == PictureFormat::kGif);
    REQUIRE(converted.width == header.width && converted.height == header.height);
    return 0;
}
