// Pkcs11Certificate.h - the certificates of a token that come with a private key.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "components/certservice/pkcs11/Pkcs11Token.h"

struct Pkcs11Certificate {
    std::string id;     // CKA_ID
    std::string label;  // the subject's common name, or CKA_LABEL, or the id in hexadecimal; GBK
    std::string der;
    bool damaged = false;  // `der` is no certificate
};

// What a certificate's DER tells. If it is no certificate, `readable` is false and the others are
// as they were made.
struct CertificateFacts {
    bool readable = false;
    bool isAuthority = false;
    std::string notBefore;   // "20261121093000Z"
    std::string commonName;  // GBK; empty if the subject has none
};

CertificateFacts InspectCertificate(const std::string& der);

// Facts of certificates seen before, by their DER.
using CertificateFactsCache = std::map<std::string, CertificateFacts>;

// The certificates of `token` that have a private key, in the order of their CKA_ID; of several
// with one CKA_ID, the one issued last. Certificates without CKA_ID never count. One counts if a
// private key with its CKA_ID is to be seen. Before login tokens hide private keys: then a public
// key with its CKA_ID does as well, or that it is no authority's certificate. A damaged
// certificate counts as one that is no authority's.
int ListTokenCertificates(Pkcs11Token& token, CertificateFactsCache& cache,
                          std::vector<Pkcs11Certificate>& certificates);

// The certificate with that CKA_ID, whether it has a key or not; `found` is false without one.
int FindTokenCertificate(Pkcs11Token& token, const std::string& id, CertificateFactsCache& cache,
                         Pkcs11Certificate& certificate, bool& found);
