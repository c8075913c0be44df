#include "pdf/PlainTail.h"

#include <algorithm>

#include "pdf/PdfCursor.h"

namespace {

constexpr std::string_view kWord = "startxref";

}  // namespace

std::optional<std::uint64_t> PlainStartXref(std::string_view end) {
    const std::string_view tail =
        end.substr(end.size() - std::min<std::size_t>(end.size(), kTailLength));
    const auto word = tail.rfind(kWord);
    // Some programs write it right behind the trailer.
    if (word == std::string_view::npos || word == 0 ||
        !(IsPdfBlank(tail[word - 1]) || tail[word - 1] == '>')) {
        return {};
    }
    CPdfCursor cursor(tail, word + kWord.size());
    std::uint64_t offset = 0;
    const bool plain = cursor.TakeBlanks() && cursor.TakeInteger(offset) && cursor.TakeBlanks() &&
                       cursor.Take("%%EOF");
    return plain ? std::optional(offset) : std::nullopt;
}
