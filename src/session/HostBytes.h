// HostBytes.h - bytes that a host hands in.
#pragma once

#include <string>

#include "foundation/StringFailure.h"

// Throws StringFailure::kInvalidArgument for a null pointer with a length other than 0 and for a
// negative length.
inline std::string BytesOfHost(const unsigned char* bytes, int length) {
    if (length < 0 || (bytes == nullptr && length != 0)) {
        throw StringFailure(StringFailure::kInvalidArgument);
    }
    if (bytes == nullptr) return {};
    return std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}
