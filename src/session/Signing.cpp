#include "session/Signing.h"

#include <climits>

#include "TesmarkOpt.h"
#include "bridge/TwoStep.h"
#include "foundation/Logger.h"
#include "foundation/Registry.h"
#include "host/ModuleState.h"

namespace {

// Room for a second signature that comes out longer than the first; the service is told of it.
constexpr int kSpareOfSignature = 128;

// The signature is made twice, for its size and for itself, whatever the host asks for.
int SignAndStamp(const unsigned char* data, int dataLen, const char* certId, unsigned char* out,
                 int* outLen) {
    const auto sign = [&](unsigned char* buffer, int* length) {
        return g_appOpt.SignPlainDataEx(1, data, dataLen, certId, buffer, length);
    };
    int size = 0;
    if (const int code = sign(nullptr, &size)) return code;
    if (size < 0 || size > INT_MAX - kSpareOfSignature) return TESMARK_NO_MEMORY;
    CBuffer signature = AllocateAnswer(size + kSpareOfSignature, 0);
    if (!signature) return TESMARK_NO_MEMORY;
    if (const int code = FetchAnswer(sign, signature, 0)) return code;
    const int result = g_appOpt.SignTimeStamp(signature.Data(), signature.Length(), out, outLen);
    if (result == 0) return 0;
    TESMARK_LOG(kLogError, "SignTimeStamp error %d", result);
    return TESMARK_TIME_STAMP_FAILED;
}

}  // namespace

int session::SignPlainData(const unsigned char* data, int dataLen, const char* certId,
                           unsigned char* out, int* outLen) {
    if (ReadNumberSetting("bSignWithTimeStamp") != 0) {
        return SignAndStamp(data, dataLen, certId, out, outLen);
    }
    return g_appOpt.SignPlainDataEx(1, data, dataLen, certId, out, outLen);
}
