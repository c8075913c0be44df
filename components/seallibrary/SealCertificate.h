// SealCertificate.h - what the seal library reads out of a certificate by itself.
#pragma once

#include <openssl/x509.h>

#include <ctime>
#include <memory>
#include <string>
#include <string_view>

#include "components/crypto/Algorithm.h"
#include "components/crypto/Handles.h"

// One certificate: a seal maker's, or a signer's. Copies share what was read.
class CSealCertificate {
public:
    // False unless `der` is one certificate and nothing else, with a public key and a validity
    // that can be read.
    bool Read(std::string_view der);

    EVP_PKEY* Key() const { return X509_get0_pubkey(m_certificate.get()); }
    const X509* Get() const { return m_certificate.get(); }
    // The hash algorithm that goes with its kind of key in seals.
    HashAlgorithm Hash() const;
    // The dotted form of the only signature algorithm that a seal may name for this key; empty for
    // a key that is neither SM2 nor RSA.
    std::string SignatureAlgorithm() const;
    // As MaySignDocuments: false for the certificate of a key pair for encryption, whose private
    // key others hold, and for one whose critical purposes are others.
    bool MaySign() const;
    bool IsValidAt(std::time_t time) const { return time >= m_notBefore && time <= m_notAfter; }
    // Hexadecimal, capital letters, no leading zeros.
    std::string SerialNumber() const;

    // True if `algorithm` (dotted) is SignatureAlgorithm() and the signature over `data` is good.
    bool Verify(const std::string& algorithm, std::string_view data,
                std::string_view signature) const;

private:
    std::shared_ptr<X509> m_certificate;
    std::string m_za;  // Sm2Za of its key; empty for another kind of key
    std::time_t m_notBefore = 0;
    std::time_t m_notAfter = 0;
};

// Hexadecimal, capital letters, no leading zeros.
std::string SerialText(const ASN1_INTEGER* serial);
// The content of the time, read as ReadAsn1Time reads it. False if it can't be.
bool TimeOf(const ASN1_TIME* text, std::time_t& time);
