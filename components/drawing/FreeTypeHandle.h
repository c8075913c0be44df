// FreeTypeHandle.h - owning handles for FreeType's library and faces, and its measure.
#pragma once

#include <ft2build.h>

#include <memory>
#include <type_traits>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

struct FreeTypeClose {
    void operator()(FT_Library library) const { FT_Done_FreeType(library); }
    void operator()(FT_Face face) const { FT_Done_Face(face); }
};
// A face must go before its library.
using FreeTypeLibrary = std::unique_ptr<std::remove_pointer_t<FT_Library>, FreeTypeClose>;
using FreeTypeFace = std::unique_ptr<std::remove_pointer_t<FT_Face>, FreeTypeClose>;

// Null if FreeType isn't there or has no memory.
FreeTypeLibrary StartFreeType();

// Pixels as FreeType counts them, in 1/64.
FT_Pos Fixed26(double pixels);
