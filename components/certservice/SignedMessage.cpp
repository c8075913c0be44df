#include "components/certservice/SignedMessage.h"

#include <openssl/x509v3.h>

#include <climits>
#include <optional>
#include <vector>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignatureAlgorithm.h"
#include "components/certservice/SignedMessageAsn1.h"
#include "components/crypto/Signature.h"

struct SignedMessage::Content {
    SignedContentHandle info;
    std::vector<CertificateHandle> certificates;

    const SignedData& Data() const { return *info->signedData; }
    X509* CertificateOf(const SignerId& id) const;
};

namespace {

// Gives the digest that a signer's hash makes of the data, of which there are two with SM2: e, and
// the plain hash, which some makers put in the messageDigest. `fromData` false: the digest itself
// was given.
struct Subject {
    std::string_view bytes;
    bool fromData;

    std::string ToSign(EVP_PKEY* key, HashAlgorithm hash) const {
        return fromData ? DigestForKey(key, hash, bytes) : std::string(bytes);
    }
    bool HasDigest(EVP_PKEY* key, HashAlgorithm hash, std::string_view digest) const {
        if (!fromData) return digest == bytes;
        if (digest == Digest(hash, bytes)) return true;
        return KindOfKey(key) == KeyKind::kSm2 && digest == Sm2Digest(key, bytes);
    }
};

std::string_view BytesOf(const ASN1_STRING* text) {
    return {reinterpret_cast<const char*>(ASN1_STRING_get0_data(text)),
            static_cast<size_t>(ASN1_STRING_length(text))};
}

// The one value of an attribute that has one; null otherwise.
const ASN1_TYPE* AttributeValue(STACK_OF(X509_ATTRIBUTE) * attributes, int kind) {
    for (int i = 0; i < sk_X509_ATTRIBUTE_num(attributes); ++i) {
        X509_ATTRIBUTE* attribute = sk_X509_ATTRIBUTE_value(attributes, i);
        if (OBJ_obj2nid(X509_ATTRIBUTE_get0_object(attribute)) != kind) continue;
        if (X509_ATTRIBUTE_count(attribute) != 1) return nullptr;
        return X509_ATTRIBUTE_get0_type(attribute, 0);
    }
    return nullptr;
}

bool ContentTypeAgrees(const SignerInfo& signer, const ASN1_OBJECT* type) {
    const ASN1_TYPE* value = AttributeValue(signer.signedAttributes, NID_pkcs9_contentType);
    if (!value) return true;
    return value->type == V_ASN1_OBJECT && OBJ_cmp(value->value.object, type) == 0;
}

// Signers that don't sort their attributes sign them as they stand.
bool VerifyAttributes(const SignerInfo& signer, EVP_PKEY* key, HashAlgorithm hash) {
    const std::string_view signature = BytesOf(signer.signature);
    return VerifyData(key, hash, EncodeAttributesAsRead(signer.signedAttributes), signature) ||
           VerifyData(key, hash, EncodeSortedAttributes(signer.signedAttributes), signature);
}

int VerifySigner(const SignerInfo& signer, EVP_PKEY* key, const ASN1_OBJECT* contentType,
                 const Subject& subject) {
    const std::optional<HashAlgorithm> hash = HashOf(signer.digestAlgorithm);
    if (!hash || !FitsSignature(signer.signatureAlgorithm, KindOfKey(key), *hash)) {
        return kServiceAlgorithmUnknown;
    }
    if (!subject.fromData && subject.bytes.size() != DigestSize(*hash)) {
        return kServiceDigestMismatch;
    }
    if (!signer.signedAttributes) {
        const std::string digest = subject.ToSign(key, *hash);
        const bool good = VerifyDigest(key, *hash, digest, BytesOf(signer.signature));
        return good ? kServiceOk : kServiceSignatureInvalid;
    }
    const ASN1_TYPE* digest = AttributeValue(signer.signedAttributes, NID_pkcs9_messageDigest);
    if (!digest || digest->type != V_ASN1_OCTET_STRING || !ContentTypeAgrees(signer, contentType)) {
        return kServiceMessageDamaged;
    }
    if (!subject.HasDigest(key, *hash, BytesOf(digest->value.octet_string))) {
        return kServiceDigestMismatch;
    }
    return VerifyAttributes(signer, key, *hash) ? kServiceOk : kServiceSignatureInvalid;
}

std::vector<CertificateHandle> CertificatesOf(const SignedData& data) {
    std::vector<CertificateHandle> certificates;
    for (int i = 0; i < sk_ASN1_TYPE_num(data.certificates); ++i) {
        const ASN1_TYPE* any = sk_ASN1_TYPE_value(data.certificates, i);
        if (any->type != V_ASN1_SEQUENCE) continue;
        CertificateHandle certificate = ParseCertificate(BytesOf(any->value.sequence));
        if (certificate) certificates.push_back(std::move(certificate));
    }
    return certificates;
}

bool IsMessage(const SignedContentInfo& info) {
    const SignedData* data = info.signedData;
    if (!data || sk_SignerInfo_num(data->signers) <= 0) return false;
    const ASN1_TYPE* content = data->content->content;
    return !content || content->type == V_ASN1_OCTET_STRING;
}

}  // namespace

