// Algorithm.h - the hash algorithms and kinds of key that the components know.
#pragma once

// Numbered as the certificate service's interface numbers them; it has no numbers for the last
// two, which are read in others' signatures and never written.
enum class HashAlgorithm : int {
    kSm3 = 1,
    kSha1 = 2,
    kSha256 = 4,
    kSha384 = 0x104,
    kSha512 = 0x108
};

enum class KeyKind { kSm2, kRsa, kOther };
