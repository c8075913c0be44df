// SoftHsm.h - real tokens of SoftHSM 2 in a folder of the test's own.
#pragma once

#include <string>

#include "components/certservice/tokens/TokenFixture.h"
#include "support/Environment.h"
#include "support/TemporaryFolder.h"

// Runs the programs that come with SoftHSM and OpenSC; each of them works in a process of its own,
// as another application would. A program that fails throws.
class SoftHsm {
public:
    static const char* ModulePath();

    // Makes the folder and points SOFTHSM2_CONF to it, until the end.
    SoftHsm();
    ~SoftHsm() = default;
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

    TemporaryFolder m_folder;
    SavedVariable m_configuration{"SOFTHSM2_CONF"};
};
