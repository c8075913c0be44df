#include <algorithm>
#include <cstring>
#include <ctime>
#include <string_view>

#include "TesmarkOpt.h"
#include "bridge/AppOpt.h"
#include "bridge/ServiceHash.h"
#include "bridge/TwoStep.h"
#include "foundation/Logger.h"
#include "platform/Clock.h"
#include "platform/closed/SealLibrary.h"

namespace {

// What the key type selects. RSA is everything that isn't SM2.
struct KeyAlgorithms {
    int signMethod;
    int hashNumber;
    const char* hashName;
    const char* signatureOid;
};

constexpr KeyAlgorithms kSm2{0x00020101, 1, "SM3", "1.2.156.10197.1.501"};
constexpr KeyAlgorithms kRsa{0x00010004, 4, "SHA256", "1.2.840.113549.1.1.11"};
constexpr int kNoMethod = 0;
constexpr int kTimeCapacity = 20;
// The length that a host hears of is larger than the signature, also when it was written.
constexpr int kSpareOfBigFile = 128;

int HashNumber(std::string_view name) {
    if (name == "SM3") return kSm3Number;
    return name == "SHA256" ? kSha256Number : kSha1Number;
}

// A length beyond the buffer is told, but nothing beyond the buffer is copied.
void DeliverHash(const ServiceHash& hash, unsigned char* out, int* outLen) {
    if (out != nullptr) std::memcpy(out, hash.value, std::clamp(hash.length, 0, kHashCapacity));
    *outLen = hash.length;
}

int AlgorithmsOfKey(CAppOpt& appOpt, const char* certId, KeyAlgorithms& algorithms) {
    char type[kKeyTypeSize] = {};
    const int code = appOpt.GetKeyType(certId, type);
    algorithms = std::string_view(type) == "SM2" ? kSm2 : kRsa;
    return code;
}

int SetMethod(const CAppOpt& appOpt, int method) {
    return appOpt.kvl->SOF_SetSignMethod(appOpt.context, method);
}

const unsigned char* Bytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

int Length(std::string_view text) { return static_cast<int>(text.size()); }

// The seal library's signature over a hash, with the time of this moment.
int SignHashWithSeal(const unsigned char* hash, const char* oid, const char* certId,
                     const unsigned char* property, int propertyLen, std::string_view seal,
                     unsigned char* out, int* outLen) {
    const std::tm now = platform::LocalTime(std::time(nullptr));
    char time[kTimeCapacity] = {};
    std::strftime(time, sizeof time, "%Y-%m-%dT%H:%M:%S", &now);
    const int result = TVK_Sign(Bytes(certId), Length(certId), property, propertyLen, Bytes(oid),
                                Length(oid), hash, kHashCapacity, Bytes(time), Length(time),
                                Bytes(seal.data()), Length(seal), out, outLen);
    if (result != 0) return result;
    TESMARK_LOG(kLogTrace, "[SignData_GB]: %s", "ok");
    return 0;
}

}  // namespace

int CAppOpt::SignPlainDataEx(int, const unsigned char* data, int dataLen, const char* certId,
                             unsigned char* out, int* outLen) {
    TESMARK_LOG(kLogTrace, "[SignPlainDataEx]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    KeyAlgorithms algorithms;
    if (const int code = AlgorithmsOfKey(*this, certId, algorithms)) {
        TESMARK_LOG(kLogError, "[SignPlainDataEx]GetKeyType: error:%d", code);
        return code;
    }
    if (const int result = SetMethod(*this, algorithms.signMethod)) {
        TESMARK_LOG(kLogError, "[SignPlainDataEx]SOF_SetSignMethod: error:%d", result);
        return result;
    }
    const int result = kvl->SOF_SignMessageEx(context, certId, 1, 1, data, dataLen, out, outLen);
    SetMethod(*this, kNoMethod);
    if (result == 0) return 0;
    TESMARK_LOG(kLogError, "[SignPlainData]SOF_SignMessage: error:%d", result);
    return TESMARK_PKCS7_FAILED;
}

int CAppOpt::SignData(const unsigned char* data, int dataLen, const char* certId,
                      CBuffer& signature) {
    TESMARK_LOG(kLogTrace, "[SignData]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    KeyAlgorithms algorithms;
    if (const int code = AlgorithmsOfKey(*this, certId, algorithms)) {
        TESMARK_LOG(kLogError, "[SignData]GetKeyType: error:%d", code);
        return code;
    }
    if (const int result = SetMethod(*this, algorithms.signMethod)) {
        TESMARK_LOG(kLogError, "[SignData]SOF_SetSignMethod: error:%d", result);
        return result;
    }
    const TwoStepOutcome made = FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return kvl->SOF_SignData(context, certId, data, dataLen, out, outLen);
        },
        1, signature);
    if (made.result != 0) TESMARK_LOG(kLogError, "[SignData]SOF_SignData: error:%d", made.result);
    const int reset = SetMethod(*this, kNoMethod);
    if (made.result != 0) return made.result;
    if (made.noMemory) {
        if (reset == 0) return TESMARK_NO_MEMORY;
        TESMARK_LOG(kLogError, "[SignData]SOF_SetSignMethod: error:%d", reset);
        return reset;
    }
    TESMARK_LOG(kLogTrace, "[SignData]: %s", "ok");
    return 0;
}

