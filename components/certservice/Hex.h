// Hex.h - bytes as hexadecimal text.
#pragma once

#include <string>
#include <string_view>

// Capital letters, two digits for a byte.
std::string CapitalHexOf(std::string_view bytes);
