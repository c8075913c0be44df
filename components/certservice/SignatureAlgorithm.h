// SignatureAlgorithm.h - the object identifiers that name a hash or a signature, in certificates,
// revocation lists and messages. Those of the national standards and of the RFCs are both read.
#pragma once

#include <openssl/x509.h>

#include <optional>
#include <string>

#include "components/crypto/Algorithm.h"

// In digits and dots; empty if it can't be told.
std::string OidText(const ASN1_OBJECT* object);

// The hash that the service's calls give by that number: SM3, SHA-1 and SHA-256 have one.
std::optional<HashAlgorithm> HashByNumber(int number);

// False for a hash in which collisions can be made (SHA-1).
bool IsCollisionResistant(HashAlgorithm hash);

// The object identifier of a hash.
const char* OidOfHash(HashAlgorithm hash);

// True if the algorithm bears no parameters, or NULL, as all of HashAlgorithm's and their
// signatures do.
bool HasNoParameters(const X509_ALGOR* algorithm);

// The hash that `algorithm` names; none if it isn't one of HashAlgorithm.
std::optional<HashAlgorithm> HashOf(const X509_ALGOR* algorithm);

// The hash of a signature by a key of kind `key`. None if the algorithm doesn't fit the key, if it
// names no hash, or one that isn't known (RSASSA-PSS among them).
std::optional<HashAlgorithm> SignatureHash(const X509_ALGOR* algorithm, KeyKind key);

// True if a signature by `key` over `hash` may bear `algorithm`, which may leave the hash out
// (rsaEncryption, SM2's own identifier).
bool FitsSignature(const X509_ALGOR* algorithm, KeyKind key, HashAlgorithm hash);
