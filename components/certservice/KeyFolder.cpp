#include "components/certservice/KeyFolder.h"

#include <algorithm>

#include "components/certservice/Certificate.h"
#include "components/certservice/DurableFile.h"
#include "components/certservice/KeyRecord.h"
#include "components/certservice/ServiceCodes.h"
#include "components/crypto/Signature.h"
#include "platform/CodePage.h"
#include "platform/Files.h"

namespace {

constexpr size_t kMaximumFileName = 64;

// "&&&" separates the names in the list of files; a name that ends in "&" would run into it.
bool IsFileName(std::string_view name) {
    return IsPlainName(name) && name.size() <= kMaximumFileName && name.front() != '.' &&
           name.back() != '&' && name.find("&&&") == std::string_view::npos;
}

std::string LabelOf(std::string_view der, const std::string& name) {
    const CertificateHandle certificate = ParseCertificate(der);
    const std::string commonName = certificate ? CommonNameOf(certificate.get()) : std::string();
    return commonName.empty() ? name : platform::AnsiFromUtf8(commonName);
}

bool IsStorable(EVP_PKEY* key) {
    switch (KindOfKey(key)) {
        case KeyKind::kSm2: return true;
        case KeyKind::kRsa: return EVP_PKEY_get_bits(key) >= 2048 && EVP_PKEY_get_bits(key) <= 4096;
        case KeyKind::kOther: break;
    }
    return false;
}

bool BelongTogether(EVP_PKEY* key, X509* certificate) {
    return certificate && EVP_PKEY_eq(X509_get0_pubkey(certificate), key) == 1;
}

}  // namespace

bool IsKeyName(std::string_view name) {
    constexpr std::string_view kAllowed =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.";
    return !name.empty() && name.size() <= kMaximumKeyName && name.front() != '.' &&
           name.find_first_not_of(kAllowed) == std::string_view::npos && IsPlainName(name);
}

KeyFolder::KeyFolder(std::string folder) : m_folder(std::move(folder)) {}

int KeyFolder::CountKeys() {
    return !m_folder.empty() && platform::IsDirectory(m_folder.c_str()) ? 1 : 0;
}

int KeyFolder::ListCertificates(std::vector<DeviceCertificate>& certificates) {
    if (m_folder.empty()) return kServiceOk;
    for (const std::string& name : FoldersIn(m_folder)) {
        DeviceCertificate certificate;
        certificate.certId = kKeyFolderPrefix + name;
        if (!IsKeyName(name)) continue;
        if (ExportCertificate(certificate.certId, certificate.der) != kServiceOk) continue;
        certificate.label = LabelOf(certificate.der, name);
        certificates.push_back(std::move(certificate));
    }
    return kServiceOk;
}

bool KeyFolder::Owns(const std::string& certId) { return certId.starts_with(kKeyFolderPrefix); }

// Empty for what can't be the certId of a key here, so that no certId leads out of the folder.
std::string KeyFolder::PathOf(const std::string& certId) const {
    if (m_folder.empty() || !certId.starts_with(kKeyFolderPrefix)) return {};
    const std::string name = certId.substr(sizeof kKeyFolderPrefix - 1);
    return IsKeyName(name) ? m_folder + platform::PathSeparator() + name : std::string();
}

int KeyFolder::Locate(const std::string& certId, std::string& path) {
    path = PathOf(certId);
    if (path.empty()) return kServiceNoSuchCertificate;
    if (platform::IsDirectory(path.c_str())) {
        if (!m_seen.contains(certId)) m_seen.insert(certId);
        return kServiceOk;
    }
    m_open.erase(certId);
    return m_seen.contains(certId) ? kServiceKeyRemoved : kServiceNoSuchCertificate;
}

int KeyFolder::ExportCertificate(const std::string& certId, std::string& der) {
    std::string path;
    if (const int code = Locate(certId, path)) return code;
    const auto open = m_open.find(certId);
    if (open == m_open.end()) return ReadRecordCertificate(path, der);
    der = open->second.certificate;
    return kServiceOk;
}

int KeyFolder::Login(const std::string& certId, std::string_view pin) {
    std::string path;
    if (const int code = Locate(certId, path)) return code;
    OpenKey open;
    if (const int code = ReadRecordCertificate(path, open.certificate)) return code;
    KeyHandle key;
    if (const int code = TryPin(path, pin, key)) return code;
    const CertificateHandle certificate = ParseCertificate(open.certificate);
    if (!BelongTogether(key.get(), certificate.get())) return kServiceKeyDamaged;
    open.key = SigningKey(std::move(key));
    m_open[certId] = std::move(open);
    return kServiceOk;
}

