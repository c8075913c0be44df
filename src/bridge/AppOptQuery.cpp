#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include "TesmarkOpt.h"
#include "bridge/AppOpt.h"
#include "bridge/TwoStep.h"
#include "foundation/Logger.h"
#include "foundation/StringFailure.h"
#include "foundation/Text.h"
#include "platform/MessageBox.h"

namespace {

constexpr int kKeyTypeField = 3;
constexpr int kValidFromField = 11;
constexpr int kValidToField = 12;
constexpr int kCommonNameField = 17;
constexpr int kDateCapacity = 4096;
constexpr int kKeyTypeCapacity = kKeyTypeSize - 1;
constexpr int kSpareOfField = 16;
constexpr int kCrlConfig = 5;
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

// A field into a buffer of fixed size, which is stated to the service; up to its first zero byte.
int QueryField(const CAppOpt& appOpt, const CBuffer& cert, int field, int capacity,
               std::string& value) {
    std::vector<unsigned char> buffer(static_cast<std::size_t>(capacity) + 1);
    int length = capacity;
    const int result = appOpt.kvl->SOF_GetCertInfo(appOpt.context, cert.Data(), cert.Length(),
                                                   field, buffer.data(), &length);
    value = reinterpret_cast<const char*>(buffer.data());
    return result;
}

int NumberAt(const std::string& text, std::size_t position, std::size_t length) {
    return position < text.size() ? std::atoi(text.substr(position, length).c_str()) : 0;
}

bool Within(int value, int low, int high) { return value >= low && value <= high; }

// The certificate's time (YYYYMMDDhhmmss) is read as local time, as it stands.
std::time_t CalendarTime(const std::string& text) {
    const int year = NumberAt(text, 0, 4);
    const int month = NumberAt(text, 4, 2);
    const int day = NumberAt(text, 6, 2);
    const int hour = NumberAt(text, 8, 2);
    const int minute = NumberAt(text, 10, 2);
    const int second = NumberAt(text, 12, 2);
    if (year < 1900 || !Within(month, 1, 12) || !Within(day, 1, 31) || !Within(hour, 0, 23) ||
        !Within(minute, 0, 59) || !Within(second, 0, 59)) {
        throw StringFailure(StringFailure::kGeneral);
    }
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = -1;
    return std::mktime(&parts);
}

int CheckValidity(const CAppOpt& appOpt, const CBuffer& cert) {
    std::string limits[2];
    for (const int field : {kValidFromField, kValidToField}) {
        std::string& limit = limits[field - kValidFromField];
        if (const int result = QueryField(appOpt, cert, field, kDateCapacity, limit)) {
            TESMARK_LOG(kLogError, "[GetKeyType]SOF_GetCertInfo-%d: %s,error:%d", field, "failed",
                        result);
            return TESMARK_CERT_FIELD_FAILED;
        }
    }
    const std::time_t now = std::time(nullptr);
    const std::time_t start = CalendarTime(limits[0]);
    const std::time_t end = CalendarTime(limits[1]);
    return now < start || now > end ? TESMARK_CERT_EXPIRED : 0;
}

// A list that can't be had, or that the service won't take, only warns the user.
void HandOverCrl(CAppOpt& appOpt, const CBuffer& cert) {
    std::string crl;
    const int code = appOpt.GetCrlDataFromCert(cert.Data(), cert.Length(), crl);
    if (code != 0 || crl.empty()) {
        TESMARK_LOG(kLogError, "GetCrlDataFromCert error:%d", code);
        platform::ShowMessageBox("获取CRL失败！", kBoxCaption, platform::kMessageBoxWarning);
        return;
    }
    const std::string text = Base64Encode(crl);
    if (const int result = appOpt.kvl->SetUserConfig(appOpt.context, kCrlConfig, text.c_str())) {
        TESMARK_LOG(kLogError, "[SetCRL]call SetUserConfig error:%d", result);
        platform::ShowMessageBox("设置CRL失败！", kBoxCaption, platform::kMessageBoxWarning);
    }
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

// 0 for a verdict that is no refusal: callers get that verdict itself.
int RefusalOf(int verdict) {
    switch (verdict) {
        case -1: return TESMARK_NOT_TRUSTED;
        case -2:
        case -5: return TESMARK_CERT_EXPIRED;
        case -3:
        case -6: return TESMARK_CERT_REVOKED;
        default: return 0;
    }
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
    if (const int result = QueryField(*this, cert, kKeyTypeField, kKeyTypeCapacity, keyType)) {
        TESMARK_LOG(kLogError, "[GetKeyType]SOF_GetCertInfo: %s,error:%d", "failed", result);
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
