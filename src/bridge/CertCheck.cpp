#include "bridge/CertCheck.h"

#include <vector>

#include "TesmarkOpt.h"
#include "foundation/Logger.h"
#include "foundation/Text.h"

namespace {

constexpr int kKeyTypeField = 3;
constexpr int kValidFromField = 11;
constexpr int kValidToField = 12;
constexpr int kDateCapacity = 4096;
constexpr int kKeyTypeCapacity = kKeyTypeSize - 1;
constexpr int kCrlConfig = 5;

// A field into a buffer of fixed size, which is stated to the service; up to its first zero byte.
int QueryField(const CAppOpt& appOpt, const unsigned char* cert, int certLen, int field,
               int capacity, std::string& value) {
    std::vector<unsigned char> buffer(static_cast<std::size_t>(capacity) + 1);
    int length = capacity;
    const int result =
        appOpt.kvl->SOF_GetCertInfo(appOpt.context, cert, certLen, field, buffer.data(), &length);
    value = reinterpret_cast<const char*>(buffer.data());
    return result;
}

int QueryDate(const CAppOpt& appOpt, const unsigned char* cert, int certLen, int field,
              std::string& date) {
    const int result = QueryField(appOpt, cert, certLen, field, kDateCapacity, date);
    if (result == 0) return 0;
    TESMARK_LOG(kLogError, "[GetKeyType]SOF_GetCertInfo-%d: %s,error:%d", field, "failed", result);
    return TESMARK_CERT_FIELD_FAILED;
}

}  // namespace

int QueryKeyType(const CAppOpt& appOpt, const unsigned char* cert, int certLen,
                 std::string& keyType) {
    const int result = QueryField(appOpt, cert, certLen, kKeyTypeField, kKeyTypeCapacity, keyType);
    if (result != 0) {
        TESMARK_LOG(kLogError, "[GetKeyType]SOF_GetCertInfo: %s,error:%d", "failed", result);
    }
    return result;
}

int QueryValidity(const CAppOpt& appOpt, const unsigned char* cert, int certLen, std::string& start,
                  std::string& end) {
    if (const int code = QueryDate(appOpt, cert, certLen, kValidFromField, start)) return code;
    return QueryDate(appOpt, cert, certLen, kValidToField, end);
}

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

int ObtainCrl(CAppOpt& appOpt, const unsigned char* cert, int certLen, std::string& crl) {
    const int code = appOpt.GetCrlDataFromCert(cert, certLen, crl);
    if (code == 0 && !crl.empty()) return 0;
    TESMARK_LOG(kLogError, "GetCrlDataFromCert error:%d", code);
    return TESMARK_CRL_FAILED;
}

int ObtainCrlForService(CAppOpt& appOpt, const unsigned char* cert, int certLen, std::string& crl) {
    if (const int code = ObtainCrl(appOpt, cert, certLen, crl)) return code;
    const std::string text = Base64Encode(crl);
    const int result = appOpt.kvl->SetUserConfig(appOpt.context, kCrlConfig, text.c_str());
    if (result == 0) return 0;
    TESMARK_LOG(kLogError, "[SetCRL]call SetUserConfig error:%d", result);
    return TESMARK_CRL_NOT_ACCEPTED;
}
