#include <cstdint>
#include <cstdio>

#include "components/certservice/Certificate.h"
#include "components/certservice/CertificateText.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignatureAlgorithm.h"
#include "components/certservice/TimeStampToken.h"

namespace {

// As docs/certservice.md lists them.
enum TimeStampFieldNumber {
    kTime = 1,
    kSerial = 2,
    kPolicy = 3,
    kAuthorityName = 4,
    kAuthorityCertificate = 5,
    kImprintAlgorithm = 6,
    kImprint = 7,
    kToken = 8,
    kAccuracy = 9,
    kNonce = 10,
    kOrdering = 11,
};
constexpr int kSubjectName = 33;  // of CertificateField

std::string_view BytesOf(const ASN1_STRING* text) {
    return {reinterpret_cast<const char*>(ASN1_STRING_get0_data(text)),
            static_cast<size_t>(ASN1_STRING_length(text))};
}

std::string HexOf(const ASN1_INTEGER* number) {
    if (!number) return {};
    const BignumHandle value(ASN1_INTEGER_to_BN(number, nullptr));
    return value ? TakeText(BN_bn2hex(value.get())) : std::string();
}

// A part that isn't there is 0. False for one that is negative or above `highest`.
bool PartOf(const ASN1_INTEGER* number, std::int64_t highest, std::int64_t& value) {
    value = 0;
    if (!number) return true;
    return ASN1_INTEGER_get_int64(&value, number) == 1 && value >= 0 && value <= highest;
}

// Seconds with six digits behind the point; empty if a part is none of RFC 3161 (section 2.4.2).
std::string AccuracyText(const TS_ACCURACY* accuracy) {
    constexpr std::int64_t kMostThousandths = 999;
    std::int64_t seconds = 0;
    std::int64_t millis = 0;
    std::int64_t micros = 0;
    if (!accuracy || !PartOf(TS_ACCURACY_get_seconds(accuracy), INT64_MAX, seconds) ||
        !PartOf(TS_ACCURACY_get_millis(accuracy), kMostThousandths, millis) ||
        !PartOf(TS_ACCURACY_get_micros(accuracy), kMostThousandths, micros)) {
        return {};
    }
    char text[64];
    std::snprintf(text, sizeof text, "%lld.%03lld%03lld", static_cast<long long>(seconds),
                  static_cast<long long>(millis), static_cast<long long>(micros));
    return text;
}

std::string HashName(const std::optional<HashAlgorithm>& hash, const X509_ALGOR* algorithm) {
    if (hash) {
        switch (*hash) {
            case HashAlgorithm::kSm3: return "SM3";
            case HashAlgorithm::kSha1: return "SHA1";
            case HashAlgorithm::kSha256: return "SHA256";
            case HashAlgorithm::kSha384: return "SHA384";
            case HashAlgorithm::kSha512: return "SHA512";
        }
    }
    const ASN1_OBJECT* object = nullptr;
    X509_ALGOR_get0(&object, nullptr, nullptr, algorithm);
    return OidText(object);
}

}  // namespace

int TimeStampToken::CertificateText(int field, std::string& value) const {
    X509* certificate = Certificate();
    if (!certificate) return kServiceTimeStampCertificateMissing;
    if (field == kAuthorityName) return CertificateField(certificate, kSubjectName, value);
    value = DerOf<i2d_X509>(certificate);
    return kServiceOk;
}

int TimeStampToken::Field(int field, std::string& value) const {
    TS_MSG_IMPRINT* imprint = TS_TST_INFO_get_msg_imprint(m_info.get());
    switch (field) {
        case kTime: value = BytesOf(TS_TST_INFO_get_time(m_info.get())); break;
        case kSerial: value = HexOf(TS_TST_INFO_get_serial(m_info.get())); break;
        case kPolicy: value = OidText(TS_TST_INFO_get_policy_id(m_info.get())); break;
        case kAuthorityName:
        case kAuthorityCertificate: return CertificateText(field, value);
        case kImprintAlgorithm:
            value = HashName(ImprintHash(), TS_MSG_IMPRINT_get_algo(imprint));
            break;
        case kImprint: value = BytesOf(TS_MSG_IMPRINT_get_msg(imprint)); break;
        case kToken: value = m_token; break;
        case kAccuracy: value = AccuracyText(TS_TST_INFO_get_accuracy(m_info.get())); break;
        case kNonce: value = HexOf(TS_TST_INFO_get_nonce(m_info.get())); break;
        case kOrdering: value = TS_TST_INFO_get_ordering(m_info.get()) ? "1" : "0"; break;
        default: return kServiceNoSuchField;
    }
    return kServiceOk;
}
