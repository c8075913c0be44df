#include "session/SealByUrl.h"

#include <string>

#include "TesmarkOpt.h"
#include "foundation/Logger.h"
#include "foundation/Registry.h"
#include "foundation/SealSettings.h"
#include "host/ModuleState.h"
#include "platform/closed/SealLibrary.h"
#include "session/CertificateChoice.h"
#include "session/KeyProbe.h"
#include "session/OnlineSeal.h"
#include "session/PictureCache.h"
#include "session/SealStatus.h"

namespace {

int TryKey(const std::string& certId) {
    if (g_stampPictureMode == 0) return 0;
    const int code = SignProbe(certId);
    if (code != 0) TESMARK_LOG(kLogError, "SignData error %d", code);
    return code;
}

int EndSelection(int code) {
    state::ClearSelectKeyID();
    return code;
}

int Judge(const std::string& seal, int mode, int reqStatus, bool& passed) {
    const int result = TVK_Verify_SESeal(reinterpret_cast<const unsigned char*>(seal.data()),
                                         static_cast<int>(seal.size()));
    passed = result == 0;
    if (!passed || mode != SealTypeGB || reqStatus != kRequestStatus) return result;
    return RequestSealStatus(seal, passed);
}

// The log names the verification whichever call it was, also for an empty field and its 0. A file
// without a picture leaves the mode of the seal before it, by which it is judged.
int JudgeFetchedSeal(int reqStatus, bool& passed) {
    passed = true;
    const int mode = g_esealMode;
    if (mode != SealTypeGM && mode != SealTypeGB) return 0;
    const int result = Judge(std::string(g_selectedSeal.View()), mode, reqStatus, passed);
    if (passed) return 0;
    EndSelection(result);
    TESMARK_LOG(kLogError, "TVK_Verify_SESeal error %d", result);
    return result;
}

int FetchAndJudge(const std::string& certId, int* length, int reqStatus) {
    const std::string url = ReadTextSetting("sWSURL");
    if (url.empty()) return EndSelection(TESMARK_NO_ONLINE_ADDRESS);
    CBuffer picture;
    if (const int code = FetchSealFromService(url, certId, picture, length)) {
        return EndSelection(code);
    }
    bool passed = false;
    const int code = JudgeFetchedSeal(reqStatus, passed);
    if (passed) g_sealInfoCache.AssignFromHost(picture.Data(), *length);
    return code;
}

}  // namespace

// Unlike elsewhere an empty cache is copied too.
int GetEsealByUrl(unsigned char* buffer, int* length, int reqStatus) {
    TESMARK_LOG_SCOPE("GetEsealByUrl");
    if (const int code = EnsureServiceReady()) return code;
    std::string certId;
    if (const int code = TakeCertificate(certId)) return code;
    if (const int code = TryKey(certId)) return code;
    if (buffer == nullptr) return FetchAndJudge(certId, length, reqStatus);
    CopyCachedPicture(buffer, *length);
    return 0;
}
