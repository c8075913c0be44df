// KeyRecord.h - what one certificate's folder of the key folder holds: "certificate.pem", "key.pem"
// (PKCS#8 under the PIN), "state" (the tries left and the SHA-256 of key.pem), "lock", and "files".
#pragma once

#include <string>
#include <string_view>

#include "components/crypto/Handles.h"

// PBES2 of RFC 8018 with AES-256-CBC, PBKDF2 with HMAC-SHA-256 and kPinRounds rounds, as PEM
// ("ENCRYPTED PRIVATE KEY"). Empty on failure.
constexpr int kPinRounds = 200'000;
std::string EncryptKey(EVP_PKEY* key, std::string_view pin);

// kServicePinWrong if it can't be decrypted, kServiceKeyDamaged if there is nothing to decrypt.
int DecryptKey(std::string_view pem, std::string_view pin, KeyHandle& key);

// The tries left. All paths are the certificate's folder, without a separator at the end. The
// caller holds its lock. kServiceKeyDamaged: the state can't be read, or key.pem, given here as
// `keyPem`, isn't the one that was stored.
int ReadTries(const std::string& path, std::string_view keyPem, int& tries);
// Is on the disk when it returns. kServiceFileUnreadable if it can't be written.
int WriteTries(const std::string& path, std::string_view keyPem, int tries);

std::string CertificatePathIn(const std::string& path);
std::string KeyPathIn(const std::string& path);
std::string LockPathIn(const std::string& path);
std::string FilesPathIn(const std::string& path);

// The DER of the certificate. kServiceKeyDamaged: not there; kServiceCertificateDamaged: can't be
// read.
int ReadRecordCertificate(const std::string& path, std::string& der);
