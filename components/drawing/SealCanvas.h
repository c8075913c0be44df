// SealCanvas.h - a sheet of coverage on which shapes and glyphs are drawn with smooth edges.
#pragma once

#include <cstdint>
#include <vector>

#include "components/drawing/FreeTypeHandle.h"
#include "components/drawing/Picture.h"

struct SealPoint {
    double x;
    double y;
};

// Coordinates are pixels from the centre, x to the right, y up.
class CSealCanvas {
public:
    // A sheet of `width` by `height` pixels. `library` must outlive it.
    CSealCanvas(FT_Library library, int width, int height);

    // Fills what lies between the contours by the non-zero rule: a hole runs the other way round.
    // False if FreeType refuses.
    bool Fill(const std::vector<std::vector<SealPoint>>& contours);
    // Fills a glyph's outline, whose coordinates are 1/64 pixels from the centre; moves it.
    bool FillOutline(FT_Outline& outline);

    // The sheet in one colour, 0xRRGGBB, with the coverage as its alpha.
    Picture Painted(std::uint32_t colour) const;

private:
    FT_Library m_library;
    int m_width;
    int m_height;
    std::vector<std::uint8_t> m_coverage;  // from 0 to 255, rows from the top
};

// A circle, counter-clockwise for a positive radius, clockwise for a negative one.
std::vector<SealPoint> CircleContour(double radius);
// A star with five points, one of them up, in a circle of that radius.
std::vector<SealPoint> StarContour(double radius);
