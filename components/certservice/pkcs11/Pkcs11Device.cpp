#include "components/certservice/pkcs11/Pkcs11Device.h"

#include <algorithm>
#include <functional>
#include <map>
#include <mutex>

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/pkcs11/Pkcs11Certificate.h"
#include "components/certservice/pkcs11/Pkcs11Codes.h"
#include "components/certservice/pkcs11/Pkcs11Files.h"
#include "components/certservice/pkcs11/Pkcs11Signature.h"
#include "components/certservice/pkcs11/Pkcs11Text.h"

namespace {

// The tokens behind one module. May be used from any thread; one operation runs at a time.
class Pkcs11Device : public KeyDevice {
public:
    Pkcs11Device(std::shared_ptr<Pkcs11Module> module, Pkcs11Settings settings)
        : m_module(std::move(module)), m_settings(std::move(settings)) {}

    int CountKeys() override;
    int ListCertificates(std::vector<DeviceCertificate>& certificates) override;
    bool Owns(const std::string& certId) override;
    int ExportCertificate(const std::string& certId, std::string& der) override;
    int Login(const std::string& certId, std::string_view pin) override;
    int Logout(const std::string& certId) override;
    bool IsLoggedIn(const std::string& certId) override;
    int RetriesLeft(const std::string& certId) override;
    int SignDigest(const std::string& certId, HashAlgorithm hash, std::string_view digest,
                   std::string& signature) override;
    int ListFiles(const std::string& certId, std::vector<std::string>& names) override;
    int ReadFile(const std::string& certId, const std::string& name, std::string& content) override;
    int WriteFile(const std::string& certId, const std::string& name,
                  std::string_view content) override;

private:
    // A certificate that was seen on a token.
    struct Seen {
        std::string serial;
        std::string id;
        bool damaged = false;
    };
    struct PluggedToken {
        PluggedToken(std::shared_ptr<Pkcs11Module> module, CK_SLOT_ID slot, std::string serial)
            : token(std::move(module), slot, std::move(serial)) {}
        Pkcs11Token token;
        Pkcs11Files files;
    };
    using PluggedTokens = std::map<std::string, std::unique_ptr<PluggedToken>>;
    using Operation = std::function<int(PluggedToken& plugged, const Seen& seen)>;

    int SlotsWithToken(std::vector<CK_SLOT_ID>& slots);
    int RefreshTokens();
    int ListToken(PluggedToken& plugged, std::vector<DeviceCertificate>& certificates);
    int ListPlugged(std::vector<DeviceCertificate>& certificates);
    int Try(const Seen& seen, const Operation& operation);
    int With(const std::string& certId, const Operation& operation);
    static int ReadCertificate(PluggedToken& plugged, const Seen& seen,
                               CertificateFactsCache& cache, Pkcs11Certificate& certificate);

