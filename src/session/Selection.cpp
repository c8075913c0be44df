#include "session/Selection.h"

#include <algorithm>
#include <string>
#include <vector>

#include "TesmarkOpt.h"
#include "foundation/Logger.h"
#include "foundation/Registry.h"
#include "foundation/SealSettings.h"
#include "foundation/Text.h"
#include "host/ModuleState.h"
#include "session/HostBytes.h"

namespace {

constexpr int kSerialNumber = 2;

// Up to its first zero byte, if there is one within the length.
std::string TextOfHost(const unsigned char* bytes, int length) {
    return BytesOfHost(bytes, length).c_str();
}

// For the log: the bytes within the length alone are the host's.
std::string Shown(const unsigned char* bytes, int length) {
    return bytes != nullptr ? TextOfHost(bytes, std::max(length, 0)) : "(null)";
}

void CutSelectionTexts() {
    g_currentCertId.CutAtZeroByte();
    g_selectedSealName.CutAtZeroByte();
    g_selectedSeal.CutAtZeroByte();
}

// The text form of the certificate's serial number, empty if it can't be had. The result of the
// last call made.
int ReadSerial(const char* certId, std::string& serial) {
    CBuffer cert;
    if (const int code = g_appOpt.GetKeyCertEx(certId, cert)) return code;
    CBuffer value;
    const int code =
        g_appOpt.GetCertificateInfoEx(cert.Data(), cert.Length(), kSerialNumber, value);
    if (code == 0) serial = value.Text();
    return code;
}

bool SelectSeal(const CertRecord& cert, const std::string& sealBase64) {
    for (const SealRecord& seal : cert.seals) {
        const std::string_view file(reinterpret_cast<const char*>(seal.sealData),
                                    static_cast<std::size_t>(seal.sealDataLen));
        if (Base64Encode(file) != sealBase64) continue;
        g_esealMode = seal.type;
        g_selectedSeal.Assign(file);
        return true;
    }
    return false;
}

// A seal that was selected before makes a search that found nothing look like success: hosts know
// it so. While the service is asked, a host's call can rebuild the list: the place then stands for
// the certificate only if it still has its identifier.
int SelectFromKeys(const std::string& serial, const std::string& sealBase64) {
    int status = 0;
    const std::vector<CertRecord>& certs = g_certEsealOpt.m_certs;
    for (std::size_t index = 0; index < certs.size(); ++index) {
        const std::string certId = certs[index].CertIdText();
        std::string found;
        status = ReadSerial(certId.c_str(), found);
        if (found != serial) continue;
        g_currentCertId.Assign(certId);
        if (g_esealMode == SealTypeDefault) return 0;
        const bool stands = index < certs.size() && certs[index].CertIdText() == certId;
        if (stands && SelectSeal(certs[index], sealBase64)) return 0;
    }
    return g_selectedSeal.Empty() ? TESMARK_NO_SEAL_MATCHES : status;
}

}  // namespace

namespace session {

int SetCertSeal(const unsigned char* serial, int serialLen, const unsigned char* sealBase64,
                int sealLen, int mode) {
    const std::string wanted = TextOfHost(serial, serialLen);
    const unsigned int position = ReadNumberSetting("bSealPosition");
    if (serial == nullptr || sealBase64 == nullptr) return TESMARK_NULL_ARGUMENT;
    TESMARK_LOG(kLogInfo, "SetCertSealName pCertId is %s, pSeal is %s", wanted.c_str(),
                Shown(sealBase64, sealLen).c_str());
    CutSelectionTexts();
    g_esealMode = mode;
    if (const int code = EnsureServiceReady()) return code;
    if (position == kOnlineService) {
        g_selectedSeal.Assign(Base64Decode(BytesOfHost(sealBase64, sealLen)));
        return 0;
    }
    if (position == kNameByXml) return 0;
    g_certEsealOpt.GetCertAndPic();
    return SelectFromKeys(wanted, TextOfHost(sealBase64, sealLen));
}

int SetContentSignCertId(const unsigned char* certId, int certIdLen) {
    TESMARK_LOG(kLogInfo, "SetContentSignCertId pCertId is %s", Shown(certId, certIdLen).c_str());
    CutSelectionTexts();
    g_currentCertId.AssignFromHost(certId, certIdLen);
    g_esealMode = SealTypeDefault;
    return 0;
}

int CheckSelectedCert() {
    if (g_currentCertId.Empty()) return 0;
    char type[kKeyTypeSize] = {};
    return g_appOpt.GetKeyType(g_currentCertId.Text().c_str(), type);
}

}  // namespace session
