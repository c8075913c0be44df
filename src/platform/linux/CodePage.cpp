#include "platform/CodePage.h"

#include <cstdint>
#include <cstring>

#include "platform/linux/GbkTables.h"

namespace platform {

namespace {

// Collects on the stack and goes to the heap in large pieces: a string that grows by single
// characters costs more than the conversion.
class Output {
public:
    // At most four bytes' room is made at once.
    char* Room() {
        if (m_length + 4 > sizeof m_piece) Flush();
        return m_piece + m_length;
    }
    void Used(std::size_t count) { m_length += count; }
    void Put(char c) {
        *Room() = c;
        Used(1);
    }
    std::string Take() {
        if (m_text.empty()) return std::string(m_piece, m_length);
        Flush();
        return std::move(m_text);
    }

private:
    void Flush() {
        m_text.append(m_piece, m_length);
        m_length = 0;
    }

    char m_piece[1024];
    std::size_t m_length = 0;
    std::string m_text;
};

bool IsAscii(std::string_view text) {
    std::uint64_t any = 0;
    std::size_t i = 0;
    for (; i + sizeof any <= text.size(); i += sizeof any) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + i, sizeof word);
        any |= word;
    }
    for (; i < text.size(); ++i) any |= static_cast<unsigned char>(text[i]);
    return (any & 0x8080'8080'8080'8080) == 0;
}

unsigned int At(std::string_view text, std::size_t i) {
    return static_cast<unsigned char>(text[i]);
}

// A character of the code page beyond ASCII, none of which needs four bytes.
void PutUtf8(unsigned int code, Output& output) {
    char* out = output.Room();
    const bool isShort = code < 0x800;
    if (!isShort) *out++ = static_cast<char>(0xE0 | code >> 12);
    *out++ = static_cast<char>(isShort ? 0xC0 | code >> 6 : 0x80 | (code >> 6 & 0x3F));
    *out = static_cast<char>(0x80 | (code & 0x3F));
    output.Used(isShort ? 2 : 3);
}

// 0 if no pair of the code page begins `text`.
unsigned int PairAtFront(std::string_view text) {
    const unsigned int lead = At(text, 0);
    if (lead < kGbkFirstLead || lead > kGbkLastLead || text.size() < 2) return 0;
    const unsigned int trail = At(text, 1);
    if (trail < kGbkFirstTrail || trail > kGbkLastTrail) return 0;
    return kUnicodeOfGbk[GbkIndex(lead, trail)];
}

bool IsBetween(unsigned int byte, unsigned int low, unsigned int high) {
    return byte >= low && byte <= high;
}

struct Character {
    unsigned int code;   // 0 for a malformed sequence
    std::size_t length;  // of that as many bytes as could have begun a character
};

// The character beyond ASCII at the front (Unicode 15, table 3-7).
Character CharacterAtFront(std::string_view text) {
    const unsigned int lead = At(text, 0);
    if (!IsBetween(lead, 0xC2, 0xF4)) return {0, 1};
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    unsigned int low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned int high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    unsigned int code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (i == text.size() || !IsBetween(At(text, i), low, high)) return {0, i};
        code = code << 6 | (At(text, i) & 0x3F);
        low = 0x80;
        high = 0xBF;
    }
    return {code, length};
}

unsigned int GbkOf(unsigned int code) {
    return code > 0xFFFF ? 0 : kGbkOfUnicode[kGbkPageOfUnicode[code >> 8]][code & 0xFF];
}

}  // namespace

std::string Utf8FromAnsi(std::string_view text) {
    if (IsAscii(text)) return std::string(text);
    Output output;
    while (!text.empty()) {
        const unsigned int first = At(text, 0);
        const unsigned int code = first < 0x80 ? 0 : PairAtFront(text);
        if (code != 0) {
            PutUtf8(code, output);
        } else if (first == kGbkEuro) {
            PutUtf8(0x20AC, output);
        } else {
            output.Put(first < 0x80 ? text[0] : '?');
        }
        text.remove_prefix(code != 0 ? 2 : 1);
    }
    return output.Take();
}

std::string AnsiFromUtf8(std::string_view text) {
    if (IsAscii(text)) return std::string(text);
    Output output;
    while (!text.empty()) {
        if (At(text, 0) < 0x80) {
            output.Put(text[0]);
            text.remove_prefix(1);
            continue;
        }
        const Character character = CharacterAtFront(text);
        const unsigned int pair = GbkOf(character.code);
        if (pair > 0xFF) output.Put(static_cast<char>(pair >> 8));
        output.Put(pair != 0 ? static_cast<char>(pair) : '?');
        text.remove_prefix(character.length);
    }
    return output.Take();
}

std::string AnsiFromCharacter(std::uint32_t number) {
    if (number < 0x80) return std::string(1, static_cast<char>(number));
    const unsigned int pair = GbkOf(number);
    if (pair == 0) return {};
    if (pair < 0x100) return std::string(1, static_cast<char>(pair));
    return {static_cast<char>(pair >> 8), static_cast<char>(pair)};
}

bool IsAnsiLeadByte(char byte) {
    return IsBetween(static_cast<unsigned char>(byte), kGbkFirstLead, kGbkLastLead);
}

}  // namespace platform
