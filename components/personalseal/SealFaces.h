// SealFaces.h - the glyphs of a text, in as few faces as its characters allow.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "components/drawing/FontSearch.h"
#include "components/drawing/FreeTypeHandle.h"

// Where ink is, in pixels or ems, y up from the baseline. Empty where right < left.
struct SealBox {
    double left = 1e9;
    double bottom = 1e9;
    double right = -1e9;
    double top = -1e9;

    double Width() const { return right - left; }
    double Height() const { return top - bottom; }
    void Include(const SealBox& other);
    SealBox Moved(double x, double y) const { return {left + x, bottom + y, right + x, top + y}; }
    SealBox Scaled(double factor) const {
        return {left * factor, bottom * factor, right * factor, top * factor};
    }
};

class CSealFaces {
public:
    // `library` must outlive it.
    explicit CSealFaces(FT_Library library) : m_library(library) {}

    // One face for the whole text if the machine has such a one; otherwise the nearest for each
    // character alone. kSealDrawn, or kSealNoFont for a character that no face has.
    int Open(const std::u32string& text, const FontWish& wish);

    // Of a character that was in the text, in ems. A face made bolder has the ink of its own.
    double Advance(char32_t character);
    SealBox Ink(char32_t character);

    // The glyph's outline in 1/64 pixels, with its origin at `x`, `y` and `size` pixels to the em.
    // Good until the next call; null if it can't be loaded.
    FT_Outline* Outline(char32_t character, double size, double x, double y);

private:
    struct Face {
        FreeTypeFace face;
        bool embolden;
    };
    bool Take(const FoundFont& font, const std::u32string& text);
    FT_GlyphSlot Load(char32_t character, const Face*& face);

    FT_Library m_library;
    std::vector<Face> m_faces;
    std::map<char32_t, std::size_t> m_faceOf;
};
