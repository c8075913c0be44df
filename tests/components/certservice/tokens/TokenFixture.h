// TokenFixture.h - real tokens of SoftHSM 2 in a folder of the test's own, and what goes on them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "components/certservice/KeyDevice.h"
#include "components/crypto/Handles.h"
#include "support/TemporaryPrefix.h"

// Values of the certificate service's own key in the store.
void SetServicePath(const char* name, const std::string& path);
void SetServiceNumber(const char* name, unsigned int number);

// A new RSA key of 2048 bits, and self-signed certificates.
KeyHandle MakeRsaKey();
struct CertificateOptions {
    const char* commonName = "Li Lei";  // UTF-8
    bool authority = false;
    int firstDay = 0;  // valid from so many days after 2026-01-01, for a year
};
std::string MakeCertificate(EVP_PKEY* key, const CertificateOptions& options = {});

// Runs the programs that come with SoftHSM and OpenSC; each of them works in a process of its own,
// as another application would. A program that fails throws.
class SoftHsm {
public:
    static const char* ModulePath();

    // Makes the folder and points SOFTHSM2_CONF to it; both go at the end.
    SoftHsm();
    ~SoftHsm();
    SoftHsm(const SoftHsm&) = delete;
    SoftHsm& operator=(const SoftHsm&) = delete;

    // A token with the PIN 123456.
    void MakeToken(const std::string& label);
    // Deletes what is stored of the tokens, as far as a software token can be pulled.
    void RemoveTokens();
    // Ids are hexadecimal.
    void StoreKey(const std::string& token, EVP_PKEY* key, const std::string& id);
    void StoreCertificate(const std::string& token, const std::string& der, const std::string& id,
                          const std::string& label);
    // `owner` are arguments of pkcs11-tool that say whose file it is.
    void StoreFile(const std::string& token, const std::string& name, const std::string& content,
                   const std::string& owner);
    // A key with its certificate.
    KeyHandle StorePair(const std::string& token, const std::string& id,
                        const CertificateOptions& options = {});

private:
    std::string WriteScratch(const std::string& name, const std::string& content) const;
    static void Run(const std::string& command);
    std::string Tool(const std::string& token) const;

    std::string m_folder;
};

// The device that the settings' one module gives; null if it gives none.
std::unique_ptr<KeyDevice> OpenOnlyDevice();
