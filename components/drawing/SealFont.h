// SealFont.h - which font of this machine has all glyphs of a text.
#pragma once

#include <string>

struct SealFont {
    std::string path;
    int index = 0;  // of the face in a collection
    // The face is lighter than a seal wants, so its strokes should be made bolder.
    bool embolden = false;
};

// Chooses among the fonts that have a glyph for every character of `text` (UTF-8) the one nearest
// to a bold `family`, then to 宋体 and the faces that stand in for it. False if there is none, or
// the machine has no fonts at all. Reads the system's font configuration each time.
bool FindSealFont(const std::u32string& text, const std::string& family, SealFont& font);
