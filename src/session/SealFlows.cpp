#include "session/SealFlows.h"

#include <cstring>
#include <string>
#include <vector>

#include "TesmarkOpt.h"
#include "dialogs/CertSealTree.h"
#include "foundation/Logger.h"
#include "foundation/SealSettings.h"
#include "host/ModuleState.h"
#include "platform/closed/SealLibrary.h"
#include "seal/CertKinds.h"
#include "seal/ShownSeals.h"
#include "session/KeyProbe.h"
#include "session/ScanBranch.h"
#include "session/SealStatus.h"

namespace {

std::string_view View(const unsigned char* bytes, int length) {
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)};
}

struct Options {
    bool withTimeStamp;
    int reqStatus;
    bool logProbeFailure;
};

// A seal with its certificate, apart from the list: a host's call can rebuild that while the
// service asks for the PIN.
class CPickedSeal {
public:
    CPickedSeal(const CertRecord& from, std::size_t index) : seal(from.seals[index]) {
        std::memcpy(cert.certId, from.certId, sizeof cert.certId);
        std::memcpy(cert.certName, from.certName, sizeof cert.certName);
        cert.scanMode = from.scanMode;
        Own(seal.sealData, seal.sealDataLen, m_file);
        Own(seal.picData, seal.picLen, m_picture);
    }
    CPickedSeal(const CPickedSeal&) = delete;
    CPickedSeal& operator=(const CPickedSeal&) = delete;

    CertRecord cert;  // without its seals
    SealRecord seal;

private:
    static void Own(unsigned char*& bytes, int length, std::vector<unsigned char>& copy) {
        if (bytes == nullptr) return;
        copy.reserve(static_cast<std::size_t>(length) + 1);
        copy.assign(bytes, bytes + length);
        copy.push_back(0);
        bytes = copy.data();
    }

    std::vector<unsigned char> m_file;
    std::vector<unsigned char> m_picture;
};

// The stages in the order that both flows keep.
int ProbeCheckDeliver(const CertRecord& cert, int sealIndex, const Options& options,
                      unsigned char* buffer, int* length) {
    const CPickedSeal picked(cert, static_cast<std::size_t>(sealIndex));
    if (const int code = ProbeKey(picked.cert, options.withTimeStamp, options.logProbeFailure)) {
        return code;
    }
    bool proceed = false;
    const int code = CheckSeal(picked.seal, sealIndex, options.reqStatus, proceed);
    if (code == 0 && proceed) DeliverSeal(picked.cert, picked.seal, buffer, length);
    return code;
}

}  // namespace

int ProbeKey(const CertRecord& cert, bool withTimeStamp, bool logFailure) {
    if (g_stampPictureMode == 0) return 0;
    if (const int code = SignProbe(cert.CertIdText())) {
        if (logFailure) TESMARK_LOG(kLogError, "SignData error %d", code);
        return code;
    }
    return withTimeStamp ? StampProbe() : 0;
}

int CheckSeal(const SealRecord& seal, int index, int reqStatus, bool& proceed) {
    g_selectedSealIndex = index;
    g_esealMode = seal.type;
    proceed = true;
    if (seal.type != SealTypeGM && seal.type != SealTypeGB) return 0;
    if (const int code = TVK_Verify_SESeal(seal.sealData, seal.sealDataLen)) {
        TESMARK_LOG(kLogError, "TVK_Verify_SESeal error %d", code);
        return code;
    }
    if (seal.type != SealTypeGB || reqStatus != kRequestStatus) return 0;
    // An empty field ends the flow with 0 and nothing selected: hosts know it so.
    const int code = RequestSealStatus(View(seal.sealData, seal.sealDataLen), proceed);
    if (!proceed) TESMARK_LOG(kLogError, "TVK_Request_Eseal_Status error %d", code);
    return code;
}

void DeliverSeal(const CertRecord& cert, const SealRecord& seal, unsigned char* buffer,
                 int* length) {
    g_selectedSeal.Assign(View(seal.sealData, seal.sealDataLen));
    g_currentCertId.Assign(cert.CertIdText());
    g_selectedSealName.Assign(seal.name);
    g_sealPicWidth = seal.picWidth;
    g_sealPicHeight = seal.picHeight;
    *length = seal.picLen;
    g_sealInfoCache.Assign(View(seal.picData, seal.picLen));
    if (buffer != nullptr && seal.picLen > 0) {
        std::memcpy(buffer, seal.picData, static_cast<std::size_t>(seal.picLen));
    }
}

int SelectSingleCertFlow(unsigned char* buffer, int* length, bool withTimeStamp, int reqStatus) {
    const CertRecord& cert = g_certEsealOpt.m_certs.front();
    if (cert.scanMode == 1) return SelectByScan(cert.CertIdText(), buffer, length);
    if (cert.seals.size() != 1) return TESMARK_NOT_SHORT;
    const int code = ProbeCheckDeliver(cert, 0, {withTimeStamp, reqStatus, false}, buffer, length);
    g_sealFlowBusy = 0;
    return code;
}

int SelectByDialogFlow(unsigned char* buffer, int* length, bool withTimeStamp, int reqStatus) {
    g_sealFlowBusy = 1;
    const std::vector<CertRecord>& certs = g_certEsealOpt.m_certs;
    const CShownSeals shown(certs);
    CertSealPick pick;
    if (ShowCertSealTree(&pick) != DialogEnd::Confirmed) {
        TESMARK_LOG(kLogError, "user cancel dlg %d", TESMARK_CANCELLED);
        return TESMARK_CANCELLED;
    }
    // Nothing picked, or what the list no longer holds there after a call during the dialog.
    const CertRecord* const cert = shown.FindCert(certs, pick.certIndex);
    if (cert == nullptr) {
        g_sealFlowBusy = 0;
        return TESMARK_CANCELLED;
    }
    if (shown.FindSeal(certs, pick.certIndex, pick.sealIndex) == nullptr) {
        g_sealFlowBusy = 0;
        const std::string certId = cert->CertIdText();
        const bool isScan = pick.sealIndex == -1 && IsScanDevice(certId);
        return isScan ? SelectByScan(certId, buffer, length) : TESMARK_CANCELLED;
    }
    const int code =
        ProbeCheckDeliver(*cert, pick.sealIndex, {withTimeStamp, reqStatus, true}, buffer, length);
    if (code != 0) g_sealFlowBusy = 0;
    return code;
}
