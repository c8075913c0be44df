// SealText.h - sets text on an arc or a line of a seal.
#pragma once

#include <string>

#include "components/drawing/FontSearch.h"
#include "components/drawing/SealCanvas.h"

enum class SealTextPath {
    kUpperArc,  // glyphs stand over the top of the circle, their heads to the outside
    kLowerArc,  // glyphs stand along its bottom, their heads to the centre
    kLine,
};

// Where a text may stand; lengths in pixels.
struct SealTextPlace {
    double radius;     // arc: where the ink ends to the outside; line: height of the ink's middle
    double height;     // of the ink at most
    double minHeight;  // below this the text doesn't fit
    double length;     // arc: angle in radians at most; line: width at most
    double maxGap;     // between two glyphs, as a part of the mean glyph's width
};

class CSealText {
public:
    explicit CSealText(FT_Library library) : m_library(library) {}
    bool Open(const FoundFont& font);

    // Sets the glyphs with equal gaps, narrower (to a half) and then smaller where they don't
    // fit. False if even that is not enough, or a glyph can't be loaded.
    bool Draw(CSealCanvas& canvas, const std::u32string& text, SealTextPath path,
              const SealTextPlace& place);

private:
    // Font units, y up from the baseline.
    struct Extent {
        double bottom = 0;
        double top = 0;
        double advances = 0;
    };
    // Factors from font units to pixels, and pixels between two glyphs.
    struct Fit {
        double scaleX = 0;
        double scaleY = 0;
        double gap = 0;
    };
    bool Measure(const std::u32string& text, Extent& extent);
    static bool FitInto(const Extent& extent, std::size_t count, const SealTextPlace& place,
                        bool onArc, Fit& fit);
    bool Load(char32_t character);
    // Where the middle of a glyph's advance stands on its baseline, and its turn in radians,
    // counter-clockwise.
    struct Stand {
        SealPoint foot;
        double turn;
    };
    static Stand StandAt(SealTextPath path, double radius, const Extent& extent, double scale,
                         double along);
    bool DrawGlyph(CSealCanvas& canvas, char32_t character, const Fit& fit, const Stand& stand);

    FT_Library m_library;
    FreeTypeFace m_face;
    bool m_embolden = false;
};
