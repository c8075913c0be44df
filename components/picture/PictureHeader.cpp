#include "components/picture/PictureHeader.h"

#include <algorithm>
#include <cstdlib>

namespace {

using std::string_view_literals::operator""sv;

std::int64_t Byte(std::string_view file, std::size_t at) {
    return static_cast<unsigned char>(file[at]);
}

std::int64_t Little(std::string_view file, std::size_t at, std::size_t width) {
    std::int64_t number = 0;
    while (width-- > 0) number = number << 8 | Byte(file, at + width);
    return number;
}

std::int64_t Big(std::string_view file, std::size_t at, std::size_t width) {
    std::int64_t number = 0;
    for (std::size_t i = 0; i < width; ++i) number = number << 8 | Byte(file, at + i);
    return number;
}

PictureHeader Gif(std::string_view file) {
    if (file.size() < 10) return {PictureFormat::kGif};
    return {PictureFormat::kGif, Little(file, 6, 2), Little(file, 8, 2)};
}

PictureHeader Png(std::string_view file) {
    if (file.size() < 24 || file.substr(12, 4) != "IHDR") return {PictureFormat::kPng};
    return {PictureFormat::kPng, Big(file, 16, 4), Big(file, 20, 4)};
}

// Only rows without compression have a length that can be known.
bool HasAllRows(std::string_view file, const PictureHeader& header) {
    constexpr std::int64_t kBitFields = 3;
    if (file.size() < 34) return false;
    const std::int64_t compression = Little(file, 30, 4);
    if (compression != 0 && compression != kBitFields) return true;
    const std::int64_t rowBytes = (header.width * Little(file, 28, 2) + 31) / 32 * 4;
    constexpr std::int64_t kMostRowBytes = std::int64_t{1} << 30;
    const std::int64_t least =
        Little(file, 10, 4) + std::min(rowBytes, kMostRowBytes) * header.height;
    return least <= static_cast<std::int64_t>(file.size());
}

PictureHeader Bmp(std::string_view file) {
    constexpr std::int64_t kOs2Header = 12;
    PictureHeader header{PictureFormat::kBmp};
    if (file.size() < 26) return header;
    if (Little(file, 14, 4) == kOs2Header) {
        header.width = Little(file, 18, 2);
        header.height = Little(file, 20, 2);
        return header;
    }
    header.width = static_cast<std::int32_t>(Little(file, 18, 4));
    header.height = std::llabs(static_cast<std::int32_t>(Little(file, 22, 4)));
    header.complete = header.width <= 0 || HasAllRows(file, header);
    return header;
}

// Start of frame: C0 to CF but for C4, C8 and CC, which are other markers.
bool IsFrame(std::int64_t marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

// These have no length behind them.
bool StandsAlone(std::int64_t marker) {
    return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
}

// Segment by segment up to the first frame; a marker may have fill bytes in front.
PictureHeader Jpeg(std::string_view file) {
    std::size_t at = 2;
    while (at + 9 <= file.size() && Byte(file, at) == 0xFF) {
        const std::int64_t marker = Byte(file, at + 1);
        if (marker == 0xFF) {
            ++at;
            continue;
        }
        if (StandsAlone(marker)) {
            at += 2;
            continue;
        }
        if (IsFrame(marker)) {
            const bool hasEnd = file.find("\xFF\xD9", at) != file.npos;
            return {PictureFormat::kJpeg, Big(file, at + 7, 2), Big(file, at + 5, 2), hasEnd};
        }
        at += 2 + static_cast<std::size_t>(Big(file, at + 2, 2));
    }
    return {PictureFormat::kJpeg};
}

}  // namespace

bool IsPictureTooLarge(std::int64_t width, std::int64_t height) {
    return width > kPictureMaxSide || height > kPictureMaxSide ||
           width * height > kPictureMaxPixels;
}

PictureHeader ReadPictureHeader(std::string_view file) {
    if (file.starts_with("GIF87a") || file.starts_with("GIF89a")) return Gif(file);
    if (file.starts_with("\x89PNG\r\n\x1A\n"sv)) return Png(file);
    if (file.starts_with("\xFF\xD8\xFF"sv)) return Jpeg(file);
    if (file.starts_with("BM")) return Bmp(file);
    return {};
}
