// PathBytes.h - paths in the ANSI code page, where a backslash may be half of a character.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The places of both kinds of separator, std::string_view::npos for none: the first one at `from`
// or behind it, which must begin a character, and the last one.
std::size_t FindSeparator(std::string_view path, std::size_t from);
std::size_t FindLastSeparator(std::string_view path);

// Without the separators at its end, but for the one that makes a drive its root folder.
std::string WithoutEndSeparators(std::string path);

// Does one of the `wanted` ASCII characters stand in the text?
bool HasCharacter(std::string_view text, std::string_view wanted);
