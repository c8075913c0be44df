#include "seal/KeyFiles.h"

#include "TesmarkOpt.h"
#include "bridge/TwoStep.h"
#include "foundation/Logger.h"

int ListKeyFiles(CAppOpt& appOpt, const char* certId, std::string& names) {
    int size = 0;
    if (const int code = appOpt.EnumFilesInKey(certId, nullptr, &size)) {
        TESMARK_LOG(kLogError, "EnumFilesInKey1 error:%d", code);
        return code;
    }
    CBuffer list = AllocateAnswer(size, 1);
    const auto fetch = [&](unsigned char* out, int* outLen) {
        return appOpt.EnumFilesInKey(certId, out, outLen);
    };
    const int code = list ? FetchAnswer(fetch, list, 1) : TESMARK_NO_MEMORY;
    if (code != 0) {
        TESMARK_LOG(kLogError, "EnumFilesInKey2 error:%d", code);
        return code;
    }
    names = list.View();
    return 0;
}
