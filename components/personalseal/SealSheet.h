// SealSheet.h - glyphs and a frame as a picture.
#pragma once

#include <cstdint>
#include <string>

#include "components/personalseal/SealLayout.h"

inline constexpr int kSealDpi = 300;

struct SealSheet {
    int width;  // pixels
    int height;
    double frameThick;  // pixels, 0 for none; along the edges, its corners a little rounded
    std::uint32_t colour;
};

// The block in the middle of a sheet with nothing behind it, as a PNG with smooth edges of half
// transparency and kSealDpi as its resolution. kSealDrawn, kSealBadSize for a sheet without pixels
// or with more than a picture may have, or kSealNoDrawing.
int PaintSeal(FT_Library library, CSealFaces& faces, const SealBlock& block, const SealSheet& sheet,
              std::string& png);
