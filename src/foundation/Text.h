// Text.h - ANSI and UTF-8, Base64, whole files. Failures give an empty string or a weaker result.
#pragma once

#include <string>
#include <string_view>

// Base64 of RFC 4648, section 4, without line breaks. Empty for no data or a null pointer.
std::string Base64Encode(std::string_view data);
std::string Base64EncodeBytes(const unsigned char* data, unsigned int length);

// Never fails: whole groups of seven-bit characters are decoded one after another, line breaks
// between groups are skipped, a foreign character counts as value 0 and padding doesn't end the
// text. Where the text doesn't come in such groups, it is decoded anew up to its first character
// outside the alphabet.
std::string Base64Decode(std::string_view text);

// Up to the first zero byte of the result; empty for an empty text.
std::string AnsiToUtf8(std::string_view text);
// The whole text, zero bytes included; empty for an empty text.
std::string Utf8ToAnsi(std::string_view text);
// The same result, by one call for each step.
std::string Utf8ToAnsiBounded(std::string_view text);

// The file's bytes; empty if it can't be opened, what was read if reading fails later.
std::string ReadFileToString(const std::string& path);
