#include "components/certservice/KeyRing.h"

#include <openssl/crypto.h>

#include "components/certservice/ServiceCodes.h"

namespace {

constexpr std::string_view kLabelEnd = "||";
constexpr std::string_view kRecordEnd = "&&&";
// Fewer than lock a development key: a program that answers in a person's place and is wrong must
// neither ask for ever, where a token doesn't lock, nor lock one that does.
constexpr int kPinQuestions = 3;

void Remove(std::string& text, std::string_view part) {
    for (size_t at; (at = text.find(part)) != std::string::npos;) text.erase(at, part.size());
}

// What closes up around a separator may be another one. A label that ends in a part of a separator
// would run into the one behind it.
std::string WithoutSeparators(std::string label) {
    for (size_t before = label.size() + 1; before != label.size();) {
        before = label.size();
        Remove(label, kLabelEnd);
        Remove(label, kRecordEnd);
    }
    while (!label.empty() && (label.back() == '|' || label.back() == '&')) label.pop_back();
    return label;
}

// A name that the list of files can't carry: whoever splits the list would read another one.
bool IsListable(std::string_view name) {
    return !name.empty() && name.back() != kRecordEnd.back() &&
           name.find(kRecordEnd) == std::string_view::npos &&
           name.find('\0') == std::string_view::npos;
}

// Wiped before it is freed.
struct Pin {
    ~Pin() { OPENSSL_cleanse(text.data(), text.size()); }
    std::string text;
};

}  // namespace

KeyRing::KeyRing(std::vector<std::unique_ptr<KeyDevice>> devices,
                 std::unique_ptr<PinEntry> pinEntry)
    : m_devices(std::move(devices)), m_pinEntry(std::move(pinEntry)) {}

KeyDevice* KeyRing::DeviceOf(const std::string& certId) {
    for (const auto& device : m_devices) {
        if (device->Owns(certId)) return device.get();
    }
    return nullptr;
}

int KeyRing::CountKeys() {
    int count = 0;
    for (const auto& device : m_devices) count += device->CountKeys();
    return count;
}

int KeyRing::UserList(std::string& list) {
    list.clear();
    int failure = kServiceOk;
    for (const auto& device : m_devices) {
        std::vector<DeviceCertificate> certificates;
        if (const int code = device->ListCertificates(certificates)) failure = code;
        for (const DeviceCertificate& certificate : certificates) {
            list += WithoutSeparators(certificate.label);
            list += kLabelEnd;
            list += certificate.certId;
            list += kRecordEnd;
        }
    }
    return list.empty() ? failure : kServiceOk;
}

int KeyRing::ExportCertificate(const std::string& certId, std::string& der) {
    KeyDevice* device = DeviceOf(certId);
    return device ? device->ExportCertificate(certId, der) : kServiceNoSuchCertificate;
}

int KeyRing::Login(const std::string& certId, std::string_view pin) {
    KeyDevice* device = DeviceOf(certId);
    return device ? LoginAt(*device, certId, pin) : kServiceNoSuchCertificate;
}

int KeyRing::LoginAt(KeyDevice& device, const std::string& certId, std::string_view pin) {
    const int code = device.Login(certId, pin);
    if (code == kServiceOk) m_lastLogin = certId;
    return code;
}

int KeyRing::Logout(const std::string& certId) {
    KeyDevice* device = DeviceOf(certId);
    if (!device) return kServiceNoSuchCertificate;
    if (m_lastLogin == certId) m_lastLogin.clear();
    return device->Logout(certId);
}

std::string KeyRing::LabelOf(KeyDevice& device, const std::string& certId) {
    std::vector<DeviceCertificate> certificates;
    device.ListCertificates(certificates);
    for (const DeviceCertificate& certificate : certificates) {
        if (certificate.certId == certId) return certificate.label;
    }
    return certId;
}

int KeyRing::AskForPin(KeyDevice& device, const std::string& certId) {
    const std::string label = LabelOf(device, certId);
    std::string error;
    for (int question = 0; question < kPinQuestions; ++question) {
        Pin pin;
        const int retries = device.RetriesLeft(certId);
        if (retries == 0) return kServiceKeyLocked;
        if (const int code = m_pinEntry->Ask(label, retries, error, pin.text)) return code;
        const int code = LoginAt(device, certId, pin.text);
        if (code != kServicePinWrong) return code;
        error = "PIN码错误";
    }
    return kServicePinWrong;
}

int KeyRing::SignDigest(const std::string& certId, HashAlgorithm hash, std::string_view digest,
                        std::string& signature) {
    KeyDevice* device = DeviceOf(certId);
    if (!device) return kServiceNoSuchCertificate;
    if (!device->IsLoggedIn(certId)) {
        // A certificate that is gone is told as such, before anybody is asked.
        std::string der;
        if (const int code = device->ExportCertificate(certId, der)) return code;
        if (!device->TakesPin()) return kServiceScanNeeded;
        if (const int code = AskForPin(*device, certId)) return code;
    }
    return device->SignDigest(certId, hash, digest, signature);
}

int KeyRing::FileList(const std::string& certId, std::string& list) {
    KeyDevice* device = DeviceOf(certId);
    if (!device) return kServiceNoSuchCertificate;
    std::vector<std::string> names;
    if (const int code = device->ListFiles(certId, names)) return code;
    list.clear();
    for (const std::string& name : names) {
        if (IsListable(name)) list.append(name).append(kRecordEnd);
    }
    return kServiceOk;
}

int KeyRing::ReadFile(const std::string& certId, const std::string& name, std::string& content) {
    KeyDevice* device = DeviceOf(certId);
    return device ? device->ReadFile(certId, name, content) : kServiceNoSuchCertificate;
}
