// CertificatePresence.h - whether the certificate that a host remembers is still the one in use.
#pragma once

// The work of the exports of these names; their contracts stand in TesmarkOpt.h.
namespace session {

int CheckIsCertExist(const unsigned char* cert, int certLen);
int GetCertBase64Data(unsigned char* out, int* outLen);

}  // namespace session
