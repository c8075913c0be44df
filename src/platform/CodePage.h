// CodePage.h - conversion between the ANSI code page and UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

// The ANSI code page is the system's own on Windows and GBK (code page 936) elsewhere. Both
// conversions take all bytes of `text`, zero bytes included, and never fail. Elsewhere than on
// Windows an undecodable ANSI byte gives "?", malformed UTF-8 U+FFFD (so "?" in ANSI), and so does
// a character that the ANSI code page lacks. Windows has rules of its own, with its default
// character for most of these.
std::string Utf8FromAnsi(std::string_view text);
std::string AnsiFromUtf8(std::string_view text);

// The one character with that number in Unicode; empty if the ANSI code page lacks it, or there is
// none.
std::string AnsiFromCharacter(std::uint32_t number);

// True for a byte that begins a character of two bytes in the ANSI code page.
bool IsAnsiLeadByte(char byte);

}  // namespace platform
