#include "components/drawing/FontSearch.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>

#include "components/drawing/FontFamilies.h"

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

// Fontconfig's own texts are short; what is longer names no family.
constexpr std::size_t kLongestFamily = 200;

Owned<FcPattern> WishedPattern(const FontWish& wish) {
    Owned<FcPattern> pattern(FcPatternCreate());
    for (const std::string& family : FontFamilies(wish.family)) {
        if (family.size() > kLongestFamily) continue;
        FcPatternAddString(pattern.get(), FC_FAMILY, FontText(family.c_str()));
    }
    FcPatternAddString(pattern.get(), FC_FAMILY, FontText("serif"));
    FcPatternAddInteger(pattern.get(), FC_WEIGHT, wish.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
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

bool Describe(const FcPattern* face, bool bold, FoundFont& font) {
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
    font = {reinterpret_cast<const char*>(path), index, bold && weight < FC_WEIGHT_DEMIBOLD};
    return true;
}

}  // namespace

struct CFontSearch::State {
    bool bold;
    // A configuration of our own: a host's is neither read nor left behind.
    Owned<FcConfig> config;
    Owned<FcFontSet> faces;
};

CFontSearch::CFontSearch(const FontWish& wish)
    : m_state(new State{wish.bold, Owned<FcConfig>(FcInitLoadConfigAndFonts()), nullptr}) {
    if (!m_state->config) return;
    const auto pattern = WishedPattern(wish);
    FcConfigSubstitute(m_state->config.get(), pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultMatch;
    m_state->faces.reset(
        FcFontSort(m_state->config.get(), pattern.get(), FcFalse, nullptr, &result));
}

CFontSearch::~CFontSearch() = default;

bool CFontSearch::Find(const std::u32string& text, FoundFont& font) const {
    if (!m_state->faces) return false;
    const auto characters = CharactersOf(text);
    FcPattern** const first = m_state->faces->fonts;
    return std::any_of(first, first + m_state->faces->nfont, [&](const FcPattern* face) {
        return HasAll(face, characters.get()) && Describe(face, m_state->bold, font);
    });
}
