#include "session/CertificatePresence.h"

#include <string>
#include <vector>

#include "TesmarkOpt.h"
#include "foundation/Logger.h"
#include "host/ModuleState.h"
#include "seal/CertKinds.h"
#include "seal/KeyLists.h"
#include "session/CertificateChoice.h"
#include "session/HostBytes.h"
#include "session/ScanLogin.h"
#include "session/UserListText.h"

namespace {

// The certificate as Base64 text; `text` is empty after a failure.
int ReadCertText(const std::string& certId, std::string& text) {
    CBuffer base64;
    const int code = g_appOpt.GetKeyCert(certId.c_str(), base64);
    text = base64 ? base64.Text() : "";
    return code;
}

// A certificate of the cloud doesn't stand in the list under its identifier in use, so it is asked
// for directly, the first time after its choice.
bool IsPickedCloudCert(const std::string& cert) {
    if (!IsCloudLabel(g_pickedCertLabel)) return false;
    g_pickedCertLabel.clear();
    std::string text;
    ReadCertText(g_currentCertId.Text(), text);
    return text == cert;
}

int ReadCertIds(std::vector<std::string>& certIds) {
    std::string list;
    if (const int code = ReadUserListText(list)) return code;
    ListedCert entry;
    for (std::size_t position = 0; NextListedCert(list, position, entry);) {
        if (IsScanDevice(entry.certId) && !IsScanPlaceholder(entry.certId)) continue;
        certIds.emplace_back(entry.certId);
    }
    return 0;
}

int JudgeScanCert(const std::string& certId) {
    if (g_currentCertId.Empty()) {
        const int code = session::PZMLogin();
        if (code == 0) g_currentCertId.Assign(certId);
        return code;
    }
    if (!IsScanDevice(g_currentCertId.Text())) return TESMARK_CERT_NOT_IN_USE;
    g_currentCertId.Assign(certId);
    return 0;
}

int JudgePresentCert(const std::string& certId) {
    if (IsScanDevice(certId)) return JudgeScanCert(certId);
    return g_currentCertId.Text() == certId ? 0 : TESMARK_CERT_NOT_IN_USE;
}

// Without a certificate there is nothing to object to, and the result is 0.
int FindCert(const std::vector<std::string>& certIds, const std::string& cert) {
    int status = 0;
    for (const std::string& certId : certIds) {
        std::string text;
        status = ReadCertText(certId, text);
        TESMARK_LOG(kLogInfo, "certId : %s , strCert : %s", certId.c_str(), text.c_str());
        if (status != 0) continue;
        if (text == cert) return JudgePresentCert(certId);
        status = TESMARK_CERT_NOT_IN_USE;
    }
    return status;
}

}  // namespace

namespace session {

int CheckIsCertExist(const unsigned char* cert, int certLen) {
    TESMARK_LOG_SCOPE("CheckIsCertExist");
    if (const int code = EnsureServiceReady()) return code;
    const std::string wanted = BytesOfHost(cert, certLen);
    if (IsPickedCloudCert(wanted)) return 0;
    std::vector<std::string> certIds;
    if (const int code = ReadCertIds(certIds)) return code;
    return FindCert(certIds, wanted);
}

int GetCertBase64Data(unsigned char* out, int* outLen) {
    TESMARK_LOG_SCOPE("GetCertBase64Data");
    if (const int code = EnsureServiceReady()) return code;
    if (out != nullptr && !g_certBase64Data.Empty()) {
        g_certBase64Data.CutAtZeroByte();
        g_certBase64Data.CopyTo(out, *outLen);
        return 0;
    }
    std::string certId;
    if (const int code = TakeCertificate(certId)) return code;
    std::string text;
    if (const int code = ReadCertText(certId, text)) return code;
    g_certBase64Data.Assign(text);
    *outLen = g_certBase64Data.Length();
    return 0;
}

}  // namespace session
