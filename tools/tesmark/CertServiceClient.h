// CertServiceClient.h - the certificate service that this machine has bound, asked directly for
// what no export of the library tells.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Module.h"

// Loads the service's file as the library does and opens a context of its own. Texts that come out
// are UTF-8, certIds are the service's bytes. Works with any service of that interface: an entry
// point that a service lacks is an answer of kServiceNotSupported.
class CertServiceClient {
public:
    // Throws a setup Failure with the paths that were tried, or the service's code.
    CertServiceClient();
    ~CertServiceClient();
    CertServiceClient(const CertServiceClient&) = delete;
    CertServiceClient& operator=(const CertServiceClient&) = delete;

    const std::string& Path() const { return m_path; }
    // Those of the 43 entry points that the file doesn't export.
    std::vector<std::string> MissingEntries() const;

    struct User {
        std::string label;  // UTF-8
        std::string certId;
    };
    // In the service's order; empty if no key is present.
    int ListUsers(std::vector<User>& users) const;
    int ExportCertificate(const std::string& certId, std::string& der) const;
    // Field `field` of a certificate, converted to UTF-8; empty if it can't be had.
    std::string CertificateField(const std::string& der, int field) const;
    int Validate(const std::string& der) const;
    // "HARD" for what the library uses; empty if the service doesn't tell.
    std::string DeviceKind(const std::string& certId) const;
    int ListFiles(const std::string& certId, std::vector<std::string>& names) const;
    int ReadFile(const std::string& certId, const std::string& name, std::string& content) const;

    // Of a PKCS#7: what the service says to it over data, or over a file that it reads itself; the
    // latter as the library asks for it, so it is for SM2 signers alone.
    int VerifyMessage(std::string_view signature, std::string_view data) const;
    int VerifySm2File(std::string_view signature, const std::string& path,
                      const std::string& signerDer) const;

private:
    template <typename Function, typename... Arguments>
    int Call(const char* name, Arguments... arguments) const;

    std::string m_path;
    platform::ModuleHandle m_module = nullptr;
    void* m_context = nullptr;
};
