#include "components/crypto/Hex.h"

namespace {

std::string HexOf(std::string_view bytes, const char (&digits)[17]) {
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const unsigned char byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

}  // namespace

std::string CapitalHexOf(std::string_view bytes) { return HexOf(bytes, "0123456789ABCDEF"); }

std::string LowerHexOf(std::string_view bytes) { return HexOf(bytes, "0123456789abcdef"); }
