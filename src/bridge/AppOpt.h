// AppOpt.h - the bridge to the certificate service and, for seal signatures, to the seal library.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "bridge/KVLOpt.h"
#include "foundation/HeapBuffer.h"

// The room that GetKeyType wants for the longest key type and its terminator.
constexpr int kKeyTypeSize = 261;

// The fields of a PKCS#7 signature: the signer's certificate (DER).
constexpr int kSignerCertField = 2;

// Every operation writes a trace record, makes sure that the service is up (-3022 if it isn't,
// unless told otherwise) and returns 0 or a code. Certificates are DER, texts GBK. A pair (out,
// outLen) follows the two-step habit of the service: a null `out` asks for the size.
class CAppOpt {
public:
    // The service's table (owned), its context and whether it is usable; the setting `bVerifyCRL`.
    CKVLOpt* kvl = nullptr;
    void* context = nullptr;
    int initialised = 0;
    unsigned int verifyCrl = 0;

    // --- certificates and keys (AppOptQuery.cpp, AppOptKeys.cpp, AppOptCrl.cpp) ---

    // The key type text of a certificate ("SM2", anything else is RSA), after the checks that stand
    // before every signature: validity period, revocation list if that is set, chain. `type`, of
    // kKeyTypeSize bytes, is filled when the service accepted the certificate; -3043, -3007, -3047
    // tell why it didn't, and any other value of SOF_ValidateCert is the result. Throws
    // StringFailure::kGeneral for a validity that is no date.
    int GetKeyType(const char* certId, char* type);
    // The certificate as Base64 text, terminated. The buffer is empty after a failure.
    int GetKeyCert(const char* certId, CBuffer& base64);
    // The certificate's DER.
    int GetKeyCertEx(const char* certId, CBuffer& cert);
    // The certificates of hardware keys: records of label "||" certId "&&&", terminated.
    int GetUserList(CBuffer& list);
    // The identifier under which `certId` logged in last. Codes of its own: 4354, 4608, 4609, 4101,
    // -3044; also 0 with `found` left empty where the service's file can't be loaded.
    int GetLastLoginCertID(const char* certId, CBuffer& found);
    // The common name of a certificate given as Base64 text, whatever `field` says; terminated.
    int GetCertificateInfo(const char* certBase64, int field, CBuffer& value);
    // The value of a field, with 16 zero bytes behind it.
    int GetCertificateInfoEx(const unsigned char* cert, int certLen, int field, CBuffer& value);
    int GetCertOidData(const unsigned char* cert, int certLen, unsigned char* out, int* outLen);
    // A file of the key; names of files in a key as records of name "&&&".
    int ReadKeyFile(const char* fileName, const char* certId, unsigned char* out, int* outLen);
    int EnumFilesInKey(const char* certId, unsigned char* out, int* outLen);
    int LoginIn(const char* certId, const char* pin);
    // 4354 if the service isn't up.
    int Logout(const char* certId);
    // The revocation list that the certificate names, from the cache or fetched anew. 4354 if the
    // service isn't up. 0 with an empty `crl` is possible. Other codes: CrlCache.
    int GetCrlDataFromCert(const unsigned char* cert, int certLen, std::string& crl);

    // --- signing and hashing (AppOptSign.cpp) ---

    // A PKCS#7 signature; the pair goes to the service as it stands. -3027 for its failure.
    int SignPlainDataEx(int flag, const unsigned char* data, int dataLen, const char* certId,
                        unsigned char* out, int* outLen);
    // A PKCS#1 signature in newly allocated memory.
    int SignData(const unsigned char* data, int dataLen, const char* certId, CBuffer& signature);
    // A PKCS#7 signature over the hash of a file, which the service reads by its path. `*outLen`
    // comes back 128 larger than what was written.
    int SignBigFile(int flag, const char* filePath, const char* certId, unsigned char* out,
                    int* outLen);
    // Seal signatures. `seal` is the whole seal file, `property` a text of the host that the seal
    // library gets unchanged.
    int SignData_GB(const unsigned char* data, int dataLen, const char* certId,
                    const unsigned char* property, int propertyLen, std::string_view seal,
                    unsigned char* out, int* outLen);
    int SignBigFile_GB(const char* filePath, const char* certId, const unsigned char* property,
                       int propertyLen, std::string_view seal, unsigned char* out, int* outLen);
    // `algorithm` is "SM3", "SHA256" or anything else for SHA-1. Copies the hash without looking
    // at `*outLen`, if `out` is set, and writes its length there in any case.
    int HashData(const char* algorithm, const unsigned char* data, int dataLen,
                 const unsigned char* cert, int certLen, unsigned char* out, int* outLen);
    // The same for a file. A failure frees `cert`, which must be of the C heap (or null).
    int HashFile(const char* algorithm, const char* filePath, unsigned char* cert, int certLen,
                 unsigned char* out, int* outLen);

