#include "components/certservice/ServiceCodes.h"
#include "platform/closed/CertService.h"

// Entry points that are bound with the others and that nobody calls.

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
