// EssCertificateId.h - the signed attributes by which a signature names the certificate that it is
// to be checked with (RFC 2634, section 5.4; RFC 5035; RFC 5816).
#pragma once

#include <openssl/x509.h>

#include <string_view>

#include "components/crypto/Algorithm.h"

// True if the first certificate that a SigningCertificate or a SigningCertificateV2 in DER names is
// this one, by its hash and, where told, by issuer and serial number. `defaultHash` counts where
// no algorithm stands: SHA-1 in the former, SHA-256 in the latter. The certificates named behind
// the first are left out of account.
bool NamesCertificate(std::string_view signingCertificate, HashAlgorithm defaultHash,
                      X509* certificate);
