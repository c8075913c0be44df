#include "components/personalseal/SealSheet.h"

#include <cmath>
#include <numbers>

#include "components/drawing/Picture.h"
#include "components/drawing/SealCanvas.h"
#include "components/personalseal/SealControlCodes.h"

namespace {

constexpr int kCornerPoints = 12;
// Radii of the frame's corners, in its thickness.
constexpr double kOuterCorner = 1.5;
constexpr double kInnerCorner = 0.6;

// Counter-clockwise around the middle of the sheet.
std::vector<SealPoint> RoundedBox(double width, double height, double radius) {
    std::vector<SealPoint> contour;
    for (int corner = 0; corner < 4; ++corner) {
        const double x = (width / 2 - radius) * (corner == 0 || corner == 3 ? 1 : -1);
        const double y = (height / 2 - radius) * (corner < 2 ? 1 : -1);
        for (int i = 0; i <= kCornerPoints; ++i) {
            const double angle =
                std::numbers::pi / 2 * (corner + static_cast<double>(i) / kCornerPoints);
            contour.push_back({x + radius * std::cos(angle), y + radius * std::sin(angle)});
        }
    }
    return contour;
}

bool PaintFrame(CSealCanvas& canvas, const SealSheet& sheet) {
    const double thick = sheet.frameThick;
    if (thick <= 0) return true;
    const double inside = 2 * thick;
    const auto outer = RoundedBox(sheet.width, sheet.height, thick * kOuterCorner);
    const auto inner =
        RoundedBox(sheet.width - inside, sheet.height - inside, thick * kInnerCorner);
    return canvas.Fill({outer, {inner.rbegin(), inner.rend()}});
}

bool PaintGlyphs(CSealCanvas& canvas, CSealFaces& faces, const SealBlock& block) {
    const double x = (block.box.left + block.box.right) / 2;
    const double y = (block.box.bottom + block.box.top) / 2;
    for (const SealGlyph& glyph : block.glyphs) {
        FT_Outline* const outline =
            faces.Outline(glyph.character, glyph.size, glyph.x - x, glyph.y - y);
        if (!outline) return false;
        if (outline->n_points != 0 && !canvas.FillOutline(*outline)) return false;
    }
    return true;
}

bool IsPossible(const SealSheet& sheet) {
    return sheet.width > 0 && sheet.height > 0 && !IsPictureTooLarge(sheet.width, sheet.height);
}

}  // namespace

int PaintSeal(FT_Library library, CSealFaces& faces, const SealBlock& block, const SealSheet& sheet,
              std::string& png) {
    if (!IsPossible(sheet)) return kSealBadSize;
    CSealCanvas canvas(library, sheet.width, sheet.height);
    if (!PaintFrame(canvas, sheet) || !PaintGlyphs(canvas, faces, block)) return kSealNoDrawing;
    png = EncodePng(canvas.Painted(sheet.colour), kSealDpi);
    return png.empty() ? kSealNoDrawing : kSealDrawn;
}
