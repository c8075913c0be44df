#include "foundation/XmlEntities.h"

#include <cstring>

#include "foundation/XmlEntityTable.h"
#include "platform/CodePage.h"

namespace {

constexpr std::uint32_t kLastCharacter = 0x10FFFF;
constexpr std::size_t kNumberDigits = 4;

// The code page's letters beyond ASCII are no part of any name.
std::string Folded(std::string_view text) {
    std::string folded(text);
    for (char& c : folded) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return folded;
}

// 16 for what is no digit.
std::uint32_t DigitValue(char c) {
    if (c >= '0' && c <= '9') return static_cast<std::uint32_t>(c - '0');
    return c >= 'a' && c <= 'f' ? static_cast<std::uint32_t>(c - 'a' + 10) : 16;
}

// `digits` are too few for an overflow.
std::uint32_t Number(std::string_view digits, std::uint32_t base) {
    std::uint32_t number = 0;
    for (const char c : digits) {
        const std::uint32_t value = DigitValue(c);
        if (value >= base) return 0;
        number = number * base + value;
    }
    return number <= kLastCharacter ? number : 0;
}

std::uint32_t Named(std::string_view name) {
    std::size_t sum = 0;
    for (const char c : name) sum += static_cast<unsigned char>(c);
    std::string_view entries = kXmlEntityBuckets[sum % kXmlEntityBucketCount];
    while (!entries.empty()) {
        const std::size_t length = DigitValue(entries[0]);
        if (entries.substr(1 + kNumberDigits, length) == name) {
            return Number(entries.substr(1, kNumberDigits), 10);
        }
        entries.remove_prefix(1 + kNumberDigits + length);
    }
    return 0;
}

// The reference behind an "&", without the ";"; empty if none ends there in time.
std::string_view ReferenceAt(std::string_view text) {
    const std::size_t length = text.substr(0, kXmlReferenceLength).find(';');
    return length != std::string_view::npos ? text.substr(0, length) : std::string_view();
}

const char* EscapedForm(char c) {
    switch (c) {
        case '&': return "&amp;";
        case '<': return "&lt;";
        case '>': return "&gt;";
        default: return nullptr;
    }
}

}  // namespace

std::uint32_t XmlReferencedCharacter(std::string_view reference) {
    if (reference.size() >= kXmlReferenceLength) return 0;
    const std::string folded = Folded(reference);
    const std::string_view name = folded;
    if (name.starts_with("#x")) return Number(name.substr(2), 16);
    if (name.starts_with('#')) return Number(name.substr(1), 10);
    return Named(name);
}

void AppendXmlDecoded(std::string_view text, std::string& decoded) {
    for (;;) {
        const std::size_t place = text.find('&');
        decoded.append(text.substr(0, place));
        if (place == std::string_view::npos) return;
        text.remove_prefix(place + 1);
        const std::string_view reference = ReferenceAt(text);
        const std::uint32_t number = XmlReferencedCharacter(reference);
        const std::string character =
            number != 0 ? platform::AnsiFromCharacter(number) : std::string();
        if (character.empty()) {
            decoded += '&';
        } else {
            decoded += character;
            text.remove_prefix(reference.size() + 1);
        }
    }
}

void AppendXmlEscaped(std::string_view value, std::string& text) {
    for (const char c : value) {
        const char* const form = EscapedForm(c);
        if (form != nullptr) {
            text += form;
        } else {
            text += c;
        }
    }
}
