// ScanDevice.h - the scan by phone as a development machine has it: a device that shows one
// certificate and nothing else until a phone has answered a request.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "components/certservice/KeyDevice.h"
#include "components/certservice/KeyFolder.h"

// The one certId of the device, be the phone whose it may.
constexpr char kScanCertId[] = "HLVQDefaultContainer/hlvqDev000000000000000000";
constexpr char kScanLabel[] = "手机扫码";

// Stands on the phone of ScanPhone.h; without one there is no device and no certificate. Nothing is
// ever asked of a network. The phone and its answer are read afresh at each call. The certificate
// is the person's, and can be had at any time. From a login to the logout there is a session: it
// has the identity of the person who began it, shows the files of that key, and signs with it.
//
// Besides the codes told below kServiceKeyDamaged: the phone's record can't be read, names a key
// that isn't there, or not its PIN.
class ScanDevice : public KeyDevice {
public:
    // The folder of development keys, without a separator at its end.
    explicit ScanDevice(std::string keyFolder);

    // 1 if there is a phone.
    int CountKeys() override;
    int ListCertificates(std::vector<DeviceCertificate>& certificates) override;
    bool Owns(const std::string& certId) override;
    int ExportCertificate(const std::string& certId, std::string& der) override;

    // `pin` is the request that ReadScanRequest reads, whose codes come first; then
    // kServiceScanRefused, kServiceScanUnanswered: the phone's answer. At once, whatever it is. A
    // failed login leaves a session as it was.
    int Login(const std::string& certId, std::string_view pin) override;
    int Logout(const std::string& certId) override;
    bool IsLoggedIn(const std::string& certId) override;
    int RetriesLeft(const std::string&) override { return -1; }
    // Nobody can type a request.
    bool TakesPin() const override { return false; }
    // kServiceScanNeeded without a session.
    int SignDigest(const std::string& certId, HashAlgorithm hash, std::string_view digest,
                   std::string& signature) override;

    // Without a session there are no files.
    int ListFiles(const std::string& certId, std::vector<std::string>& names) override;
    int ReadFile(const std::string& certId, const std::string& name, std::string& content) override;
    // Onto the phone, with a session or without.
    int WriteFile(const std::string& certId, const std::string& name,
                  std::string_view content) override;

private:
    int Locate(const std::string& certId);
    int LocatePerson(const std::string& certId, std::string& person);
    bool HasSession();

    std::string m_keyFolder;
    KeyFolder m_phone;
    std::string m_session;  // the person's certId in m_phone
    bool m_seen = false;
};
