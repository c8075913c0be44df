// DrawnPicture.h - what can be measured of a picture that the control drew.
#pragma once

#include <string>
#include <vector>

#include "components/drawing/Picture.h"

class DrawnPicture {
public:
    DrawnPicture() = default;
    // Decodes a PNG. A picture without a size if it is none.
    explicit DrawnPicture(const std::string& png);

    int Width() const { return m_picture.width; }
    int Height() const { return m_picture.height; }
    const std::vector<std::uint8_t>& Pixels() const { return m_picture.rgba; }
    int Alpha(int x, int y) const;

    // Covered pixels, those with smooth edges by their part: of all, or of a part told in parts of
    // width and height from the top left.
    double Ink() const { return Ink(0, 0, 1, 1); }
    double Ink(double left, double top, double right, double bottom) const;

    // Stretches from the left, or from the top, that have ink somewhere across, with nothing
    // between them; pixels, begin and end. The outermost `inset` pixels of all sides don't count.
    struct Stretch {
        int begin;
        int end;
        int Length() const { return end - begin; }
    };
    std::vector<Stretch> Across(int inset = 0) const;
    std::vector<Stretch> Down(int inset = 0) const;

    // The colour of all that is not wholly transparent, 0xRRGGBB; -1 where there is more than one.
    int Colour() const;

private:
    Picture m_picture;
};
