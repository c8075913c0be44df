#include <cmath>
#include <cstddef>
#include <optional>

#include "drawing/Picture.h"

namespace {

using std::string_view_literals::operator""sv;

constexpr double kMillimetresPerInch = 25.4;

int ByteAt(std::string_view bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }

int LittleShort(std::string_view bytes, std::size_t at) {
    return ByteAt(bytes, at) | ByteAt(bytes, at + 1) << 8;
}

int BigShort(std::string_view bytes, std::size_t at) {
    return ByteAt(bytes, at) << 8 | ByteAt(bytes, at + 1);
}

std::int64_t LittleLong(std::string_view bytes, std::size_t at) {
    return LittleShort(bytes, at) | std::int64_t{LittleShort(bytes, at + 2)} << 16;
}

std::int64_t BigLong(std::string_view bytes, std::size_t at) {
    return std::int64_t{BigShort(bytes, at)} << 16 | BigShort(bytes, at + 2);
}

struct Size {
    std::int64_t width;
    std::int64_t height;
};

std::optional<Size> GifSize(std::string_view bytes) {
    if (bytes.size() < 10) return {};
    return Size{LittleShort(bytes, 6), LittleShort(bytes, 8)};
}

std::optional<Size> PngSize(std::string_view bytes) {
    if (bytes.size() < 24 || bytes.substr(12, 4) != "IHDR"sv) return {};
    return Size{BigLong(bytes, 16), BigLong(bytes, 20)};
}

// A negative height means rows from the top.
std::optional<Size> BmpSize(std::string_view bytes) {
    if (bytes.size() < 26) return {};
    if (LittleLong(bytes, 14) == 12) return Size{LittleShort(bytes, 18), LittleShort(bytes, 20)};
    const auto height = static_cast<std::int32_t>(LittleLong(bytes, 22));
    return Size{static_cast<std::int32_t>(LittleLong(bytes, 18)), std::abs(std::int64_t{height})};
}

// The size stands in the frame header, whose marker is C0 to CF without C4, C8 and CC.
bool IsFrameHeader(int marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool StandsAlone(int marker) { return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8); }

std::optional<Size> JpegSize(std::string_view bytes) {
    std::size_t at = 2;
    while (at + 4 <= bytes.size() && ByteAt(bytes, at) == 0xFF) {
        const int marker = ByteAt(bytes, at + 1);
        if (marker == 0xFF) {
            ++at;
        } else if (StandsAlone(marker)) {
            at += 2;
        } else if (IsFrameHeader(marker)) {
            if (at + 9 > bytes.size()) return {};
            return Size{BigShort(bytes, at + 7), BigShort(bytes, at + 5)};
        } else {
            at += 2 + static_cast<std::size_t>(BigShort(bytes, at + 2));
        }
    }
    return {};
}

PictureFormat FormatOf(std::string_view bytes) {
    if (bytes.starts_with("GIF87a"sv) || bytes.starts_with("GIF89a"sv)) return PictureFormat::kGif;
    if (bytes.starts_with("\x89PNG\r\n\x1A\n"sv)) return PictureFormat::kPng;
    if (bytes.starts_with("\xFF\xD8\xFF"sv)) return PictureFormat::kJpeg;
    if (bytes.starts_with("BM"sv)) return PictureFormat::kBmp;
    return PictureFormat::kUnknown;
}

std::optional<Size> SizeOf(PictureFormat format, std::string_view bytes) {
    switch (format) {
        case PictureFormat::kGif: return GifSize(bytes);
        case PictureFormat::kPng: return PngSize(bytes);
        case PictureFormat::kJpeg: return JpegSize(bytes);
        case PictureFormat::kBmp: return BmpSize(bytes);
        case PictureFormat::kUnknown: break;
    }
    return {};
}

}  // namespace

bool ReadPictureInfo(std::string_view bytes, PictureInfo& info) {
    info = {FormatOf(bytes), 0, 0};
    const auto size = SizeOf(info.format, bytes);
    constexpr std::int64_t kLimit = 0x7FFFFFFF;
    if (!size || size->width <= 0 || size->height <= 0) return false;
    if (size->width > kLimit || size->height > kLimit) return false;
    info.width = static_cast<int>(size->width);
    info.height = static_cast<int>(size->height);
    return true;
}

int PixelsOf(double millimetres, double dpi) {
    const double pixels = std::round(millimetres / kMillimetresPerInch * dpi);
    return pixels < 1 ? 1 : static_cast<int>(pixels);
}

double MillimetresOf(int pixels, double dpi) { return pixels * kMillimetresPerInch / dpi; }
