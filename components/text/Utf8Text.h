// Utf8Text.h - the characters of a text.
#pragma once

#include <string>

// Reads UTF-8 strictly. False at the first byte that is none, and at control characters,
// which are U+0000 to U+001F and U+007F to U+009F.
bool Utf8Characters(const std::string& utf8, std::u32string& characters);
