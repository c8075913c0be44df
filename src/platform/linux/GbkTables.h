// GbkTables.h - the characters of two bytes of code page 936, in tables made when it is built.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

constexpr unsigned int kGbkFirstLead = 0x81;
constexpr unsigned int kGbkLastLead = 0xFE;
constexpr unsigned int kGbkFirstTrail = 0x40;
constexpr unsigned int kGbkLastTrail = 0xFE;
constexpr std::size_t kGbkTrails = kGbkLastTrail - kGbkFirstTrail + 1;
constexpr std::size_t kGbkPairs = (kGbkLastLead - kGbkFirstLead + 1) * kGbkTrails;

// The euro sign, U+20AC, is the one character of a single byte beyond ASCII.
constexpr unsigned int kGbkEuro = 0x80;

// The place of a pair within the ranges above.
constexpr std::size_t GbkIndex(unsigned int lead, unsigned int trail) {
    return (lead - kGbkFirstLead) * kGbkTrails + (trail - kGbkFirstTrail);
}

// 0 for a pair that means nothing.
extern const std::uint16_t kUnicodeOfGbk[kGbkPairs];

// The row of kGbkOfUnicode for the upper byte of a character up to U+FFFF; row 0 is empty.
extern const std::uint8_t kGbkPageOfUnicode[256];
// By the lower byte: the pair, lead first, or the euro sign's byte; 0 for what the code page lacks.
extern const std::uint16_t kGbkOfUnicode[][256];

}  // namespace platform
