#include "components/certservice/SignedMessageAsn1.h"

#include <openssl/asn1t.h>

namespace {

using Attributes = STACK_OF(X509_ATTRIBUTE);

std::string Encode(Attributes* attributes, const ASN1_ITEM* form) {
    unsigned char* der = nullptr;
    const int length = ASN1_item_i2d(reinterpret_cast<ASN1_VALUE*>(attributes), &der, form);
    return TakeBytes(der, length);
}

}  // namespace

// clang-format off
ASN1_CHOICE(SignerId) = {
    ASN1_SIMPLE(SignerId, value.issuerAndSerial, PKCS7_ISSUER_AND_SERIAL),
    ASN1_IMP(SignerId, value.keyId, ASN1_OCTET_STRING, 0),
} static_ASN1_CHOICE_END(SignerId)

ASN1_SEQUENCE(SignerInfo) = {
    ASN1_SIMPLE(SignerInfo, version, ASN1_INTEGER),
    ASN1_SIMPLE(SignerInfo, id, SignerId),
    ASN1_SIMPLE(SignerInfo, digestAlgorithm, X509_ALGOR),
    ASN1_IMP_SET_OF_OPT(SignerInfo, signedAttributes, X509_ATTRIBUTE, 0),
    ASN1_SIMPLE(SignerInfo, signatureAlgorithm, X509_ALGOR),
    ASN1_SIMPLE(SignerInfo, signature, ASN1_OCTET_STRING),
    ASN1_IMP_SET_OF_OPT(SignerInfo, unsignedAttributes, X509_ATTRIBUTE, 1),
} ASN1_SEQUENCE_END(SignerInfo)

ASN1_SEQUENCE(EncapsulatedContent) = {
    ASN1_SIMPLE(EncapsulatedContent, type, ASN1_OBJECT),
    ASN1_EXP_OPT(EncapsulatedContent, content, ASN1_ANY, 0),
} static_ASN1_SEQUENCE_END(EncapsulatedContent)

ASN1_SEQUENCE(SignedData) = {
    ASN1_SIMPLE(SignedData, version, ASN1_INTEGER),
    ASN1_SET_OF(SignedData, digestAlgorithms, X509_ALGOR),
    ASN1_SIMPLE(SignedData, content, EncapsulatedContent),
    ASN1_IMP_SET_OF_OPT(SignedData, certificates, ASN1_ANY, 0),
    ASN1_IMP_SET_OF_OPT(SignedData, revocationLists, ASN1_ANY, 1),
    ASN1_SET_OF(SignedData, signers, SignerInfo),
} static_ASN1_SEQUENCE_END(SignedData)

ASN1_SEQUENCE(SignedContentInfo) = {
    ASN1_SIMPLE(SignedContentInfo, type, ASN1_OBJECT),
    ASN1_EXP(SignedContentInfo, signedData, SignedData, 0),
} ASN1_SEQUENCE_END(SignedContentInfo)

ASN1_ITEM_TEMPLATE(SortedAttributes) =
    ASN1_EX_TEMPLATE_TYPE(ASN1_TFLG_SET_OF, 0, SortedAttributes, X509_ATTRIBUTE)
static_ASN1_ITEM_TEMPLATE_END(SortedAttributes)

ASN1_ITEM_TEMPLATE(AttributesAsRead) =
    ASN1_EX_TEMPLATE_TYPE(ASN1_TFLG_SEQUENCE_OF | ASN1_TFLG_IMPTAG | ASN1_TFLG_UNIVERSAL,
                          V_ASN1_SET, AttributesAsRead, X509_ATTRIBUTE)
static_ASN1_ITEM_TEMPLATE_END(AttributesAsRead)
    // clang-format on

    IMPLEMENT_ASN1_FUNCTIONS(SignerInfo) IMPLEMENT_ASN1_FUNCTIONS(SignedContentInfo)

        std::string EncodeSortedAttributes(Attributes * attributes) {
    return Encode(attributes, ASN1_ITEM_rptr(SortedAttributes));
}

std::string EncodeAttributesAsRead(Attributes* attributes) {
    return Encode(attributes, ASN1_ITEM_rptr(AttributesAsRead));
}
