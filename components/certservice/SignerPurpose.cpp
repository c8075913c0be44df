#include "components/certservice/SignerPurpose.h"

#include <openssl/x509v3.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "components/certservice/SignatureAlgorithm.h"
#include "components/crypto/Handles.h"

namespace {

constexpr int kAbsent = -1;      // of X509_get_ext_d2i
constexpr int kNotCritical = 0;  // the same

// Certificates for signatures in the field bear one of these. Few authorities know the last three,
// and give people clientAuth or emailProtection.
constexpr std::string_view kPurposes[] = {
    "2.5.29.37.0",              // any
    "1.3.6.1.5.5.7.3.4",        // emailProtection
    "1.3.6.1.5.5.7.3.2",        // clientAuth
    "1.3.6.1.5.5.7.3.36",       // documentSigning, RFC 9336
    "1.2.840.113583.1.1.5",     // Adobe's for PDF
    "1.3.6.1.4.1.311.10.3.12",  // Microsoft's for documents
};

bool IsForDocuments(const ASN1_OBJECT* purpose) {
    const std::string oid = OidText(purpose);
    return std::find(std::begin(kPurposes), std::end(kPurposes), oid) != std::end(kPurposes);
}

// More than one extension of the kind is none that can be read.
bool PurposesAllow(const X509* certificate) {
    int critical = kAbsent;
    const OpenSslHandle<EXTENDED_KEY_USAGE, EXTENDED_KEY_USAGE_free> purposes(
        static_cast<EXTENDED_KEY_USAGE*>(
            X509_get_ext_d2i(certificate, NID_ext_key_usage, &critical, nullptr)));
    if (critical == kAbsent || critical == kNotCritical) return true;
    for (int i = 0; i < sk_ASN1_OBJECT_num(purposes.get()); ++i) {
        if (IsForDocuments(sk_ASN1_OBJECT_value(purposes.get(), i))) return true;
    }
    return false;
}

}  // namespace

bool MaySignDocuments(X509* certificate) {
    const unsigned usage = X509_get_key_usage(certificate);
    return (usage & (KU_DIGITAL_SIGNATURE | KU_NON_REPUDIATION)) && PurposesAllow(certificate);
}
