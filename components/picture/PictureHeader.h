// PictureHeader.h - format and size of a picture file, from its header alone.
#pragma once

#include <cstdint>
#include <string_view>

enum class PictureFormat { kUnknown, kGif, kPng, kJpeg, kBmp };

struct PictureHeader {
    PictureFormat format = PictureFormat::kUnknown;
    std::int64_t width = 0;
    std::int64_t height = 0;
    // False for a JPEG without its end and a BMP without all its rows: libgd would make up what is
    // missing.
    bool complete = true;
};

// No side is longer than this many pixels, and no picture has more of them (a seal of 170 mm at
// 600 dpi). What is larger is refused before it is decoded.
inline constexpr std::int64_t kPictureMaxSide = 16'384;
inline constexpr std::int64_t kPictureMaxPixels = 16 * 1024 * 1024;
// For sizes from 0 on.
bool IsPictureTooLarge(std::int64_t width, std::int64_t height);

// Both sizes are 0 where the header is cut off or tells none. A BMP's rows may run either way; its
// height is positive here.
PictureHeader ReadPictureHeader(std::string_view file);
