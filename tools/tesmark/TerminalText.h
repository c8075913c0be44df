// TerminalText.h - text between the terminal (UTF-8) and the library (GBK), and its width.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The GBK form of an argument. Throws a usage Failure that names `what` for text that isn't UTF-8,
// holds a zero byte, or has a character that GBK lacks.
std::string GbkFromArgument(std::string_view utf8, std::string_view what);

// Never fails; what can't be decoded becomes "?".
std::string Utf8FromGbk(std::string_view gbk);

bool IsUtf8(std::string_view text);

// Columns that the text takes on a terminal: two for the wide characters of East Asia, none for
// combining marks. Bytes that are no UTF-8 count one each.
std::size_t DisplayWidth(std::string_view utf8);

// The text with blanks behind it up to `width` columns; a longer one stays whole.
std::string Padded(std::string_view utf8, std::size_t width);

// Control characters, and bytes that are no UTF-8, replaced by "?", so that a name out of a file
// can't steer the terminal.
std::string Printable(std::string_view utf8);

// Bytes that are no UTF-8 replaced by U+FFFD.
std::string WellFormed(std::string_view text);
