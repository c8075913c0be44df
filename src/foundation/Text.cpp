#include "foundation/Text.h"

#include <cstdio>
#include <memory>

#include "platform/CodePage.h"

namespace {

constexpr std::size_t kPiece = 4096;
constexpr long kLargestExpected = 64 * 1024 * 1024;

// Enough for the rest of the file, most times; a folder tells any size, and a pipe none.
std::size_t ExpectedSize(std::FILE* file) {
    if (std::fseek(file, 0, SEEK_END) != 0) return kPiece;
    const long size = std::ftell(file);
    std::rewind(file);
    return size >= 0 && size <= kLargestExpected ? static_cast<std::size_t>(size) : kPiece;
}

}  // namespace

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
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::fopen(path.c_str(), "rb"),
                                                                  &std::fclose);
    if (!file) return contents;
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    contents.resize(ExpectedSize(file.get()) + 1);
    std::size_t used = 0;
    while (const std::size_t count =
               std::fread(contents.data() + used, 1, contents.size() - used, file.get())) {
        used += count;
        if (used == contents.size()) contents.resize(used + used / 2 + kPiece);
    }
    contents.resize(used);
    return contents;
}
