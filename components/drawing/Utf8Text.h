// Utf8Text.h - the characters of a text.
#pragma once

#include <string>

// Reads UTF-8 strictly. False at the first byte that is none, and at control characters.
bool Utf8Characters(const std::string& utf8, std::u32string& characters);
