#include <string>

#include "TesmarkOpt.h"
#include "bridge/AppOpt.h"
#include "bridge/CertCheck.h"
#include "bridge/SealSigner.h"
#include "bridge/ServiceHash.h"
#include "bridge/TimeText.h"
#include "bridge/TwoStep.h"
#include "foundation/Logger.h"
#include "foundation/StringFailure.h"
#include "foundation/Text.h"
#include "platform/closed/SealLibrary.h"

namespace {

constexpr int kSerialField = 2;
constexpr int kSealLibraryCrl = 3;

const unsigned char* Bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

// A null text is an empty one.
std::string TimeArgument(const char* time) { return time != nullptr ? time : ""; }

int Length(const std::string& text) { return static_cast<int>(text.size()); }

// The seal library checks the signer of a seal signature against the list that it was given last.
int GiveCrlToSealLibrary(CAppOpt& appOpt, const unsigned char* signature, int signatureLen) {
    std::string signer;
    if (const int result = GetSealSigner(signature, signatureLen, signer)) {
        TESMARK_LOG(kLogError, "TVK_Get_Sign_Cert_From_SIG error:%d", result);
        return result;
    }
    std::string crl;
    if (const int code = ObtainCrl(appOpt, Bytes(signer), Length(signer), crl)) return code;
    if (const int result = TVK_SetConfigEx(kSealLibraryCrl, Bytes(crl), Length(crl))) {
        TESMARK_LOG(kLogError, "TVK_SetConfigEx error:%d", result);
        return TESMARK_CRL_NOT_ACCEPTED;
    }
    return 0;
}

int VerifySealOverFile(const char* filePath, const unsigned char* signature, int signatureLen,
                       int failure) {
    const int result = TVK_Verify_SES_Sign_BigFile(signature, signatureLen, filePath);
    if (result == 0) return 0;
    TESMARK_LOG(kLogError, "[VerifyBigFile]TVK_Verify_SES_Sign_BigFile: error:%d", result);
    return failure;
}

// For RSA this is SHA-1, on purpose not the SHA-256 with which a file is signed: such a signature
// fails here, and the seal library has the last word.
int HashOfSigner(const std::string& keyType) { return keyType == "SM2" ? kSm3Number : kSha1Number; }

int HashForSigner(const CAppOpt& appOpt, const CBuffer& signer, const char* filePath,
                  ServiceHash& hash) {
    std::string keyType;
    if (QueryKeyType(appOpt, signer.Data(), signer.Length(), keyType) != 0) {
        return TESMARK_CERT_FIELD_FAILED;
    }
    hash = ServiceHash(HashOfSigner(keyType));
    return HashFileInto(appOpt, hash, filePath, signer.Data(), signer.Length());
}

// Whether a certificate that is revoked now was still good at `time`. A certificate whose serial
// number can't be read counts as good.
int CheckRevocationTime(CAppOpt& appOpt, const unsigned char* cert, int certLen,
                        const std::string& time, const std::string& crl) {
    if (crl.empty()) return TESMARK_CERT_REVOKED;
    CBuffer serial;
    if (appOpt.GetCertificateInfoEx(cert, certLen, kSerialField, serial) != 0) return 0;
    const int result = TVK_Check_CRL_Time(Bytes(crl), Length(crl), serial.Data(), serial.Length(),
                                          Bytes(time), Length(time));
    if (result == 0) return 0;
    TESMARK_LOG(kLogError, "[VerifySignCert]call TVK_Check_CRL_Time error:%d", result);
    return TESMARK_CERT_REVOKED;
}

}  // namespace

