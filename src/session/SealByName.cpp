#include "session/SealByName.h"

#include "foundation/Logger.h"
#include "host/ModuleState.h"
#include "session/CertificateChoice.h"
#include "session/PictureCache.h"

namespace {

// What GetCertificateInfo is asked for, which gives the common name whatever stands here.
constexpr int kCommonName = 17;

int ReadCommonName(const std::string& certId, std::string& name) {
    CBuffer cert;
    if (const int code = g_appOpt.GetKeyCert(certId.c_str(), cert)) return code;
    CBuffer value;
    if (const int code = g_appOpt.GetCertificateInfo(cert.Text(), kCommonName, value)) return code;
    name = value.Text();
    return 0;
}

}  // namespace

int GetEsealByCertCN(unsigned char* buffer, int* length, PersonalSealMode mode) {
    TESMARK_LOG_SCOPE("GetEsealByCertCN");
    if (buffer != nullptr && !g_sealInfoCache.Empty()) {
        CopyCachedPicture(buffer, *length);
        return 0;
    }
    std::string certId;
    if (const int code = TakeCertificate(certId)) return code;
    std::string name;
    if (const int code = ReadCommonName(certId, name)) return code;
    std::string picture;
    // Neither mode of this path looks at the style.
    const PersonalSealStyle style{0, 1, "宋体", 0, 3, 24, 0, 1};
    if (const int code = BuildPersonalSeal(name, mode, picture, style)) return code;
    *length = static_cast<int>(picture.size());
    g_sealInfoCache.Assign(picture);
    return 0;
}
