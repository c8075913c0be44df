#include "components/text/RecordText.h"

#include "platform/CodePage.h"

namespace {

bool IsContinuation(char byte) { return (byte & 0xC0) == 0x80; }

// Of a text that is no UTF-8 no more than a character's bytes are given up for the cut.
std::string_view Beginning(std::string_view utf8) {
    constexpr std::size_t kMostContinuations = 3;
    if (utf8.size() <= kLongestRecordText) return utf8;
    std::size_t end = kLongestRecordText;
    while (end > kLongestRecordText - kMostContinuations && IsContinuation(utf8[end])) --end;
    return utf8.substr(0, end);
}

}  // namespace

std::string RecordText(std::string_view utf8) {
    std::string text(Beginning(utf8));
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    }
    return platform::AnsiFromUtf8(text);
}
