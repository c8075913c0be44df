#include "components/drawing/SealCanvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr int kCirclePoints = 1'440;

std::size_t PointCount(const std::vector<std::vector<SealPoint>>& contours) {
    std::size_t count = 0;
    for (const auto& contour : contours) count += contour.size();
    return count;
}

}  // namespace

CSealCanvas::CSealCanvas(FT_Library library, int width, int height)
    : m_library(library),
      m_width(width),
      m_height(height),
      m_coverage(std::size_t(width) * height) {}

bool CSealCanvas::Fill(const std::vector<std::vector<SealPoint>>& contours) {
    FT_Outline outline;
    const auto points = static_cast<FT_UInt>(PointCount(contours));
    if (FT_Outline_New(m_library, points, static_cast<FT_Int>(contours.size()), &outline)) {
        return false;
    }
    short used = 0;
    for (std::size_t i = 0; i < contours.size(); ++i) {
        for (const SealPoint& point : contours[i]) {
            outline.points[used] = {Fixed26(point.x), Fixed26(point.y)};
            outline.tags[used] = FT_CURVE_TAG_ON;
            ++used;
        }
        outline.contours[i] = static_cast<short>(used - 1);
    }
    const bool filled = FillOutline(outline);
    FT_Outline_Done(m_library, &outline);
    return filled;
}

bool CSealCanvas::FillOutline(FT_Outline& outline) {
    FT_Outline_Translate(&outline, m_width * 32L, m_height * 32L);
    FT_Bitmap bitmap = {};
    bitmap.rows = static_cast<unsigned int>(m_height);
    bitmap.width = static_cast<unsigned int>(m_width);
    bitmap.pitch = m_width;
    bitmap.buffer = m_coverage.data();
    bitmap.num_grays = 256;
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    return FT_Outline_Get_Bitmap(m_library, &outline, &bitmap) == 0;
}

Picture CSealCanvas::Painted(std::uint32_t colour) const {
    Picture picture{m_width, m_height, {}};
    picture.rgba.reserve(m_coverage.size() * 4);
    for (const std::uint8_t alpha : m_coverage) {
        picture.rgba.push_back(static_cast<std::uint8_t>(colour >> 16));
        picture.rgba.push_back(static_cast<std::uint8_t>(colour >> 8));
        picture.rgba.push_back(static_cast<std::uint8_t>(colour));
        picture.rgba.push_back(alpha);
    }
    return picture;
}

std::vector<SealPoint> CircleContour(double radius) {
    std::vector<SealPoint> contour;
    for (int i = 0; i < kCirclePoints; ++i) {
        const double angle = 2 * std::numbers::pi * i / kCirclePoints;
        contour.push_back({std::abs(radius) * std::cos(angle), radius * std::sin(angle)});
    }
    return contour;
}

std::vector<SealPoint> StarContour(double radius) {
    // Where the edges of a pentagram cross.
    const double inner = radius * (3 - std::sqrt(5)) / 2;
    std::vector<SealPoint> contour;
    for (int i = 0; i < 10; ++i) {
        const double angle = std::numbers::pi * (0.5 + 0.2 * i);
        const double r = i % 2 ? inner : radius;
        contour.push_back({r * std::cos(angle), r * std::sin(angle)});
    }
    return contour;
}
