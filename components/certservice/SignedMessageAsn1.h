// SignedMessageAsn1.h - SignedData of RFC 5652 and of GM/T 0010, which differ in their object
// identifiers alone, for OpenSSL's encoder and decoder. BER is read, DER is written.
#pragma once

#include <openssl/asn1.h>
#include <openssl/pkcs7.h>
#include <openssl/x509.h>

#include "components/crypto/Handles.h"

// The names that one set of standards gives the parts of a message.
struct MessageIdentifiers {
    const char* signedData;
    const char* data;
    const char* signature;
};
constexpr MessageIdentifiers kRfcIdentifiers = {"1.2.840.113549.1.7.2", "1.2.840.113549.1.7.1",
                                                "1.2.840.113549.1.1.1"};
constexpr MessageIdentifiers kNationalIdentifiers = {
    "1.2.156.10197.6.1.4.2.2", "1.2.156.10197.6.1.4.2.1", "1.2.156.10197.1.301.1"};

struct SignerId {
    int type;  // kByIssuerAndSerial or kByKeyId
    union {
        PKCS7_ISSUER_AND_SERIAL* issuerAndSerial;
        ASN1_OCTET_STRING* keyId;
    } value;
};
constexpr int kByIssuerAndSerial = 0;
constexpr int kByKeyId = 1;

struct SignerInfo {
    ASN1_INTEGER* version;
    SignerId* id;
    X509_ALGOR* digestAlgorithm;
    STACK_OF(X509_ATTRIBUTE) * signedAttributes;  // null: none
    X509_ALGOR* signatureAlgorithm;
    ASN1_OCTET_STRING* signature;
    STACK_OF(X509_ATTRIBUTE) * unsignedAttributes;  // null: none
};

struct EncapsulatedContent {
    ASN1_OBJECT* type;
    ASN1_TYPE* content;  // null: detached
};

DEFINE_STACK_OF(SignerInfo)

struct SignedData {
    ASN1_INTEGER* version;
    STACK_OF(X509_ALGOR) * digestAlgorithms;
    EncapsulatedContent* content;
    STACK_OF(ASN1_TYPE) * certificates;  // null: none; not all need be X.509
    STACK_OF(ASN1_TYPE) * revocationLists;
    STACK_OF(SignerInfo) * signers;
};

struct SignedContentInfo {
    ASN1_OBJECT* type;
    SignedData* signedData;
};

DECLARE_ASN1_FUNCTIONS(SignerInfo)
DECLARE_ASN1_FUNCTIONS(SignedContentInfo)

using SignerInfoHandle = OpenSslHandle<SignerInfo, SignerInfo_free>;
using SignedContentHandle = OpenSslHandle<SignedContentInfo, SignedContentInfo_free>;

// The attributes as the signature is over them, a SET: in the order of DER, and in the order in
// which they came in, which they keep either way.
std::string EncodeSortedAttributes(STACK_OF(X509_ATTRIBUTE) * attributes);
std::string EncodeAttributesAsRead(STACK_OF(X509_ATTRIBUTE) * attributes);
