#include "session/SealRetrieval.h"

#include "TesmarkOpt.h"
#include "foundation/HeapBuffer.h"
#include "foundation/Logger.h"
#include "foundation/Registry.h"
#include "foundation/SealSettings.h"
#include "host/ModuleState.h"
#include "seal/SealReaders.h"
#include "session/SealByName.h"
#include "session/SealByUrl.h"
#include "session/SealFlows.h"

namespace {

struct Settings {
    unsigned int position;
    bool withTimeStamp;
    int reqStatus;

    bool IsLocal() const {
        return position != kOnlineService && position != kNameByXml && position != kNameBySize;
    }
};

Settings ReadSettings() {
    CRegistry registry = OpenSettings();
    Settings settings{};
    settings.position = registry.GetNumber("bSealPosition");
    settings.withTimeStamp = registry.GetNumber("bSignWithTimeStamp") != 0;
    settings.reqStatus = static_cast<int>(registry.GetNumber("ReqEsealStatus"));
    return settings;
}

// However the dialog flow is left, by a failure that passes through too, the next question is
// answered.
struct EndOfDialogFlow {
    ~EndOfDialogFlow() { g_sealFlowBusy = 0; }
};

int SelectLocally(unsigned char* buffer, int* length, const Settings& settings) {
    if (g_sealFlowBusy == 1) return TESMARK_BUSY;
    if (buffer != nullptr && !g_sealInfoCache.Empty()) {
        g_sealInfoCache.CopyTo(buffer, *length);
        return 0;
    }
    if (const int code = g_certEsealOpt.GetCertAndPic()) {
        TESMARK_LOG(kLogError, "GetCertAndPic error:%d", code);
        return code;
    }
    if (g_certEsealOpt.m_certs.size() == 1) {
        const int code =
            SelectSingleCertFlow(buffer, length, settings.withTimeStamp, settings.reqStatus);
        if (code != TESMARK_NOT_SHORT) return code;
    }
    const EndOfDialogFlow end;
    return SelectByDialogFlow(buffer, length, settings.withTimeStamp, settings.reqStatus);
}

int Retrieve(unsigned char* buffer, int* length, const Settings& settings) {
    switch (settings.position) {
        case kOnlineService: return GetEsealByUrl(buffer, length, settings.reqStatus);
        case kNameByXml: return GetEsealByCertCN(buffer, length, PersonalSealMode::FixedStyle);
        case kNameBySize: return GetEsealByCertCN(buffer, length, PersonalSealMode::BySize);
        default: return SelectLocally(buffer, length, settings);
    }
}

// A copy of the cache behind a picture that the buffer of the length told before has no room for.
int TakeFromCache(CBuffer& picture, int length) {
    picture = CBuffer(static_cast<std::size_t>(length) + 1);
    if (!picture) return TESMARK_NO_MEMORY;
    g_sealInfoCache.CopyTo(picture.Data(), length);
    return 0;
}

// The fetch of a dragged picture into room for the length that was told. A picture of length 0
// leaves no cache, so that the keys are read or the name is drawn anew, and one that has grown
// meanwhile fits no more: it is taken from the cache. The local flows fill what they are given,
// so they are given nothing; the others never fill more than the length that they are told.
int FetchDragged(CBuffer& picture, int* length) {
    TESMARK_LOG_SCOPE("GetSealInfo");
    const Settings settings = ReadSettings();
    const bool unmeasured = settings.IsLocal() && g_sealInfoCache.Empty();
    const int room = *length;
    unsigned char* const buffer = unmeasured ? nullptr : picture.Data();
    if (const int code = Retrieve(buffer, length, settings)) return code;
    return unmeasured || *length > room ? TakeFromCache(picture, *length) : 0;
}

}  // namespace

namespace session {

int GetSealInfo(unsigned char* buffer, int* length) {
    TESMARK_LOG_SCOPE("GetSealInfo");
    return Retrieve(buffer, length, ReadSettings());
}

// Hosts know the one zero byte behind the picture, which is part of the text.
int GetDragSealPic(char** base64) {
    int length = 0;
    if (const int code = GetSealInfo(nullptr, &length)) return code;
    ++length;
    CBuffer picture(static_cast<std::size_t>(length));
    if (!picture) return TESMARK_NO_MEMORY;
    if (const int code = FetchDragged(picture, &length)) return code;
    return GetSealPicBase64(picture.Data(), length, base64);
}

}  // namespace session
