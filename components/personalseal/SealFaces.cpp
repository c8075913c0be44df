#include "components/personalseal/SealFaces.h"

#include <algorithm>
#include <cmath>

#include "components/personalseal/SealControlCodes.h"

namespace {

// A stroke of a light face grows by this part of an em.
constexpr double kEmboldening = 1.0 / 32;

}  // namespace

void SealBox::Include(const SealBox& other) {
    left = std::min(left, other.left);
    bottom = std::min(bottom, other.bottom);
    right = std::max(right, other.right);
    top = std::max(top, other.top);
}

bool CSealFaces::Take(const FoundFont& font, const std::u32string& text) {
    FT_Face face = nullptr;
    if (FT_New_Face(m_library, font.path.c_str(), font.index, &face)) return false;
    m_faces.push_back({FreeTypeFace(face), font.embolden});
    for (const char32_t character : text) m_faceOf[character] = m_faces.size() - 1;
    return FT_IS_SCALABLE(face);
}

int CSealFaces::Open(const std::u32string& text, const FontWish& wish) {
    const CFontSearch fonts(wish);
    FoundFont font;
    if (fonts.Find(text, font)) return Take(font, text) ? kSealDrawn : kSealNoFont;
    for (const char32_t character : text) {
        if (m_faceOf.contains(character)) continue;
        const std::u32string alone(1, character);
        if (!fonts.Find(alone, font) || !Take(font, alone)) return kSealNoFont;
    }
    return kSealDrawn;
}

FT_GlyphSlot CSealFaces::Load(char32_t character, const Face*& face) {
    const auto known = m_faceOf.find(character);
    if (known == m_faceOf.end()) return nullptr;
    face = &m_faces[known->second];
    FT_Face handle = face->face.get();
    const FT_UInt glyph = FT_Get_Char_Index(handle, character);
    const bool loaded =
        glyph && !FT_Load_Glyph(handle, glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING) &&
        handle->glyph->format == FT_GLYPH_FORMAT_OUTLINE && handle->units_per_EM != 0;
    return loaded ? handle->glyph : nullptr;
}

double CSealFaces::Advance(char32_t character) {
    const Face* face = nullptr;
    const FT_GlyphSlot glyph = Load(character, face);
    if (!glyph) return 0;
    return static_cast<double>(glyph->metrics.horiAdvance) / face->face->units_per_EM;
}

SealBox CSealFaces::Ink(char32_t character) {
    const Face* face = nullptr;
    const FT_GlyphSlot glyph = Load(character, face);
    if (!glyph || glyph->outline.n_points == 0) return {};
    FT_BBox box;
    FT_Outline_Get_CBox(&glyph->outline, &box);
    const double em = face->face->units_per_EM;
    const double more = face->embolden ? kEmboldening / 2 : 0;
    return {static_cast<double>(box.xMin) / em - more, static_cast<double>(box.yMin) / em - more,
            static_cast<double>(box.xMax) / em + more, static_cast<double>(box.yMax) / em + more};
}

FT_Outline* CSealFaces::Outline(char32_t character, double size, double x, double y) {
    const Face* face = nullptr;
    const FT_GlyphSlot glyph = Load(character, face);
    if (!glyph) return nullptr;
    const auto scale = std::lround(size * 64 * 65'536 / face->face->units_per_EM);
    const FT_Matrix matrix = {scale, 0, 0, scale};
    FT_Outline_Transform(&glyph->outline, &matrix);
    if (face->embolden) {
        const FT_Pos strength = Fixed26(size * kEmboldening);
        FT_Outline_Embolden(&glyph->outline, strength);
        FT_Outline_Translate(&glyph->outline, -strength / 2, -strength / 2);
    }
    FT_Outline_Translate(&glyph->outline, Fixed26(x), Fixed26(y));
    return &glyph->outline;
}
