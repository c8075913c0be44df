#include "pdf/StrayObjects.h"

#include "pdf/PdfCursor.h"

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t SkipBack(std::string_view text, std::size_t at, bool (*what)(char)) {
    while (at > 0 && what(text[at - 1])) --at;
    return at;
}

// Behind "1 %comment", whose end `front` is: only there a line end can belong to a header.
bool EndsInCommentBehindNumber(std::string_view front) {
    const auto line = front.find_last_of("\r\n");
    const std::size_t begin = line == std::string_view::npos ? 0 : line + 1;
    const auto comment = front.find('%', begin);
    if (comment == std::string_view::npos) return false;
    const std::size_t word = SkipBack(front, comment, IsPdfBlank);
    return word < begin || (word > 0 && IsDigit(front[word - 1]));
}

// `front` is what stands in front of "obj".
bool EndsInNumbers(std::string_view front) {
    const std::size_t second = SkipBack(front, front.size(), IsPdfBlank);
    const bool crossesLine = front.substr(second).find_first_of("\r\n") != std::string_view::npos;
    if (crossesLine && EndsInCommentBehindNumber(front.substr(0, second))) return true;
    const std::size_t between = SkipBack(front, second, IsDigit);
    if (between == second) return false;
    const std::size_t first = SkipBack(front, between, IsPdfBlank);
    if (first > 0 && first < between && IsDigit(front[first - 1])) return true;
    const bool crossesAnother =
        front.substr(first, between - first).find_first_of("\r\n") != std::string_view::npos;
    return crossesAnother && EndsInCommentBehindNumber(front.substr(0, first));
}

bool BeginsDictionary(std::string_view behind) {
    CPdfCursor cursor(behind, 0);
    cursor.SkipBlanks();
    return cursor.Take("<<") || cursor.Take("%");
}

}  // namespace

bool StandOnlyAt(std::string_view document, std::uint64_t begin,
                 const std::set<std::uint64_t>& known) {
    const std::string_view text = document.substr(begin);
    for (auto at = text.find("obj"); at != std::string_view::npos; at = text.find("obj", at + 3)) {
        if (!known.contains(begin + at) && EndsInNumbers(text.substr(0, at))) return false;
    }
    constexpr std::string_view kTrailer = "trailer";
    for (auto at = text.find(kTrailer); at != std::string_view::npos;
         at = text.find(kTrailer, at + 1)) {
        if (!known.contains(begin + at) && BeginsDictionary(text.substr(at + kTrailer.size()))) {
            return false;
        }
    }
    return true;
}
