// KeyImport.h - a private key with its certificate from a file that another program made.
#pragma once

#include <string>
#include <string_view>

#include "components/crypto/Handles.h"

struct ImportedKey {
    KeyHandle key;
    std::string certificate;  // DER
};

// Takes PKCS#12 (the old ciphers included, where OpenSSL's legacy provider is installed) and PEM
// with a private key, encrypted or not, and the certificate. `password` is UTF-8 without zero
// bytes. kServicePinWrong: wrong password; kServiceKeyDamaged: neither form can be read, the
// PKCS#12 has no MAC, or the key is missing; kServiceCertificateDamaged: no certificate fits the
// key.
int ReadKeyImport(std::string_view content, const std::string& password, ImportedKey& imported);
