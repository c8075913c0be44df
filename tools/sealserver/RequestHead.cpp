#include "tools/sealserver/RequestHead.h"

#include <algorithm>

#include "components/text/AsciiText.h"

namespace {

// With the method, the version, and the blanks between, of which there may be several.
constexpr std::size_t kLongestLine = kLongestTarget + 32;

constexpr std::string_view kEnd = "\n\r\n";

bool IsRange(std::string_view line) {
    return LowerCase(Trimmed(line.substr(0, line.find(':')))) == "range";
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
