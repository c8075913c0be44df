// WideText.h - text as the system's wide functions take it.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// All of `text`, zero bytes included, by the code page's own rules for what it can't decode. Empty
// only for an empty text, or where the code page isn't there.
std::wstring WideFrom(unsigned int codePage, std::string_view text);
std::string NarrowFrom(unsigned int codePage, std::wstring_view text);

}  // namespace platform
