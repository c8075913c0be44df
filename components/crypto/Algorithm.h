// Algorithm.h - the hash algorithms and kinds of key that the components know.
#pragma once

// Numbered as the certificate service's interface numbers them.
enum class HashAlgorithm : int { kSm3 = 1, kSha1 = 2, kSha256 = 4 };

enum class KeyKind { kSm2, kRsa, kOther };
