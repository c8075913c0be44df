#include "components/timestamptoken/TimeStampToken.h"

#include <openssl/ess.h>
#include <openssl/ts.h>
#include <openssl/x509v3.h>

#include <optional>
#include <vector>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignatureAlgorithm.h"
#include "components/certservice/SignedMessage.h"
#include "components/certservice/SignedMessageAsn1.h"
#include "components/crypto/Handles.h"

struct CTimeStampToken::Parts {
    std::unique_ptr<SignedMessage> message;
    SignedContentHandle info;

    const SignedData& Data() const { return *info->signedData; }
    const SignerInfo& Signer() const { return *sk_SignerInfo_value(Data().signers, 0); }
};

namespace {

using TstInfoHandle = OpenSslHandle<TS_TST_INFO, TS_TST_INFO_free>;
using EssHandle = OpenSslHandle<ESS_SIGNING_CERT, ESS_SIGNING_CERT_free>;
using EssV2Handle = OpenSslHandle<ESS_SIGNING_CERT_V2, ESS_SIGNING_CERT_V2_free>;

// The stack alone; what is in it has another owner.
using ChainHandle =
    std::unique_ptr<STACK_OF(X509), decltype([](STACK_OF(X509) * chain) { sk_X509_free(chain); })>;

std::string BytesOf(const ASN1_STRING* text) {
    return {reinterpret_cast<const char*>(ASN1_STRING_get0_data(text)),
            static_cast<std::size_t>(ASN1_STRING_length(text))};
}

// Null unless the content is a TSTInfo and nothing else.
TstInfoHandle InfoIn(const EncapsulatedContent& content) {
    if (OBJ_obj2nid(content.type) != NID_id_smime_ct_TSTInfo) return nullptr;
    if (!content.content || content.content->type != V_ASN1_OCTET_STRING) return nullptr;
    const ASN1_OCTET_STRING* octets = content.content->value.octet_string;
    const unsigned char* at = octets->data;
    TstInfoHandle info(d2i_TS_TST_INFO(nullptr, &at, octets->length));
    return info && at == octets->data + octets->length ? std::move(info) : nullptr;
}

std::optional<std::time_t> SecondsOf(const ASN1_TIME* time) {
    const OpenSslHandle<ASN1_TIME, ASN1_TIME_free> epoch(ASN1_TIME_set(nullptr, 0));
    int days = 0;
    int seconds = 0;
    if (!time || ASN1_TIME_diff(&days, &seconds, epoch.get(), time) != 1) return std::nullopt;
    return std::time_t{days} * 86'400 + seconds;
}

std::string SerialText(const ASN1_INTEGER* serial) {
    const BignumHandle number(ASN1_INTEGER_to_BN(serial, nullptr));
    char* digits = number ? BN_bn2hex(number.get()) : nullptr;
    std::string text = digits ? digits : "";
    OPENSSL_free(digits);
    while (text.size() > 1 && text[0] == '0') text.erase(0, 1);
    return text;
}

std::string DottedOf(const ASN1_OBJECT* object) {
    char text[80] = "";
    OBJ_obj2txt(text, sizeof text, object, 1);
    return text;
}

// The only value of the only signed attribute of that kind, decoded; null if there is none.
template <typename Handle, auto DecodeFunction>
Handle Attribute(const SignerInfo& signer, int kind) {
    constexpr int kOneWithOneValue = -3;
    const auto* sequence = static_cast<const ASN1_STRING*>(X509at_get0_data_by_OBJ(
        signer.signedAttributes, OBJ_nid2obj(kind), kOneWithOneValue, V_ASN1_SEQUENCE));
    if (!sequence) return nullptr;
    const unsigned char* at = sequence->data;
    return Handle(DecodeFunction(nullptr, &at, sequence->length));
}

// The certificates of the token, the signer's first: further identifiers may name its issuers.
std::vector<CertificateHandle> ChainOf(const SignedData& data, const std::string& signer) {
    std::vector<CertificateHandle> chain;
    chain.push_back(ParseCertificate(signer));
    for (int i = 0; i < sk_ASN1_TYPE_num(data.certificates); ++i) {
        const ASN1_TYPE* any = sk_ASN1_TYPE_value(data.certificates, i);
        if (any->type != V_ASN1_SEQUENCE) continue;
        CertificateHandle certificate = ParseCertificate(BytesOf(any->value.sequence));
        if (certificate) chain.push_back(std::move(certificate));
    }
    return chain;
}

bool NamesCertificate(const SignerInfo& signer, const std::vector<CertificateHandle>& chain) {
    const auto first =
        Attribute<EssHandle, d2i_ESS_SIGNING_CERT>(signer, NID_id_smime_aa_signingCertificate);
    const auto second = Attribute<EssV2Handle, d2i_ESS_SIGNING_CERT_V2>(
        signer, NID_id_smime_aa_signingCertificateV2);
    const ChainHandle stack(sk_X509_new_null());
    for (const CertificateHandle& certificate : chain)
        if (!stack || !sk_X509_push(stack.get(), certificate.get())) return false;
    return OSSL_ESS_check_signing_certs(first.get(), second.get(), stack.get(), 1) == 1;
}

}  // namespace

