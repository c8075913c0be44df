// TestPki.h - keys, certificates and revocation lists made for one test.
#pragma once

#include <ctime>
#include <string>

#include "components/crypto/Algorithm.h"
#include "components/crypto/Handles.h"
#include "components/seallibrary/SealMaker.h"

// 2026-06-15 12:00:00 UTC, the day on which these tests play.
constexpr std::time_t kTestNow = 1781524800;
constexpr std::time_t kTestDay = 86'400;

struct TestIdentity {
    KeyHandle key;
    std::string certificate;  // DER
};

// What a certificate can be told; its own key signs it.
struct TestCertificateOrder {
    std::string name = "Test";
    std::string issuer = "Test CA";
    long serial = 0x1234ABCD;
    std::time_t notBefore = kTestNow - 100 * kTestDay;
    std::time_t notAfter = kTestNow + 5000 * kTestDay;
    const char* keyUsage = nullptr;  // as OpenSSL's configuration has it; null: none
    const char* extendedKeyUsage = nullptr;
};

TestIdentity MakeIdentity(KeyKind kind, const TestCertificateOrder& order = {});
// Signs by OpenSSL's DigestSign, with the usual signer id for SM2.
std::string SignAs(const TestIdentity& identity, std::string_view data);
SealSigner SignerOf(const TestIdentity& identity);
// A revocation list (DER) of "Test CA" with one entry, signed with that key.
std::string MakeRevocationList(const TestIdentity& issuer, long serial, std::time_t revoked);
// The same with `count` entries, serial numbers 0x10000 and up.
std::string MakeLongRevocationList(const TestIdentity& issuer, int count, std::time_t revoked);
// The bare 64 bytes r and s of an SM2 signature in DER.
std::string BareSm2(const std::string& der);

// A seal that the given maker could have made for the given signer; a test changes what it tests.
SealOrder UsualOrder(SealForm form, const TestIdentity& signer);
// The seal; fails the test if it can't be made.
std::string MakeTestSeal(const SealOrder& order, const TestIdentity& maker);
