// Signature.h - plain signatures of SM2 with SM3 (GB/T 32918.2, signer id "1234567812345678") and
// of RSA with PKCS#1 v1.5 padding (RFC 8017, section 8.2), and the digests below them.
#pragma once

#include <openssl/evp.h>

#include <string>
#include <string_view>

#include "components/crypto/Algorithm.h"

KeyKind KindOfKey(const EVP_PKEY* key);

// The plain hash of `data`; empty if the algorithm can't be had.
std::string Digest(HashAlgorithm algorithm, std::string_view data);

// The 32 bytes e = SM3(ZA || data) for the public key of an SM2 key. Empty on failure.
std::string Sm2Digest(const EVP_PKEY* publicKey, std::string_view data);

// Signs with a private key held in memory: SM2 gives the DER of SEQUENCE { r, s }. Both take the
// digest as told above (for SM2 the value e). Empty on failure.
std::string SignDigest(EVP_PKEY* privateKey, HashAlgorithm hash, std::string_view digest);
std::string SignData(EVP_PKEY* privateKey, HashAlgorithm hash, std::string_view data);

// True if the signature is good. An SM2 signature may be DER, or the bare 64 bytes r and s that
// some makers write.
bool VerifyDigest(EVP_PKEY* publicKey, HashAlgorithm hash, std::string_view digest,
                  std::string_view signature);
bool VerifyData(EVP_PKEY* publicKey, HashAlgorithm hash, std::string_view data,
                std::string_view signature);