int CAppOpt::SignBigFile(int, const char* filePath, const char* certId, unsigned char* out,
                         int* outLen) {
    TESMARK_LOG(kLogTrace, "[SignBigFile]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    CBuffer cert;
    if (const int code = GetKeyCertEx(certId, cert)) return code;
    KeyAlgorithms algorithms;
    if (const int code = AlgorithmsOfKey(*this, certId, algorithms)) return code;
    if (const int result = SetMethod(*this, algorithms.signMethod)) return result;
    ServiceHash hash(algorithms.hashNumber);
    // The method stays set here.
    if (const int result = HashFileInto(*this, hash, filePath, cert.Data(), cert.Length())) {
        return result;
    }
    const int result = kvl->SOF_SignHashMessage(context, certId, 0, hash.number, hash.value,
                                                hash.length, out, outLen);
    SetMethod(*this, kNoMethod);
    if (result == 0) *outLen += kSpareOfBigFile;
    return result;
}

int CAppOpt::SignData_GB(const unsigned char* data, int dataLen, const char* certId,
                         const unsigned char* property, int propertyLen, std::string_view seal,
                         unsigned char* out, int* outLen) {
    TESMARK_LOG(kLogTrace, "[SignData_GB]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    KeyAlgorithms algorithms;
    if (const int code = AlgorithmsOfKey(*this, certId, algorithms)) return code;
    // Without a certificate, so SM3 gets the user id and no public key. A failed hash isn't looked
    // at: what is signed then are zero bytes.
    unsigned char hash[kHashCapacity] = {};
    int hashLen = kHashCapacity;
    HashData(algorithms.hashName, data, dataLen, nullptr, 0, hash, &hashLen);
    return SignHashWithSeal(hash, algorithms.signatureOid, certId, property, propertyLen, seal, out,
                            outLen);
}

// The method is not reset: it stays in force until the next plain signature.
int CAppOpt::SignBigFile_GB(const char* filePath, const char* certId, const unsigned char* property,
                            int propertyLen, std::string_view seal, unsigned char* out,
                            int* outLen) {
    TESMARK_LOG(kLogTrace, "[SignBigFile_GB]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    KeyAlgorithms algorithms;
    if (const int code = AlgorithmsOfKey(*this, certId, algorithms)) return code;
    if (const int result = SetMethod(*this, algorithms.signMethod)) {
        TESMARK_LOG(kLogError, "[SignPlainDataEx]SOF_SetSignMethod: error:%d", result);
        return result;
    }
    ServiceHash hash(algorithms.hashNumber);
    if (const int result = HashFileInto(*this, hash, filePath, nullptr, 0)) return result;
    return SignHashWithSeal(hash.value, algorithms.signatureOid, certId, property, propertyLen,
                            seal, out, outLen);
}

int CAppOpt::HashData(const char* algorithm, const unsigned char* data, int dataLen,
                      const unsigned char* cert, int certLen, unsigned char* out, int* outLen) {
    TESMARK_LOG(kLogTrace, "[HashData]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    ServiceHash hash(HashNumber(algorithm));
    const int result = kvl->SOF_HashData(context, hash.number, data, dataLen, cert, certLen,
                                         hash.userId, hash.userIdLen, hash.value, &hash.length);
    if (result != 0) return result;
    TESMARK_LOG(kLogTrace, "[HashData]: %s", "ok");
    DeliverHash(hash, out, outLen);
    return 0;
}

int CAppOpt::HashFile(const char* algorithm, const char* filePath, unsigned char* cert, int certLen,
                      unsigned char* out, int* outLen) {
    TESMARK_LOG(kLogTrace, "[HashFile]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    ServiceHash hash(HashNumber(algorithm));
    if (const int result = HashFileInto(*this, hash, filePath, cert, certLen)) {
        std::free(cert);
        return result;
    }
    TESMARK_LOG(kLogTrace, "[HashFile]: %s", "ok");
    DeliverHash(hash, out, outLen);
    return 0;
}
