// FreeType's calls under its own names, which open it when the first of them is made: only a seal
// that is drawn needs them. Where it can't be opened it can't be started.
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include "components/drawing/linux/Forward.h"

namespace {

platform::ModuleHandle Module() {
    static const platform::ModuleHandle module = platform::LoadSystemLibrary("freetype", 6);
    return module;
}

}  // namespace

FT_Error FT_Init_FreeType(FT_Library* library) {
    FORWARD(FT_Init_FreeType, FT_Err_Cannot_Open_Resource, library);
}
FT_Error FT_Done_FreeType(FT_Library library) {
    FORWARD(FT_Done_FreeType, FT_Err_Cannot_Open_Resource, library);
}
FT_Error FT_New_Face(FT_Library library, const char* path, FT_Long index, FT_Face* face) {
    FORWARD(FT_New_Face, FT_Err_Cannot_Open_Resource, library, path, index, face);
}
FT_Error FT_Done_Face(FT_Face face) { FORWARD(FT_Done_Face, FT_Err_Cannot_Open_Resource, face); }
FT_UInt FT_Get_Char_Index(FT_Face face, FT_ULong character) {
    FORWARD(FT_Get_Char_Index, 0, face, character);
}
FT_Error FT_Load_Glyph(FT_Face face, FT_UInt glyph, FT_Int32 flags) {
    FORWARD(FT_Load_Glyph, FT_Err_Cannot_Open_Resource, face, glyph, flags);
}

FT_Error FT_Outline_New(FT_Library library, FT_UInt points, FT_Int contours, FT_Outline* outline) {
    FORWARD(FT_Outline_New, FT_Err_Cannot_Open_Resource, library, points, contours, outline);
}
FT_Error FT_Outline_Done(FT_Library library, FT_Outline* outline) {
    FORWARD(FT_Outline_Done, FT_Err_Cannot_Open_Resource, library, outline);
}
FT_Error FT_Outline_Embolden(FT_Outline* outline, FT_Pos strength) {
    FORWARD(FT_Outline_Embolden, FT_Err_Cannot_Open_Resource, outline, strength);
}
FT_Error FT_Outline_Get_Bitmap(FT_Library library, FT_Outline* outline, const FT_Bitmap* bitmap) {
    FORWARD(FT_Outline_Get_Bitmap, FT_Err_Cannot_Open_Resource, library, outline, bitmap);
}
void FT_Outline_Get_CBox(const FT_Outline* outline, FT_BBox* box) {
    FORWARD_VOID(FT_Outline_Get_CBox, outline, box);
}
void FT_Outline_Transform(const FT_Outline* outline, const FT_Matrix* matrix) {
    FORWARD_VOID(FT_Outline_Transform, outline, matrix);
}
void FT_Outline_Translate(const FT_Outline* outline, FT_Pos x, FT_Pos y) {
    FORWARD_VOID(FT_Outline_Translate, outline, x, y);
}
