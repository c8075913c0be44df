#include <cmath>

#include "components/drawing/Picture.h"

namespace {

constexpr double kMillimetresPerInch = 25.4;

}  // namespace

bool ReadPictureInfo(std::string_view bytes, PictureInfo& info) {
    const PictureHeader header = ReadPictureHeader(bytes);
    info = {header.format, 0, 0};
    constexpr std::int64_t kLimit = 0x7FFFFFFF;
    if (header.width <= 0 || header.height <= 0) return false;
    if (header.width > kLimit || header.height > kLimit) return false;
    info.width = static_cast<int>(header.width);
    info.height = static_cast<int>(header.height);
    return true;
}

int PixelsOf(double millimetres, double dpi) {
    const double pixels = std::round(millimetres / kMillimetresPerInch * dpi);
    return pixels < 1 ? 1 : static_cast<int>(pixels);
}

double MillimetresOf(int pixels, double dpi) { return pixels * kMillimetresPerInch / dpi; }
