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

// Both sizes are 0 where the header is cut off or tells none. A BMP's rows may run either way; its
// height is positive here.
PictureHeader ReadPictureHeader(std::string_view file);
