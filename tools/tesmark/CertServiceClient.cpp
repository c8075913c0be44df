#include "CertServiceClient.h"

#include "Failure.h"
#include "Registration.h"
#include "ServiceEntries.h"
#include "TerminalText.h"
#include "TwoStep.h"
#include "components/certservice/ServiceCodes.h"
#include "foundation/ServicePath.h"
#include "include/TesmarkOpt.h"
#include "platform/Files.h"
#include "platform/closed/CertService.h"

namespace {

// The records of a list that end in "&&&", without it; what stands behind the last is none.
std::vector<std::string> Records(std::string_view list) {
    constexpr std::string_view kEnd = "&&&";
    std::vector<std::string> records;
    for (auto end = list.find(kEnd); end != std::string_view::npos; end = list.find(kEnd)) {
        records.emplace_back(list.substr(0, end));
        list.remove_prefix(end + kEnd.size());
    }
    return records;
}

Failure NotFound(const std::string& tried) {
    return {
        ExitCode::kSetup, "The certificate service's file was not found.",
        TESMARK_SERVICE_NOT_FOUND,
        "  looked for " + tried + "\n  register it: " + HowToRegister("CertService", "KVLAppCOM")};
}

}  // namespace

template <typename Function, typename... Arguments>
int CertServiceClient::Call(const char* name, Arguments... arguments) const {
    const auto function = reinterpret_cast<Function>(platform::FindSymbol(m_module, name));
    return function ? function(arguments...) : kServiceNotSupported;
}

#define SERVICE_CALL(name, ...) Call<decltype(&name)>(#name, __VA_ARGS__)

CertServiceClient::CertServiceClient() {
    std::string first;
    m_path = LocateCertService(&first);
    if (m_path.empty()) throw NotFound(platform::Utf8FromPath(first));
    CheckServiceEntries(m_path);
    m_module = platform::LoadModule(m_path.c_str());
    if (!m_module) {
        throw Failure{ExitCode::kSetup,
                      "The certificate service's file can't be loaded: " +
                          platform::Utf8FromPath(m_path) + ".",
                      TESMARK_SERVICE_FAILED,
                      "  is it a library for this processor, with all that it needs installed?"};
    }
    if (const int code = SERVICE_CALL(SOF_Initialize, &m_context)) {
        platform::FreeModule(m_module);
        throw Failure{ExitCode::kSetup, "The certificate service does not start.", code};
    }
}

CertServiceClient::~CertServiceClient() {
    SERVICE_CALL(SOF_Finalize, m_context);
    platform::FreeModule(m_module);
}

std::vector<std::string> CertServiceClient::MissingEntries() const {
    std::vector<std::string> missing;
#define NOTE_IF_MISSING(name) \
    if (!platform::FindSymbol(m_module, #name)) missing.emplace_back(#name);
    CERT_SERVICE_ENTRIES(NOTE_IF_MISSING)
#undef NOTE_IF_MISSING
    return missing;
}

int CertServiceClient::ListUsers(std::vector<User>& users) const {
    users.clear();
    std::string list;
    const auto fetch = [this](unsigned char* out, int* outLen) {
        return SERVICE_CALL(SOF_GetUserList, m_context, out, outLen);
    };
    if (const int code = FetchInTwoSteps(fetch, list)) return code;
    for (const std::string& record : Records(list)) {
        const auto separator = record.find("||");
        if (separator == std::string::npos) continue;
        users.push_back({Utf8FromGbk(record.substr(0, separator)), record.substr(separator + 2)});
    }
    return 0;
}

int CertServiceClient::ExportCertificate(const std::string& certId, std::string& der) const {
    return FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return SERVICE_CALL(SOF_ExportUserCert, m_context, certId.c_str(), out, outLen);
        },
        der);
}

std::string CertServiceClient::CertificateField(const std::string& der, int field) const {
    std::string value;
    FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return SERVICE_CALL(SOF_GetCertInfo, m_context, Bytes(der),
                                static_cast<int>(der.size()), field, out, outLen);
        },
        value);
    return Utf8FromGbk(value.substr(0, value.find('\0')));
}

int CertServiceClient::Validate(const std::string& der) const {
    return SERVICE_CALL(SOF_ValidateCert, m_context, Bytes(der), static_cast<int>(der.size()));
}

std::string CertServiceClient::DeviceKind(const std::string& certId) const {
    std::string kind;
    FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return SERVICE_CALL(GetDeviceInfo, m_context, certId.c_str(), 7, out, outLen);
        },
        kind);
    return kind.substr(0, kind.find('\0'));
}

int CertServiceClient::ListFiles(const std::string& certId, std::vector<std::string>& names) const {
    std::string list;
    const int code = FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return SERVICE_CALL(EnumFilesInDevice, m_context, certId.c_str(), out, outLen);
        },
        list);
    names = Records(list);
    return code;
}

int CertServiceClient::ReadFile(const std::string& certId, const std::string& name,
                                std::string& content) const {
    return FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return SERVICE_CALL(SOF_ReadFile, m_context, certId.c_str(), name.c_str(), out, outLen);
        },
        content);
}

int CertServiceClient::VerifyMessage(std::string_view signature, std::string_view data) const {
    return SERVICE_CALL(SOF_VerifySignedMessage, m_context, Bytes(signature),
                        static_cast<int>(signature.size()), Bytes(data),
                        static_cast<int>(data.size()));
}

int CertServiceClient::VerifySm2File(std::string_view signature, const std::string& path,
                                     const std::string& signerDer) const {
    // The default signer of GB/T 35276.
    constexpr std::string_view kUserId = "1234567812345678";
    constexpr int kSm3 = 1;
    unsigned char hash[32] = {};
    int length = sizeof hash;
    const int code =
        SERVICE_CALL(SOF_HashFile, m_context, kSm3, path.c_str(), Bytes(signerDer),
                     static_cast<int>(signerDer.size()), kUserId.data(),
                     static_cast<int>(kUserId.size()), static_cast<unsigned char*>(hash), &length);
    if (code) return code;
    return SERVICE_CALL(SOF_VerifySignedHashMessage, m_context, Bytes(signature),
                        static_cast<int>(signature.size()), static_cast<const unsigned char*>(hash),
                        length);
}
