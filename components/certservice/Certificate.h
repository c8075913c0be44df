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

// Remembers the certificates that were parsed last: one signature asks about the same one six
// times, and the verification of a seal about its signer and its maker in turn. Nothing is
// remembered but what stands in them.
class CertificateCache {
public:
    static constexpr std::size_t kMost = 8;

    // As ParseCertificate. Belongs to the cache, and, without a reference of the caller's, stays
    // until it is the one that was asked for longest ago of more than kMost.
    X509* Parse(std::string_view der);
    // DigestForKey with the key of a certificate, whose ZA is remembered with it; empty on failure
    // and for bytes that are no certificate.
    std::string DigestFor(std::string_view der, HashAlgorithm hash, std::string_view data);

private:
    struct Entry {
        std::string der;
        CertificateHandle certificate;
        std::string za;
    };

    // Null if it is none.
    Entry* Find(std::string_view der);

    std::vector<Entry> m_entries;  // the latest first
};
