// Picture.h - a picture file that has been found readable, and its pixels.
#pragma once

#include <string_view>

#include "components/picture/PictureHeader.h"
#include "components/sealpicture/GdLibrary.h"

struct Picture {
    PictureHeader header{};
    GdImageHandle image{};  // of a GIF its first frame, which may be smaller than the picture
};

// Returns a PictureCode; for kPictureOk alone `picture` is filled, and libgd is there.
int ReadPicture(std::string_view file, Picture& picture);

// The colour with libgd's alpha, which runs from 0, opaque, to 127.
int PixelOf(const CGdLibrary& gd, gdImage* image, int x, int y);
