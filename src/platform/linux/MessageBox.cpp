#include "platform/MessageBox.h"

#include <cstdio>
#include <string>

#include "platform/CodePage.h"
#include "platform/linux/DialogProcess.h"

namespace platform {

namespace {

bool ShowByProgram(const char* text, const char* caption, int style) {
    const std::string program = FindDialogProgram(LibraryFolder());
    const auto process = program.empty() ? nullptr : DialogProcess::Start(program);
    return process && RunMessageBox(*process, text, caption, style);
}

void WriteLine(const char* text, const char* caption) {
    std::string line = Utf8FromAnsi(caption) + ": " + Utf8FromAnsi(text);
    for (char& c : line) {
        if (c == '\r' || c == '\n') c = ' ';
    }
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

void ShowMessageBox(const char* text, const char* caption, int style) {
    if (!ShowByProgram(text, caption, style)) WriteLine(text, caption);
}

}  // namespace platform
