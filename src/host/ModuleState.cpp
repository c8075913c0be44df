#include "host/ModuleState.h"

CAppOpt g_appOpt;
CCertEsealOpt g_certEsealOpt(&g_appOpt);

StateString g_currentCertId;
StateString g_selectedSeal;
StateString g_selectedSealName;
int g_esealMode = SealTypeDefault;
int g_sealPicWidth = 0;
int g_sealPicHeight = 0;
StateString g_sealInfoCache;
StateString g_certBase64Data;
StateString g_packHashCert;
StateString g_originalPdfHash;
unsigned char g_stampPictureMode = 1;
int g_sealFlowBusy = 0;
int g_selectedSealIndex = 0;
StateString g_appId;
platform::AutomationObject g_personalSealEngine = nullptr;

std::string g_dialogCertLabel;
std::vector<TextPair> g_dialogCertItems;
std::string g_pickedCertLabel;
std::vector<TextPair> g_onlineSealNames;
std::string g_onlineSealPick;
int g_sealPositionMode = 0;
int g_dialogSealRow = -1;
int g_dialogSealCol = -1;
std::vector<SealRecord> g_pzmSealItems;
unsigned int g_pzmScanCount = 0;
std::string g_pzmDialogPick;
SealRecord g_pzmDialogSeal;

int EnsureServiceReady() {
    if (g_appOpt.initialised) return 0;
    KVLInitialize(g_appOpt);
    return g_appOpt.initialised ? 0 : KVLInitialize(g_appOpt);
}

int EnsureServiceReadyToSign() {
    const int code = EnsureServiceReady();
    if (code != 0) state::ClearSelectKeyID();
    return code;
}

namespace state {

int ClearSelectKeyID() {
    g_currentCertId.Clear();
    ResetEsealData();
    return 0;
}

void ResetEsealData() {
    g_esealMode = SealTypeDefault;
    g_selectedSeal.Clear();
    g_sealInfoCache.Clear();
    g_certBase64Data.Clear();
}

}  // namespace state
