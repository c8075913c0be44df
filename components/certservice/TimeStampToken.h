// TimeStampToken.h - time-stamp tokens (RFC 3161, section 2.4.2) of RSA and of SM2 authorities
// (GM/T 0033), with the identifiers of either standard.
#pragma once

#include <openssl/ts.h>

#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/certservice/SignedMessage.h"
#include "components/crypto/Handles.h"

class TimeStampToken {
public:
    // Null if `token` isn't a signed message over a TSTInfo, with one signer, whose time can be
    // read and that makes no critical extension a condition.
    static std::unique_ptr<TimeStampToken> Parse(std::string_view token);

    // kServiceOk if the imprint is the hash of `bytes`; else kServiceTimeStampMismatch, or
    // kServiceTimeStampAlgorithmUnknown, also for SHA-1.
    int CheckImprint(std::string_view bytes) const;
    // The hash of the imprint; none for an unknown one.
    std::optional<HashAlgorithm> ImprintHash() const;

    // What the token says by itself: its signature by the certificate inside, that the signed
    // attributes bind that certificate (ESSCertID or ESSCertIDv2, RFC 5816), and that it is one
    // for time stamps and nothing else (RFC 3161, section 2.3). One of the codes
    // kServiceTimeStamp...; a signature by SHA-1 is one of an unknown algorithm. The chain isn't
    // looked at.
    int CheckSignature() const;

    std::time_t Time() const { return m_time; }
    // The authority's certificate; null if the token lacks it. Belongs to the token.
    X509* Certificate() const { return m_message->SignerCertificate(); }
    const std::vector<CertificateHandle>& Certificates() const { return m_message->Certificates(); }

    // A field as docs/certservice.md numbers them; what the token doesn't say is empty.
    // kServiceNoSuchField for another number, kServiceTimeStampCertificateMissing.
    int Field(int field, std::string& value) const;

private:
    using InfoHandle = OpenSslHandle<TS_TST_INFO, TS_TST_INFO_free>;
    TimeStampToken(std::string_view token, std::unique_ptr<SignedMessage> message, InfoHandle info,
                   std::time_t time);
    int CertificateText(int field, std::string& value) const;

    std::string m_token;
    std::unique_ptr<SignedMessage> m_message;
    InfoHandle m_info;
    std::time_t m_time;
};
