#include "TesmarkOpt.h"
#include "bridge/AppOpt.h"
#include "bridge/TwoStep.h"
#include "foundation/Logger.h"
#include "include/Util/httpUntil.h"
#include "platform/Files.h"
#include "revocation/CrlCache.h"

namespace {

constexpr char kDistributionPoints[] = "2.5.29.31";
// A size of one byte is an empty text with its terminator.
constexpr int kEmptySize = 1;

}  // namespace

int CAppOpt::GetCrlDataFromCert(const unsigned char* cert, int certLen, std::string& crl) {
    TESMARK_LOG(kLogTrace, "[GetCrlDataFromCert]: %s", "begin");
    if (!initialised) KVLInitialize(*this);
    if (!initialised) return TESMARK_SERVICE_DOWN;
    const auto ask = [&](unsigned char* out, int* outLen) {
        return kvl->SOF_GetCertInfoByOid(context, cert, certLen, kDistributionPoints, out, outLen);
    };
    int size = 0;
    const int result = ask(nullptr, &size);
    if (result != 0 || size == 0 || size == kEmptySize) return result;
    CBuffer info = AllocateAnswer(size, 1);
    if (!info) return TESMARK_NO_MEMORY;
    if (const int failed = FetchAnswer(ask, info, 0)) return failed;
    CHttpUntil http;
    SystemClock clock;
    return CrlCache(platform::CrlFolder(), http, clock).Get(info.View(), crl);
}
