// Pkcs11Signature.h - signing with a token's private key.
#pragma once

#include <string>
#include <string_view>

#include "components/certservice/pkcs11/Pkcs11Settings.h"
#include "components/certservice/pkcs11/Pkcs11Token.h"
#include "components/crypto/Algorithm.h"

// The DER of DigestInfo (RFC 8017, section 9.2) for a digest. Empty if the digest has another
// length than the hash's.
std::string DigestInfo(HashAlgorithm hash, std::string_view digest);

// A token's SM2 signature as DER of SEQUENCE { r, s }: from the bare 64 bytes r and s, or as it is
// if it is that DER already. Empty for anything else.
std::string Sm2SignatureDer(std::string_view signature);

// Signs as KeyDevice::SignDigest tells, with the private key of that CKA_ID. Keys other than RSA
// are SM2 keys of the maker's own mechanism if `settings` names one, and of its own key type if it
// names that too; otherwise kServiceAlgorithmUnknown. kServicePinUnavailable if the key isn't to be
// seen since nobody has logged in, kServiceKeyDamaged if the token lacks it.
int SignWithToken(Pkcs11Token& token, const Pkcs11Settings& settings, const std::string& id,
                  HashAlgorithm hash, std::string_view digest, std::string& signature);
