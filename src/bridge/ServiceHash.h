// ServiceHash.h - a hash that the certificate service makes.
#pragma once

#include <algorithm>

#include "bridge/AppOpt.h"

// The service's numbers of hashes.
constexpr int kSm3Number = 1;
constexpr int kSha1Number = 2;
constexpr int kSha256Number = 4;

constexpr int kHashCapacity = 32;

// One hash to be made: SM3 goes with the default user id of SM2 (GM/T 0009), every other with none.
// All zero bytes, with the capacity as its length, until the service filled it.
struct ServiceHash {
    static constexpr char kSm2UserId[] = "1234567812345678";

    explicit ServiceHash(int hashNumber)
        : number(hashNumber),
          userId(hashNumber == kSm3Number ? kSm2UserId : nullptr),
          userIdLen(hashNumber == kSm3Number ? static_cast<int>(sizeof kSm2UserId) - 1 : 0) {}

    int number;
    const char* userId;
    int userIdLen;
    unsigned char value[kHashCapacity] = {};
    int length = kHashCapacity;
};

// Fills `hash` from the file at `filePath`, which the service reads. A certificate (DER) gives SM3
// its public key. The service's result; a length that the hash can't have is cut to what it can.
inline int HashFileInto(const CAppOpt& appOpt, ServiceHash& hash, const char* filePath,
                        const unsigned char* cert, int certLen) {
    const int result =
        appOpt.kvl->SOF_HashFile(appOpt.context, hash.number, filePath, cert, certLen, hash.userId,
                                 hash.userIdLen, hash.value, &hash.length);
    hash.length = std::clamp(hash.length, 0, kHashCapacity);
    return result;
}
