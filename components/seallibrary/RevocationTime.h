// RevocationTime.h - when a certificate was revoked, by a revocation list (RFC 5280).
#pragma once

#include <openssl/x509.h>

#include <ctime>
#include <string>
#include <string_view>

// The list as DER, from DER, PEM or bare Base64. Empty if it is none of them, or over the size
// limit.
std::string ReadRevocationList(std::string_view list);

// Was the list (in any of these) issued under the name of the certificate's issuer?
bool IsListFor(std::string_view list, const X509* certificate);

// Compares `time` with the revocation that the list (in any of these) tells for a serial number in
// hexadecimal ("0x", colons, blanks, leading zeros and small letters allowed). 0: revoked later
// than `time`. kSealRevokedBefore: at that time or before it. kSealSerialNotListed: there is no
// such entry. kSealRevocationListDamaged, kSealBadArgument (no serial number). The list's own
// signature and dates aren't judged.
int CheckRevocationTime(std::string_view list, std::string_view serial, std::time_t time);
