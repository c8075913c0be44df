// GifFile.h - GIF files made for tests, byte by byte, sound or not.
#pragma once

#include <string>
#include <vector>

#include "platform/DialogWindow.h"

// A frame whose pixels are one character each, row by row, '0' being the first colour. A table of
// colours has 2, 4, 8 ... 256 entries; one that is empty isn't there.
struct GifFrame {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    std::string pixels;
    std::vector<platform::Colour> colours;
    char transparent = 0;  // the character of the transparent colour
    bool interlaced = false;
};

struct GifFile {
    int width = 0;
    int height = 0;
    std::vector<platform::Colour> colours;
    std::vector<GifFrame> frames;

    // As GIF89a. Every extension has a comment ahead of it.
    std::string Bytes() const;
};

// One colour from edge to edge.
std::string SolidGif(int width, int height, platform::Colour colour);