int KeyFolder::TryPin(const std::string& path, std::string_view pin, KeyHandle& key) {
    const FileLock lock(LockPathIn(path));
    if (!lock.Held()) return kServiceFileUnreadable;
    std::string pem;
    if (!ReadWholeFile(KeyPathIn(path), pem)) return kServiceKeyDamaged;
    int tries = 0;
    if (const int code = ReadTries(path, pem, tries)) return code;
    if (tries == 0) return kServiceKeyLocked;
    if (pin.empty()) return kServicePinWrong;
    if (const int code = WriteTries(path, pem, tries - 1)) return code;
    const int code = DecryptKey(pem, pin, key);
    if (code == kServicePinWrong) return tries > 1 ? kServicePinWrong : kServiceKeyLocked;
    if (code) return code;
    return WriteTries(path, pem, kPinTries);
}

int KeyFolder::Logout(const std::string& certId) {
    std::string path;
    if (const int code = Locate(certId, path)) return code;
    m_open.erase(certId);
    return kServiceOk;
}

bool KeyFolder::IsLoggedIn(const std::string& certId) {
    std::string path;
    return Locate(certId, path) == kServiceOk && m_open.contains(certId);
}

int KeyFolder::RetriesLeft(const std::string& certId) {
    std::string path;
    std::string pem;
    int tries = -1;
    if (Locate(certId, path) != kServiceOk || !ReadWholeFile(KeyPathIn(path), pem)) return -1;
    return ReadTries(path, pem, tries) == kServiceOk ? tries : -1;
}

int KeyFolder::SignDigest(const std::string& certId, HashAlgorithm hash, std::string_view digest,
                          std::string& signature) {
    const auto open = m_open.find(certId);
    if (open == m_open.end()) {
        std::string path;
        const int code = Locate(certId, path);
        return code ? code : kServicePinUnavailable;
    }
    signature = open->second.key.Sign(hash, digest);
    return signature.empty() ? kServiceAlgorithmUnknown : kServiceOk;
}

int KeyFolder::ListFiles(const std::string& certId, std::vector<std::string>& names) {
    std::string path;
    if (const int code = Locate(certId, path)) return code;
    names = FilesIn(FilesPathIn(path));
    std::erase_if(names, [](const std::string& name) { return !IsFileName(name); });
    return kServiceOk;
}

int KeyFolder::ReadFile(const std::string& certId, const std::string& name, std::string& content) {
    std::string path;
    if (const int code = Locate(certId, path)) return code;
    if (!IsFileName(name)) return kServiceNoSuchFile;
    const std::string file = FilesPathIn(path) + platform::PathSeparator() + name;
    if (ReadWholeFile(file, content)) return kServiceOk;
    return platform::PathExists(file.c_str()) ? kServiceFileUnreadable : kServiceNoSuchFile;
}

int KeyFolder::WriteFile(const std::string& certId, const std::string& name,
                         std::string_view content) {
    std::string path;
    if (const int code = Locate(certId, path)) return code;
    if (!IsFileName(name)) return kServiceBadArgument;
    const FileLock lock(LockPathIn(path));
    const std::string folder = FilesPathIn(path);
    if (!lock.Held() || !MakePrivateFolder(folder)) return kServiceFileUnreadable;
    return WriteDurably(folder + platform::PathSeparator() + name, content)
               ? kServiceOk
               : kServiceFileUnreadable;
}

int KeyFolder::Store(const std::string& name, EVP_PKEY* privateKey, std::string_view certificate,
                     std::string_view pin, std::string& certId) {
    if (!IsStorable(privateKey)) return kServiceAlgorithmUnknown;
    const CertificateHandle parsed = ParseCertificate(certificate);
    if (!BelongTogether(privateKey, parsed.get())) return kServiceCertificateDamaged;
    const std::string id = kKeyFolderPrefix + (name.empty() ? SerialOf(parsed.get()) : name);
    const std::string path = PathOf(id);
    if (path.empty() || pin.empty()) return kServiceBadArgument;
    if (platform::PathExists(path.c_str())) return kServiceBadArgument;
    if (!MakePrivateFolder(FilesPathIn(path))) return kServiceFileUnreadable;
    const std::string pem = EncryptKey(privateKey, pin);
    if (pem.empty()) return kServiceUnknownFailure;
    if (!WriteDurably(KeyPathIn(path), pem)) return kServiceFileUnreadable;
    if (const int code = WriteTries(path, pem, kPinTries)) return code;
    // The certificate comes last: a folder without it isn't listed.
    if (!WriteDurably(CertificatePathIn(path), PemOf(parsed.get()))) return kServiceFileUnreadable;
    certId = id;
    return kServiceOk;
}

int KeyFolder::Unlock(const std::string& certId) {
    std::string path;
    if (const int code = Locate(certId, path)) return code;
    const FileLock lock(LockPathIn(path));
    if (!lock.Held()) return kServiceFileUnreadable;
    std::string pem;
    if (!ReadWholeFile(KeyPathIn(path), pem)) return kServiceKeyDamaged;
    int tries = 0;
    if (const int code = ReadTries(path, pem, tries)) return code;
    return WriteTries(path, pem, kPinTries);
}
