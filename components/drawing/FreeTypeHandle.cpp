#include "components/drawing/FreeTypeHandle.h"

#include <cmath>

FreeTypeLibrary StartFreeType() {
    FT_Library library = nullptr;
    return FT_Init_FreeType(&library) == 0 ? FreeTypeLibrary(library) : nullptr;
}

FT_Pos Fixed26(double pixels) { return std::lround(pixels * 64); }
