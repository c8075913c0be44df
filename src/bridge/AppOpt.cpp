#include "bridge/AppOpt.h"

#include "TesmarkOpt.h"
#include "foundation/Logger.h"
#include "foundation/Registry.h"
#include "foundation/ServicePath.h"
#include "platform/closed/SealLibrary.h"

namespace {

struct Settings {
    std::string sealStatusUrl;
    unsigned int askSealStatus = 0;
    unsigned int signWithTimeStamp = 0;
    unsigned int verifyCrl = 0;
};

// Each value stands for itself; what can't be read keeps its default.
Settings ReadSettings() {
    Settings settings;
    CRegistry registry = OpenSettings();
    registry.GetString("sEsealStateUrl", settings.sealStatusUrl);
    settings.askSealStatus = registry.GetNumber("ReqEsealStatus");
    settings.signWithTimeStamp = registry.GetNumber("bSignWithTimeStamp");
    settings.verifyCrl = registry.GetNumber("bVerifyCRL");
    return settings;
}

// A service whose start was followed by a failure of the seal library is forgotten, not ended: it
// is never finalised, and its file stays loaded.
void ForgetService(CAppOpt& appOpt) {
    if (appOpt.kvl == nullptr) return;
    appOpt.kvl->module = nullptr;
    delete appOpt.kvl;
    appOpt.kvl = nullptr;
}

void DropService(CAppOpt& appOpt) {
    delete appOpt.kvl;
    appOpt.kvl = nullptr;
}

int StartService(CAppOpt& appOpt) {
    std::string registered;
    const std::string path = LocateCertService(&registered);
    TESMARK_LOG(kLogTrace, "KVLAppCOM.dll path : %s", registered.c_str());
    if (path.empty()) return TESMARK_SERVICE_NOT_FOUND;
    ForgetService(appOpt);
    appOpt.kvl = new CKVLOpt(path.c_str());
    if (appOpt.kvl->module == nullptr) {
        DropService(appOpt);
        return TESMARK_SERVICE_NOT_FOUND;
    }
    if (const int result = appOpt.kvl->SOF_Initialize(&appOpt.context)) {
        TESMARK_LOG(kLogError, "[KVLInitialize]: %s,error:%d", "failed", result);
        DropService(appOpt);
        appOpt.context = nullptr;
        return TESMARK_SERVICE_FAILED;
    }
    return 0;
}

}  // namespace

int KVLInitialize(CAppOpt& appOpt) {
    TESMARK_LOG(kLogTrace, "[KVLInitialize]: %s", "begin");
    if (const int code = StartService(appOpt)) return code;
    if (const int result = TVK_Initialize()) return result;
    const Settings settings = ReadSettings();
    appOpt.verifyCrl = settings.verifyCrl;
    TVK_SetConfig(static_cast<int>(settings.askSealStatus), settings.sealStatusUrl.c_str(),
                  static_cast<int>(settings.sealStatusUrl.size()),
                  static_cast<int>(settings.signWithTimeStamp));
    appOpt.initialised = 1;
    TESMARK_LOG(kLogTrace, "[KVLInitialize]: %s", "ok");
    return 0;
}

void KVLUnInitialize(CAppOpt& appOpt) {
    TESMARK_LOG(kLogTrace, "[KVLUnInitialize]: %s", "begin");
    if (appOpt.initialised) {
        appOpt.kvl->SOF_Finalize(appOpt.context);
        DropService(appOpt);
    }
    ForgetService(appOpt);
    appOpt.context = nullptr;
    appOpt.initialised = 0;
    TVK_Release();
    TESMARK_LOG(kLogTrace, "[KVLUnInitialize]: %s", "ok");
}

int CAppOpt::CheckKVLOKStatus() {
    if (initialised) return 0;
    KVLInitialize(*this);
    if (initialised) return 0;
    TESMARK_LOG(kLogError, "CheckKVLOKStatus error");
    return TESMARK_SERVICE_FAILED;
}
