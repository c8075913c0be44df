// SealLayout.h - where the glyphs of a text stand.
#pragma once

#include <span>
#include <vector>

#include "components/personalseal/SealFaces.h"
#include "components/personalseal/SealWords.h"

// Pixels, y up; the origin of a glyph is on its baseline.
struct SealGlyph {
    char32_t character;
    double x;
    double y;
    double size;  // of the em
};

// Glyphs, and the box of all their ink and all their characters' squares.
struct SealBlock {
    std::vector<SealGlyph> glyphs;
    SealBox box;
};

struct SealGrid {
    double size;   // of a character, in pixels
    double space;  // between two of them, both ways
    int perColumn;
};

// Words in columns from the top to the bottom, each as wide as its widest word, words upright and
// in the middle. With 汉字 in the text the columns run from right to left, as seals are read; but
// columns of one word, and those of other scripts, from left to right. A blank before a column's
// first word sets it further apart. The words of a last column that isn't full are spread over its
// height, where it isn't the only one.
SealBlock SetColumns(CSealFaces& faces, std::span<const SealWord> words, const SealGrid& grid);

// `lower` below `upper`, `gap` between their boxes, the middles of both above each other. An empty
// one leaves the other as it is.
SealBlock StackBlocks(const SealBlock& upper, const SealBlock& lower, double gap);

// The lines into which a text is broken, of one to three, which let it stand largest in a box, and
// its size there; as far apart as that allows. An empty block where that size is below `leastSize`.
SealBlock FitLines(CSealFaces& faces, std::span<const SealWord> words, double width, double height,
                   double leastSize);
