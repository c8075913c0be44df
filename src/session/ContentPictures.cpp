#include "session/ContentPictures.h"

#include <string>

#include "foundation/Registry.h"
#include "host/ModuleState.h"
#include "session/HostBytes.h"
#include "session/KeyProbe.h"
#include "session/PersonalSeal.h"
#include "session/PictureCache.h"

namespace {

std::string TextOfHost(const char* text) { return text != nullptr ? text : ""; }

// The key is tried whatever g_stampPictureMode says.
int TryKey(const std::string& certId) {
    const bool withTimeStamp = ReadNumberSetting("bSignWithTimeStamp") != 0;
    if (const int code = SignProbe(certId)) return code;
    return withTimeStamp ? StampProbe() : 0;
}

// A failed drawing leaves an empty picture, whose length is told.
template <typename Draw>
int TryKeyAndDraw(const std::string& certId, int* outLen, Draw draw) {
    if (const int code = TryKey(certId)) return code;
    std::string picture;
    const int code = draw(picture);
    *outLen = static_cast<int>(picture.size());
    g_sealInfoCache.Assign(picture);
    return code;
}

// A picture that is cached is the answer whatever text it was drawn of, and what is drawn is left
// to the next call's copy.
template <typename Draw>
int FetchOrDraw(unsigned char* out, int* outLen, Draw draw) {
    if (out != nullptr && !g_sealInfoCache.Empty()) {
        CopyCachedPicture(out, *outLen);
        return 0;
    }
    if (const int code = EnsureServiceReadyToSign()) return code;
    const std::string certId = g_currentCertId.Text();
    if (certId.empty()) return 0;
    const int code = TryKeyAndDraw(certId, outLen, draw);
    if (code != 0) state::ClearSelectKeyID();
    return code;
}

}  // namespace

namespace session {

int GetContentPicture(unsigned char* out, int* outLen, const char* content, int radioColor,
                      int frameThick, const unsigned char* fontName, int fontNameLen, int bFrame,
                      int fontSpace, int fontSize, int bold, int perColumn) {
    const PersonalSealStyle style{radioColor, frameThick, BytesOfHost(fontName, fontNameLen),
                                  bFrame,     fontSpace,  fontSize,
                                  bold,       perColumn};
    return FetchOrDraw(out, outLen, [&](std::string& picture) {
        return BuildPersonalSeal(TextOfHost(content), PersonalSealMode::Styled, picture, style);
    });
}

int GetPicByContentInfo(int kind, const char* text1, const char* text2, unsigned char* out,
                        int* outLen) {
    return FetchOrDraw(out, outLen, [&](std::string& picture) {
        return BuildContentPicture(kind, TextOfHost(text1), TextOfHost(text2), picture);
    });
}

}  // namespace session
