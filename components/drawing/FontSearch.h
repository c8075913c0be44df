// FontSearch.h - which fonts of this machine have the glyphs of a text.
#pragma once

#include <memory>
#include <string>

struct FontWish {
    // Family to look for first, UTF-8; then its kin as FontFamilies tells them. Any bytes will do,
    // and a family that isn't there is no failure.
    std::string family;
    bool bold = false;
};

struct FoundFont {
    std::string path;
    int index = 0;  // of the face in a collection
    // A bold face was wished for and this is none, so its strokes should be made bolder.
    bool embolden = false;
};

// The fonts of the machine in the order of their nearness to a wish, as they are when it is made.
class CFontSearch {
public:
    explicit CFontSearch(const FontWish& wish);
    ~CFontSearch();
    CFontSearch(const CFontSearch&) = delete;
    CFontSearch& operator=(const CFontSearch&) = delete;

    // The nearest face that has a glyph for every character of `text`. A face that lacks one is
    // never taken. False with `font` as it was if there is none, or the machine has no fonts.
    bool Find(const std::u32string& text, FoundFont& font) const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};
