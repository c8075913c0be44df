// Utf8.h - UTF-8 taken character by character, as the two ends of a dialog read it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Takes the character at the front off `text`, which isn't empty. Nothing for bytes that are no
// UTF-8 (Unicode 15, table 3-7): then as many of them are taken off as could have begun a
// character, at least one.
std::optional<char32_t> TakeCharacter(std::string_view& text);

// `code` is a character, and no surrogate.
void AppendCharacter(char32_t code, std::string& text);

// The longest front of `text` that takes no more than `bytes` in the library's code page: one for a
// character of ASCII, two for any other.
std::string_view FrontWithin(std::string_view text, int bytes);

// Unicode's class Cc: what a terminal might obey.
constexpr bool IsControlCharacter(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

constexpr char32_t kReplacementCharacter = 0xFFFD;

// The bytes of a literal with the prefix u8: all others are GBK.
inline std::string_view BytesOf(std::u8string_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size()};
}

}  // namespace platform
