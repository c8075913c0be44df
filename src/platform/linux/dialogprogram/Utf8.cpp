#include "platform/linux/dialogprogram/Utf8.h"

#include <algorithm>

namespace platform {

namespace {

unsigned int ByteAt(std::string_view text, std::size_t i) {
    return static_cast<unsigned char>(text[i]);
}

}  // namespace

std::optional<char32_t> TakeCharacter(std::string_view& text) {
    const unsigned int lead = ByteAt(text, 0);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    char32_t code = length == 1 ? lead : lead & (0x7FU >> length);
    unsigned int low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned int high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    std::size_t taken = 1;
    for (; taken < length && taken < text.size(); ++taken) {
        const unsigned int byte = ByteAt(text, taken);
        if (byte < low || byte > high) break;
        code = code << 6 | (byte & 0x3F);
        low = 0x80;
        high = 0xBF;
    }
    text.remove_prefix(taken);
    if (taken != length) return {};
    return code;
}

void AppendCharacter(char32_t code, std::string& text) {
    const auto put = [&](char32_t byte) { text += static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | code >> 6);
        put(0x80 | (code & 0x3F));
    } else {
        put(code < 0x10000 ? 0xE0 | code >> 12 : 0xF0 | code >> 18);
        if (code >= 0x10000) put(0x80 | (code >> 12 & 0x3F));
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

std::string_view FrontWithin(std::string_view text, int bytes) {
    std::string_view rest = text;
    while (!rest.empty()) {
        std::string_view behind = rest;
        const auto character = TakeCharacter(behind);
        bytes -= character && *character < 0x80 ? 1 : 2;
        if (bytes < 0) break;
        rest = behind;
    }
    return text.substr(0, text.size() - rest.size());
}

}  // namespace platform
