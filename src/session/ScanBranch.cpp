#include "session/ScanBranch.h"

#include "bridge/TwoStep.h"
#include "host/ModuleState.h"
#include "session/ScanLogin.h"
#include "session/ScanSeals.h"

namespace {

// The first certificate it is, also where the dialog picked another: hosts know it so. A dialog can
// have emptied the list meanwhile.
void KeepAsOnlySeal(const std::string& picture) {
    if (g_certEsealOpt.m_certs.empty()) return;
    CBuffer copy = AllocateAnswer(static_cast<int>(picture.size()), 1);
    if (!copy) return;
    picture.copy(copy.Text(), picture.size());
    std::vector<SealRecord>& seals = g_certEsealOpt.m_certs.front().seals;
    FreeSeals(seals);
    SealRecord& seal = seals.emplace_back();
    seal.picLen = copy.Length();
    seal.picData = copy.Release();
}

void Deliver(const std::string& certId, const std::string& picture, unsigned char* buffer,
             int* length) {
    g_currentCertId.Assign(certId);
    g_selectedSealIndex = 0;
    KeepAsOnlySeal(picture);
    *length = static_cast<int>(picture.size());
    g_sealInfoCache.Assign(picture);
    if (buffer != nullptr) picture.copy(reinterpret_cast<char*>(buffer), picture.size());
}

}  // namespace

int SelectByScan(const std::string& certId, unsigned char* buffer, int* length) {
    if (const int code = LoginByScan(certId)) return code;
    std::string picture;
    const int code = GetPZMSealPic(certId, picture);
    if (!picture.empty()) Deliver(certId, picture, buffer, length);
    g_sealFlowBusy = 0;
    return code;
}
