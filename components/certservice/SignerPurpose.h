// SignerPurpose.h - what a certificate allows its key.
#pragma once

#include <openssl/x509.h>

// False for a certificate that isn't one to sign documents with:
// - its keyUsage (RFC 5280, section 4.2.1.3) is there and has neither digitalSignature nor
//   nonRepudiation: the certificate of a key pair for encryption, whose private key others hold;
// - its extendedKeyUsage (section 4.2.1.12) is there, critical, and names none of
//   anyExtendedKeyUsage, emailProtection, clientAuth, and document signing by RFC 9336, Adobe and
//   Microsoft. One that isn't critical isn't asked;
// - its extensions can't be read.
bool MaySignDocuments(X509* certificate);
