// AsciiText.h - texts whose letters and blanks are ASCII, whatever stands between them.
#pragma once

#include <string>
#include <string_view>

// ASCII letters alone, whatever the locale.
std::string LowerCase(std::string_view text);

// Without the blanks, tabs and line ends around it.
std::string_view Trimmed(std::string_view text);
