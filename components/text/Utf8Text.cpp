#include "components/text/Utf8Text.h"

namespace {

// The number of bytes that follow a first byte, and the least character they may tell.
struct Utf8Lead {
    int following;
    char32_t least;
    char32_t bits;
};

bool ReadLead(unsigned char byte, Utf8Lead& lead) {
    if (byte < 0x80)
        lead = {0, 0x20, byte};
    else if (byte >= 0xC2 && byte < 0xE0)
        lead = {1, 0xA0, char32_t(byte & 0x1F)};
    else if (byte >= 0xE0 && byte < 0xF0)
        lead = {2, 0x800, char32_t(byte & 0x0F)};
    else if (byte >= 0xF0 && byte < 0xF5)
        lead = {3, 0x10000, char32_t(byte & 0x07)};
    else
        return false;
    return true;
}

bool IsCharacter(char32_t value) {
    return value != 0x7F && value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

}  // namespace

bool Utf8Characters(const std::string& utf8, std::u32string& characters) {
    characters.clear();
    for (std::size_t at = 0; at < utf8.size();) {
        Utf8Lead lead;
        if (!ReadLead(static_cast<unsigned char>(utf8[at++]), lead)) return false;
        char32_t value = lead.bits;
        for (int i = 0; i < lead.following; ++i, ++at) {
            if (at == utf8.size() || (utf8[at] & 0xC0) != 0x80) return false;
            value = value << 6 | static_cast<char32_t>(utf8[at] & 0x3F);
        }
        if (value < lead.least || !IsCharacter(value)) return false;
        characters.push_back(value);
    }
    return true;
}
