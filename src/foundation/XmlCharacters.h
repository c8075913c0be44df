// XmlCharacters.h - which bytes make names and white space in an XML text.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace xml_characters {

constexpr std::uint8_t kEndsName = 1;
constexpr std::uint8_t kStartsName = 2;
constexpr std::uint8_t kIsSpace = 4;

inline constexpr auto kClasses = [] {
    std::array<std::uint8_t, 256> classes{};
    for (int c = 'A'; c <= 'Z'; ++c) classes[c] = classes[c - 'A' + 'a'] = kStartsName;
    for (int c = 128; c < 256; ++c) classes[c] = kStartsName;
    classes['_'] = classes[':'] = kStartsName;
    for (const char c : {'\0', '/', '>', '<', '"', '\''}) classes[c] = kEndsName;
    for (const char c : {' ', '\t', '\r', '\n'}) classes[c] = kEndsName | kIsSpace;
    return classes;
}();

constexpr bool Is(char c, std::uint8_t quality) {
    return (kClasses[static_cast<unsigned char>(c)] & quality) != 0;
}

}  // namespace xml_characters

// The bytes that no name holds: white space, "/", angle brackets, quotes, and the zero byte, which
// ends a text. A quote begins a value wherever it stands in a tag.
constexpr bool EndsXmlName(char c) { return xml_characters::Is(c, xml_characters::kEndsName); }

// True for what begins a name behind "<": a letter, "_", ":" and any byte over 127.
constexpr bool StartsXmlName(char c) { return xml_characters::Is(c, xml_characters::kStartsName); }

// True for blanks, tabs, carriage returns and line feeds.
constexpr bool IsXmlSpace(char c) { return xml_characters::Is(c, xml_characters::kIsSpace); }

// The name at the front of `text`, empty if it has none.
constexpr std::string_view XmlNameAtFront(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && !EndsXmlName(text[length])) ++length;
    return text.substr(0, length);
}
