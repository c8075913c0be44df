// StampAuthority.h - a time-stamp authority in memory, RSA or SM2, whose tokens and responses are
// put together byte by byte, so that any step of their verification can be made to fail.
#pragma once

#include <string>
#include <vector>

#include "components/certservice/DevelopmentCa.h"

enum class Ess { kVersion1, kVersion2, kBoth, kNone, kOtherCertificate, kOtherIssuer };

// What a token shall say; as it stands, a good one.
struct TokenPlan {
    std::string imprint{};  // the hash, not the data
    HashAlgorithm imprintHash = HashAlgorithm::kSha256;
    std::time_t time = 0;    // 0: now
    std::string fraction{};  // behind the seconds: ".25"
    Ess ess = Ess::kVersion2;
    bool national = false;  // identifiers of GM/T 0010 in place of RFC 5652's
    bool plainSm3 = true;   // the messageDigest of an SM2 token: the plain hash, or e
    bool withCertificate = true;
    bool withAttributes = true;
    std::vector<std::string> otherCertificates{};  // DER
    std::string digest{};                          // a messageDigest of one's own
    std::string contentType = "1.2.840.113549.1.9.16.1.4";
    std::string accuracy{};       // contents of the Accuracy; empty: 2 s, 5 ms, 7 us
    std::string extensions{};     // DER of [1] in the TSTInfo
    std::string authorityName{};  // common name in the TSTInfo's tsa; empty: none
};

class StampAuthority {
public:
    // Its certificate is `issuer`'s; a request without extendedKeyUsage gets a good one.
    StampAuthority(const DevelopmentCa& issuer, KeyKind kind, CertificateRequest request = {});

    std::string Token(const TokenPlan& plan) const;
    // A response with `token`, or none, of that status (RFC 3161: 0 granted, 1 with changes).
    static std::string Response(const std::string& token, int status = 0);

    std::string Certificate() const;  // DER
    std::string CertificatePem() const;
    EVP_PKEY* Key() const { return m_key.get(); }

private:
    std::string SignerInfo(const TokenPlan& plan, const std::string& content) const;
    std::vector<std::string> Attributes(const TokenPlan& plan, const std::string& content) const;

    KeyKind m_kind;
    KeyHandle m_key;
    CertificateHandle m_certificate;
};
