// HttpText.h - the text of header fields.
#pragma once

#include <string>
#include <string_view>

// ASCII letters alone, whatever the locale.
std::string LowerCase(std::string_view text);

// Without the blanks, tabs and line ends around it.
std::string_view Trimmed(std::string_view text);
