// Fontconfig's calls under its own names, as FreeTypeCalls.cpp has FreeType's: only a seal that is
// drawn needs a font. Where it can't be opened no font is found.
#include <fontconfig/fontconfig.h>

#include "components/drawing/linux/Forward.h"

namespace {

platform::ModuleHandle Module() {
    static const platform::ModuleHandle module = platform::LoadSystemLibrary("fontconfig", 1);
    return module;
}

}  // namespace

FcConfig* FcInitLoadConfigAndFonts() { FORWARD(FcInitLoadConfigAndFonts, nullptr); }
void FcConfigDestroy(FcConfig* config) { FORWARD_VOID(FcConfigDestroy, config); }
FcBool FcConfigSubstitute(FcConfig* config, FcPattern* pattern, FcMatchKind kind) {
    FORWARD(FcConfigSubstitute, FcFalse, config, pattern, kind);
}
void FcDefaultSubstitute(FcPattern* pattern) { FORWARD_VOID(FcDefaultSubstitute, pattern); }
FcFontSet* FcFontSort(FcConfig* config, FcPattern* pattern, FcBool trim, FcCharSet** characters,
                      FcResult* result) {
    FORWARD(FcFontSort, nullptr, config, pattern, trim, characters, result);
}
void FcFontSetDestroy(FcFontSet* set) { FORWARD_VOID(FcFontSetDestroy, set); }

FcPattern* FcPatternCreate() { FORWARD(FcPatternCreate, nullptr); }
void FcPatternDestroy(FcPattern* pattern) { FORWARD_VOID(FcPatternDestroy, pattern); }
FcBool FcPatternAddString(FcPattern* pattern, const char* object, const FcChar8* text) {
    FORWARD(FcPatternAddString, FcFalse, pattern, object, text);
}
FcBool FcPatternAddInteger(FcPattern* pattern, const char* object, int value) {
    FORWARD(FcPatternAddInteger, FcFalse, pattern, object, value);
}
FcBool FcPatternAddBool(FcPattern* pattern, const char* object, FcBool value) {
    FORWARD(FcPatternAddBool, FcFalse, pattern, object, value);
}
FcResult FcPatternGetString(const FcPattern* pattern, const char* object, int n, FcChar8** text) {
    FORWARD(FcPatternGetString, FcResultNoMatch, pattern, object, n, text);
}
FcResult FcPatternGetInteger(const FcPattern* pattern, const char* object, int n, int* value) {
    FORWARD(FcPatternGetInteger, FcResultNoMatch, pattern, object, n, value);
}
FcResult FcPatternGetBool(const FcPattern* pattern, const char* object, int n, FcBool* value) {
    FORWARD(FcPatternGetBool, FcResultNoMatch, pattern, object, n, value);
}
FcResult FcPatternGetCharSet(const FcPattern* pattern, const char* object, int n,
                             FcCharSet** characters) {
    FORWARD(FcPatternGetCharSet, FcResultNoMatch, pattern, object, n, characters);
}

FcCharSet* FcCharSetCreate() { FORWARD(FcCharSetCreate, nullptr); }
void FcCharSetDestroy(FcCharSet* set) { FORWARD_VOID(FcCharSetDestroy, set); }
FcBool FcCharSetAddChar(FcCharSet* set, FcChar32 character) {
    FORWARD(FcCharSetAddChar, FcFalse, set, character);
}
FcBool FcCharSetIsSubset(const FcCharSet* part, const FcCharSet* whole) {
    FORWARD(FcCharSetIsSubset, FcFalse, part, whole);
}
