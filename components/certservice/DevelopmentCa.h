// DevelopmentCa.h - a certificate authority for development, tests and the demo. Its private key
// lies unprotected in a file: nobody else may trust it.
#pragma once

#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "components/crypto/Algorithm.h"
#include "components/crypto/Handles.h"

// What a certificate shall say. Texts are GBK; an empty one leaves its part out.
struct CertificateRequest {
    std::string country = "CN";
    std::string organization{};
    std::string organizationalUnit{};
    std::string commonName{};
    std::string email{};              // a subject alternative name
    std::string serial{};             // hexadecimal, up to 20 bytes; empty: 16 random bytes
    std::time_t notBefore = 0;        // 0: an hour ago
    std::time_t notAfter = 0;         // 0: three years after notBefore
    std::string distributionPoint{};  // URL of the revocation list
    std::string extendedKeyUsage{};   // as OpenSSL's settings write it ("critical,timeStamping")
    std::string keyUsage{};  // the same; empty: critical, digitalSignature and nonRepudiation
    // Further extensions that aren't critical: object identifier and the DER of the value.
    std::vector<std::pair<std::string, std::string>> extensions{};
};

struct RevokedCertificate {
    std::string serial;  // hexadecimal
    std::time_t when = 0;
};

class DevelopmentCa {
public:
    // The authority of that kind in `caFolder` (sm2.pem or rsa.pem, key and certificate). One that
    // isn't there is made, valid for twenty years (RSA with 2048 bits). Either way its certificate
    // stands in `trustFolder` afterwards (velmora-development-sm2.pem or -rsa.pem). Both folders
    // are made if need be. Null, with `code` a ServiceCode, if that fails.
    static std::unique_ptr<DevelopmentCa> Open(KeyKind kind, const std::string& caFolder,
                                               const std::string& trustFolder, int& code);
    // A self-signed authority in memory alone. Null on failure.
    static std::unique_ptr<DevelopmentCa> Make(KeyKind kind, const CertificateRequest& subject);

    // The same below this one. Null on failure.
    std::unique_ptr<DevelopmentCa> MakeSubordinate(KeyKind kind, const CertificateRequest& subject);

    // A certificate for signatures, unless the request has a keyUsage of its own. Empty on
    // failure, such as a serial number that is none.
    std::string Issue(EVP_PKEY* subjectKey, const CertificateRequest& request) const;

    // A revocation list (version 2) in DER; empty on failure.
    std::string RevocationList(const std::vector<RevokedCertificate>& revoked,
                               std::time_t thisUpdate, std::time_t nextUpdate) const;

    std::string Certificate() const;  // DER
    std::string CertificatePem() const;
    EVP_PKEY* Key() const { return m_key.get(); }

private:
    DevelopmentCa(KeyHandle key, CertificateHandle certificate);

    KeyHandle m_key;
    CertificateHandle m_certificate;
};
