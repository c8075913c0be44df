// TokenFixture.h - what goes on a token, and the device that shows it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "components/certservice/KeyDevice.h"
#include "components/certservice/ServiceSettings.h"
#include "components/crypto/Handles.h"
#include "support/TemporaryPrefix.h"

// A new RSA key of 2048 bits, and self-signed certificates.
KeyHandle MakeRsaKey();
struct CertificateOptions {
    const char* commonName = "Li Lei";  // UTF-8
    bool authority = false;
    int firstDay = 0;  // valid from so many days after 2026-01-01, for a year
};
std::string MakeCertificate(EVP_PKEY* key, const CertificateOptions& options = {});

// The device that the settings' one module gives; null if it gives none.
std::unique_ptr<KeyDevice> OpenOnlyDevice();
