#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "foundation/Text.h"
#include "platform/Memory.h"

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Output is made in pieces on the stack and appended: a string can't grow without being filled
// first, and the piece stays in the cache.
constexpr std::size_t kPieceGroups = 1024;

// From here on it pays to tell the system what becomes of the memory.
constexpr std::size_t kLarge = 4 * 1024 * 1024;

void Reserve(std::size_t size, std::string& text) {
    text.reserve(size);
    if (size >= kLarge) platform::ExpectToBeWritten(text.data(), size);
}

// The first byte in memory is the highest.
std::uint64_t LoadBytes(const unsigned char* bytes) {
    std::uint64_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return std::endian::native == std::endian::little ? __builtin_bswap64(value) : value;
}

// Twelve bits to their two characters.
constexpr auto kPairs = [] {
    std::array<std::array<char, 2>, 4096> pairs{};
    for (unsigned int i = 0; i < pairs.size(); ++i) {
        pairs[i] = {kAlphabet[i >> 6], kAlphabet[i & 63]};
    }
    return pairs;
}();

void StorePair(std::uint64_t bits, char* out) { std::memcpy(out, kPairs[bits & 0xFFF].data(), 2); }

// Two groups at a time come from one load of eight bytes, of which six are used.
char* EncodeGroups(const unsigned char* data, std::size_t groups, char* out) {
    for (; groups > 2; groups -= 2, data += 6, out += 8) {
        const std::uint64_t bits = LoadBytes(data);
        StorePair(bits >> 52, out);
        StorePair(bits >> 40, out + 2);
        StorePair(bits >> 28, out + 4);
        StorePair(bits >> 16, out + 6);
    }
    for (; groups > 0; --groups, data += 3, out += 4) {
        const std::uint64_t bits = std::uint64_t{data[0]} << 16 | data[1] << 8 | data[2];
        StorePair(bits >> 12, out);
        StorePair(bits, out + 2);
    }
    return out;
}

void AppendLastGroup(const unsigned char* data, std::size_t count, std::string& text) {
    const std::uint32_t bits = std::uint32_t{data[0]} << 16 | (count == 2 ? data[1] << 8 : 0);
    text += kAlphabet[bits >> 18];
    text += kAlphabet[bits >> 12 & 63];
    text += count == 2 ? kAlphabet[bits >> 6 & 63] : '=';
    text += '=';
}

std::string Encode(const unsigned char* data, std::size_t length) {
    std::string text;
    Reserve(length / 3 * 4 + (length % 3 != 0 ? 4 : 0), text);
    char piece[kPieceGroups * 4];
    for (std::size_t left = length / 3; left > 0;) {
        const std::size_t groups = left < kPieceGroups ? left : kPieceGroups;
        text.append(piece, EncodeGroups(data, groups, piece));
        data += groups * 3;
        left -= groups;
    }
    if (length % 3 != 0) AppendLastGroup(data, length % 3, text);
    return text;
}

// What a character means at its place of a group: its value, shifted to its place in the upper 24
// bits, and the reasons to look at the group more closely.
constexpr std::uint32_t kHighBit = 4;
constexpr std::uint32_t kLineBreak = 2;
constexpr std::uint32_t kPadding = 1;
constexpr std::uint32_t kSpecial = kHighBit | kLineBreak | kPadding;

using CharacterTable = std::array<std::uint32_t, 256>;

constexpr std::array<CharacterTable, 4> kCharacters = [] {
    std::array<CharacterTable, 4> tables{};
    for (unsigned int place = 0; place < 4; ++place) {
        for (unsigned int i = 0; i < 64; ++i) {
            tables[place][static_cast<unsigned char>(kAlphabet[i])] = i << (26 - 6 * place);
        }
        for (unsigned int c = 128; c < 256; ++c) tables[place][c] = kHighBit;
    }
    tables[0]['\r'] = tables[0]['\n'] = kLineBreak;
    tables[2]['='] = tables[3]['='] = kPadding;
    return tables;
}();

