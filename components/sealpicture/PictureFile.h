// PictureFile.h - a picture file that has been found readable, and its pixels.
#pragma once

#include <string_view>

#include "components/picture/GdPicture.h"

struct PictureFile {
    PictureHeader header{};
    GdImageHandle image{};  // of a GIF its first frame, which may be smaller than the picture
};

// Returns a PictureCode; for kPictureOk alone `picture` is filled, and libgd is there.
int ReadPictureFile(std::string_view file, PictureFile& picture);
