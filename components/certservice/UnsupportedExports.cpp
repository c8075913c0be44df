#include "components/certservice/ServiceCodes.h"
#include "platform/closed/CertService.h"

// Entry points that are bound with the others and do nothing yet: the time stamps, and those that
// nobody calls.

int SOF_TSGenREQ(void*, const unsigned char*, int, int, int, std::uint64_t, std::uint64_t,
                 std::uint64_t, std::uint64_t, std::uint64_t, unsigned char*, int*) {
    return kServiceNotSupported;
}

int SOF_TSGenPDFSignature(void*, const unsigned char*, int, const unsigned char*, int,
                          unsigned char*, int*) {
    return kServiceNotSupported;
}

int SOF_TSVerifyPDFSignature(void*, const unsigned char*, int) { return kServiceNotSupported; }

int SOF_TSGetPDFSignatureInfo(void*, const unsigned char*, int, int, unsigned char*, int*) {
    return kServiceNotSupported;
}

int SOF_InitializeEx() { return kServiceNotSupported; }
int SOF_SignMessage() { return kServiceNotSupported; }
int SOF_SignHashData() { return kServiceNotSupported; }
int SOF_EncryptData() { return kServiceNotSupported; }
int SOF_EncryptDataEx() { return kServiceNotSupported; }
int SOF_DecryptData() { return kServiceNotSupported; }
int SOF_GetSignMethod() { return kServiceNotSupported; }
int Brevane_VerifyTimeStamp() { return kServiceNotSupported; }
int Brevane_GetTimeStampInfo() { return kServiceNotSupported; }
int SOF_PubKeyEncrypt() { return kServiceNotSupported; }
int SOF_PriKeyDecrypt() { return kServiceNotSupported; }
int SOF_GetLastError() { return kServiceNotSupported; }
