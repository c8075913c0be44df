#include "components/certservice/CertService.h"

#include <optional>
#include <utility>

#include "components/certservice/AmbiguousData.h"
#include "components/certservice/Base64Text.h"
#include "components/certservice/CertificateText.h"
#include "components/certservice/FileHash.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignatureAlgorithm.h"
#include "components/certservice/SignerPurpose.h"
#include "components/crypto/Signature.h"

namespace {

constexpr std::size_t kMostDataKept = 64 * 1024;
constexpr std::size_t kLongestMessageKept = 64 * 1024;

// None if the method isn't for that kind of key.
std::optional<HashAlgorithm> HashOfMethod(int method, KeyKind kind) {
    if (kind == KeyKind::kSm2 && (method == kMethodByKey || method == kMethodSm2)) {
        return HashAlgorithm::kSm3;
    }
    if (kind != KeyKind::kRsa) return std::nullopt;
    if (method == kMethodByKey || method == kMethodRsaSha256) return HashAlgorithm::kSha256;
    return method == kMethodRsaSha1 ? std::optional(HashAlgorithm::kSha1) : std::nullopt;
}

bool IsSigned(EVP_PKEY* key, std::string_view data, std::string_view signature) {
    if (KindOfKey(key) == KeyKind::kSm2) {
        return VerifyData(key, HashAlgorithm::kSm3, data, signature);
    }
    // A plain signature doesn't say its hash.
    for (const HashAlgorithm hash : {HashAlgorithm::kSha256, HashAlgorithm::kSha1,
                                     HashAlgorithm::kSha384, HashAlgorithm::kSha512}) {
        if (VerifyData(key, hash, data, signature)) return true;
    }
    return false;
}

int CheckSigners(const SignedMessage& message) {
    return message.MaySignersSign() ? kServiceOk : kServiceSignerUnfit;
}

}  // namespace

CertService::CertService(std::shared_ptr<ServiceProcess> process) : m_process(std::move(process)) {}

int CertService::SetSignMethod(int method) {
    switch (method) {
        case kMethodByKey:
        case kMethodSm2:
        case kMethodRsaSha1:
        case kMethodRsaSha256: m_method = method; return kServiceOk;
    }
    return kServiceAlgorithmUnknown;
}

int CertService::FindCertificate(const std::string& certId, ToSign& toSign) {
    if (const int code = Keys().ExportCertificate(certId, toSign.certificate)) return code;
    return m_certificates.Parse(toSign.certificate) ? kServiceOk : kServiceCertificateDamaged;
}

int CertService::PrepareData(const std::string& certId, std::string_view data, ToSign& toSign) {
    if (const int code = FindCertificate(certId, toSign)) return code;
    if (const int code = FillDigest(data, toSign)) return code;
    const bool keepsData = data.size() <= kMostDataKept;
    m_prepared = {certId, m_method, keepsData, std::string(keepsData ? data : ""), toSign};
    return kServiceOk;
}

int CertService::FillDigest(std::string_view data, ToSign& toSign) {
    const auto hash = HashOfMethod(m_method, KindOfKey(m_certificates.Parse(toSign.certificate)));
    if (!hash) return kServiceAlgorithmUnknown;
    toSign.hash = *hash;
    toSign.digest = m_certificates.DigestFor(toSign.certificate, *hash, data);
    return toSign.digest.empty() ? kServiceUnknownFailure : kServiceOk;
}

bool CertService::RecallData(const std::string& certId, std::string_view data, ToSign& toSign) {
    if (certId.empty() || m_prepared.certId != certId) return false;
    toSign = m_prepared.toSign;
    // To compare what the query had costs a hundredth of hashing it.
    if (m_prepared.keepsData && m_prepared.method == m_method && m_prepared.data == data)
        return true;
    return FillDigest(data, toSign) == kServiceOk;
}

int CertService::CheckMessageData(const ToSign& toSign, std::string_view data) const {
    const bool withoutAttributes = toSign.hash == HashAlgorithm::kSm3;
    return withoutAttributes && IsAmbiguous(data) ? kServiceDataAmbiguous : kServiceOk;
}

int CertService::PrepareDigest(const std::string& certId, int algorithm, std::string_view digest,
                               ToSign& toSign) {
    const auto hash = HashByNumber(algorithm);
    if (!hash) return kServiceAlgorithmUnknown;
    if (digest.size() != DigestSize(*hash)) return kServiceBadArgument;
    if (const int code = FindCertificate(certId, toSign)) return code;
    const KeyKind kind = KindOfKey(m_certificates.Parse(toSign.certificate));
    const bool fits = kind == KeyKind::kSm2 ? *hash == HashAlgorithm::kSm3
                                            : kind == KeyKind::kRsa && *hash != HashAlgorithm::kSm3;
    if (!fits || !HashOfMethod(m_method, kind)) return kServiceAlgorithmUnknown;
    toSign.hash = *hash;
    toSign.digest = digest;
    return kServiceOk;
}

int CertService::Sign(const std::string& certId, const ToSign& toSign, std::string& signature) {
    return Keys().SignDigest(certId, toSign.hash, toSign.digest, signature);
}

