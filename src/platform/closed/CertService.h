// CertService.h - the interface of the certificate service (GM/T 0020 and a few more), as its file
// exports it. Nothing links it: the library binds it at run time (bridge/KVLOpt.h).
#pragma once

#include <cstdint>

// The 43 entry points in the order of the table that binds them.
#define CERT_SERVICE_ENTRIES(ENTRY)     \
    ENTRY(SOF_Initialize)               \
    ENTRY(SOF_InitializeEx)             \
    ENTRY(SOF_Finalize)                 \
    ENTRY(SOF_Login)                    \
    ENTRY(SOF_Logout)                   \
    ENTRY(SOF_GetUserList)              \
    ENTRY(SOF_SignMessage)              \
    ENTRY(SOF_SignMessageEx)            \
    ENTRY(SOF_Base64Encode)             \
    ENTRY(SOF_Base64Decode)             \
    ENTRY(SOF_VerifySignedMessage)      \
    ENTRY(SOF_ExportUserCert)           \
    ENTRY(SOF_GetCertInfo)              \
    ENTRY(SOF_SignHashData)             \
    ENTRY(SOF_EncryptData)              \
    ENTRY(SOF_EncryptDataEx)            \
    ENTRY(SOF_GetInfoFromSignedMessage) \
    ENTRY(SOF_DecryptData)              \
    ENTRY(SOF_ValidateCert)             \
    ENTRY(GetDeviceCountEx)             \
    ENTRY(GetDeviceInfo)                \
    ENTRY(SOF_ReadFile)                 \
    ENTRY(SOF_HashFile)                 \
    ENTRY(SOF_HashData)                 \
    ENTRY(SOF_SignHashMessage)          \
    ENTRY(SOF_VerifySignedHashMessage)  \
    ENTRY(SOF_SetSignMethod)            \
    ENTRY(SOF_GetSignMethod)            \
    ENTRY(SOF_SignData)                 \
    ENTRY(SOF_TSVerifyPDFSignature)     \
    ENTRY(SOF_TSGetPDFSignatureInfo)    \
    ENTRY(Brevane_VerifyTimeStamp)      \
    ENTRY(Brevane_GetTimeStampInfo)     \
    ENTRY(SOF_GetCertInfoByOid)         \
    ENTRY(SOF_PubKeyEncrypt)            \
    ENTRY(SOF_PriKeyDecrypt)            \
    ENTRY(SOF_VerifySignedData)         \
    ENTRY(SOF_TSGenPDFSignature)        \
    ENTRY(SOF_GetLastError)             \
    ENTRY(EnumFilesInDevice)            \
    ENTRY(SOF_GetLastLoginCertID)       \
    ENTRY(SetUserConfig)                \
    ENTRY(SOF_TSGenREQ)

// All return 0 for success. A pair (out, outLen): a null `out` asks for the size, which comes back
// in `*outLen`; with a buffer `*outLen` is its capacity before and the size after the call. Texts
// are GBK with a terminator, certificates DER, lengths counted in bytes.
extern "C" {

int SOF_Initialize(void** context);
int SOF_Finalize(void* context);

// A login holds for the process, not for the context.
int SOF_Login(void* context, const char* certId, const char* pin);
int SOF_Logout(void* context, const char* certId);
int SOF_GetLastLoginCertID(void* context, const char* certId, unsigned char* out, int* outLen);

// Records of label "||" certId "&&&", directly one after another.
int SOF_GetUserList(void* context, unsigned char* out, int* outLen);
int SOF_ExportUserCert(void* context, const char* certId, unsigned char* out, int* outLen);
int GetDeviceCountEx(void* context, int kind, int* count);
int GetDeviceInfo(void* context, const char* certId, int item, unsigned char* out, int* outLen);
// Records of file name "&&&".
int EnumFilesInDevice(void* context, const char* certId, unsigned char* out, int* outLen);
int SOF_ReadFile(void* context, const char* certId, const char* fileName, unsigned char* out,
                 int* outLen);

int SOF_SetSignMethod(void* context, int method);
int SOF_SignData(void* context, const char* certId, const unsigned char* data, int dataLen,
                 unsigned char* out, int* outLen);
int SOF_SignMessageEx(void* context, const char* certId, int flag1, int flag2,
                      const unsigned char* data, int dataLen, unsigned char* out, int* outLen);
int SOF_SignHashMessage(void* context, const char* certId, int flag, int algorithm,
                        const unsigned char* hash, int hashLen, unsigned char* out, int* outLen);
int SOF_HashData(void* context, int algorithm, const unsigned char* data, int dataLen,
                 const unsigned char* cert, int certLen, const char* userId, int userIdLen,
                 unsigned char* out, int* outLen);
int SOF_HashFile(void* context, int algorithm, const char* filePath, const unsigned char* cert,
                 int certLen, const char* userId, int userIdLen, unsigned char* out, int* outLen);

int SOF_VerifySignedData(void* context, const unsigned char* cert, int certLen,
                         const unsigned char* data, int dataLen, const unsigned char* signature,
                         int signatureLen);
int SOF_VerifySignedMessage(void* context, const unsigned char* signature, int signatureLen,
                            const unsigned char* data, int dataLen);
int SOF_VerifySignedHashMessage(void* context, const unsigned char* signature, int signatureLen,
                                const unsigned char* hash, int hashLen);
int SOF_GetInfoFromSignedMessage(void* context, const unsigned char* signedMessage,
                                 int signedMessageLen, int field, unsigned char* out, int* outLen);

int SOF_GetCertInfo(void* context, const unsigned char* cert, int certLen, int field,
                    unsigned char* out, int* outLen);
int SOF_GetCertInfoByOid(void* context, const unsigned char* cert, int certLen, const char* oid,
                         unsigned char* out, int* outLen);
// -1: not trusted. -2, -5: expired or not yet valid. -3, -6: revoked.
int SOF_ValidateCert(void* context, const unsigned char* cert, int certLen);
// Number 5 carries a revocation list as Base64 text.
int SetUserConfig(void* context, int number, const char* text);

int SOF_Base64Encode(void* context, const unsigned char* data, int dataLen, unsigned char* out,
                     int* outLen);
int SOF_Base64Decode(void* context, const unsigned char* text, int textLen, unsigned char* out,
                     int* outLen);

int SOF_TSGenREQ(void* context, const unsigned char* hash, int hashLen, int algorithm, int flag,
                 std::uint64_t zero1, std::uint64_t zero2, std::uint64_t zero3, std::uint64_t zero4,
                 std::uint64_t zero5, unsigned char* out, int* outLen);
int SOF_TSGenPDFSignature(void* context, const unsigned char* response, int responseLen,
                          const unsigned char* signedData, int signedDataLen, unsigned char* out,
                          int* outLen);
int SOF_TSVerifyPDFSignature(void* context, const unsigned char* signature, int signatureLen);
int SOF_TSGetPDFSignatureInfo(void* context, const unsigned char* signature, int signatureLen,
                              int field, unsigned char* out, int* outLen);

// Bound with the others and called by nobody; their arguments aren't fixed.
int SOF_InitializeEx(void);
int SOF_SignMessage(void);
int SOF_SignHashData(void);
int SOF_EncryptData(void);
int SOF_EncryptDataEx(void);
int SOF_DecryptData(void);
int SOF_GetSignMethod(void);
int Brevane_VerifyTimeStamp(void);
int Brevane_GetTimeStampInfo(void);
int SOF_PubKeyEncrypt(void);
int SOF_PriKeyDecrypt(void);
int SOF_GetLastError(void);

}  // extern "C"
