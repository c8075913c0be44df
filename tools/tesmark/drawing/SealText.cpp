#include "drawing/SealText.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double kNarrowest = 0.5;
// Lengths on an arc are counted a little below the middle of the ink, so that feet don't touch.
constexpr double kArcMiddle = 0.6;
// Between two glyphs that were made narrower, as a part of their width.
constexpr double kLeastGap = 0.06;
constexpr double kShrinkStep = 0.97;
// A stroke of a light face grows by this part of the ink's height.
constexpr double kEmboldening = 1.0 / 36;

FT_Fixed Fixed16(double value) { return std::lround(value * 65'536); }

}  // namespace

bool CSealText::Open(const FoundFont& font) {
    FT_Face face = nullptr;
    if (FT_New_Face(m_library, font.path.c_str(), font.index, &face)) return false;
    m_face.reset(face);
    m_embolden = font.embolden;
    return FT_IS_SCALABLE(face);
}

bool CSealText::Load(char32_t character) {
    const FT_UInt glyph = FT_Get_Char_Index(m_face.get(), character);
    return glyph && !FT_Load_Glyph(m_face.get(), glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING) &&
           m_face->glyph->format == FT_GLYPH_FORMAT_OUTLINE;
}

bool CSealText::Measure(const std::u32string& text, Extent& extent) {
    extent = {1e9, -1e9, 0};
    for (const char32_t character : text) {
        if (!Load(character)) return false;
        extent.advances += static_cast<double>(m_face->glyph->metrics.horiAdvance);
        if (m_face->glyph->outline.n_points == 0) continue;
        FT_BBox box;
        FT_Outline_Get_CBox(&m_face->glyph->outline, &box);
        extent.bottom = std::min(extent.bottom, static_cast<double>(box.yMin));
        extent.top = std::max(extent.top, static_cast<double>(box.yMax));
    }
    return extent.top > extent.bottom;
}

bool CSealText::FitInto(const Extent& extent, std::size_t count, const SealTextPlace& place,
                        bool onArc, Fit& fit) {
    for (double height = place.height; height >= place.minHeight; height *= kShrinkStep) {
        fit.scaleY = height / (extent.top - extent.bottom);
        const double room =
            onArc ? place.length * (place.radius - height * kArcMiddle) : place.length;
        const double natural = extent.advances * fit.scaleY * (1 + kLeastGap);
        fit.scaleX = fit.scaleY * std::min(1.0, room / natural);
        if (fit.scaleX < fit.scaleY * kNarrowest) continue;
        const double mean = extent.advances * fit.scaleX / static_cast<double>(count);
        const double spare = room - extent.advances * fit.scaleX;
        fit.gap =
            count < 2 ? 0 : std::min(spare / static_cast<double>(count - 1), mean * place.maxGap);
        return true;
    }
    return false;
}

CSealText::Stand CSealText::StandAt(SealTextPath path, double radius, const Extent& extent,
                                    double scale, double along) {
    if (path == SealTextPath::kLine) {
        return {{along, radius - (extent.top + extent.bottom) / 2 * scale}, 0};
    }
    const double turn = along / (radius - (extent.top - extent.bottom) * scale * kArcMiddle);
    if (path == SealTextPath::kUpperArc) {
        const double baseline = radius - extent.top * scale;
        return {{baseline * std::sin(turn), baseline * std::cos(turn)}, -turn};
    }
    const double baseline = radius + extent.bottom * scale;
    return {{baseline * std::sin(turn), -baseline * std::cos(turn)}, turn};
}

bool CSealText::DrawGlyph(CSealCanvas& canvas, char32_t character, const Fit& fit,
                          const Stand& stand) {
    if (!Load(character)) return false;
    FT_Outline& outline = m_face->glyph->outline;
    const double half = static_cast<double>(m_face->glyph->metrics.horiAdvance) / 2;
    FT_Outline_Translate(&outline, -std::lround(half), 0);
    const FT_Matrix scale = {Fixed16(fit.scaleX * 64), 0, 0, Fixed16(fit.scaleY * 64)};
    FT_Outline_Transform(&outline, &scale);
    if (m_embolden) {
        const auto strength = std::lround(fit.scaleY * m_face->units_per_EM * 64 * kEmboldening);
        FT_Outline_Embolden(&outline, strength);
        FT_Outline_Translate(&outline, -strength / 2, -strength / 2);
    }
    const double cosine = std::cos(stand.turn);
    const double sine = std::sin(stand.turn);
    const FT_Matrix rotation = {Fixed16(cosine), Fixed16(-sine), Fixed16(sine), Fixed16(cosine)};
    FT_Outline_Transform(&outline, &rotation);
    FT_Outline_Translate(&outline, std::lround(stand.foot.x * 64), std::lround(stand.foot.y * 64));
    return outline.n_points == 0 || canvas.FillOutline(outline);
}

bool CSealText::Draw(CSealCanvas& canvas, const std::u32string& text, SealTextPath path,
                     const SealTextPlace& place) {
    Extent extent;
    Fit fit;
    const bool onArc = path != SealTextPath::kLine;
    if (!Measure(text, extent) || !FitInto(extent, text.size(), place, onArc, fit)) return false;
    const double total =
        extent.advances * fit.scaleX + fit.gap * static_cast<double>(text.size() - 1);
    double along = -total / 2;
    for (const char32_t character : text) {
        if (!Load(character)) return false;
        const double advance = static_cast<double>(m_face->glyph->metrics.horiAdvance) * fit.scaleX;
        const Stand stand = StandAt(path, place.radius, extent, fit.scaleY, along + advance / 2);
        if (!DrawGlyph(canvas, character, fit, stand)) return false;
        along += advance + fit.gap;
    }
    return true;
}
