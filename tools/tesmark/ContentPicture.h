// ContentPicture.h - a stamp's picture that is drawn of a text of the command line.
#pragma once

#include <string>

namespace CLI {
class App;
}

struct ContentPictureOptions {
    std::string text;  // UTF-8, as the font; empty for no such picture
    std::string font;
    int fontSize = 28;  // points
    bool bold = false;
    int perColumn = 1;
    int spacing = 6;
    int frame = 0;  // the frame's thickness, 0 for none
    std::string colour = "red";
};

// --text and, which it needs, its style. --text excludes --seal, which the command has already.
void BindContentPicture(CLI::App& command, ContentPictureOptions& options);

// Throws a usage Failure for a text or a font's name with a character that GBK lacks.
void CheckContentPicture(const ContentPictureOptions& options);

// Has the library draw it (GetContentPicture), for which a certificate is selected and its key is
// tried. Throws a Failure.
std::string DrawnContent(const ContentPictureOptions& options);
