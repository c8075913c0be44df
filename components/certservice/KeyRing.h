// KeyRing.h - all keys of the process: its devices, who has logged in, and the question for a PIN.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "components/certservice/KeyDevice.h"
#include "components/certservice/pinentry/PinEntry.h"

// All return a ServiceCode. kServiceNoSuchCertificate: no device knows that certId.
class KeyRing {
public:
    KeyRing(std::vector<std::unique_ptr<KeyDevice>> devices, std::unique_ptr<PinEntry> pinEntry);

    int CountKeys();
    // Records of label "||" certId "&&&"; separators within a label are taken out of it. A device
    // that fails is left out; its code counts only if no other device has a certificate.
    int UserList(std::string& list);
    int ExportCertificate(const std::string& certId, std::string& der);

    // Both are for the process.
    int Login(const std::string& certId, std::string_view pin);
    int Logout(const std::string& certId);
    // The certId of the last login that worked, by Login or by the PIN entry; empty: none, or it
    // has logged out since.
    const std::string& LastLogin() const { return m_lastLogin; }

    // As KeyDevice::SignDigest. Where nobody has logged in the PIN is asked for, and again after a
    // wrong one, three times at most, until the key locks or the user gives up; the login then
    // stands. kServiceScanNeeded: nobody has logged in, and it isn't a PIN that is wanted.
    int SignDigest(const std::string& certId, HashAlgorithm hash, std::string_view digest,
                   std::string& signature);

    // Records of file name "&&&". A name that holds this, ends in "&", or holds a zero byte is left
    // out.
    int FileList(const std::string& certId, std::string& list);
    int ReadFile(const std::string& certId, const std::string& name, std::string& content);

private:
    KeyDevice* DeviceOf(const std::string& certId);
    std::string LabelOf(KeyDevice& device, const std::string& certId);
    int AskForPin(KeyDevice& device, const std::string& certId);
    int LoginAt(KeyDevice& device, const std::string& certId, std::string_view pin);

    std::vector<std::unique_ptr<KeyDevice>> m_devices;
    std::unique_ptr<PinEntry> m_pinEntry;
    std::string m_lastLogin;
};
