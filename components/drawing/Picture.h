// Picture.h - a picture in memory, and the files that it comes from and goes into.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "components/picture/PictureHeader.h"

// Four bytes a pixel: red, green, blue, and alpha from 0 (nothing there) to 255 (opaque), colours
// not multiplied by alpha; rows from the top, without padding.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;
};

struct PictureInfo {
    PictureFormat format = PictureFormat::kUnknown;
    int width = 0;
    int height = 0;
};

// Reads format and size from the headers alone. False if it is none of the four formats, or its
// header is cut off or tells a size that is not positive; `info.format` tells which it would be.
bool ReadPictureInfo(std::string_view bytes, PictureInfo& info);

// Decodes GIF (the first image), PNG, JPEG or BMP. False with `picture` empty and one English
// sentence in `problem` where the bytes are not a picture, damaged, or too large.
bool DecodePicture(std::string_view bytes, Picture& picture, std::string& problem);

// A GIF with one transparent index. GIF knows no half transparency: a pixel with an alpha below
// 24 becomes transparent, any other is painted over white with its alpha, so that edges stay
// smooth on white paper. At most 64 colours, the nearest is taken. Empty if the picture is empty
// or there is no memory.
std::string EncodeGif(const Picture& picture);

// A PNG with its alpha kept (to seven bits), which tells `dpi` as its resolution. Empty as above.
std::string EncodePng(const Picture& picture, int dpi = 96);

// Pixels of a length in millimetres at `dpi`, rounded, at least 1; and the way back.
int PixelsOf(double millimetres, double dpi);
double MillimetresOf(int pixels, double dpi);
