#include "components/certservice/StrictJson.h"

#include <json/reader.h>
#include <openssl/asn1.h>

#include <algorithm>
#include <charconv>
#include <exception>
#include <memory>

namespace {

// Objects of texts are all that is read here; the rest is told from them without going deep.
constexpr int kDeepest = 16;

// What follows goes over the text ahead of the parser, which even in its strict mode takes comments
// between values, ends at a zero byte, and looks at no character of a string but its end and its
// escapes. All that isn't refused here is left to it.

// Takes the UTF-8 character at the front off `text`; false if there is none.
bool TakeCharacter(std::string_view& text, unsigned long& code) {
    constexpr std::size_t kLongest = 4;
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
    const int length = UTF8_getc(bytes, static_cast<int>(std::min(text.size(), kLongest)), &code);
    if (length <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(length));
    return true;
}

// The same for a UTF-16 unit's escape, \uXXXX.
bool TakeUnit(std::string_view& text, unsigned int& unit) {
    constexpr std::size_t kLength = 6;
    if (text.size() < kLength || !text.starts_with("\\u")) return false;
    const char* const end = text.data() + kLength;
    if (std::from_chars(text.data() + 2, end, unit, 16).ptr != end) return false;
    text.remove_prefix(kLength);
    return true;
}

bool IsHighSurrogate(unsigned int unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(unsigned int unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// `text` begins with its backslash. A character beyond the BMP is a pair of units.
bool TakeEscape(std::string_view& text) {
    if (!text.starts_with("\\u")) {
        text.remove_prefix(std::min<std::size_t>(2, text.size()));
        return true;
    }
    unsigned int unit = 0;
    unsigned int second = 0;
    if (!TakeUnit(text, unit) || IsLowSurrogate(unit)) return false;
    return !IsHighSurrogate(unit) || (TakeUnit(text, second) && IsLowSurrogate(second));
}

// `text` begins behind the opening quotation mark, and then behind the closing one.
bool TakeRestOfString(std::string_view& text) {
    while (!text.empty()) {
        unsigned long code = 0;
        if (text[0] == '\\') {
            if (!TakeEscape(text)) return false;
            continue;
        }
        if (!TakeCharacter(text, code) || code < 0x20) return false;
        if (code == '"') return true;
    }
    return false;
}

// Nothing but ASCII stands between strings; a slash there would begin a comment.
bool StandsBetweenStrings(char c) {
    const bool isSpace = c == ' ' || c == '\t' || c == '\n' || c == '\r';
    return isSpace || (c > ' ' && c < 0x7F && c != '/');
}

bool IsStrict(std::string_view text) {
    while (!text.empty()) {
        const char c = text[0];
        text.remove_prefix(1);
        if (!StandsBetweenStrings(c) || (c == '"' && !TakeRestOfString(text))) return false;
    }
    return true;
}

std::unique_ptr<Json::CharReader> MakeReader() {
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    builder["skipBom"] = false;
    builder["stackLimit"] = kDeepest;
    return std::unique_ptr<Json::CharReader>(builder.newCharReader());
}

}  // namespace

bool ReadJsonObject(std::string_view text, Json::Value& object) {
    if (!IsStrict(text)) return false;
    try {
        const bool read =
            MakeReader()->parse(text.data(), text.data() + text.size(), &object, nullptr);
        return read && object.isObject();
    } catch (const std::exception&) {
        // Thrown for what is nested too deep.
        return false;
    }
}
