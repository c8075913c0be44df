// GifPicture.h - a GIF of any pixels: at most 255 colours and one transparent index.
#pragma once

#include <string>
#include <vector>

#include "components/picture/GdLibrary.h"

constexpr int kNoPaint = -1;

// The colours as on white paper, row by row. GIF knows no half transparency: what is less than a
// tenth opaque is kNoPaint, and the rest is painted over white.
std::vector<int> PaintOnWhite(const CGdLibrary& gd, gdImage* picture);

// Makes the file, `width` pixels wide. Up to 255 colours are kept exactly, of more libgd chooses
// 255; kNoPaint becomes transparent. Returns a PictureCode.
int GifOfPaint(const CGdLibrary& gd, int width, const std::vector<int>& colours, std::string& gif);
