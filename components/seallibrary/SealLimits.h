// SealLimits.h - how much the seal library reads before it refuses.
#pragma once

#include <cstddef>

constexpr std::size_t kMaxSealBytes = 8u << 20;
constexpr std::size_t kMaxSealSignatureBytes = kMaxSealBytes + (1u << 20);
constexpr std::size_t kMaxSigners = 1024;
constexpr std::size_t kMaxPropertyBytes = 64u << 10;
constexpr std::size_t kMaxRevocationListBytes = 64u << 20;
constexpr long kMaxSealMillimetres = 10'000;
