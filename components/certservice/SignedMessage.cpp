#include "components/certservice/SignedMessage.h"

#include <openssl/x509v3.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "components/certservice/AmbiguousData.h"
#include "components/certservice/Certificate.h"
#include "components/certservice/MessageShape.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignatureAlgorithm.h"
#include "components/certservice/SignedMessageAsn1.h"
#include "components/certservice/SignerPurpose.h"
#include "components/crypto/Signature.h"

struct SignedMessage::Content {
    SignedContentHandle info;
    std::vector<CertificateHandle> certificates;

    const SignedData& Data() const { return *info->signedData; }
    const SignerInfo* FirstSigner() const { return sk_SignerInfo_value(Data().signers, 0); }
    X509* CertificateOf(const SignerId& id) const;
};

namespace {

// What a message may ask of its reader, who looks for each signer's certificate and hash among all:
// its time grows with the products. Each is far above what people, programs and archives write.
constexpr int kMostSigners = 64;
constexpr int kMostDigestAlgorithms = 16;
constexpr int kMostCertificates = 256;

// Gives the digest that a signer's hash makes of the data, of which there are two with SM2: e, and
// the plain hash, which some makers put in the messageDigest. `fromData` false: the digest itself
// was given. Each is made once, for the first signer who needs it.
class Subject {
public:
    Subject(std::string_view bytes, bool fromData) : m_bytes(bytes), m_fromData(fromData) {}

    bool IsData() const { return m_fromData; }
    std::string_view Bytes() const { return m_bytes; }
    std::string ToSign(EVP_PKEY* key, HashAlgorithm hash) {
        return m_fromData ? For(key, hash) : std::string(m_bytes);
    }
    bool HasDigest(EVP_PKEY* key, HashAlgorithm hash, std::string_view digest) {
        // A digest that can't be made is empty.
        if (digest.empty()) return false;
        if (!m_fromData) return digest == m_bytes;
        if (digest == For(nullptr, hash)) return true;
        return KindOfKey(key) == KeyKind::kSm2 && digest == For(key, hash);
    }

private:
    // A null key makes the plain hash, as any key does that isn't SM2.
    const std::string& For(EVP_PKEY* key, HashAlgorithm hash) {
        if (KindOfKey(key) != KeyKind::kSm2) key = nullptr;
        const auto [entry, isNew] = m_digests.try_emplace({key, hash});
        if (isNew) entry->second = DigestForKey(key, hash, m_bytes);
        return entry->second;
    }

