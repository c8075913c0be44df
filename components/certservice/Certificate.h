// Certificate.h - certificates in memory, ready to be checked.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "components/crypto/Algorithm.h"
#include "components/crypto/Handles.h"

// Null if `der` doesn't begin with a certificate; bytes behind it are left out of account. An SM2
// signature on it is checked with the default id.
CertificateHandle ParseCertificate(std::string_view der);

// All certificates of a file: PEM with any text between, or one in DER. What can't be read is left
// out.
std::vector<CertificateHandle> ReadCertificates(std::string_view content);

std::string PemOf(X509* certificate);

KeyKind KindOfKey(const X509* certificate);
bool IsSelfSigned(X509* certificate);
std::string SerialOf(const X509* certificate);  // hexadecimal, capital letters, whole bytes
// The last common name of the subject in UTF-8; empty if there is none.
std::string CommonNameOf(const X509* certificate);

// Remembers the certificate that was parsed last, as one signature asks about the same one six
// times.
class CertificateCache {
public:
    // As ParseCertificate. Belongs to the cache, and stays until the next call with another one.
    X509* Parse(std::string_view der);
    // DigestForKey with the key of a certificate, whose ZA is remembered with it; empty on failure
    // and for bytes that are no certificate.
    std::string DigestFor(std::string_view der, HashAlgorithm hash, std::string_view data);

private:
    std::string m_der;
    CertificateHandle m_certificate;
    std::string m_za;
};
