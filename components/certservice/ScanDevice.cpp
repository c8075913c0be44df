#include "components/certservice/ScanDevice.h"

#include "components/certservice/ScanPhone.h"
#include "components/certservice/ScanRequest.h"
#include "components/certservice/ServiceCodes.h"

namespace {

// What ails the phone's key is the record's fault, and no PIN that anybody could try again.
int OfPhone(int code) {
    switch (code) {
        case kServiceNoSuchCertificate:
        case kServiceKeyRemoved:
        case kServicePinWrong:
        case kServiceKeyLocked: return kServiceKeyDamaged;
    }
    return code;
}

std::string CertIdOf(const ScanPhone& phone) { return kKeyFolderPrefix + phone.person; }

}  // namespace

ScanDevice::ScanDevice(std::string keyFolder)
    : m_keyFolder(std::move(keyFolder)),
      m_phone(m_keyFolder.empty() ? std::string() : ScanFolderIn(m_keyFolder)) {}

int ScanDevice::CountKeys() { return HasScanPhone(m_keyFolder) ? 1 : 0; }

int ScanDevice::ListCertificates(std::vector<DeviceCertificate>& certificates) {
    DeviceCertificate certificate{kScanCertId, kScanLabel, {}};
    if (ExportCertificate(kScanCertId, certificate.der) == kServiceOk) {
        certificates.push_back(std::move(certificate));
    }
    return kServiceOk;
}

bool ScanDevice::Owns(const std::string& certId) { return certId == kScanCertId; }

int ScanDevice::Locate(const std::string& certId) {
    if (!Owns(certId)) return kServiceNoSuchCertificate;
    if (HasScanPhone(m_keyFolder)) {
        m_seen = true;
        return kServiceOk;
    }
    m_phone.Logout(m_session);
    m_session.clear();
    return m_seen ? kServiceKeyRemoved : kServiceNoSuchCertificate;
}

// Whose certificate it is at this moment.
int ScanDevice::LocatePerson(const std::string& certId, std::string& person) {
    if (const int code = Locate(certId)) return code;
    person = m_session;
    if (HasSession()) return kServiceOk;
    ScanPhone phone;
    if (const int code = ReadScanPhone(m_keyFolder, phone)) return code;
    person = CertIdOf(phone);
    return kServiceOk;
}

bool ScanDevice::HasSession() { return !m_session.empty() && m_phone.IsLoggedIn(m_session); }

int ScanDevice::ExportCertificate(const std::string& certId, std::string& der) {
    std::string person;
    if (const int code = LocatePerson(certId, person)) return code;
    return OfPhone(m_phone.ExportCertificate(person, der));
}

int ScanDevice::Login(const std::string& certId, std::string_view pin) {
    if (const int code = Locate(certId)) return code;
    ScanRequest request;
    if (const int code = ReadScanRequest(pin, request)) return code;
    ScanPhone phone;
    if (const int code = ReadScanPhone(m_keyFolder, phone)) return code;
    switch (phone.answer) {
        case ScanAnswer::kAccept: break;
        case ScanAnswer::kRefuse: return kServiceScanRefused;
        case ScanAnswer::kSilent: return kServiceScanUnanswered;
    }
    const std::string person = CertIdOf(phone);
    if (const int code = m_phone.Login(person, phone.pin)) return OfPhone(code);
    if (m_session != person) m_phone.Logout(m_session);
    m_session = person;
    return kServiceOk;
}

int ScanDevice::Logout(const std::string& certId) {
    if (const int code = Locate(certId)) return code;
    m_phone.Logout(m_session);
    m_session.clear();
    return kServiceOk;
}

bool ScanDevice::IsLoggedIn(const std::string& certId) {
    return Locate(certId) == kServiceOk && HasSession();
}

int ScanDevice::SignDigest(const std::string& certId, HashAlgorithm hash, std::string_view digest,
                           std::string& signature) {
    if (const int code = Locate(certId)) return code;
    if (!HasSession()) return kServiceScanNeeded;
    return m_phone.SignDigest(m_session, hash, digest, signature);
}

int ScanDevice::ListFiles(const std::string& certId, std::vector<std::string>& names) {
    if (const int code = Locate(certId)) return code;
    names.clear();
    return HasSession() ? m_phone.ListFiles(m_session, names) : kServiceOk;
}

int ScanDevice::ReadFile(const std::string& certId, const std::string& name, std::string& content) {
    if (const int code = Locate(certId)) return code;
    return HasSession() ? m_phone.ReadFile(m_session, name, content) : kServiceNoSuchFile;
}

int ScanDevice::WriteFile(const std::string& certId, const std::string& name,
                          std::string_view content) {
    std::string person;
    if (const int code = LocatePerson(certId, person)) return code;
    return OfPhone(m_phone.WriteFile(person, name, content));
}
