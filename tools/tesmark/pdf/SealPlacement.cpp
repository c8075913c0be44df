#include "pdf/SealPlacement.h"

#include <algorithm>
#include <cmath>

#include "pdf/PdfFailure.h"

namespace {

constexpr double kMillimetresPerPoint = 25.4 / 72;
// Beyond this no reader shows anything, and numbers lose their last digits.
constexpr double kLargestMm = 100'000;

bool LiesOnItsSide(const PageGeometry& page) { return page.rotate == 90 || page.rotate == 270; }

struct Corner {
    double x;
    double y;
};

// From units to the right and down of the visible upper left corner to the page's own space.
Corner FromVisible(const PageGeometry& page, double right, double down) {
    switch (page.rotate) {
        case 90: return {page.left + down, page.bottom + right};
        case 180: return {page.right - right, page.bottom + down};
        case 270: return {page.right - down, page.top - right};
        default: return {page.left + right, page.top - down};
    }
}

const char* Matrix(int rotate) {
    switch (rotate) {
        case 90: return "[0 1 -1 0 0 0]";
        case 180: return "[-1 0 0 -1 0 0]";
        case 270: return "[0 -1 1 0 0 0]";
        default: return "[1 0 0 1 0 0]";
    }
}

bool IsMeasure(double value) { return std::isfinite(value) && std::abs(value) < kLargestMm; }

}  // namespace

double VisibleWidthMm(const PageGeometry& page) {
    const double units = LiesOnItsSide(page) ? page.top - page.bottom : page.right - page.left;
    return units * page.userUnit * kMillimetresPerPoint;
}

double VisibleHeightMm(const PageGeometry& page) {
    const double units = LiesOnItsSide(page) ? page.right - page.left : page.top - page.bottom;
    return units * page.userUnit * kMillimetresPerPoint;
}

SealPlacement PlaceSeal(const PageGeometry& page, double xMm, double yMm, double widthMm,
                        double heightMm) {
    if (!IsMeasure(widthMm) || !IsMeasure(heightMm) || widthMm < 0.1 || heightMm < 0.1) {
        throw CPdfFailure(StampError::kBadPlace,
                          "The seal's size is not a length that can be seen.");
    }
    if (!IsMeasure(xMm) || !IsMeasure(yMm) || xMm >= VisibleWidthMm(page) ||
        yMm >= VisibleHeightMm(page) || xMm + widthMm <= 0 || yMm + heightMm <= 0) {
        throw CPdfFailure(StampError::kBadPlace, "The seal would lie beyond the edge of the page.");
    }
    const double scale = 1 / (kMillimetresPerPoint * page.userUnit);
    const Corner first = FromVisible(page, xMm * scale, yMm * scale);
    const Corner second = FromVisible(page, (xMm + widthMm) * scale, (yMm + heightMm) * scale);
    SealPlacement place;
    place.left = std::min(first.x, second.x);
    place.right = std::max(first.x, second.x);
    place.bottom = std::min(first.y, second.y);
    place.top = std::max(first.y, second.y);
    place.width = widthMm * scale;
    place.height = heightMm * scale;
    place.matrix = Matrix(page.rotate);
    return place;
}
