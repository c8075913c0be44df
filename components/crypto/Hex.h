// Hex.h - bytes as hexadecimal text, two digits for a byte.
#pragma once

#include <string>
#include <string_view>

std::string CapitalHexOf(std::string_view bytes);
std::string LowerHexOf(std::string_view bytes);
