#include "ProgramStart.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "platform/windows/WideText.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <shellapi.h>

namespace {

bool IsConsole(DWORD stream) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

// A signature on standard output must not grow by carriage returns.
void CarryBytesAsTheyAre() {
    for (std::FILE* const stream : {stdin, stdout, stderr}) {
        _setmode(_fileno(stream), _O_BINARY);
    }
}

// What main() gets is in the ANSI code page, so "?" stands for what that lacks, and the C library
// has put file names in the place of patterns.
std::vector<std::string> CommandLineWords() {
    int count = 0;
    LPWSTR* const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> words;
    if (wide == nullptr) return words;
    for (int i = 0; i < count; ++i) words.push_back(platform::NarrowFrom(CP_UTF8, wide[i]));
    LocalFree(wide);
    return words;
}

}  // namespace

ProgramStart::ProgramStart(int argumentCount, char** arguments) : m_texts(CommandLineWords()) {
    if (m_texts.empty()) m_texts.assign(arguments, arguments + argumentCount);
    for (const std::string& text : m_texts) m_arguments.push_back(text.c_str());
    CarryBytesAsTheyAre();
    if (!IsConsole(STD_OUTPUT_HANDLE) && !IsConsole(STD_ERROR_HANDLE)) return;
    m_formerCodePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
}

ProgramStart::~ProgramStart() {
    if (m_formerCodePage != 0) SetConsoleOutputCP(m_formerCodePage);
}