std::uint32_t GroupBits(const unsigned char* text) {
    return kCharacters[0][text[0]] | kCharacters[1][text[1]] | kCharacters[2][text[2]] |
           kCharacters[3][text[3]];
}

// Writes four bytes, of which three count.
char* StoreGroup(std::uint32_t bits, char* out) {
    if (std::endian::native == std::endian::little) bits = __builtin_bswap32(bits);
    std::memcpy(out, &bits, sizeof bits);
    return out + 3;
}

// Either "=" leaves out its own byte only: "QQ=A" gives two.
void AppendPaddedGroup(const unsigned char* text, std::string& data) {
    const std::uint32_t bits = GroupBits(text);
    data += static_cast<char>(bits >> 24);
    if (text[2] != '=') data += static_cast<char>(bits >> 16);
    if (text[3] != '=') data += static_cast<char>(bits >> 8);
}

// Decodes groups with nothing special about them, at most a piece of them, and moves behind them.
char* DecodeGroups(const unsigned char*& text, const unsigned char* end, char* out) {
    const std::size_t there = static_cast<std::size_t>(end - text) / 4;
    std::size_t groups = there < kPieceGroups ? there : kPieceGroups;
    for (; groups >= 4; groups -= 4, text += 16, out += 12) {
        const std::uint32_t a = GroupBits(text), b = GroupBits(text + 4);
        const std::uint32_t c = GroupBits(text + 8), d = GroupBits(text + 12);
        if (((a | b | c | d) & kSpecial) != 0) break;
        StoreGroup(a, out);
        StoreGroup(b, out + 3);
        StoreGroup(c, out + 6);
        StoreGroup(d, out + 9);
    }
    for (; groups > 0; --groups, text += 4) {
        const std::uint32_t bits = GroupBits(text);
        if ((bits & kSpecial) != 0) break;
        out = StoreGroup(bits, out);
    }
    return out;
}

// False if the text is one for the strict path; `data` then holds what was decoded before.
bool DecodeFast(std::string_view input, std::string& data) {
    Reserve(input.size() / 4 * 3 + 3, data);
    const auto* text = reinterpret_cast<const unsigned char*>(input.data());
    const auto* const end = text + input.size();
    char piece[kPieceGroups * 3 + 1];
    for (;;) {
        data.append(piece, DecodeGroups(text, end, piece));
        while (text != end && (*text == '\r' || *text == '\n')) ++text;
        if (text == end) return true;
        if (end - text < 4) return false;
        const std::uint32_t bits = GroupBits(text);
        if ((bits & kHighBit) != 0) return false;
        if ((bits & kPadding) == 0) continue;
        AppendPaddedGroup(text, data);
        text += 4;
    }
}

// The place of an ASCII letter, digit, "+" or "/" in the alphabet; -1 for anything else.
int AlphabetPlace(char c) {
    const char* place = static_cast<const char*>(std::memchr(kAlphabet, c, 64));
    return place != nullptr ? static_cast<int>(place - kAlphabet) : -1;
}

std::string DecodeStrict(std::string_view input) {
    std::string data;
    std::uint32_t bits = 0;
    unsigned int count = 0;
    for (const char c : input) {
        const int place = AlphabetPlace(c);
        if (place < 0) break;
        bits = bits << 6 | static_cast<std::uint32_t>(place);
        if (++count < 4) continue;
        char group[4];
        data.append(group, StoreGroup(bits << 8, group));
        bits = count = 0;
    }
    if (count < 2) return data;
    char group[4];
    StoreGroup(bits << (8 + 6 * (4 - count)), group);
    return data.append(group, count - 1);
}

}  // namespace

std::string Base64Encode(std::string_view data) {
    return Encode(reinterpret_cast<const unsigned char*>(data.data()), data.size());
}

std::string Base64EncodeBytes(const unsigned char* data, unsigned int length) {
    return data != nullptr ? Encode(data, length) : std::string();
}

std::string Base64Decode(std::string_view text) {
    std::string data;
    if (DecodeFast(text, data)) return data;
    return DecodeStrict(text);
}
