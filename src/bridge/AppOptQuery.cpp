#include <cstring>
#include <ctime>
#include <string>

#include "TesmarkOpt.h"
#include "bridge/AppOpt.h"
#include "bridge/CertCheck.h"
#include "bridge/TimeText.h"
#include "bridge/TwoStep.h"
#include "foundation/Logger.h"
#include "platform/MessageBox.h"

namespace {

constexpr int kCommonNameField = 17;
constexpr int kSpareOfField = 16;
// An extension of one byte carries nothing.
constexpr int kSmallestExtension = 2;
// In the order in which they are asked for.
constexpr const char* kExtensions[] = {"1.2.156.990017.2.1.9.1", "1.3.6.1.5.5.7.1.12"};
constexpr char kBoxCaption[] = "电子签章";

TwoStepOutcome ExportCert(const CAppOpt& appOpt, const char* certId, CBuffer& cert) {
    return FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return appOpt.kvl->SOF_ExportUserCert(appOpt.context, certId, out, outLen);
        },
        1, cert);
}

int ExportKeyCert(const CAppOpt& appOpt, const char* certId, CBuffer& cert) {
    const TwoStepOutcome exported = ExportCert(appOpt, certId, cert);
    if (exported.noMemory) return TESMARK_NO_MEMORY;
    if (exported.result == 0) return 0;
    TESMARK_LOG(kLogError, "[GetKeyCert]SOF_ExportUserCert: %s,error:%d", "failed",
                exported.result);
    return TESMARK_CERT_EXPORT_FAILED;
}

// A field of any length, with zero bytes behind it.
TwoStepOutcome QueryAnyField(const CAppOpt& appOpt, const unsigned char* cert, int certLen,
                             int field, CBuffer& value) {
    return FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return appOpt.kvl->SOF_GetCertInfo(appOpt.context, cert, certLen, field, out, outLen);
        },
        kSpareOfField, value);
}

int CheckValidity(const CAppOpt& appOpt, const CBuffer& cert) {
    std::string from;
    std::string to;
    if (const int code = QueryValidity(appOpt, cert.Data(), cert.Length(), from, to)) return code;
    const std::time_t now = std::time(nullptr);
    const std::time_t start = CalendarTime(CutCertTime(from));
    const std::time_t end = CalendarTime(CutCertTime(to));
    return now < start || now > end ? TESMARK_CERT_EXPIRED : 0;
}

// A list that can't be had, or that the service won't take, only warns the user.
void HandOverCrl(CAppOpt& appOpt, const CBuffer& cert) {
    std::string crl;
    const int code = ObtainCrlForService(appOpt, cert.Data(), cert.Length(), crl);
    if (code == 0) return;
    const char* const text = code == TESMARK_CRL_NOT_ACCEPTED ? "设置CRL失败！" : "获取CRL失败！";
    platform::ShowMessageBox(text, kBoxCaption, platform::kMessageBoxWarning);
}

// The first extension that holds something. Null, with the last result, if none does. The sizes go
// through the caller's `outLen`, whose own value the service never sees.
const char* ChooseExtension(const CAppOpt& appOpt, const unsigned char* cert, int certLen,
                            int* outLen, int& result) {
    for (const char* oid : kExtensions) {
        result =
            appOpt.kvl->SOF_GetCertInfoByOid(appOpt.context, cert, certLen, oid, nullptr, outLen);
        if (result == 0 && *outLen >= kSmallestExtension) return oid;
        TESMARK_LOG(kLogTrace, "[GetCertOidData OID：%s failed]: %d", oid, result);
    }
    return nullptr;
}

}  // namespace

