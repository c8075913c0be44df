#include "components/drawing/SealFont.h"

#include <fontconfig/fontconfig.h>

#include <memory>

namespace {

struct FontDestroyer {
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
    void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
    void operator()(FcCharSet* set) const { FcCharSetDestroy(set); }
};
template <typename T>
using Owned = std::unique_ptr<T, FontDestroyer>;

const FcChar8* FontText(const char* text) { return reinterpret_cast<const FcChar8*>(text); }

Owned<FcCharSet> CharactersOf(const std::u32string& text) {
    Owned<FcCharSet> characters(FcCharSetCreate());
    for (const char32_t character : text) FcCharSetAddChar(characters.get(), character);
    return characters;
}

Owned<FcPattern> WishedPattern(const std::string& family) {
    Owned<FcPattern> pattern(FcPatternCreate());
    if (!family.empty()) {
        FcPatternAddString(pattern.get(), FC_FAMILY, FontText(family.c_str()));
    }
    for (const char* name : {"SimSun", "NSimSun", "Noto Serif CJK SC", "Source Han Serif SC",
                             "AR PL UMing CN", "Noto Sans CJK SC", "serif"}) {
        FcPatternAddString(pattern.get(), FC_FAMILY, FontText(name));
    }
    FcPatternAddInteger(pattern.get(), FC_WEIGHT, FC_WEIGHT_BOLD);
    FcPatternAddInteger(pattern.get(), FC_SLANT, FC_SLANT_ROMAN);
    FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
    FcPatternAddString(pattern.get(), FC_LANG, FontText("zh-cn"));
    return pattern;
}

bool HasAll(const FcPattern* face, const FcCharSet* characters) {
    FcCharSet* available = nullptr;
    if (FcPatternGetCharSet(face, FC_CHARSET, 0, &available) != FcResultMatch) return false;
    return FcCharSetIsSubset(characters, available);
}

bool Describe(const FcPattern* face, SealFont& font) {
    FcChar8* path = nullptr;
    FcBool scalable = FcFalse;
    if (FcPatternGetString(face, FC_FILE, 0, &path) != FcResultMatch) return false;
    if (FcPatternGetBool(face, FC_SCALABLE, 0, &scalable) != FcResultMatch || !scalable) {
        return false;
    }
    int index = 0;
    int weight = FC_WEIGHT_REGULAR;
    FcPatternGetInteger(face, FC_INDEX, 0, &index);
    FcPatternGetInteger(face, FC_WEIGHT, 0, &weight);
    font = {reinterpret_cast<const char*>(path), index, weight < FC_WEIGHT_DEMIBOLD};
    return true;
}

}  // namespace

bool FindSealFont(const std::u32string& text, const std::string& family, SealFont& font) {
    // A configuration of our own: a host's is neither read nor left behind.
    const Owned<FcConfig> config(FcInitLoadConfigAndFonts());
    if (!config) return false;
    const auto characters = CharactersOf(text);
    const auto pattern = WishedPattern(family);
    FcConfigSubstitute(config.get(), pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultMatch;
    const Owned<FcFontSet> faces(
        FcFontSort(config.get(), pattern.get(), FcFalse, nullptr, &result));
    if (!faces) return false;
    for (int i = 0; i < faces->nfont; ++i) {
        const FcPattern* const face = faces->fonts[i];
        if (HasAll(face, characters.get()) && Describe(face, font)) return true;
    }
    return false;
}
