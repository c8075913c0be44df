// Conversion.h - any picture that a seal may hold, as a GIF.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// What is larger is refused by its header, before anything is decoded.
constexpr std::int64_t kMaxPictureSide = 16'384;
constexpr std::int64_t kMaxPicturePixels = 16 * 1024 * 1024;

// PNG, JPEG and BMP become a GIF of at most 255 colours and one transparent index; GIF knows no
// half transparency, so what is less than a tenth opaque becomes transparent, and the rest is
// painted over white. A GIF stays as it is, byte by byte, once it has been found readable.
// Returns a PictureCode.
int ConvertToGif(std::string_view picture, std::string& gif);
