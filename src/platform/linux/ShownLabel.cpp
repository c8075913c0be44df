#include "platform/linux/ShownLabel.h"

#include <string_view>

#include "platform/CodePage.h"
#include "platform/linux/dialogprogram/Utf8.h"

namespace platform {

namespace {

constexpr char32_t kEllipsis = 0x2026;

char32_t Harmless(char32_t code) {
    if (code == '\n' || code == '\r' || code == '\t') return ' ';
    return IsControlCharacter(code) ? kReplacementCharacter : code;
}

// Labels may have any length, but only what is shown is worth converting: no character of GBK has
// more than two bytes, so one more than the longest label is whole here.
std::string Utf8Of(const std::string& text) {
    const std::string_view whole = text.c_str();
    return Utf8FromAnsi(whole.substr(0, 2 * (kLongestLabel + 1)));
}

}  // namespace

std::string ShownLabel(const std::string& text) {
    const std::string utf8 = Utf8Of(text);
    std::string_view rest = utf8;
    std::string label;
    for (std::size_t i = 0; i < kLongestLabel && !rest.empty(); ++i) {
        AppendCharacter(Harmless(TakeCharacter(rest).value_or(kReplacementCharacter)), label);
    }
    if (!rest.empty()) AppendCharacter(kEllipsis, label);
    return label;
}

}  // namespace platform
