#include "components/certservice/CertService.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignatureAlgorithm.h"
#include "components/certservice/StampMessage.h"
#include "components/certservice/TimeStampRequest.h"
#include "components/certservice/TimeStampToken.h"
#include "components/crypto/Signature.h"

namespace {

constexpr int kSignatureValue = 3;

// The time stamp that a message carries, and the signature value that it should be over.
struct Stamped {
    std::unique_ptr<TimeStampToken> token;
    std::string value;
};

int ReadStamped(const std::shared_ptr<const SignedMessage>& message, Stamped& stamped) {
    if (!message) return kServiceMessageDamaged;
    const auto tokens = message->UnsignedAttribute(NID_id_smime_aa_timeStampToken);
    if (tokens.empty()) return kServiceTimeStampMissing;
    // With several a reader would choose, and another one otherwise.
    if (tokens.size() > 1) return kServiceTimeStampDamaged;
    stamped.token = TimeStampToken::Parse(tokens.front());
    if (!stamped.token) return kServiceTimeStampDamaged;
    return message->Field(kSignatureValue, stamped.value);
}

int CodeOf(CertificateVerdict verdict) {
    switch (verdict) {
        case kCertificateGood: return kServiceOk;
        case kCertificateUntrusted: return kServiceTimeStampUntrusted;
        case kCertificateExpired: return kServiceTimeStampExpired;
        case kCertificateNotYetValid: return kServiceTimeStampNotYetValid;
        case kCertificateRevoked: return kServiceTimeStampRevoked;
        case kCertificateIssuerRevoked: return kServiceTimeStampIssuerRevoked;
        case kCertificateRevocationUndecided: return kServiceTimeStampRevocationUndecided;
    }
    return kServiceUnknownFailure;
}

int CheckStamp(const TimeStampToken& token, std::string_view bytes) {
    if (const int code = token.CheckImprint(bytes)) return code;
    return token.CheckSignature();
}

}  // namespace

int CertService::MakeTimeStampRequest(int algorithm, std::string_view hash, bool wantsCertificate,
                                      std::string& request) {
    const auto named = HashByNumber(algorithm);
    if (!named) return kServiceAlgorithmUnknown;
    if (hash.size() != DigestSize(*named)) return kServiceBadArgument;
    return ::MakeTimeStampRequest(*named, hash, wantsCertificate, request);
}

int CertService::AddTimeStamp(std::string_view response, std::string_view signedData,
                              std::string& stamped) {
    const bool isMessage = signedData.size() >= kShortestMessage;
    std::string value(signedData);
    if (isMessage) {
        const auto message = ReadMessage(signedData);
        if (!message) return kServiceMessageDamaged;
        message->Field(kSignatureValue, value);
    }
    std::string bytes;
    if (const int code = TokenOfResponse(response, bytes)) return code;
    const auto token = TimeStampToken::Parse(bytes);
    if (!token) return kServiceTimeStampDamaged;
    if (token->ImprintHash() != HashAlgorithm::kSha256) return kServiceTimeStampMismatch;
    if (const int code = CheckStamp(*token, value)) return code;
    stamped = isMessage ? StampMessage(signedData, bytes) : bytes;
    return stamped.empty() ? kServiceMessageDamaged : kServiceOk;
}

int CertService::VerifyTimeStamp(std::string_view message, std::time_t now) {
    Stamped stamped;
    if (const int code = ReadStamped(ReadMessage(message), stamped)) return code;
    if (const int code = CheckStamp(*stamped.token, stamped.value)) return code;
    return CodeOf(m_process->trust.ValidateStamper(
        stamped.token->Certificate(), stamped.token->Certificates(), m_revocationList.get(),
        stamped.token->Time(), now));
}

int CertService::TimeStampField(std::string_view message, int field, std::string& value) {
    Stamped stamped;
    if (const int code = ReadStamped(ReadMessage(message), stamped)) return code;
    return stamped.token->Field(field, value);
}