    std::string_view m_bytes;
    bool m_fromData;
    std::map<std::pair<EVP_PKEY*, HashAlgorithm>, std::string> m_digests;
};

std::string_view BytesOf(const ASN1_STRING* text) {
    return {reinterpret_cast<const char*>(ASN1_STRING_get0_data(text)),
            static_cast<size_t>(ASN1_STRING_length(text))};
}

bool IsPlainData(const ASN1_OBJECT* type) {
    const std::string oid = OidText(type);
    return oid == kRfcIdentifiers.data || oid == kNationalIdentifiers.data;
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

// Of these a signer has one, with one value, or none (RFC 5652, section 11; RFC 2634, section 5.4;
// RFC 5035, section 3): of several one reader takes the first and another the last, and so two data
// would have one signature.
constexpr int kSingleAttributes[] = {NID_pkcs9_contentType, NID_pkcs9_messageDigest,
                                     NID_pkcs9_signingTime, NID_id_smime_aa_signingCertificate,
                                     NID_id_smime_aa_signingCertificateV2};

bool AreUnambiguous(const STACK_OF(X509_ATTRIBUTE) * attributes) {
    std::set<int> seen;
    for (int i = 0; i < sk_X509_ATTRIBUTE_num(attributes); ++i) {
        X509_ATTRIBUTE* attribute = sk_X509_ATTRIBUTE_value(attributes, i);
        const int kind = OBJ_obj2nid(X509_ATTRIBUTE_get0_object(attribute));
        const bool single = std::find(std::begin(kSingleAttributes), std::end(kSingleAttributes),
                                      kind) != std::end(kSingleAttributes);
        if (!single) continue;
        if (X509_ATTRIBUTE_count(attribute) != 1 || !seen.insert(kind).second) return false;
    }
    return true;
}

std::vector<std::string> AttributeValues(STACK_OF(X509_ATTRIBUTE) * attributes, int kind) {
    std::vector<std::string> values;
    for (int i = 0; i < sk_X509_ATTRIBUTE_num(attributes); ++i) {
        X509_ATTRIBUTE* attribute = sk_X509_ATTRIBUTE_value(attributes, i);
        if (OBJ_obj2nid(X509_ATTRIBUTE_get0_object(attribute)) != kind) continue;
        for (int j = 0; j < X509_ATTRIBUTE_count(attribute); ++j) {
            values.push_back(DerOf<i2d_ASN1_TYPE>(X509_ATTRIBUTE_get0_type(attribute, j)));
        }
    }
    return values;
}

// What is signed says its type in an attribute, unless it is plain data (RFC 5652, section 5.3).
bool ContentTypeAgrees(const SignerInfo& signer, const ASN1_OBJECT* type) {
    const ASN1_TYPE* value = AttributeValue(signer.signedAttributes, NID_pkcs9_contentType);
    if (!value) return IsPlainData(type);
    return value->type == V_ASN1_OBJECT && OBJ_cmp(value->value.object, type) == 0;
}

// Signers that don't sort their attributes sign them as they stand.
bool VerifyAttributes(const SignerInfo& signer, EVP_PKEY* key, HashAlgorithm hash) {
    const std::string_view signature = BytesOf(signer.signature);
    return VerifyData(key, hash, EncodeAttributesAsRead(signer.signedAttributes), signature) ||
           VerifyData(key, hash, EncodeSortedAttributes(signer.signedAttributes), signature);
}

int VerifySigner(const SignerInfo& signer, EVP_PKEY* key, const ASN1_OBJECT* contentType,
                 Subject& subject) {
    const std::optional<HashAlgorithm> hash = HashOf(signer.digestAlgorithm);
    if (!hash || !FitsSignature(signer.signatureAlgorithm, KindOfKey(key), *hash) ||
        !HasNoParameters(signer.digestAlgorithm) || !HasNoParameters(signer.signatureAlgorithm)) {
        return kServiceAlgorithmUnknown;
    }
    if (!subject.IsData() && subject.Bytes().size() != DigestSize(*hash)) {
        return kServiceDigestMismatch;
    }
    if (!signer.signedAttributes) {
        if (!IsPlainData(contentType)) return kServiceMessageDamaged;
        const std::string digest = subject.ToSign(key, *hash);
        if (!VerifyDigest(key, *hash, digest, BytesOf(signer.signature))) {
            return kServiceSignatureInvalid;
        }
        return subject.IsData() && IsAmbiguous(subject.Bytes()) ? kServiceDataAmbiguous
                                                                : kServiceOk;
    }
    if (!AreUnambiguous(signer.signedAttributes)) return kServiceMessageDamaged;
    const ASN1_TYPE* digest = AttributeValue(signer.signedAttributes, NID_pkcs9_messageDigest);
    if (!digest || digest->type != V_ASN1_OCTET_STRING || !ContentTypeAgrees(signer, contentType)) {
        return kServiceMessageDamaged;
    }
    if (!subject.HasDigest(key, *hash, BytesOf(digest->value.octet_string))) {
        return kServiceDigestMismatch;
    }
    return VerifyAttributes(signer, key, *hash) ? kServiceOk : kServiceSignatureInvalid;
}

CertificateHandle ReadCertificate(std::string_view der, CertificateCache* known) {
    if (!known) return ParseCertificate(der);
    X509* certificate = known->Parse(der);
    if (certificate) X509_up_ref(certificate);
    return CertificateHandle(certificate);
}

// False if one can't be read. Of another kind than X.509's they are left out.
bool ReadCertificates(const SignedData& data, CertificateCache* known,
                      std::vector<CertificateHandle>& certificates) {
    for (int i = 0; i < sk_ASN1_TYPE_num(data.certificates); ++i) {
        const ASN1_TYPE* any = sk_ASN1_TYPE_value(data.certificates, i);
        if (any->type != V_ASN1_SEQUENCE) continue;
        CertificateHandle certificate = ReadCertificate(BytesOf(any->value.sequence), known);
        if (!certificate) return false;
        certificates.push_back(std::move(certificate));
    }
    return true;
}

bool IsVersion(const ASN1_INTEGER* version, std::int64_t expected) {
    std::int64_t value = 0;
    return ASN1_INTEGER_get_int64(&value, version) == 1 && value == expected;
}

bool HasOtherKinds(const STACK_OF(ASN1_TYPE) * list) {
    for (int i = 0; i < sk_ASN1_TYPE_num(list); ++i) {
        if (sk_ASN1_TYPE_value(list, i)->type != V_ASN1_SEQUENCE) return true;
    }
    return false;
}

// The versions follow from the contents (RFC 5652, sections 5.1 and 5.3). 1 is taken in any case,
// as PKCS#7 has no other; no signature is over them.
bool HaveVersions(const SignedData& data) {
    bool byKeyId = false;
    for (int i = 0; i < sk_SignerInfo_num(data.signers); ++i) {
        const SignerInfo* signer = sk_SignerInfo_value(data.signers, i);
        const bool named = signer->id->type == kByIssuerAndSerial;
        if (!IsVersion(signer->version, 1) && (named || !IsVersion(signer->version, 3)))
            return false;
        byKeyId = byKeyId || !named;
    }
    if (IsVersion(data.version, 1)) return true;
    if (HasOtherKinds(data.certificates) || HasOtherKinds(data.revocationLists)) {
        return IsVersion(data.version, 4) || IsVersion(data.version, 5);
    }
    return IsVersion(data.version, 3) && (byKeyId || !IsPlainData(data.content->type));
}

bool IsOfSensibleSize(const SignedData& data) {
    const int signers = sk_SignerInfo_num(data.signers);
    return signers > 0 && signers <= kMostSigners &&
           sk_X509_ALGOR_num(data.digestAlgorithms) <= kMostDigestAlgorithms &&
           sk_ASN1_TYPE_num(data.certificates) <= kMostCertificates;
}

bool IsMessage(const SignedContentInfo& info) {
    const SignedData* data = info.signedData;
    const std::string type = OidText(info.type);
    if (type != kRfcIdentifiers.signedData && type != kNationalIdentifiers.signedData) return false;
    if (!data || !IsOfSensibleSize(*data) || !HaveVersions(*data)) return false;
    const ASN1_TYPE* content = data->content->content;
    return !content || content->type == V_ASN1_OCTET_STRING;
}

// The message names its signers' hashes in front, for readers that hash as they read.
int ReadDigestAlgorithms(const SignedData& data, std::vector<HashAlgorithm>& named) {
    for (int i = 0; i < sk_X509_ALGOR_num(data.digestAlgorithms); ++i) {
        const X509_ALGOR* algorithm = sk_X509_ALGOR_value(data.digestAlgorithms, i);
        const std::optional<HashAlgorithm> hash = HashOf(algorithm);
        if (!hash || !HasNoParameters(algorithm)) return kServiceAlgorithmUnknown;
        named.push_back(*hash);
    }
    return kServiceOk;
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

std::unique_ptr<SignedMessage> SignedMessage::Parse(std::string_view message,
                                                    CertificateCache* known) {
    if (message.empty() || message.size() > INT_MAX) return nullptr;
    auto content = std::make_unique<Content>();
    const auto* cursor = reinterpret_cast<const unsigned char*>(message.data());
    content->info.reset(d2i_SignedContentInfo(nullptr, &cursor, static_cast<long>(message.size())));
    if (!content->info || !IsMessage(*content->info) || !HasMessageShape(message)) return nullptr;
    if (!ReadCertificates(content->Data(), known, content->certificates)) return nullptr;
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
    std::vector<HashAlgorithm> named;
    if (const int code = ReadDigestAlgorithms(data, named)) return code;
    Subject subject(bytes, fromData);
    for (int i = 0; i < sk_SignerInfo_num(data.signers); ++i) {
        const SignerInfo* signer = sk_SignerInfo_value(data.signers, i);
        const X509* certificate = m_content->CertificateOf(*signer->id);
        if (!certificate) return kServiceSignerMissing;
        if (std::find(named.begin(), named.end(), HashOf(signer->digestAlgorithm)) == named.end())
            return kServiceMessageDamaged;
        EVP_PKEY* key = X509_get0_pubkey(certificate);
        if (!key) return kServiceAlgorithmUnknown;
        const int code = VerifySigner(*signer, key, data.content->type, subject);
        if (code) return code;
    }
    return kServiceOk;
}

int SignedMessage::Field(int field, std::string& value) const {
    value.clear();
    if (field == 1) {
        const ASN1_TYPE* inside = m_content->Data().content->content;
        if (inside) value = BytesOf(inside->value.octet_string);
        return kServiceOk;
    }
    if (field == 3) {
        value = BytesOf(m_content->FirstSigner()->signature);
        return kServiceOk;
    }
    if (field != 2) return kServiceNoSuchField;
    X509* certificate = SignerCertificate();
    if (!certificate) return kServiceSignerMissing;
    value = DerOf<i2d_X509>(certificate);
    return kServiceOk;
}

std::string SignedMessage::ContentType() const { return OidText(m_content->Data().content->type); }

int SignedMessage::CountSigners() const { return sk_SignerInfo_num(m_content->Data().signers); }

std::optional<HashAlgorithm> SignedMessage::SignerHash() const {
    return HashOf(m_content->FirstSigner()->digestAlgorithm);
}

X509* SignedMessage::SignerCertificate() const {
    return m_content->CertificateOf(*m_content->FirstSigner()->id);
}

bool SignedMessage::MaySignersSign() const {
    const SignedData& data = m_content->Data();
    for (int i = 0; i < sk_SignerInfo_num(data.signers); ++i) {
        X509* certificate = m_content->CertificateOf(*sk_SignerInfo_value(data.signers, i)->id);
        if (!certificate || !MaySignDocuments(certificate)) return false;
    }
    return true;
}

const std::vector<CertificateHandle>& SignedMessage::Certificates() const {
    return m_content->certificates;
}

std::vector<std::string> SignedMessage::SignedAttribute(int kind) const {
    return AttributeValues(m_content->FirstSigner()->signedAttributes, kind);
}

std::vector<std::string> SignedMessage::UnsignedAttribute(int kind) const {
    return AttributeValues(m_content->FirstSigner()->unsignedAttributes, kind);
}
