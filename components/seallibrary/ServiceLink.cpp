#include "components/seallibrary/ServiceLink.h"

#include <climits>

#include "components/seallibrary/SealLimits.h"
#include "foundation/Logger.h"
#include "foundation/ServicePath.h"
#include "foundation/Text.h"

namespace {

const unsigned char* Bytes(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

template <typename Function>
bool Find(platform::ModuleHandle module, const char* name, Function& function) {
    function = reinterpret_cast<Function>(platform::FindSymbol(module, name));
    if (!function) TESMARK_LOG(kLogError, "[ServiceLink]: no entry point %s", name);
    return function != nullptr;
}

// Asks for the size, then for the bytes. `call` takes (out, outLen).
template <typename Call>
int Fetch(Call call, std::string& bytes) {
    int length = 0;
    if (const int code = call(nullptr, &length)) return code;
    if (length <= 0) return kSealServiceFailed;
    if (static_cast<std::size_t>(length) > kMaxSealBytes) return kSealTooLarge;
    bytes.assign(static_cast<std::size_t>(length), '\0');
    int written = length;
    const int code = call(reinterpret_cast<unsigned char*>(bytes.data()), &written);
    if (code) return code;
    if (written <= 0 || written > length) return kSealServiceFailed;
    bytes.resize(static_cast<std::size_t>(written));
    return kSealOk;
}

// A negative failure of another operation must not be taken for a verdict on a certificate.
int OwnFailure(int code) { return code < 0 ? kSealServiceFailed : code; }

}  // namespace

bool CServiceLink::LoadEntries() {
    return Find(m_module, "SOF_Initialize", m_entries.initialize) &&
           Find(m_module, "SOF_Finalize", m_entries.finalize) &&
           Find(m_module, "SOF_ExportUserCert", m_entries.exportUserCert) &&
           Find(m_module, "SOF_SetSignMethod", m_entries.setSignMethod) &&
           Find(m_module, "SOF_SignData", m_entries.signData) &&
           Find(m_module, "SOF_ValidateCert", m_entries.validateCert) &&
           Find(m_module, "SetUserConfig", m_entries.setUserConfig);
}

int CServiceLink::Bind() {
    if (m_bound) return kSealOk;
    const std::string path = LocateCertService();
    m_module = path.empty() ? nullptr : platform::LoadModule(path.c_str());
    if (!m_module) return kSealServiceMissing;
    int code = LoadEntries() ? kSealOk : kSealServiceIncomplete;
    if (code == kSealOk) code = m_entries.initialize(&m_context);
    m_bound = code == kSealOk;
    if (!m_bound) Release();
    return OwnFailure(code);
}

void CServiceLink::Release() {
    if (m_bound) m_entries.finalize(m_context);
    m_bound = false;
    m_context = nullptr;
    m_entries = {};
    if (m_module) platform::FreeModule(m_module);
    m_module = nullptr;
}

int CServiceLink::ExportCertificate(const std::string& certId, std::string& certificate) {
    if (const int code = Bind()) return code;
    return Fetch(
        [&](unsigned char* out, int* outLen) {
            return m_entries.exportUserCert(m_context, certId.c_str(), out, outLen);
        },
        certificate);
}

int CServiceLink::Sign(const std::string& certId, int method, std::string_view data,
                       std::string& signature) {
    if (const int code = Bind()) return code;
    if (const int code = m_entries.setSignMethod(m_context, method)) return code;
    return Fetch(
        [&](unsigned char* out, int* outLen) {
            return m_entries.signData(m_context, certId.c_str(), Bytes(data),
                                      static_cast<int>(data.size()), out, outLen);
        },
        signature);
}

int CServiceLink::ValidateIn(void* context, const std::string& certificate) const {
    return m_entries.validateCert(context, Bytes(certificate),
                                  static_cast<int>(certificate.size()));
}

int CServiceLink::Validate(const std::string& certificate) {
    if (const int code = Bind()) return code;
    return ValidateIn(m_context, certificate);
}

int CServiceLink::ValidateWithList(const std::string& certificate, const std::string& list) {
    if (const int code = Bind()) return code;
    void* context = nullptr;
    if (const int code = m_entries.initialize(&context)) return OwnFailure(code);
    const int refused = m_entries.setUserConfig(context, 5, Base64Encode(list).c_str());
    const int code = refused ? OwnFailure(refused) : ValidateIn(context, certificate);
    m_entries.finalize(context);
    return code;
}