int CAppOpt::GetKeyType(const char* certId, char* type) {
    TESMARK_LOG(kLogTrace, "[GetKeyType]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    CBuffer cert;
    const TwoStepOutcome exported = ExportCert(*this, certId, cert);
    if (exported.noMemory) return TESMARK_NO_MEMORY;
    if (exported.result != 0) {
        TESMARK_LOG(kLogError, "[GetKeyType]SOF_ExportUserCert: %s,error:%d", "failed",
                    exported.result);
        return TESMARK_CERT_EXPORT_FAILED;
    }
    if (const int code = CheckValidity(*this, cert)) return code;
    std::string keyType;
    if (QueryKeyType(*this, cert.Data(), cert.Length(), keyType) != 0) {
        return TESMARK_CERT_FIELD_FAILED;
    }
    if (verifyCrl) HandOverCrl(*this, cert);
    const int verdict = kvl->SOF_ValidateCert(context, cert.Data(), cert.Length());
    if (const int code = RefusalOf(verdict)) {
        TESMARK_LOG(kLogError, "[GetKeyType]call SOF_ValidateCert error:%d", verdict);
        return code;
    }
    std::memcpy(type, keyType.c_str(), keyType.size() + 1);
    TESMARK_LOG(kLogTrace, "[GetKeyType]: %s", "ok");
    return verdict;
}

int CAppOpt::GetKeyCertEx(const char* certId, CBuffer& cert) {
    TESMARK_LOG(kLogTrace, "[GetKeyCertEx]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    if (const int code = ExportKeyCert(*this, certId, cert)) return code;
    TESMARK_LOG(kLogTrace, "[GetKeyCertEx]: %s", "ok");
    return 0;
}

int CAppOpt::GetKeyCert(const char* certId, CBuffer& base64) {
    TESMARK_LOG(kLogTrace, "[GetKeyCert]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    base64 = {};
    CBuffer cert;
    if (const int code = ExportKeyCert(*this, certId, cert)) return code;
    CBuffer text =
        AllocateAnswer(static_cast<int>(2u * static_cast<unsigned int>(cert.Length())), 1);
    if (!text) return TESMARK_NO_MEMORY;
    const int result = FetchAnswer(
        [&](unsigned char* out, int* outLen) {
            return kvl->SOF_Base64Encode(context, cert.Data(), cert.Length(), out, outLen);
        },
        text, 0);
    if (result != 0) {
        TESMARK_LOG(kLogError, "[GetKeyCert]SOF_Base64Encode: %s,error:%d", "failed", result);
        return TESMARK_BASE64_FAILED;
    }
    base64 = std::move(text);
    return 0;
}

int CAppOpt::GetCertificateInfo(const char* certBase64, int, CBuffer& value) {
    TESMARK_LOG(kLogTrace, "[GetCertificateInfo]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    CBuffer cert;
    const TwoStepOutcome decoded = FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return kvl->SOF_Base64Decode(context,
                                         reinterpret_cast<const unsigned char*>(certBase64),
                                         static_cast<int>(std::strlen(certBase64)), out, outLen);
        },
        1, cert);
    if (decoded.noMemory) return TESMARK_CERT_INFO_NO_MEMORY;
    if (decoded.result != 0) {
        TESMARK_LOG(kLogError, "[GetCertificateInfo]SOF_Base64Encode: error:%d", decoded.result);
        return TESMARK_CERT_INFO_NO_MEMORY;
    }
    const TwoStepOutcome asked =
        QueryAnyField(*this, cert.Data(), cert.Length(), kCommonNameField, value);
    if (asked.noMemory) return TESMARK_CERT_INFO_NO_MEMORY;
    if (asked.result == 0) return 0;
    TESMARK_LOG(kLogError, "[GetCertificateInfo]SOF_GetCertInfo: error:%d", asked.result);
    return TESMARK_CERT_FIELD_FAILED;
}

int CAppOpt::GetCertificateInfoEx(const unsigned char* cert, int certLen, int field,
                                  CBuffer& value) {
    TESMARK_LOG(kLogTrace, "[GetCertificateInfoEx]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    const TwoStepOutcome asked = QueryAnyField(*this, cert, certLen, field, value);
    if (asked.noMemory) return TESMARK_CERT_INFO_NO_MEMORY;
    if (asked.result == 0) return 0;
    TESMARK_LOG(kLogError, "[GetCertificateInfoEx]SOF_GetCertInfo: error:%d", asked.result);
    return TESMARK_CERT_FIELD_FAILED;
}

int CAppOpt::GetCertOidData(const unsigned char* cert, int certLen, unsigned char* out,
                            int* outLen) {
    TESMARK_LOG(kLogTrace, "[GetCertOidData]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    int result = 0;
    const char* const oid = ChooseExtension(*this, cert, certLen, outLen, result);
    if (oid == nullptr || out == nullptr) return result;
    result = kvl->SOF_GetCertInfoByOid(context, cert, certLen, oid, out, outLen);
    if (result != 0) {
        TESMARK_LOG(kLogError, "[GetCertOidData error]: %s", oid);
        return result;
    }
    TESMARK_LOG(kLogTrace, "[GetCertOidData]: %s", "end");
    return 0;
}
