// XmlScan.h - searches in XML text that mostly end within a few bytes, made without a call.
//
// None of the bytes looked for is the second of a character in any code page. Sixteen bytes are
// compared at once, as a vector of the compiler's; no byte outside the text is read. Where the
// processor tells in one step which of them matched, it does.
#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "foundation/XmlCharacters.h"

namespace xml_scan {

using Bytes = unsigned char __attribute__((vector_size(16)));
using Found = decltype(Bytes{} == 0);  // all bits of a byte are set where it is one of those

inline Bytes Load(const char* p) {
    Bytes bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    return bytes;
}

inline bool HasRoom(const char* p, const char* end) {
    return end - p >= static_cast<std::ptrdiff_t>(sizeof(Bytes));
}

// A bit for each byte, the first byte's the lowest.
inline unsigned int Bits(Found found) {
#ifdef __SSE2__
    return static_cast<unsigned int>(_mm_movemask_epi8(reinterpret_cast<__m128i>(found)));
#else
    unsigned int bits = 0;
    for (unsigned int i = 0; i < sizeof(Bytes); ++i) bits |= (found[i] & 1U) << i;
    return bits;
#endif
}

// The place of the first whose bit is set; the number of bytes if none is.
inline std::size_t First(unsigned int bits) {
    return static_cast<std::size_t>(std::countr_zero(bits | 1U << sizeof(Bytes)));
}
inline std::size_t First(Found found) { return First(Bits(found)); }

// A bit for each byte that ends a name: an angle bracket, which differ in one bit, or what stands
// below the digits, as a few bytes do that end none.
inline unsigned int NameEnds(Bytes bytes) {
    return Bits(((bytes | ('<' ^ '>')) == '>') | (bytes < '0'));
}

template <typename Word>
bool AreEqual(const char* a, const char* b, std::size_t length) {
    Word words[4];
    std::memcpy(&words[0], a, sizeof(Word));
    std::memcpy(&words[1], b, sizeof(Word));
    std::memcpy(&words[2], a + length - sizeof(Word), sizeof(Word));
    std::memcpy(&words[3], b + length - sizeof(Word), sizeof(Word));
    return ((words[0] ^ words[1]) | (words[2] ^ words[3])) == 0;
}

// Beyond so many bytes a call costs less.
constexpr int kSteps = 2;

}  // namespace xml_scan

// The first `c` in the text from `p` to `end`, or `end`.
inline const char* FindXmlByte(const char* p, const char* end, char c) {
    using namespace xml_scan;
    for (int i = 0; i < kSteps && HasRoom(p, end); ++i, p += sizeof(Bytes)) {
        const std::size_t first = First(Load(p) == static_cast<unsigned char>(c));
        if (first < sizeof(Bytes)) return p + first;
    }
    const void* const found = std::memchr(p, c, static_cast<std::size_t>(end - p));
    return found != nullptr ? static_cast<const char*>(found) : end;
}

struct XmlTextEnd {
    const char* place;
    bool mayHoldReference;
};

// The first "<" in the text from `p` to `end`, or `end`; whether there is an "&" before it is told
// if that costs nothing.
inline XmlTextEnd FindXmlTextEnd(const char* p, const char* end) {
    using namespace xml_scan;
    for (int i = 0; i < kSteps && HasRoom(p, end); ++i, p += sizeof(Bytes)) {
        const Bytes bytes = Load(p);
        const std::size_t first = First((bytes == '<') | (bytes == '&'));
        if (first == sizeof(Bytes)) continue;
        if (p[first] == '<') return {p + first, false};
        break;
    }
    const void* const found = std::memchr(p, '<', static_cast<std::size_t>(end - p));
    return {found != nullptr ? static_cast<const char*>(found) : end, true};
}

// Where the name that begins at `p` ends. The text has a zero byte at `end`.
inline const char* FindXmlNameEnd(const char* p, const char* end) {
    using namespace xml_scan;
    if (HasRoom(p, end)) [[likely]] {
        const std::size_t first = First(NameEnds(Load(p)));
        if (first < sizeof(Bytes) && p[first] == '>') return p + first;
    }
    while (!EndsXmlName(*p)) ++p;
    return p;
}

// Of a start tag of a name alone and the text behind it: the name's length, and where the "<"
// stands that ends the text, counted from the name's first byte.
struct XmlNameAndText {
    unsigned int nameLength;
    unsigned int textEnd;
};

// Tells them of the name that begins at `p`, if both are within 32 bytes and no "&" is; else false.
// They are found at once: where a text ends the next search begins, and a search that waits for the
// one before takes longer than all else.
inline bool FindXmlNameAndText(const char* p, const char* end, XmlNameAndText& found) {
    using namespace xml_scan;
    if (end - p < static_cast<std::ptrdiff_t>(2 * sizeof(Bytes))) return false;
    const Bytes first = Load(p);
    const Bytes second = Load(p + sizeof(Bytes));
    const unsigned int names = NameEnds(first);
    const unsigned int texts = Bits((first == '<') | (first == '&')) |
                               Bits((second == '<') | (second == '&')) << sizeof(Bytes);
    if (names == 0 || texts == 0) return false;
    found = {static_cast<unsigned int>(std::countr_zero(names)),
             static_cast<unsigned int>(std::countr_zero(texts))};
    return p[found.nameLength] == '>' && p[found.textEnd] == '<';
}

// Whether the name at `name` stands again at `p`, later in the text; `p` plus its length is then in
// the text or its end.
inline bool IsXmlNameAgain(const char* p, const char* end, const char* name, std::size_t length) {
    using namespace xml_scan;
    if (HasRoom(p, end) && length < sizeof(Bytes)) [[likely]] {
        const unsigned int wanted = (1U << length) - 1;
        return (Bits(Load(p) == Load(name)) & wanted) == wanted;
    }
    return static_cast<std::size_t>(end - p) >= length && std::memcmp(p, name, length) == 0;
}

// True if the `length` bytes at both places are the same and no more than sixteen.
inline bool AreEqualShortXmlNames(const char* a, const char* b, std::size_t length) {
    using namespace xml_scan;
    // From either end, so that no byte outside is read.
    if (length - 8 <= 8) return AreEqual<std::uint64_t>(a, b, length);
    if (length - 4 < 4) return AreEqual<std::uint32_t>(a, b, length);
    if (length - 1 > 2) return false;
    return a[0] == b[0] && a[length / 2] == b[length / 2] && a[length - 1] == b[length - 1];
}

// True if the `length` bytes at both places are the same.
inline bool AreEqualXmlNames(const char* a, const char* b, std::size_t length) {
    if (length > 16 || length == 0) return std::memcmp(a, b, length) == 0;
    return AreEqualShortXmlNames(a, b, length);
}
