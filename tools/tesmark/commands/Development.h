// Development.h - keys, certificates and seal makers of this machine's development CA, and the
// devices that keys are on.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/KeyDevice.h"
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

// The folder of development keys, and the tokens that the store names.
std::vector<std::unique_ptr<KeyDevice>> OpenKeyDevices();

// "2029-11-20", local time, so many days from now.
std::string DateAfter(int days);
