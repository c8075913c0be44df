#include "foundation/Text.h"

#include <cstdio>

#include "platform/CodePage.h"

std::string AnsiToUtf8(std::string_view text) {
    std::string utf8 = platform::Utf8FromAnsi(text);
    const auto end = utf8.find('\0');
    if (end != std::string::npos) utf8.resize(end);
    return utf8;
}

std::string Utf8ToAnsi(std::string_view text) { return platform::AnsiFromUtf8(text); }

std::string Utf8ToAnsiBounded(std::string_view text) { return platform::AnsiFromUtf8(text); }

std::string ReadFileToString(const std::string& path) {
    std::string contents;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return contents;
    char piece[1024];
    while (const std::size_t count = std::fread(piece, 1, sizeof piece, file)) {
        contents.append(piece, count);
    }
    std::fclose(file);
    return contents;
}
