// KeyFolder.h - development keys: a folder of the file system that holds one folder for each
// certificate with its private key.
//
// For development and tests alone: a copy of the folder brings the tries of a PIN back, and the
// private key stands in this process's memory while somebody is logged in.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "components/certservice/KeyDevice.h"
#include "components/crypto/Handles.h"
#include "components/crypto/Signature.h"

constexpr char kKeyFolderPrefix[] = "DevKeys/";
constexpr int kPinTries = 6;
constexpr size_t kMaximumKeyName = 48;
// Whether a key's folder may have that name: letters, digits, "-", "_" and ".", no "." in front,
// and none that a system keeps for itself ("con").
bool IsKeyName(std::string_view name);

// certIds are kKeyFolderPrefix and the name of the certificate's folder. The label is the
// certificate's common name, or the folder's name where it has none. Passwords and PINs are bytes
// of any encoding. Two processes may use one folder at the same time.
class KeyFolder : public KeyDevice {
public:
    // `folder` has no separator at its end and need not exist; then there is no key.
    explicit KeyFolder(std::string folder);

    int CountKeys() override;
    // In the order of the folders' names. A folder whose certificate can't be read is left out.
    int ListCertificates(std::vector<DeviceCertificate>& certificates) override;
    bool Owns(const std::string& certId) override;
    int ExportCertificate(const std::string& certId, std::string& der) override;

    // The counter of tries is lowered, and safe on the disk, before the PIN is tried, and set back
    // when it was right. After kPinTries wrong ones in a row the key is locked for good. Needs
    // about 40 ms. An empty PIN is wrong and costs no try.
    int Login(const std::string& certId, std::string_view pin) override;
    int Logout(const std::string& certId) override;
    bool IsLoggedIn(const std::string& certId) override;
    int RetriesLeft(const std::string& certId) override;
    int SignDigest(const std::string& certId, HashAlgorithm hash, std::string_view digest,
                   std::string& signature) override;

    int ListFiles(const std::string& certId, std::vector<std::string>& names) override;
    int ReadFile(const std::string& certId, const std::string& name, std::string& content) override;
    // Replaces a file of that name as a whole. A name with a separator, or longer than 64 bytes, or
    // one that begins with a dot, holds "&&&" or ends in "&" is a bad argument.
    int WriteFile(const std::string& certId, const std::string& name,
                  std::string_view content) override;

    // Stores an SM2 key or an RSA key of 2048 to 4096 bits with its certificate under `pin`, and
    // gives the certId. `name` may have letters, digits, "-", "_" and "."; empty: the certificate's
    // serial number. Makes the folder. kServiceBadArgument: the name can't be used or is taken, or
    // the PIN is empty; kServiceAlgorithmUnknown: another kind of key; kServiceCertificateDamaged:
    // the certificate can't be read or isn't the key's; kServiceFileUnreadable: can't be written.
    int Store(const std::string& name, EVP_PKEY* privateKey, std::string_view certificate,
              std::string_view pin, std::string& certId);
    // Gives a locked key all its tries back.
    int Unlock(const std::string& certId);

private:
    struct OpenKey {
        SigningKey key;
        std::string certificate;
    };

    std::string PathOf(const std::string& certId) const;
    int Locate(const std::string& certId, std::string& path);
    int TryPin(const std::string& path, std::string_view pin, KeyHandle& key);

    std::string m_folder;
    std::map<std::string, OpenKey, std::less<>> m_open;
    std::set<std::string, std::less<>> m_seen;
};
