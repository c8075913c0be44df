// Development.h - keys, certificates and seal makers of this machine's development CA.
#pragma once

#include <string>

#include "components/certservice/DevelopmentCa.h"
#include "components/crypto/Algorithm.h"
#include "components/crypto/Handles.h"

struct DevelopmentAlgorithm {
    KeyKind kind;
    int rsaBits;
    const char* text;  // "SM2", "RSA 2048"
};

// sm2, rsa2048, rsa3072 or rsa4096. Throws a usage Failure for anything else.
DevelopmentAlgorithm AlgorithmOf(const std::string& name);

struct DevelopmentKey {
    KeyHandle key;
    std::string certificate;  // DER
};

// A new key with a certificate of the CA of its kind, valid from an hour ago for `days` days;
// `request`'s times are not looked at. The CA is made, and trusted, when it is first needed.
// Throws a Failure that names the folder that can't be written.
DevelopmentKey MakeDevelopmentKey(const DevelopmentAlgorithm& algorithm, int days,
                                  CertificateRequest request);

// Throws a usage Failure for an --id that can't be the name of a key's folder. An empty one is
// none that was asked for.
void CheckKeyId(const std::string& id);

// The name of a new key's folder: the one asked for, else the key's name where it may be one, else
// empty for the serial number.
std::string NameOfKeyFolder(const std::string& id, const std::string& name);

// Stores the key in the folder `path`; its certId. Throws a Failure for a name that is taken or
// can't be used, and for a folder that can't be written.
std::string StoreKey(const std::string& path, const std::string& name, EVP_PKEY* key,
                     const std::string& certificate, const std::string& pin);

// "2029-11-20", local time, so many days from now.
std::string DateAfter(int days);
