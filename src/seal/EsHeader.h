// EsHeader.h - the old "ES" seal file, read in place.
#pragma once

#include <optional>
#include <string>
#include <string_view>

struct EsHeader {
    std::string_view picture;  // lies in the file's bytes
    std::string name;          // GBK; "印章" for a file without a name
};

// Nothing if the file doesn't begin with the bytes "ES", ends before the picture's place or before
// its end, or promises a picture of negative length. A picture of length 0 is one.
std::optional<EsHeader> ReadEsHeader(std::string_view file);