    std::mutex m_mutex;
    std::shared_ptr<Pkcs11Module> m_module;
    Pkcs11Settings m_settings;
    PluggedTokens m_tokens;  // by serial number
    std::map<std::string, Seen> m_seen;
    CertificateFactsCache m_facts;
};

int Pkcs11Device::SlotsWithToken(std::vector<CK_SLOT_ID>& slots) {
    if (Pkcs11Module::ProcessEnds()) return kServiceTokenFailure;
    CK_RV result = CKR_BUFFER_TOO_SMALL;
    // A token may be plugged in between the two calls.
    for (int attempt = 0; attempt < 5 && result == CKR_BUFFER_TOO_SMALL; ++attempt) {
        CK_ULONG count = 0;
        result = m_module->Functions()->C_GetSlotList(CK_TRUE, nullptr, &count);
        if (result != CKR_OK) break;
        slots.resize(count);
        if (count == 0) break;
        result = m_module->Functions()->C_GetSlotList(CK_TRUE, slots.data(), &count);
        if (result == CKR_OK && count < slots.size()) slots.resize(count);
    }
    return ServiceCodeOf(result);
}

int Pkcs11Device::RefreshTokens() {
    std::vector<CK_SLOT_ID> slots;
    if (const int code = SlotsWithToken(slots)) {
        m_tokens.clear();
        return code;
    }
    PluggedTokens tokens;
    for (const CK_SLOT_ID slot : slots) {
        CK_TOKEN_INFO info{};
        if (m_module->Functions()->C_GetTokenInfo(slot, &info) != CKR_OK) continue;
        if (!(info.flags & CKF_TOKEN_INITIALIZED)) continue;
        const std::string serial = Pkcs11Token::SerialOf(info);
        if (tokens.contains(serial)) continue;
        const auto known = m_tokens.find(serial);
        if (known != m_tokens.end() && known->second->token.Slot() == slot)
            tokens[serial] = std::move(known->second);
        else
            tokens[serial] = std::make_unique<PluggedToken>(m_module, slot, serial);
    }
    std::erase_if(m_tokens, [](const auto& entry) { return !entry.second; });
    m_tokens.swap(tokens);
    return kServiceOk;
}

int Pkcs11Device::CountKeys() {
    const std::lock_guard lock(m_mutex);
    RefreshTokens();
    return static_cast<int>(m_tokens.size());
}

int Pkcs11Device::ListToken(PluggedToken& plugged, std::vector<DeviceCertificate>& certificates) {
    plugged.files.Forget();
    std::vector<Pkcs11Certificate> found;
    if (const int code = ListTokenCertificates(plugged.token, m_facts, found)) return code;
    for (Pkcs11Certificate& certificate : found) {
        const std::string certId = TokenCertId(plugged.token.Serial(), certificate.id);
        m_seen[certId] = {plugged.token.Serial(), certificate.id, certificate.damaged};
        // It can't be chosen, but who asks for it by its certId learns what is wrong with it.
        if (certificate.damaged) continue;
        certificates.push_back({certId, std::move(certificate.label), std::move(certificate.der)});
    }
    return kServiceOk;
}

// A token that fails doesn't hide the others; its failure is told if there is nothing else to tell.
int Pkcs11Device::ListPlugged(std::vector<DeviceCertificate>& certificates) {
    certificates.clear();
    if (const int code = RefreshTokens()) return code;
    int failure = kServiceOk;
    for (auto& [serial, plugged] : m_tokens) {
        int code = ListToken(*plugged, certificates);
        // The session of a token that was pulled and put back is dropped by now.
        if (code == kServiceKeyRemoved) code = ListToken(*plugged, certificates);
        if (code != kServiceOk && code != kServiceKeyRemoved) failure = code;
    }
    return certificates.empty() ? failure : kServiceOk;
}

int Pkcs11Device::ListCertificates(std::vector<DeviceCertificate>& certificates) {
    const std::lock_guard lock(m_mutex);
    return ListPlugged(certificates);
}

bool Pkcs11Device::Owns(const std::string& certId) {
    const std::string serial = SerialInCertId(certId);
    if (serial.empty()) return false;
    const std::lock_guard lock(m_mutex);
    if (m_seen.contains(certId) || m_tokens.contains(serial)) return true;
    RefreshTokens();
    return m_tokens.contains(serial);
}

int Pkcs11Device::Try(const Seen& seen, const Operation& operation) {
    const auto plugged = m_tokens.find(seen.serial);
    return plugged == m_tokens.end() ? kServiceKeyRemoved : operation(*plugged->second, seen);
}

int Pkcs11Device::With(const std::string& certId, const Operation& operation) {
    if (SerialInCertId(certId).empty()) return kServiceNoSuchCertificate;
    if (Pkcs11Module::ProcessEnds()) return kServiceTokenFailure;
    const std::lock_guard lock(m_mutex);
    if (!m_seen.contains(certId)) {
        std::vector<DeviceCertificate> certificates;
        if (const int code = ListPlugged(certificates)) return code;
    }
    const auto seen = m_seen.find(certId);
    if (seen == m_seen.end()) return kServiceNoSuchCertificate;
    if (const int code = Try(seen->second, operation); code != kServiceKeyRemoved) return code;
    // It may have been pulled and put back, perhaps into another slot.
    m_tokens.erase(seen->second.serial);
    if (const int code = RefreshTokens()) return code;
    return Try(seen->second, operation);
}

int Pkcs11Device::ReadCertificate(PluggedToken& plugged, const Seen& seen,
                                  CertificateFactsCache& cache, Pkcs11Certificate& certificate) {
    bool found = false;
    const int code = FindTokenCertificate(plugged.token, seen.id, cache, certificate, found);
    if (code != kServiceOk) return code;
    return found ? kServiceOk : kServiceKeyRemoved;
}

int Pkcs11Device::ExportCertificate(const std::string& certId, std::string& der) {
    return With(certId, [&](PluggedToken& plugged, const Seen& seen) -> int {
        Pkcs11Certificate certificate;
        const int code = ReadCertificate(plugged, seen, m_facts, certificate);
        if (code != kServiceOk) return code;
        if (certificate.damaged) return kServiceCertificateDamaged;
        der = std::move(certificate.der);
        return kServiceOk;
    });
}

int Pkcs11Device::Login(const std::string& certId, std::string_view pin) {
    return With(certId, [&](PluggedToken& plugged, const Seen& seen) -> int {
        Pkcs11Certificate certificate;
        if (const int code = ReadCertificate(plugged, seen, m_facts, certificate)) return code;
        if (certificate.damaged) return kServiceCertificateDamaged;
        return plugged.token.Login(pin);
    });
}

int Pkcs11Device::Logout(const std::string& certId) {
    return With(certId, [](PluggedToken& plugged, const Seen&) { return plugged.token.Logout(); });
}

bool Pkcs11Device::IsLoggedIn(const std::string& certId) {
    bool loggedIn = false;
    With(certId, [&](PluggedToken& plugged, const Seen&) -> int {
        loggedIn = plugged.token.IsLoggedIn();
        return kServiceOk;
    });
    return loggedIn;
}

int Pkcs11Device::RetriesLeft(const std::string& certId) {
    int retries = -1;
    With(certId, [&](PluggedToken& plugged, const Seen&) -> int {
        retries = plugged.token.RetriesLeft();
        return kServiceOk;
    });
    return retries;
}

int Pkcs11Device::SignDigest(const std::string& certId, HashAlgorithm hash, std::string_view digest,
                             std::string& signature) {
    return With(certId, [&](PluggedToken& plugged, const Seen& seen) -> int {
        if (seen.damaged) return kServiceCertificateDamaged;
        return SignWithToken(plugged.token, m_settings, seen.id, hash, digest, signature);
    });
}

int Pkcs11Device::ListFiles(const std::string& certId, std::vector<std::string>& names) {
    return With(certId, [&](PluggedToken& plugged, const Seen& seen) {
        return plugged.files.List(plugged.token, seen.id, names);
    });
}

int Pkcs11Device::ReadFile(const std::string& certId, const std::string& name,
                           std::string& content) {
    return With(certId, [&](PluggedToken& plugged, const Seen& seen) {
        return plugged.files.Read(plugged.token, seen.id, name, content);
    });
}

int Pkcs11Device::WriteFile(const std::string& certId, const std::string& name,
                            std::string_view content) {
    return With(certId, [&](PluggedToken& plugged, const Seen& seen) {
        return plugged.files.Write(plugged.token, seen.id, name, content);
    });
}

}  // namespace

std::vector<std::unique_ptr<KeyDevice>> OpenPkcs11Devices() {
    std::vector<std::unique_ptr<KeyDevice>> devices;
    const Pkcs11Settings settings = ReadPkcs11Settings();
    std::vector<std::shared_ptr<Pkcs11Module>> opened;
    for (const std::string& path : settings.modules) {
        auto module = Pkcs11Module::Open(path);
        if (!module || std::find(opened.begin(), opened.end(), module) != opened.end()) continue;
        opened.push_back(module);
        devices.push_back(std::make_unique<Pkcs11Device>(std::move(module), settings));
    }
    return devices;
}
