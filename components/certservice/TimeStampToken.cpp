#include "components/certservice/TimeStampToken.h"

#include <openssl/x509v3.h>

#include "components/certservice/Certificate.h"
#include "components/certservice/EssCertificateId.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignatureAlgorithm.h"
#include "components/crypto/Signature.h"

namespace {

constexpr char kTstInfo[] = "1.2.840.113549.1.9.16.1.4";
constexpr int kContent = 1;
constexpr int kCritical = 1;

using TimeHandle = OpenSslHandle<ASN1_TIME, ASN1_TIME_free>;

// Counted from 1970, as the C library's calendars end early on some systems.
bool SecondsOf(const ASN1_GENERALIZEDTIME* time, std::time_t& seconds) {
    const TimeHandle epoch(ASN1_TIME_set(nullptr, 0));
    int days = 0;
    int rest = 0;
    if (!time || ASN1_STRING_length(time) < 1 || !epoch ||
        ASN1_STRING_get0_data(time)[ASN1_STRING_length(time) - 1] != 'Z' ||
        ASN1_TIME_diff(&days, &rest, epoch.get(), time) != 1) {
        return false;
    }
    seconds = static_cast<std::time_t>(days) * 86'400 + rest;
    return true;
}

// The token's codes for what a message of any kind can fail at.
int TokenCode(int messageCode) {
    switch (messageCode) {
        case kServiceOk: return kServiceOk;
        case kServiceDigestMismatch: return kServiceTimeStampDigestMismatch;
        case kServiceSignatureInvalid: return kServiceTimeStampSignatureInvalid;
        case kServiceAlgorithmUnknown: return kServiceTimeStampAlgorithmUnknown;
        case kServiceSignerMissing: return kServiceTimeStampCertificateMissing;
    }
    return kServiceTimeStampDamaged;
}

// Each attribute that is there has to name the certificate, and one has to be there.
bool IsBound(const SignedMessage& message, X509* certificate) {
    bool bound = false;
    for (const auto& [kind, hash] :
         {std::pair(NID_id_smime_aa_signingCertificate, HashAlgorithm::kSha1),
          std::pair(NID_id_smime_aa_signingCertificateV2, HashAlgorithm::kSha256)}) {
        for (const std::string& value : message.SignedAttribute(kind)) {
            if (!NamesCertificate(value, hash, certificate)) return false;
            bound = true;
        }
    }
    return bound;
}

// A name that the token gives its authority has to be one of the certificate's.
bool IsNamed(const GENERAL_NAME* name, X509* certificate) {
    if (!name) return true;
    if (name->type == GEN_DIRNAME &&
        X509_NAME_cmp(name->d.directoryName, X509_get_subject_name(certificate)) == 0) {
        return true;
    }
    const OpenSslHandle<GENERAL_NAMES, GENERAL_NAMES_free> others(static_cast<GENERAL_NAMES*>(
        X509_get_ext_d2i(certificate, NID_subject_alt_name, nullptr, nullptr)));
    for (int i = 0; i < sk_GENERAL_NAME_num(others.get()); ++i) {
        GENERAL_NAME* other = sk_GENERAL_NAME_value(others.get(), i);
        if (GENERAL_NAME_cmp(other, const_cast<GENERAL_NAME*>(name)) == 0) return true;
    }
    return false;
}

std::string_view BytesOf(const ASN1_STRING* text) {
    return {reinterpret_cast<const char*>(ASN1_STRING_get0_data(text)),
            static_cast<size_t>(ASN1_STRING_length(text))};
}

}  // namespace

TimeStampToken::TimeStampToken(std::string_view token, std::unique_ptr<SignedMessage> message,
                               InfoHandle info, std::time_t time)
    : m_token(token), m_message(std::move(message)), m_info(std::move(info)), m_time(time) {}

std::unique_ptr<TimeStampToken> TimeStampToken::Parse(std::string_view token) {
    auto message = SignedMessage::Parse(token);
    if (!message || message->ContentType() != kTstInfo || message->CountSigners() != 1) {
        return nullptr;
    }
    std::string content;
    message->Field(kContent, content);
    const auto* cursor = reinterpret_cast<const unsigned char*>(content.data());
    const auto* end = cursor + content.size();
    InfoHandle info(d2i_TS_TST_INFO(nullptr, &cursor, static_cast<long>(content.size())));
    std::time_t time = 0;
    if (!info || cursor != end || TS_TST_INFO_get_version(info.get()) != 1 ||
        TS_TST_INFO_get_ext_by_critical(info.get(), kCritical, -1) >= 0 ||
        !SecondsOf(TS_TST_INFO_get_time(info.get()), time)) {
        return nullptr;
    }
    return std::unique_ptr<TimeStampToken>(
        new TimeStampToken(token, std::move(message), std::move(info), time));
}

std::optional<HashAlgorithm> TimeStampToken::ImprintHash() const {
    return HashOf(TS_MSG_IMPRINT_get_algo(TS_TST_INFO_get_msg_imprint(m_info.get())));
}

int TimeStampToken::CheckImprint(std::string_view bytes) const {
    const std::optional<HashAlgorithm> hash = ImprintHash();
    if (!hash || !IsCollisionResistant(*hash)) return kServiceTimeStampAlgorithmUnknown;
    TS_MSG_IMPRINT* imprint = TS_TST_INFO_get_msg_imprint(m_info.get());
    return IsDigest(BytesOf(TS_MSG_IMPRINT_get_msg(imprint)), *hash, bytes)
               ? kServiceOk
               : kServiceTimeStampMismatch;
}

int TimeStampToken::CheckSignature() const {
    X509* certificate = Certificate();
    if (!certificate) return kServiceTimeStampCertificateMissing;
    const std::optional<HashAlgorithm> hash = m_message->SignerHash();
    if (!hash || !IsCollisionResistant(*hash)) return kServiceTimeStampAlgorithmUnknown;
    if (const int code = TokenCode(m_message->VerifyData({}))) return code;
    if (!IsBound(*m_message, certificate) ||
        !IsNamed(TS_TST_INFO_get_tsa(m_info.get()), certificate)) {
        return kServiceTimeStampCertificateUnbound;
    }
    // OpenSSL's purpose is RFC 3161's: a critical extendedKeyUsage of timeStamping alone, and a
    // keyUsage of signatures alone.
    const bool fits = X509_check_purpose(certificate, X509_PURPOSE_TIMESTAMP_SIGN, 0) == 1;
    return fits ? kServiceOk : kServiceTimeStampPurpose;
}
