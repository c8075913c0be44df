#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignatureAlgorithm.h"
#include "components/certservice/SignedMessage.h"
#include "components/certservice/SignedMessageAsn1.h"
#include "components/crypto/Signature.h"

namespace {

using AttributeHandle = OpenSslHandle<X509_ATTRIBUTE, X509_ATTRIBUTE_free>;

bool SetAlgorithm(X509_ALGOR* algorithm, const char* oid) {
    ASN1_OBJECT* object = OBJ_txt2obj(oid, 1);
    return object && X509_ALGOR_set0(algorithm, object, V_ASN1_NULL, nullptr) == 1;
}

bool SetObject(ASN1_OBJECT*& place, const char* oid) {
    ASN1_OBJECT_free(place);
    place = OBJ_txt2obj(oid, 1);
    return place != nullptr;
}

bool AddAttribute(STACK_OF(X509_ATTRIBUTE) * attributes, int kind, int type, const void* data,
                  int length) {
    AttributeHandle attribute(X509_ATTRIBUTE_create_by_NID(nullptr, kind, type, data, length));
    if (!attribute || sk_X509_ATTRIBUTE_push(attributes, attribute.get()) <= 0) return false;
    attribute.release();
    return true;
}

bool AddSigningTime(STACK_OF(X509_ATTRIBUTE) * attributes, std::time_t now) {
    // UTCTime up to 2049, GeneralizedTime later (RFC 5652, section 11.3).
    const OpenSslHandle<ASN1_TIME, ASN1_TIME_free> time(ASN1_TIME_set(nullptr, now));
    return time && AddAttribute(attributes, NID_pkcs9_signingTime, ASN1_STRING_type(time.get()),
                                ASN1_STRING_get0_data(time.get()), ASN1_STRING_length(time.get()));
}

bool AddAttributes(SignerInfo* signer, std::string_view digest, std::time_t now) {
    signer->signedAttributes = sk_X509_ATTRIBUTE_new_null();
    if (!signer->signedAttributes) return false;
    const ObjectIdHandle type(OBJ_txt2obj(kRfcIdentifiers.data, 1));
    return type &&
           AddAttribute(signer->signedAttributes, NID_pkcs9_contentType, V_ASN1_OBJECT, type.get(),
                        -1) &&
           AddSigningTime(signer->signedAttributes, now) &&
           AddAttribute(signer->signedAttributes, NID_pkcs9_messageDigest, V_ASN1_OCTET_STRING,
                        digest.data(), static_cast<int>(digest.size()));
}

bool Identify(SignerInfo* signer, X509* certificate) {
    PKCS7_ISSUER_AND_SERIAL* name = PKCS7_ISSUER_AND_SERIAL_new();
    if (!name) return false;
    signer->id->type = kByIssuerAndSerial;
    signer->id->value.issuerAndSerial = name;
    ASN1_INTEGER_free(name->serial);
    name->serial = ASN1_INTEGER_dup(X509_get0_serialNumber(certificate));
    return name->serial && X509_NAME_set(&name->issuer, X509_get_issuer_name(certificate)) == 1;
}

// The certificate in a list of its own; null on failure.
STACK_OF(ASN1_TYPE) * ListOf(X509* certificate) {
    const std::string der = DerOf<i2d_X509>(certificate);
    const auto* cursor = reinterpret_cast<const unsigned char*>(der.data());
    OpenSslHandle<ASN1_TYPE, ASN1_TYPE_free> any(
        d2i_ASN1_TYPE(nullptr, &cursor, static_cast<long>(der.size())));
    STACK_OF(ASN1_TYPE)* list = sk_ASN1_TYPE_new_null();
    if (any && list && sk_ASN1_TYPE_push(list, any.get()) > 0) {
        any.release();
        return list;
    }
    sk_ASN1_TYPE_free(list);
    return nullptr;
}

bool FillFrame(SignedContentInfo* info, X509* certificate, const MessageIdentifiers& names,
               HashAlgorithm hash) {
    SignedData* data = info->signedData;
    OpenSslHandle<X509_ALGOR, X509_ALGOR_free> algorithm(X509_ALGOR_new());
    if (!SetObject(info->type, names.signedData) || !SetObject(data->content->type, names.data)) {
        return false;
    }
    if (ASN1_INTEGER_set(data->version, 1) != 1 || !algorithm ||
        !SetAlgorithm(algorithm.get(), OidOfHash(hash)) ||
        sk_X509_ALGOR_push(data->digestAlgorithms, algorithm.get()) <= 0) {
        return false;
    }
    algorithm.release();
    data->certificates = ListOf(certificate);
    return data->certificates != nullptr;
}

bool FillSigner(SignerInfo* signer, X509* certificate, const MessageIdentifiers& names,
                HashAlgorithm hash) {
    return ASN1_INTEGER_set(signer->version, 1) == 1 && Identify(signer, certificate) &&
           SetAlgorithm(signer->digestAlgorithm, OidOfHash(hash)) &&
           SetAlgorithm(signer->signatureAlgorithm, names.signature);
}

}  // namespace

int MakeSignedMessage(X509* certificate, HashAlgorithm hash, std::string_view digest,
                      std::time_t now, const DigestSigner& sign, std::string& message) {
    const bool national = hash == HashAlgorithm::kSm3;
    const MessageIdentifiers& names = national ? kNationalIdentifiers : kRfcIdentifiers;
    const SignedContentHandle info(SignedContentInfo_new());
    SignerInfoHandle signer(SignerInfo_new());
    if (!info || !signer || !FillFrame(info.get(), certificate, names, hash) ||
        !FillSigner(signer.get(), certificate, names, hash)) {
        return kServiceUnknownFailure;
    }
    std::string toSign(digest);
    if (!national) {
        if (!AddAttributes(signer.get(), digest, now)) return kServiceUnknownFailure;
        toSign = Digest(hash, EncodeSortedAttributes(signer->signedAttributes));
    }
    std::string signature;
    if (const int code = sign(hash, toSign, signature)) return code;
    ASN1_OCTET_STRING_set(signer->signature,
                          reinterpret_cast<const unsigned char*>(signature.data()),
                          static_cast<int>(signature.size()));
    if (sk_SignerInfo_push(info->signedData->signers, signer.get()) <= 0) {
        return kServiceUnknownFailure;
    }
    signer.release();
    message = DerOf<i2d_SignedContentInfo>(info.get());
    return message.empty() ? kServiceUnknownFailure : kServiceOk;
}
