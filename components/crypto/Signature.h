// Signature.h - plain signatures of SM2 with SM3 (GB/T 32918.2) and of RSA with PKCS#1 v1.5
// padding (RFC 8017, section 8.2), and the digests below them.
#pragma once

#include <openssl/evp.h>

#include <string>
#include <string_view>

#include "components/crypto/Algorithm.h"
#include "components/crypto/Handles.h"

// The signer's id of an SM2 signature where nobody agreed on another one.
constexpr char kSm2DefaultId[] = "1234567812345678";

// RSA means plain RSA keys, not those bound to PSS. A null key is of another kind.
KeyKind KindOfKey(const EVP_PKEY* key);

// A new private key. `rsaBits` counts for RSA alone. Null on failure.
EVP_PKEY* GenerateKey(KeyKind kind, int rsaBits);

// OpenSSL's digest of that name; null if it can't be had. Don't free it.
const EVP_MD* MessageDigest(HashAlgorithm algorithm);
// In bytes.
size_t DigestSize(HashAlgorithm algorithm);

// The plain hash of `data`; empty if the algorithm can't be had.
std::string Digest(HashAlgorithm algorithm, std::string_view data);

// Is `told` the plain hash of `data`? A hash that can't be made is nobody's.
bool IsDigest(std::string_view told, HashAlgorithm algorithm, std::string_view data);

// The 32 bytes ZA of GB/T 32918.2, section 5.5: the hash over the signer's id, the curve and the
// public key. Empty for a key that isn't SM2 and for an id of 8192 bytes and more.
std::string Sm2Za(const EVP_PKEY* publicKey, std::string_view id = kSm2DefaultId);

// The 32 bytes e = SM3(ZA || data) for the public key of an SM2 key. Empty on failure.
std::string Sm2Digest(const EVP_PKEY* publicKey, std::string_view data,
                      std::string_view id = kSm2DefaultId);

// What SignDigest and VerifyDigest take for `data`: Sm2Digest for an SM2 key, whose only hash
// is SM3, and the plain hash for any other key. Empty on failure.
std::string DigestForKey(const EVP_PKEY* publicKey, HashAlgorithm hash, std::string_view data);

// Signs with a private key held in memory: SM2 gives the DER of SEQUENCE { r, s }, from 69 to 72
// bytes and another one at each call. A digest of another length than the hash's is a failure.
// Empty on failure.
std::string SignDigest(EVP_PKEY* privateKey, HashAlgorithm hash, std::string_view digest);
std::string SignData(EVP_PKEY* privateKey, HashAlgorithm hash, std::string_view data);

// A private key for many signatures: what OpenSSL sets up for one is kept for the next with the
// same hash. One thread at a time.
class SigningKey {
public:
    SigningKey() = default;
    explicit SigningKey(KeyHandle privateKey);
    // As SignDigest; empty without a key as well.
    std::string Sign(HashAlgorithm hash, std::string_view digest);

private:
    KeyHandle m_key;
    KeyKind m_kind = KeyKind::kOther;
    HashAlgorithm m_hash{};
    KeyContextHandle m_context;
};

// True if the signature is good. An SM2 signature may be DER, or the bare 64 bytes r and s that
// some makers write.
bool VerifyDigest(EVP_PKEY* publicKey, HashAlgorithm hash, std::string_view digest,
                  std::string_view signature);
bool VerifyData(EVP_PKEY* publicKey, HashAlgorithm hash, std::string_view data,
                std::string_view signature);
