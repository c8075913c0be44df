#include "session/ScanRequest.h"

#include <iterator>
#include <string_view>

namespace {

constexpr unsigned int kReplacement = 0xFFFD;
constexpr unsigned int kBeyondPlaneZero = 0x10000;

// How a character begins, by its first byte alone: a stray byte of a longer one begins one of two.
struct Lead {
    unsigned int below;
    std::size_t bytes;
    unsigned int mask;
    unsigned int smallest;  // anything less is spelled too long
};
constexpr Lead kLeads[] = {
    {0x80, 1, 0x7F, 0}, {0xE0, 2, 0x1F, 0x80}, {0xF0, 3, 0x0F, 0x800}, {0xF8, 4, 0x07, 0x10000}};

bool IsSurrogate(unsigned int character) { return character >= 0xD800 && character <= 0xDFFF; }

// Takes one character off `rest`. The bytes behind the first count whatever they are; where there
// are too few of them, the first goes alone.
unsigned int TakeCharacter(std::string_view& rest) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
    const Lead* lead = std::begin(kLeads);
    while (lead != std::end(kLeads) && byte(0) >= lead->below) ++lead;
    if (lead == std::end(kLeads) || rest.size() < lead->bytes) {
        rest.remove_prefix(1);
        return kReplacement;
    }
    unsigned int character = byte(0) & lead->mask;
    for (std::size_t i = 1; i < lead->bytes; ++i) character = character << 6 | (byte(i) & 0x3Fu);
    rest.remove_prefix(lead->bytes);
    const bool bad = character < lead->smallest || IsSurrogate(character);
    return bad ? kReplacement : character;
}

void AppendUnit(unsigned int unit, std::string& json) {
    constexpr char kDigits[] = "0123456789abcdef";
    json += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) json += kDigits[unit >> shift & 0xF];
}

void AppendCharacter(unsigned int character, std::string& json) {
    constexpr std::string_view kEscaped = "\"\\\b\f\n\r\t";
    constexpr std::string_view kLetters = "\"\\bfnrt";
    if (character >= kBeyondPlaneZero) {
        const unsigned int rest = character - kBeyondPlaneZero;
        AppendUnit(0xD800 + (rest >> 10 & 0x3FF), json);
        AppendUnit(0xDC00 + (rest & 0x3FF), json);
        return;
    }
    if (character >= 0x80) return AppendUnit(character, json);
    const std::size_t escape = kEscaped.find(static_cast<char>(character));
    if (escape != std::string_view::npos) {
        json.append({'\\', kLetters[escape]});
    } else if (character < 0x20) {
        AppendUnit(character, json);
    } else {
        json += static_cast<char>(character);
    }
}

void AppendMember(const char* key, std::string_view value, std::string& json) {
    json.append("   \"").append(key).append("\" : \"");
    while (!value.empty()) AppendCharacter(TakeCharacter(value), json);
    json += '"';
}

}  // namespace

std::string ScanLoginRequest::StyledText() const {
    const struct {
        const char* key;
        const std::string& value;
    } members[] = {{"appid", appid},
                   {"cardid", cardid},
                   {"cardimage", cardimage},
                   {"cardname", cardname},
                   {"showselectcertwnd", showselectcertwnd},
                   {"type", type}};
    std::string json = "{";
    const char* separator = "\n";
    for (const auto& member : members) {
        json += separator;
        AppendMember(member.key, member.value, json);
        separator = ",\n";
    }
    return json + "\n}\n";
}
