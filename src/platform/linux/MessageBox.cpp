#include "platform/MessageBox.h"

#include <cstdio>
#include <string>

#include "platform/CodePage.h"

namespace platform {

// No program for dialogs is asked: the box is the line on standard error.
void ShowMessageBox(const char* text, const char* caption, int) {
    std::string line = Utf8FromAnsi(caption) + ": " + Utf8FromAnsi(text);
    for (char& c : line) {
        if (c == '\r' || c == '\n') c = ' ';
    }
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace platform
