// GdPicture.h - a picture file as libgd's pixels.
#pragma once

#include <string_view>

#include "components/picture/GdLibrary.h"
#include "components/picture/PictureHeader.h"

// Decodes the file, which is of that format and has no more than 2,147,483,647 bytes; of a GIF the
// first frame, which may be smaller than the picture. Null where it is damaged.
GdImageHandle DecodeFile(const CGdLibrary& gd, PictureFormat format, std::string_view file);

// The colour with libgd's alpha, which runs from 0, opaque, to 127.
int PixelOf(const CGdLibrary& gd, gdImage* image, int x, int y);
