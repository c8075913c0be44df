#include "session/SealFlows.h"

#include <cstring>

#include "TesmarkOpt.h"
#include "bridge/TwoStep.h"
#include "dialogs/CertSealTree.h"
#include "foundation/Logger.h"
#include "host/ModuleState.h"
#include "platform/closed/SealLibrary.h"

namespace {

constexpr unsigned char kProbeText[] = {'1'};
constexpr int kRequestStatus = 1;
constexpr char kScanDevice[] = "hlvqDev";

std::string_view View(const unsigned char* bytes, int length) {
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)};
}

int LogStatusFailure(int result) {
    TESMARK_LOG(kLogError, "TVK_Request_Eseal_Status error %d", result);
    return result;
}

// What the stamp would take is asked for, and the stamp itself made by the authority.
int StampProbe() {
    int size = 0;
    const int result = g_appOpt.SignTimeStamp(kProbeText, sizeof kProbeText, nullptr, &size);
    if (result == 0) return 0;
    TESMARK_LOG(kLogError, "SignTimeStamp error %d", result);
    return TESMARK_TIME_STAMP_FAILED;
}

// Reads the first and the fifth field; the nine others share one length that nobody reads.
int ReadStatusFields(const SealRecord& seal, CBuffer& field1, CBuffer& field5) {
    int ignored = 0;
    return TVK_GetSealInfo(seal.sealData, seal.sealDataLen, field1.Data(), field1.LengthPointer(),
                           nullptr, &ignored, nullptr, &ignored, nullptr, &ignored, field5.Data(),
                           field5.LengthPointer(), nullptr, &ignored, nullptr, &ignored, nullptr,
                           &ignored, nullptr, &ignored, nullptr, &ignored, nullptr, &ignored);
}

// An empty field ends the flow with 0 and nothing selected: hosts know it so.
int RequestStatus(const SealRecord& seal, bool& proceed) {
    CBuffer field1;
    CBuffer field5;
    int result = ReadStatusFields(seal, field1, field5);
    if (result != 0 || field1.Length() <= 0 || field5.Length() <= 0) {
        return LogStatusFailure(result);
    }
    const int size1 = field1.Length();
    const int size5 = field5.Length();
    field1 = AllocateAnswer(size1, 1);
    field5 = AllocateAnswer(size5, 1);
    if (!field1 || !field5) return LogStatusFailure(TESMARK_NO_MEMORY);
    result = ReadStatusFields(seal, field1, field5);
    if (result != 0) return LogStatusFailure(result);
    CutAnswer(field1, size1, 1);
    CutAnswer(field5, size5, 1);
    result = TVK_Request_Eseal_Status(field1.Data(), field1.Length(), field5.Data(),
                                      field5.Length(), 0, 0);
    if (result != 0) return LogStatusFailure(result);
    proceed = true;
    return 0;
}

// The scan by phone has no flow of its own yet.
int SelectByScan() {
    TESMARK_LOG(kLogError, "login by scan isn't available, error %d", TESMARK_LOGIN_FAILED);
    return TESMARK_LOGIN_FAILED;
}

struct Options {
    bool withTimeStamp;
    int reqStatus;
    bool logProbeFailure;
};

// The stages in the order that both flows keep.
int ProbeCheckDeliver(const CertRecord& cert, int sealIndex, const Options& options,
                      unsigned char* buffer, int* length) {
    if (const int code = ProbeKey(cert, options.withTimeStamp, options.logProbeFailure)) {
        return code;
    }
    const SealRecord& seal = cert.seals[static_cast<std::size_t>(sealIndex)];
    bool proceed = false;
    const int code = CheckSeal(seal, sealIndex, options.reqStatus, proceed);
    if (code == 0 && proceed) DeliverSeal(cert, seal, buffer, length);
    return code;
}

}  // namespace

int ProbeKey(const CertRecord& cert, bool withTimeStamp, bool logFailure) {
    if (g_stampPictureMode == 0) return 0;
    CBuffer signature;
    const int code =
        g_appOpt.SignData(kProbeText, sizeof kProbeText, cert.CertIdText().c_str(), signature);
    if (code != 0) {
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
    proceed = false;
    return RequestStatus(seal, proceed);
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
    if (cert.scanMode == 1) return SelectByScan();
    if (cert.seals.size() != 1) return TESMARK_NOT_SHORT;
    const int code = ProbeCheckDeliver(cert, 0, {withTimeStamp, reqStatus, false}, buffer, length);
    g_sealFlowBusy = 0;
    return code;
}

int SelectByDialogFlow(unsigned char* buffer, int* length, bool withTimeStamp, int reqStatus) {
    g_sealFlowBusy = 1;
    CertSealPick pick;
    if (ShowCertSealTree(&pick) != DialogEnd::Confirmed) {
        TESMARK_LOG(kLogError, "user cancel dlg %d", TESMARK_CANCELLED);
        return TESMARK_CANCELLED;
    }
    if (pick.certIndex == -1) {
        g_sealFlowBusy = 0;
        return TESMARK_CANCELLED;
    }
    const CertRecord& cert = g_certEsealOpt.m_certs[static_cast<std::size_t>(pick.certIndex)];
    if (pick.sealIndex == -1) {
        g_sealFlowBusy = 0;
        const bool isScan = cert.CertIdText().find(kScanDevice) != std::string::npos;
        return isScan ? SelectByScan() : TESMARK_CANCELLED;
    }
    const int code =
        ProbeCheckDeliver(cert, pick.sealIndex, {withTimeStamp, reqStatus, true}, buffer, length);
    if (code != 0) g_sealFlowBusy = 0;
    return code;
}