int CertService::SignMessage(const std::string& certId, const ToSign& toSign,
                             std::string& message) {
    X509* certificate = m_certificates.Parse(toSign.certificate);
    if (!certificate) return kServiceCertificateDamaged;
    const auto sign = [&](HashAlgorithm hash, std::string_view digest, std::string& signature) {
        return Keys().SignDigest(certId, hash, digest, signature);
    };
    return MakeSignedMessage(certificate, toSign.hash, toSign.digest, std::time(nullptr), sign,
                             message);
}

int CertService::HashPrefix(int algorithm, std::string_view certificate, std::string_view userId,
                            std::string& prefix) {
    const auto hash = HashByNumber(algorithm);
    if (!hash) return kServiceAlgorithmUnknown;
    if (*hash != HashAlgorithm::kSm3 || certificate.empty() || userId.empty()) return kServiceOk;
    const X509* parsed = m_certificates.Parse(certificate);
    if (!parsed) return kServiceCertificateDamaged;
    prefix = Sm2Za(X509_get0_pubkey(parsed), userId);
    return prefix.empty() ? kServiceAlgorithmUnknown : kServiceOk;
}

int CertService::HashData(int algorithm, std::string_view data, std::string_view certificate,
                          std::string_view userId, std::string& hash) {
    std::string prefix;
    if (const int code = HashPrefix(algorithm, certificate, userId, prefix)) return code;
    if (prefix.empty()) {
        hash = Digest(*HashByNumber(algorithm), data);
    } else {
        hash = Sm2Digest(X509_get0_pubkey(m_certificates.Parse(certificate)), data, userId);
    }
    return hash.empty() ? kServiceUnknownFailure : kServiceOk;
}

int CertService::HashFile(int algorithm, const char* path, std::string_view certificate,
                          std::string_view userId, std::string& hash) {
    std::string prefix;
    if (const int code = HashPrefix(algorithm, certificate, userId, prefix)) return code;
    return HashFileContent(*HashByNumber(algorithm), prefix, path, hash);
}

int CertService::VerifyData(std::string_view certificate, std::string_view data,
                            std::string_view signature) {
    X509* parsed = m_certificates.Parse(certificate);
    if (!parsed) return kServiceCertificateDamaged;
    EVP_PKEY* key = X509_get0_pubkey(parsed);
    if (KindOfKey(key) == KeyKind::kOther) return kServiceAlgorithmUnknown;
    if (!IsSigned(key, data, signature)) return kServiceSignatureInvalid;
    return MaySignDocuments(parsed) ? kServiceOk : kServiceSignerUnfit;
}

std::shared_ptr<const SignedMessage> CertService::ReadMessage(std::string_view message) {
    if (m_message && m_messageBytes == message) return m_message;
    std::shared_ptr<const SignedMessage> read = SignedMessage::Parse(message, &m_certificates);
    if (read && message.size() <= kLongestMessageKept) {
        m_messageBytes = message;
        m_message = read;
    }
    return read;
}

int CertService::VerifyMessage(std::string_view message, std::string_view data) {
    const auto parsed = ReadMessage(message);
    if (!parsed) return kServiceMessageDamaged;
    if (const int code = parsed->VerifyData(data)) return code;
    return CheckSigners(*parsed);
}

int CertService::VerifyMessageDigest(std::string_view message, std::string_view digest) {
    const auto parsed = ReadMessage(message);
    if (!parsed) return kServiceMessageDamaged;
    if (const int code = parsed->VerifyDigest(digest)) return code;
    return CheckSigners(*parsed);
}

int CertService::MessageField(std::string_view message, int field, std::string& value) {
    const auto parsed = ReadMessage(message);
    return parsed ? parsed->Field(field, value) : kServiceMessageDamaged;
}

int CertService::CertificateField(std::string_view certificate, int field, std::string& text) {
    X509* parsed = m_certificates.Parse(certificate);
    return parsed ? ::CertificateField(parsed, field, text) : kServiceCertificateDamaged;
}

int CertService::CertificateExtension(std::string_view certificate, const char* oid,
                                      std::string& der) {
    X509* parsed = m_certificates.Parse(certificate);
    return parsed ? ::CertificateExtension(parsed, oid, der) : kServiceCertificateDamaged;
}

int CertService::Validate(std::string_view certificate, std::time_t now) {
    X509* parsed = m_certificates.Parse(certificate);
    if (!parsed) return kServiceCertificateDamaged;
    const bool isListForIt = std::exchange(m_isListNew, false);
    const CertificateVerdict verdict =
        m_process->trust.Validate(parsed, m_revocationList.get(), isListForIt, now);
    // Callers take -4 as acceptable: a forged list would hide a revocation from them.
    return verdict == kCertificateRevocationUndecided ? kCertificateUntrusted : verdict;
}

int CertService::SetRevocationList(std::string_view base64) {
    if (base64.empty()) {
        m_revocationList.reset();
        m_isListNew = false;
        return kServiceOk;
    }
    std::string content;
    if (!DecodeBase64Text(base64, content)) return kServiceRevocationListDamaged;
    auto list = RevocationList::Parse(content);
    if (!list) return kServiceRevocationListDamaged;
    m_revocationList = std::move(list);
    m_isListNew = true;
    return kServiceOk;
}