CTimeStampToken::CTimeStampToken() = default;

CTimeStampToken::~CTimeStampToken() = default;

bool CTimeStampToken::Read(std::string_view der) {
    m_parts.reset();
    m_certificate.clear();
    auto parts = std::make_unique<Parts>();
    parts->message = SignedMessage::Parse(der);
    if (!parts->message) return false;
    const auto* at = reinterpret_cast<const unsigned char*>(der.data());
    const auto* end = at + der.size();
    parts->info.reset(d2i_SignedContentInfo(nullptr, &at, static_cast<long>(der.size())));
    if (!parts->info || at != end || sk_SignerInfo_num(parts->Data().signers) != 1) return false;

    const TstInfoHandle info = InfoIn(*parts->Data().content);
    const auto time = info ? SecondsOf(TS_TST_INFO_get_time(info.get())) : std::nullopt;
    if (!time) return false;
    TS_MSG_IMPRINT* imprint = TS_TST_INFO_get_msg_imprint(info.get());
    const auto hash = HashOf(TS_MSG_IMPRINT_get_algo(imprint));
    m_hash = hash.value_or(HashAlgorithm::kSm3);
    m_imprint = hash ? BytesOf(TS_MSG_IMPRINT_get_msg(imprint)) : std::string();
    m_time = *time;
    m_serial = SerialText(TS_TST_INFO_get_serial(info.get()));
    m_policy = DottedOf(TS_TST_INFO_get_policy_id(info.get()));
    constexpr int kSignersCertificate = 2;
    if (parts->message->Field(kSignersCertificate, m_certificate)) m_certificate.clear();
    m_parts = std::move(parts);
    return true;
}

TimeStampStep CTimeStampToken::Verify(const ImprintDigest& digest) const {
    if (!m_parts || m_certificate.empty()) return TimeStampStep::kStructure;
    if (m_imprint.empty() || digest(m_hash) != m_imprint) return TimeStampStep::kImprint;
    if (m_parts->message->VerifyData({}) != kServiceOk) return TimeStampStep::kSignature;
    const auto chain = ChainOf(m_parts->Data(), m_certificate);
    if (!NamesCertificate(m_parts->Signer(), chain)) return TimeStampStep::kNamedCertificate;
    if (X509_check_purpose(chain[0].get(), X509_PURPOSE_TIMESTAMP_SIGN, 0) != 1)
        return TimeStampStep::kPurpose;
    return TimeStampStep::kNone;
}

const char* StepText(TimeStampStep step) {
    switch (step) {
        case TimeStampStep::kNone: return "none";
        case TimeStampStep::kStructure: return "the structure";
        case TimeStampStep::kImprint: return "the imprint";
        case TimeStampStep::kSignature: return "the signature value";
        case TimeStampStep::kNamedCertificate: return "the identifier of the certificate";
        case TimeStampStep::kPurpose: return "the purpose of the certificate";
    }
    return "";
}
