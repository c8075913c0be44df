// SealLibrary.h - the interface of the seal library, linked by its name.
#pragma once

#include <cstdint>

// All return 0 for success or a code of the library. A pair (out, outLen): a null `out` asks for
// the size, which comes back in `*outLen`; with a buffer `*outLen` is its capacity before and the
// size after the call.
extern "C" {

int TVK_Initialize(void);
// Tolerates a call without an earlier successful TVK_Initialize.
int TVK_Release(void);
int TVK_SetConfig(int reqStatus, const char* url, int urlLen, int signWithTimeStamp);
// Kind 3 carries a revocation list as raw DER.
int TVK_SetConfigEx(int kind, const unsigned char* data, int dataLen);

// Builds the seal signature (SES_Signature) of a hash of 32 bytes. `time` is
// "YYYY-MM-DDThh:mm:ss", local and without a zone; `oid` the signature algorithm in dotted form.
int TVK_Sign(const unsigned char* certId, int certIdLen, const unsigned char* property,
             int propertyLen, const unsigned char* oid, int oidLen, const unsigned char* hash,
             int hashLen, const unsigned char* time, int timeLen, const unsigned char* seal,
             int sealLen, unsigned char* out, int* outLen);

int TVK_Verify_SES_Sign(const unsigned char* signature, int signatureLen,
                        const unsigned char* dataBase64, int dataBase64Len);
int TVK_Verify_SES_Sign_BigFile(const unsigned char* signature, int signatureLen,
                                const char* filePath);
int TVK_Get_Sign_Cert_From_SIG(const unsigned char* signatureBase64, int signatureBase64Len,
                               unsigned char* out, int* outLen);
int TVK_Check_CRL_Time(const unsigned char* crl, int crlLen, const unsigned char* serial,
                       int serialLen, const unsigned char* time, int timeLen);

int TVK_Verify_SESeal(const unsigned char* seal, int sealLen);
int TVK_GetSealInfo(const unsigned char* seal, int sealLen, unsigned char* field1, int* field1Len,
                    unsigned char* field2, int* field2Len, unsigned char* field3, int* field3Len,
                    unsigned char* field4, int* field4Len, unsigned char* field5, int* field5Len,
                    unsigned char* field6, int* field6Len, unsigned char* field7, int* field7Len,
                    unsigned char* field8, int* field8Len, unsigned char* field9, int* field9Len,
                    unsigned char* field10, int* field10Len, unsigned char* field11,
                    int* field11Len);
int TVK_Request_Eseal_Status(const unsigned char* field1, int field1Len,
                             const unsigned char* field5, int field5Len, std::uint64_t zero1,
                             std::uint64_t zero2);
int TVK_Get_Pic_From_Eseal_Ex(const unsigned char* seal, int sealLen, unsigned char* picture,
                              int* pictureLen, int* width, int* height);
// The name comes in UTF-8.
int TVK_Get_SealName_From_Eseal(const unsigned char* seal, int sealLen, unsigned char* nameUtf8,
                                int* nameLen);

}  // extern "C"