X509* SignedMessage::Content::CertificateOf(const SignerId& id) const {
    for (const CertificateHandle& certificate : certificates) {
        X509* raw = certificate.get();
        if (id.type == kByKeyId) {
            const ASN1_OCTET_STRING* keyId = X509_get0_subject_key_id(raw);
            if (keyId && ASN1_OCTET_STRING_cmp(keyId, id.value.keyId) == 0) return raw;
            continue;
        }
        const PKCS7_ISSUER_AND_SERIAL* name = id.value.issuerAndSerial;
        if (X509_NAME_cmp(name->issuer, X509_get_issuer_name(raw)) == 0 &&
            ASN1_INTEGER_cmp(name->serial, X509_get0_serialNumber(raw)) == 0) {
            return raw;
        }
    }
    return nullptr;
}

SignedMessage::SignedMessage(std::unique_ptr<Content> content) : m_content(std::move(content)) {}

SignedMessage::~SignedMessage() = default;

std::unique_ptr<SignedMessage> SignedMessage::Parse(std::string_view message) {
    if (message.empty() || message.size() > INT_MAX) return nullptr;
    auto content = std::make_unique<Content>();
    const auto* cursor = reinterpret_cast<const unsigned char*>(message.data());
    content->info.reset(d2i_SignedContentInfo(nullptr, &cursor, static_cast<long>(message.size())));
    if (!content->info || !IsMessage(*content->info)) return nullptr;
    content->certificates = CertificatesOf(content->Data());
    return std::unique_ptr<SignedMessage>(new SignedMessage(std::move(content)));
}

int SignedMessage::VerifyData(std::string_view data) const {
    const ASN1_TYPE* inside = m_content->Data().content->content;
    if (inside) {
        const std::string_view attached = BytesOf(inside->value.octet_string);
        if (!data.empty() && data != attached) return kServiceDigestMismatch;
        data = attached;
    }
    return Verify(data, true);
}

int SignedMessage::VerifyDigest(std::string_view digest) const { return Verify(digest, false); }

int SignedMessage::Verify(std::string_view bytes, bool fromData) const {
    const SignedData& data = m_content->Data();
    for (int i = 0; i < sk_SignerInfo_num(data.signers); ++i) {
        const SignerInfo* signer = sk_SignerInfo_value(data.signers, i);
        const X509* certificate = m_content->CertificateOf(*signer->id);
        EVP_PKEY* key = certificate ? X509_get0_pubkey(certificate) : nullptr;
        if (!key) return kServiceMessageDamaged;
        const int code = VerifySigner(*signer, key, data.content->type, Subject{bytes, fromData});
        if (code) return code;
    }
    return kServiceOk;
}

int SignedMessage::Field(int field, std::string& value) const {
    const SignedData& data = m_content->Data();
    const SignerInfo* signer = sk_SignerInfo_value(data.signers, 0);
    value.clear();
    if (field == 1) {
        const ASN1_TYPE* inside = data.content->content;
        if (inside) value = BytesOf(inside->value.octet_string);
        return kServiceOk;
    }
    if (field == 3) {
        value = BytesOf(signer->signature);
        return kServiceOk;
    }
    if (field != 2) return kServiceNoSuchField;
    X509* certificate = m_content->CertificateOf(*signer->id);
    if (!certificate) return kServiceMessageDamaged;
    value = DerOf<i2d_X509>(certificate);
    return kServiceOk;
}
