#include "tools/sealserver/RequestHead.h"

#include <algorithm>

namespace {

// With the method, the version, and the blanks between, of which there may be several.
constexpr std::size_t kLongestLine = kLongestTarget + 32;

constexpr std::string_view kEnd = "\n\r\n";
constexpr std::string_view kBlanks = " \t\r\n";

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string_view Trimmed(std::string_view text) {
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    text.remove_prefix(begin);
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

bool IsRange(std::string_view line) {
    constexpr std::string_view kName = "range";
    const std::string_view name = Trimmed(line.substr(0, line.find(':')));
    return std::equal(name.begin(), name.end(), kName.begin(), kName.end(),
                      [](char given, char known) { return Lower(given) == known; });
}

}  // namespace

std::size_t EndOfHead(std::string_view bytes, std::size_t known) {
    const std::size_t from = known < kEnd.size() ? 0 : known - kEnd.size();
    const std::size_t found = bytes.find(kEnd, from);
    return found == bytes.npos ? 0 : found + kEnd.size();
}

RequestLine LineOf(std::string_view head) {
    const std::string_view line = head.substr(0, head.find_first_of("\r\n"));
    const std::size_t space = line.find(' ');
    if (space == line.npos) return {};
    const std::string_view rest = line.substr(space + 1);
    return {line.substr(0, space), rest.substr(0, rest.find(' '))};
}

int StatusOfRefusedHead(std::string_view head) {
    const std::size_t line = std::min(head.find('\n'), head.size());
    if (LineOf(head).target.size() > kLongestTarget || line > kLongestLine) return 414;
    const auto lines = static_cast<std::size_t>(std::count(head.begin(), head.end(), '\n'));
    if (head.size() > kMaxHeadBytes || lines > kMostHeadLines) return 431;
    while (!head.empty()) {
        const std::size_t end = std::min(head.find('\n'), head.size() - 1) + 1;
        if (IsRange(head.substr(0, end))) return 416;
        head.remove_prefix(end);
    }
    return 0;
}
