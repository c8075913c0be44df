// Base64Text.h - Base64 that comes from outside.
#pragma once

#include <string>
#include <string_view>

// Base64 of RFC 4648, section 4, with its padding; white space anywhere is skipped. False, with
// `data` untouched, for anything else.
bool DecodeBase64Text(std::string_view text, std::string& data);
