// SealPicture.h - the picture of a new seal: a file's, or a drawn one.
#pragma once

#include <string>

namespace CLI {
class App;
}

struct PictureOptions {
    std::string file;  // empty: a round company seal is drawn
    std::string purpose;
    std::string number;
    double widthMm = 0;  // 0: of a file as it is at 300 dpi, of a drawn one 42
    double heightMm = 0;
};

void BindPicture(CLI::App& command, PictureOptions& options);

struct SealPicture {
    std::string content;  // an image file
    std::string type;     // "PNG", "GIF", "JPG", "BMP"
    int widthMm = 0;      // whole millimetres, as seals tell their size
    int heightMm = 0;
};

// With one of the two sizes given the other follows the picture's shape. Throws a Failure for a
// file that is no picture, a size out of range, and a name that can't be drawn.
SealPicture MakeSealPicture(const PictureOptions& options, const std::string& name);

// A number for a new seal: "VELMORA" and 16 random hexadecimal digits.
std::string MakeSealNumber();
