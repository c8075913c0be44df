// ServiceLink.h - the certificate service as the seal library uses it: bound when first needed, in
// a context of its own.
#pragma once

#include <string>
#include <string_view>

#include "components/seallibrary/SealVerdict.h"
#include "platform/Module.h"
#include "platform/closed/CertService.h"

// All operations bind the service first if it isn't bound, by the same places as the library's own.
// Failures: kSealServiceMissing, kSealServiceIncomplete (an entry point is missing), or the
// service's own code.
class CServiceLink : public CertificateJudge {
public:
    CServiceLink() = default;
    ~CServiceLink() override { Release(); }
    CServiceLink(const CServiceLink&) = delete;
    CServiceLink& operator=(const CServiceLink&) = delete;

    int ExportCertificate(const std::string& certId, std::string& certificate);
    // The signature as the service gives it. `method` as SOF_SetSignMethod takes it.
    int Sign(const std::string& certId, int method, std::string_view data, std::string& signature);

    int Validate(const std::string& certificate) override;
    // In a context of its own, so that the list concerns nothing else.
    int ValidateWithList(const std::string& certificate, const std::string& list) override;

    // Ends the context and lets the service's file go; harmless when nothing is bound.
    void Release();

private:
    struct Entries {
        decltype(&::SOF_Initialize) initialize = nullptr;
        decltype(&::SOF_Finalize) finalize = nullptr;
        decltype(&::SOF_ExportUserCert) exportUserCert = nullptr;
        decltype(&::SOF_SetSignMethod) setSignMethod = nullptr;
        decltype(&::SOF_SignData) signData = nullptr;
        decltype(&::SOF_ValidateCert) validateCert = nullptr;
        decltype(&::SetUserConfig) setUserConfig = nullptr;
    };

    int Bind();
    bool LoadEntries();
    int ValidateIn(void* context, const std::string& certificate) const;

    platform::ModuleHandle m_module = nullptr;
    Entries m_entries;
    void* m_context = nullptr;
    bool m_bound = false;
};
