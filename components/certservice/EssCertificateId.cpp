#include "components/certservice/EssCertificateId.h"

#include <openssl/asn1t.h>
#include <openssl/x509v3.h>

#include <optional>
#include <string>

#include "components/certservice/SignatureAlgorithm.h"
#include "components/crypto/Handles.h"
#include "components/crypto/Signature.h"

namespace {

struct IssuerSerial {
    GENERAL_NAMES* issuer;
    ASN1_INTEGER* serial;
};

// Of either version: the older one has no algorithm.
struct CertificateId {
    X509_ALGOR* algorithm;
    ASN1_OCTET_STRING* hash;
    IssuerSerial* issuerSerial;  // null: not told
};

DEFINE_STACK_OF(CertificateId)

struct SigningCertificate {
    STACK_OF(CertificateId) * certificates;
    ASN1_TYPE* policies;
};

// clang-format off
ASN1_SEQUENCE(IssuerSerial) = {
    ASN1_SEQUENCE_OF(IssuerSerial, issuer, GENERAL_NAME),
    ASN1_SIMPLE(IssuerSerial, serial, ASN1_INTEGER),
} static_ASN1_SEQUENCE_END(IssuerSerial)

ASN1_SEQUENCE(CertificateId) = {
    ASN1_OPT(CertificateId, algorithm, X509_ALGOR),
    ASN1_SIMPLE(CertificateId, hash, ASN1_OCTET_STRING),
    ASN1_OPT(CertificateId, issuerSerial, IssuerSerial),
} static_ASN1_SEQUENCE_END(CertificateId)

ASN1_SEQUENCE(SigningCertificate) = {
    ASN1_SEQUENCE_OF(SigningCertificate, certificates, CertificateId),
    ASN1_OPT(SigningCertificate, policies, ASN1_ANY),
} static_ASN1_SEQUENCE_END(SigningCertificate)
    // clang-format on

    void FreeSigningCertificate(SigningCertificate * object) {
    ASN1_item_free(reinterpret_cast<ASN1_VALUE*>(object), ASN1_ITEM_rptr(SigningCertificate));
}

using SigningCertificateHandle = OpenSslHandle<SigningCertificate, FreeSigningCertificate>;

SigningCertificateHandle Parse(std::string_view der) {
    const auto* cursor = reinterpret_cast<const unsigned char*>(der.data());
    return SigningCertificateHandle(reinterpret_cast<SigningCertificate*>(ASN1_item_d2i(
        nullptr, &cursor, static_cast<long>(der.size()), ASN1_ITEM_rptr(SigningCertificate))));
}

bool IsIssuer(const GENERAL_NAMES* names, const X509* certificate) {
    if (sk_GENERAL_NAME_num(names) != 1) return false;
    const GENERAL_NAME* name = sk_GENERAL_NAME_value(names, 0);
    return name->type == GEN_DIRNAME &&
           X509_NAME_cmp(name->d.directoryName, X509_get_issuer_name(certificate)) == 0;
}

}  // namespace

bool NamesCertificate(std::string_view signingCertificate, HashAlgorithm defaultHash,
                      X509* certificate) {
    const SigningCertificateHandle parsed = Parse(signingCertificate);
    if (!parsed || sk_CertificateId_num(parsed->certificates) <= 0) return false;
    const CertificateId* id = sk_CertificateId_value(parsed->certificates, 0);
    const auto hash = id->algorithm ? HashOf(id->algorithm) : std::optional(defaultHash);
    if (!hash) return false;
    const std::string_view told(reinterpret_cast<const char*>(ASN1_STRING_get0_data(id->hash)),
                                static_cast<size_t>(ASN1_STRING_length(id->hash)));
    if (!IsDigest(told, *hash, DerOf<i2d_X509>(certificate))) return false;
    if (!id->issuerSerial) return true;
    return IsIssuer(id->issuerSerial->issuer, certificate) &&
           ASN1_INTEGER_cmp(id->issuerSerial->serial, X509_get0_serialNumber(certificate)) == 0;
}
