#include "components/certservice/windows/PathBytes.h"

#include "platform/windows/Win32.h"

namespace {

std::size_t CharacterLength(std::string_view text, std::size_t at) {
    const bool two = IsDBCSLeadByte(static_cast<BYTE>(text[at])) != 0 && at + 1 < text.size();
    return two ? 2 : 1;
}

std::size_t FindCharacter(std::string_view text, std::string_view wanted, std::size_t from) {
    for (std::size_t at = from; at < text.size(); at += CharacterLength(text, at)) {
        if (wanted.find(text[at]) != std::string_view::npos) return at;
    }
    return std::string_view::npos;
}

constexpr std::string_view kSeparators = "/\\";

}  // namespace

std::size_t FindSeparator(std::string_view path, std::size_t from) {
    return FindCharacter(path, kSeparators, from);
}

std::size_t FindLastSeparator(std::string_view path) {
    std::size_t last = std::string_view::npos;
    for (std::size_t at = 0; (at = FindSeparator(path, at)) != std::string_view::npos; ++at) {
        last = at;
    }
    return last;
}

std::string WithoutEndSeparators(std::string path) {
    while (path.size() > 1 && FindLastSeparator(path) == path.size() - 1) {
        if (path.size() == 3 && path[1] == ':') break;
        path.pop_back();
    }
    return path;
}

bool HasCharacter(std::string_view text, std::string_view wanted) {
    return FindCharacter(text, wanted, 0) != std::string_view::npos;
}
