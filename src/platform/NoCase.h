// NoCase.h - texts compared without regard to the case of letters, whatever the locale.
#pragma once

#include <cstddef>
#include <string_view>

namespace platform {

// Of A to Z alone; any other byte is itself.
constexpr char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr bool EqualNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (Lower(a[i]) != Lower(b[i])) return false;
    }
    return true;
}

}  // namespace platform
