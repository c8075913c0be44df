// LinearizedStart.h - the start of a PDF that can be shown while it is still loaded.
#pragma once

#include <cstdint>
#include <string_view>

// Enough of a file's start to read it.
inline constexpr std::uint64_t kLinearizedSearch = 65'536;

// ISO 32000-2, annex F: in a file whose first object tells of that length readers begin with the
// section behind that object, and not with what the end of the file tells. Places count from
// "%PDF-"; both 0 for a file that isn't linearized.
struct LinearizedStart {
    std::uint64_t length = 0;
    std::uint64_t section = 0;
    bool plain = true;  // all readers find the same first object
};

// `document` begins with "%PDF-".
LinearizedStart ReadLinearizedStart(std::string_view document);
