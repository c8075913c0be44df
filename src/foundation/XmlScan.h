// XmlScan.h - searches in XML text that mostly end within a few bytes, made without a call.
//
// None of the bytes looked for is the second of a character in any code page. Sixteen bytes are
// compared at once, as a vector of the compiler's; no byte outside the text is read.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "foundation/XmlCharacters.h"

namespace xml_scan {

using Bytes = unsigned char __attribute__((vector_size(16)));
using Found = decltype(Bytes{} == 0);  // all bits of a byte are set where it is one of those

using Halves = std::uint64_t __attribute__((vector_size(16)));

inline Bytes Load(const char* p) {
    Bytes bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    return bytes;
}

inline bool HasRoom(const char* p, const char* end) {
    return end - p >= static_cast<std::ptrdiff_t>(sizeof(Bytes));
}

inline std::size_t FirstIn(std::uint64_t half) {
    const bool isLittle = std::endian::native == std::endian::little;
    return static_cast<std::size_t>(isLittle ? std::countr_zero(half) : std::countl_zero(half)) / 8;
}

// The place of the first that was found; the number of bytes if none was.
inline std::size_t First(Found found) {
    const auto halves = reinterpret_cast<Halves>(found);
    if (halves[0] != 0) return FirstIn(halves[0]);
    return sizeof halves[0] + (halves[1] != 0 ? FirstIn(halves[1]) : sizeof halves[1]);
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
    // Whatever ends a name is an angle bracket, which differ in one bit, or stands below the
    // digits, as a few bytes do that don't.
    while (HasRoom(p, end)) {
        const Bytes bytes = Load(p);
        const std::size_t first = First(((bytes | ('<' ^ '>')) == '>') | (bytes < '0'));
        p += first;
        if (first == sizeof(Bytes)) continue;
        if (EndsXmlName(*p)) return p;
        ++p;
    }
    while (!EndsXmlName(*p)) ++p;
    return p;
}

// True if the `length` bytes at both places are the same.
inline bool AreEqualXmlNames(const char* a, const char* b, std::size_t length) {
    using namespace xml_scan;
    if (length > 16 || length == 0) return std::memcmp(a, b, length) == 0;
    // From either end, so that no byte outside is read.
    if (length >= 8) return AreEqual<std::uint64_t>(a, b, length);
    if (length >= 4) return AreEqual<std::uint32_t>(a, b, length);
    return a[0] == b[0] && a[length / 2] == b[length / 2] && a[length - 1] == b[length - 1];
}