int CAppOpt::VerifySignData(const unsigned char* cert, int certLen, const unsigned char* data,
                            int dataLen, const unsigned char* signature, int signatureLen) {
    TESMARK_LOG(kLogTrace, "[VerifySignData]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    const int result =
        kvl->SOF_VerifySignedData(context, cert, certLen, data, dataLen, signature, signatureLen);
    if (result != 0) {
        TESMARK_LOG(kLogError, "[VerifySignData]SOF_VerifySignedData: error:%d", result);
    }
    return result;
}

int CAppOpt::VerifyPlainDataEx(const unsigned char* signature, int signatureLen,
                               const unsigned char* data, int dataLen) {
    TESMARK_LOG(kLogTrace, "[VerifyPlainDataEx]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    const int refused =
        kvl->SOF_VerifySignedMessage(context, signature, signatureLen, data, dataLen);
    if (refused == 0) {
        TESMARK_LOG(kLogTrace, "[VerifyPlainDataEx]: %s", "ok");
        return 0;
    }
    TESMARK_LOG(kLogError, "[VerifyPlainData]SOF_VerifySignedMessage: error:%d", refused);
    if (verifyCrl) {
        if (const int code = GiveCrlToSealLibrary(*this, signature, signatureLen)) return code;
    }
    const std::string text = Base64EncodeBytes(data, CheckedLength(dataLen));
    if (const int result =
            TVK_Verify_SES_Sign(signature, signatureLen, Bytes(text), Length(text))) {
        TESMARK_LOG(kLogError, "[VerifyPlainData]TVK_Verify_SES_Sign: error:%d", result);
        return result;
    }
    TESMARK_LOG(kLogTrace, "[VerifyPlainDataEx]: %s", "ok");
    return 0;
}

int CAppOpt::VerifyBigFile(const char* filePath, const unsigned char* signature, int signatureLen) {
    TESMARK_LOG(kLogTrace, "[VerifyBigFile]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    const auto askSigner = [&](unsigned char* out, int* outLen) {
        const int result = kvl->SOF_GetInfoFromSignedMessage(context, signature, signatureLen,
                                                             kSignerCertField, out, outLen);
        if (result != 0) {
            TESMARK_LOG(kLogError, "[GetInfoFromSignedData]SOF_GetInfoFromSignedMessage: error:%d",
                        result);
        }
        return result;
    };
    int size = 0;
    if (askSigner(nullptr, &size) != 0) {
        const int code =
            VerifySealOverFile(filePath, signature, signatureLen, TESMARK_SIGNED_MESSAGE_FAILED);
        // A success at the level of failures, but only on this way.
        if (code == 0) {
            TESMARK_LOG(kLogError, "[VerifyBigFile]TVK_Verify_SES_Sign_BigFile ok");
        }
        return code;
    }
    CBuffer signer = AllocateAnswer(size, 1);
    if (!signer) return TESMARK_CERT_INFO_NO_MEMORY;
    if (FetchAnswer(askSigner, signer, 1) != 0) return TESMARK_SIGNED_MESSAGE_FAILED;
    ServiceHash hash(kSha1Number);
    if (const int code = HashForSigner(*this, signer, filePath, hash)) return code;
    const int result =
        kvl->SOF_VerifySignedHashMessage(context, signature, signatureLen, hash.value, hash.length);
    if (result == 0) return 0;
    TESMARK_LOG(kLogError, "[VerifyBigFile]SOF_VerifySignedHashMessage: error:%d", result);
    return VerifySealOverFile(filePath, signature, signatureLen, TESMARK_FILE_NOT_VERIFIED);
}

int CAppOpt::GetInfoFromSignedDataEx(const unsigned char* signedMessage, int signedLen, int field,
                                     CBuffer& value) {
    TESMARK_LOG(kLogTrace, "[GetInfoFromSignedDataEx]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    const TwoStepOutcome asked = FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return kvl->SOF_GetInfoFromSignedMessage(context, signedMessage, signedLen, field, out,
                                                     outLen);
        },
        1, value);
    if (asked.noMemory) return TESMARK_CERT_INFO_NO_MEMORY;
    if (asked.result == 0) return 0;
    TESMARK_LOG(kLogError, "[GetInfoFromSignedDataEx]SOF_GetInfoFromSignedMessage: error:%d",
                asked.result);
    return TESMARK_SIGNED_MESSAGE_FAILED;
}

// The record of the opening bears another operation's name, here and below.
int CAppOpt::VerifySignCert(const unsigned char* cert, int certLen, const char* time) {
    TESMARK_LOG(kLogTrace, "[VerifyTimeStamp]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    std::string crl;
    if (verifyCrl) {
        if (const int code = ObtainCrlForService(*this, cert, certLen, crl)) return code;
    }
    const int verdict = kvl->SOF_ValidateCert(context, cert, certLen);
    if (const int refusal = RefusalOf(verdict)) {
        TESMARK_LOG(kLogError, "[VerifySignCert]call SOF_ValidateCert error:%d", verdict);
        if (refusal != TESMARK_CERT_REVOKED) return refusal;
        return CheckRevocationTime(*this, cert, certLen, TimeArgument(time), crl);
    }
    TESMARK_LOG(kLogTrace, "[VerifySignCert]: %s", "ok");
    return 0;
}

int CAppOpt::VerifySignTime(const unsigned char* cert, int certLen, const char* time) {
    TESMARK_LOG(kLogTrace, "[VerifyTimeStamp]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    const TimeParts parts = ReadTimeText(TimeArgument(time));
    std::string from;
    std::string to;
    if (const int code = QueryValidity(*this, cert, certLen, from, to)) return code;
    const std::time_t moment = CalendarTime(parts);
    const std::time_t start = CalendarTime(CutCertTime(from));
    const std::time_t end = CalendarTime(CutCertTime(to));
    if (moment < start || moment > end) return TESMARK_TIME_OUTSIDE_VALIDITY;
    TESMARK_LOG(kLogTrace, "[VerifySignCert]: %s", "ok");
    return 0;
}
