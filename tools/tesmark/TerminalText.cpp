#include "TerminalText.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "Failure.h"
#include "platform/CodePage.h"

namespace {

constexpr std::uint32_t kNotACharacter = 0xFFFFFFFF;

struct Decoded {
    std::uint32_t character;
    std::size_t length;
};

std::size_t SequenceLength(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead < 0xE0) return 2;
    if (lead >= 0xE0 && lead < 0xF0) return 3;
    if (lead >= 0xF0 && lead < 0xF5) return 4;
    return 0;
}

// Overlong forms, surrogates and numbers beyond Unicode are no characters.
bool IsWellFormed(std::uint32_t character, std::size_t length) {
    constexpr std::array<std::uint32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
    if (character < kSmallest[length] || character > 0x10FFFF) return false;
    return character < 0xD800 || character > 0xDFFF;
}

Decoded DecodeAt(std::string_view text, std::size_t position) {
    const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const std::size_t length = SequenceLength(byteAt(position));
    if (length == 0 || position + length > text.size()) return {kNotACharacter, 1};
    if (length == 1) return {byteAt(position), 1};
    std::uint32_t character = byteAt(position) & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned char next = byteAt(position + i);
        if ((next & 0xC0) != 0x80) return {kNotACharacter, 1};
        character = character << 6 | (next & 0x3Fu);
    }
    if (!IsWellFormed(character, length)) return {kNotACharacter, 1};
    return {character, length};
}

struct Range {
    std::uint32_t first;
    std::uint32_t last;
};

// Unicode's East Asian Width "W" and "F", by block.
constexpr std::array<Range, 10> kWide = {{{0x1100, 0x115F},
                                          {0x2E80, 0x303E},
                                          {0x3041, 0xA4CF},
                                          {0xAC00, 0xD7A3},
                                          {0xF900, 0xFAFF},
                                          {0xFE30, 0xFE6F},
                                          {0xFF00, 0xFF60},
                                          {0xFFE0, 0xFFE6},
                                          {0x1F300, 0x1FAFF},
                                          {0x20000, 0x3FFFD}}};
constexpr std::array<Range, 4> kCombining = {
    {{0x0300, 0x036F}, {0x200B, 0x200F}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}}};

bool IsIn(std::uint32_t character, const auto& ranges) {
    return std::any_of(ranges.begin(), ranges.end(), [character](const Range& range) {
        return character >= range.first && character <= range.last;
    });
}

}  // namespace

std::string GbkFromArgument(std::string_view utf8, std::string_view what) {
    const auto refuse = [&](const char* why) {
        return Failure{ExitCode::kUsage, std::string(what) + " " + why};
    };
    if (!IsUtf8(utf8)) throw refuse("is not valid UTF-8.");
    if (utf8.find('\0') != std::string_view::npos) throw refuse("holds a zero byte.");
    std::string gbk = platform::AnsiFromUtf8(utf8);
    if (platform::Utf8FromAnsi(gbk) != utf8) {
        throw refuse("has a character that GBK, the code page of seals and keys, lacks.");
    }
    return gbk;
}

std::string Utf8FromGbk(std::string_view gbk) { return platform::Utf8FromAnsi(gbk); }

bool IsUtf8(std::string_view text) {
    for (std::size_t position = 0; position < text.size();) {
        const Decoded decoded = DecodeAt(text, position);
        if (decoded.character == kNotACharacter) return false;
        position += decoded.length;
    }
    return true;
}

std::size_t DisplayWidth(std::string_view utf8) {
    std::size_t width = 0;
    for (std::size_t position = 0; position < utf8.size();) {
        const Decoded decoded = DecodeAt(utf8, position);
        position += decoded.length;
        if (decoded.character != kNotACharacter && IsIn(decoded.character, kCombining)) continue;
        width += decoded.character != kNotACharacter && IsIn(decoded.character, kWide) ? 2 : 1;
    }
    return width;
}

std::string Padded(std::string_view utf8, std::size_t width) {
    std::string padded(utf8);
    const std::size_t taken = DisplayWidth(utf8);
    if (taken < width) padded.append(width - taken, ' ');
    return padded;
}

std::string Printable(std::string_view utf8) {
    std::string printable;
    for (std::size_t position = 0; position < utf8.size();) {
        const Decoded decoded = DecodeAt(utf8, position);
        // Behind 0x7F stand 32 more, which some terminals obey.
        const bool isControl =
            decoded.character < 0x20 || (decoded.character >= 0x7F && decoded.character < 0xA0);
        if (isControl || decoded.character == kNotACharacter) {
            printable += '?';
        } else {
            printable += utf8.substr(position, decoded.length);
        }
        position += decoded.length;
    }
    return printable;
}

std::string WellFormed(std::string_view text) {
    std::string formed;
    for (std::size_t position = 0; position < text.size();) {
        const Decoded decoded = DecodeAt(text, position);
        formed += decoded.character == kNotACharacter ? std::string_view("\xEF\xBF\xBD")
                                                      : text.substr(position, decoded.length);
        position += decoded.length;
    }
    return formed;
}
