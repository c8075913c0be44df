// KeyDevice.h - a place where certificates with their private keys are: the folder of development
// keys, or the tokens behind a PKCS#11 module.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "components/crypto/Algorithm.h"

// One certificate that a device holds together with its private key.
struct DeviceCertificate {
    std::string certId;  // unique over all devices, stable from one listing to the next
    std::string label;   // shown to the user; GBK
    std::string der;
};

// All return a ServiceCode. What a device lists may change between any two calls: a token can be
// pulled at any time.
class KeyDevice {
public:
    virtual ~KeyDevice() = default;

    // How many keys are there to be opened at this moment: the tokens that are plugged in, or one
    // for a folder of keys. An empty key counts.
    virtual int CountKeys() = 0;

    virtual int ListCertificates(std::vector<DeviceCertificate>& certificates) = 0;

    // True if certIds of that form are this device's, present or not. No key is opened for it.
    virtual bool Owns(const std::string& certId) = 0;

    // The DER of one certificate; nobody needs to have logged in. kServiceNoSuchCertificate for a
    // certId never seen here, kServiceKeyRemoved for one that was here and isn't any more.
    virtual int ExportCertificate(const std::string& certId, std::string& der) = 0;

    // Opens the key with its PIN, for the process. The failures are four: wrong PIN, key locked,
    // key removed, key damaged.
    virtual int Login(const std::string& certId, std::string_view pin) = 0;
    virtual int Logout(const std::string& certId) = 0;
    virtual bool IsLoggedIn(const std::string& certId) = 0;
    // Wrong PINs that the key still bears before it locks; -1 if it doesn't tell.
    virtual int RetriesLeft(const std::string& certId) = 0;
    // False if no person could type what Login takes: nobody is asked for it then.
    virtual bool TakesPin() const { return true; }

    // Signs a digest with the private key; somebody has logged in. For an SM2 key `digest` is the
    // 32 bytes e of GB/T 32918.2 (the hash over ZA and message) and the signature is the DER of
    // SEQUENCE { r, s }; for an RSA key it is the message's hash by `hash`, and the signature is
    // RSASSA-PKCS1-v1_5 (RFC 8017, section 8.2).
    virtual int SignDigest(const std::string& certId, HashAlgorithm hash, std::string_view digest,
                           std::string& signature) = 0;

    // Files that stand beside a certificate in its key, in the order of their names.
    virtual int ListFiles(const std::string& certId, std::vector<std::string>& names) = 0;
    virtual int ReadFile(const std::string& certId, const std::string& name,
                         std::string& content) = 0;
    virtual int WriteFile(const std::string& certId, const std::string& name,
                          std::string_view content) = 0;
};
