// TimeStampToken.h - time-stamp tokens (RFC 3161, section 2.4.2; GB/T 20520), read and verified.
#pragma once

#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "components/crypto/Algorithm.h"

// In the order in which they run; the first that fails ends the check.
enum class TimeStampStep {
    kNone,              // nothing failed
    kStructure,         // a token that can be read, with its one signer's certificate in it
    kImprint,           // it is over these bytes
    kSignature,         // the key of the certificate in it made it
    kNamedCertificate,  // its ESSCertID or ESSCertIDv2 (RFC 5816) names that certificate
    kPurpose,           // the certificate is for time stamps and nothing else, critically
};

// Gives the plain hash of the stamped bytes; empty if it can't be had.
using ImprintDigest = std::function<std::string(HashAlgorithm algorithm)>;

// One token. With RFC 5652's object identifiers or those of GM/T 0010, signed by RSA or SM2.
class CTimeStampToken {
public:
    CTimeStampToken();
    ~CTimeStampToken();
    CTimeStampToken(const CTimeStampToken&) = delete;
    CTimeStampToken& operator=(const CTimeStampToken&) = delete;

    // False unless `der` is one token and nothing else, with one signer and a genTime. All that is
    // told below is of the last token that was read; nothing after a failure.
    bool Read(std::string_view der);

    // All but the trust in the authority's certificate, which is left to the caller, as is whether
    // that was valid at Time().
    TimeStampStep Verify(const ImprintDigest& digest) const;

    // genTime, without its fraction.
    std::time_t Time() const { return m_time; }
    // The hash that the imprint is made with; kSm3 until a token was read.
    HashAlgorithm ImprintHash() const { return m_hash; }
    const std::string& Imprint() const { return m_imprint; }
    // DER of the signer's certificate; empty if the token has none.
    const std::string& Certificate() const { return m_certificate; }
    // Hexadecimal, capital letters, no leading zeros.
    const std::string& SerialNumber() const { return m_serial; }
    // Dotted.
    const std::string& Policy() const { return m_policy; }

private:
    struct Parts;

    std::unique_ptr<Parts> m_parts;
    std::time_t m_time = 0;
    HashAlgorithm m_hash = HashAlgorithm::kSm3;
    std::string m_imprint;
    std::string m_certificate;
    std::string m_serial;
    std::string m_policy;
};

// A short English text (ASCII) for the step, such as "the imprint".
const char* StepText(TimeStampStep step);
