// SealSigner.h - who made a seal signature.
#pragma once

#include <string>

// The DER certificate of the signer, as the seal library finds it in the signature. 0, the seal
// library's own result, or -3015 for a certificate that no memory holds. `cert` is left alone by a
// failure.
int GetSealSigner(const unsigned char* signature, int signatureLen, std::string& cert);