    // --- verifying (AppOptVerify.cpp) ---
    // The service is asked first; what it doesn't accept goes to the seal library, since a caller
    // doesn't tell which kind of signature it holds. Any value but 0: not verified.

    // A PKCS#1 signature. The service's result; it has no seal form.
    int VerifySignData(const unsigned char* cert, int certLen, const unsigned char* data,
                       int dataLen, const unsigned char* signature, int signatureLen);
    // A PKCS#7 or seal signature over data. With `verifyCrl` the seal library gets the signer's
    // revocation list first: -3048 if that can't be had, 4637 if it isn't taken. Else the result of
    // the seal library.
    int VerifyPlainDataEx(const unsigned char* signature, int signatureLen,
                          const unsigned char* data, int dataLen);
    // The same over a file, which the components read by its path; no revocation list. -3037: no
    // PKCS#7, and the seal library refused it. -3032: both refused it, as they do with what
    // SignBigFile makes with an RSA key. -3010, -3030, or the service's result for the hash.
    int VerifyBigFile(const char* filePath, const unsigned char* signature, int signatureLen);
    // A field of a PKCS#7 signature. -3037 for the service's failure, -3030.
    int GetInfoFromSignedDataEx(const unsigned char* signedMessage, int signedLen, int field,
                                CBuffer& value);
    // Whether the certificate is good, or was at `time` if it is revoked: with `verifyCrl` the
    // list forgives a revocation behind `time`, which goes to the seal library as it is. -3007,
    // -3043, -3047, -3048, 4637.
    int VerifySignCert(const unsigned char* cert, int certLen, const char* time);
    // Whether `time` (ReadTimeText) lies within the certificate's validity, its ends included:
    // -2050 if not, -3010. Throws StringFailure::kGeneral for what is no time.
    int VerifySignTime(const unsigned char* cert, int certLen, const char* time);

    // --- time stamps (AppOptTimeStamp.cpp) ---

    // Asks the time-stamp engine for a stamp over a PKCS#7 signature's value, or over the data
    // itself where it has 10 bytes or less, and has the service put it into the signature. The
    // service must be up. A null `out` asks for the size, and the authority for a stamp all the
    // same. `*outLen` is what the service makes of it, after a failure of the service too. 0,
    // -3008 or the service's code. A failed call of the engine leaves as StringFailure with its
    // status. On Windows the thread's count of COM is one higher after -3008 and after such a
    // failure.
    int SignTimeStamp(const unsigned char* signedData, int signedLen, unsigned char* out,
                      int* outLen);
    // Replaces the debugging copy of a request, at its fixed place whatever `fileName` says. 0,
    // -3013 for no such folder, -3017 or -3018 for a disk that doesn't take it, with what it took
    // left behind. Doesn't touch the service.
    int WriteContent2File(const char* fileName, const unsigned char* data, int dataLen);
    // The service's own results, as they are, and its own reading of the pair.
    int VerifyTimeStamp(const unsigned char* signature, int signatureLen);
    int GetFieldDataFromTSSignatureInfo(const unsigned char* signature, int signatureLen, int field,
                                        unsigned char* out, int* outLen);

    // The gate at the head of every operation: starts the service if it is down, once. 0 or -3022.
    int CheckKVLOKStatus();
};

// Finds, loads and starts the certificate service, starts the seal library and hands it the
// machine's settings. 0, -3021, -3022 or the code of TVK_Initialize. Not guarded against a second
// call: callers look at `initialised` first.
int KVLInitialize(CAppOpt& appOpt);
// Ends both. Tolerates a service that never came up.
void KVLUnInitialize(CAppOpt& appOpt);
