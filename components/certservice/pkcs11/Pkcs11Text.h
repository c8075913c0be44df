// Pkcs11Text.h - the texts of tokens, and the names made from them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// A token's text as GBK. PKCS#11 wants UTF-8; a text that isn't is taken for GBK, as some makers'
// programs write it.
std::string TextOfToken(std::string_view text);

// The first `digits` hexadecimal digits of the SHA-256 of `bytes`; 64 at most.
std::string ShortDigest(std::string_view bytes, std::size_t digits);

// The certId of the certificate with that CKA_ID on the token with that serial number:
// "P11/<serial>/<id in hexadecimal>", or with "~" and a digest in place of an id of more than 20
// bytes. It never has more than 61 bytes.
std::string TokenCertId(const std::string& serial, std::string_view id);

// The serial number in a certId of that form; empty for any other text.
std::string SerialInCertId(const std::string& certId);
