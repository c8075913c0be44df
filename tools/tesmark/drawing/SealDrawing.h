// SealDrawing.h - draws the round seal of a company: a red ring, the name on its arc, a star.
#pragma once

#include <cstdint>
#include <string>

#include "components/drawing/Picture.h"

constexpr double kSmallestSealMm = 10;
constexpr double kLargestSealMm = 170;

// All texts are UTF-8.
struct SealDesign {
    // On the arc, from lower left over the top to lower right, evenly spaced, each glyph turned
    // to stand on the arc. It must not be empty.
    std::string name;
    // One straight line below the star ("合同专用章"). May be empty.
    std::string purpose;
    // Small on the lower arc, from left to right (the register's number). May be empty.
    std::string number;
    double diameterMm = 42;  // outer edge of the ring; from kSmallestSealMm to kLargestSealMm
    int dpi = 300;           // 72 to 1200
    // Family to look for first; then 宋体 and its kin. A face that lacks a glyph of the texts is
    // never taken.
    std::string fontFamily;
    std::uint32_t colour = 0xD7000F;  // 0xRRGGBB
};

// Draws it into a square picture with a transparent background, as wide as the ring. Long names
// are set narrower and then smaller until they fit. False with `picture` empty and one English
// sentence in `problem` (UTF-8) where a text is empty, too long or not UTF-8, a measure is out of
// range, or no font of this machine has all glyphs. The same design on a machine with the same
// fonts gives the same picture.
bool DrawRoundSeal(const SealDesign& design, Picture& picture, std::string& problem);
