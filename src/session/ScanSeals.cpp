#include "session/ScanSeals.h"

#include <cstdlib>
#include <string_view>
#include <utility>

#include "TesmarkOpt.h"
#include "dialogs/PzmSealTree.h"
#include "foundation/Logger.h"
#include "host/ModuleState.h"
#include "seal/KeyFiles.h"
#include "session/ScanFiles.h"

namespace {

std::string_view View(const unsigned char* bytes, int length) {
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)};
}

// The record of the last pick shares its buffers with the list and outlives it; a dialog that is
// confirmed without a click hands it out once more.
void ForgetPickedBuffers() {
    g_pzmDialogSeal.sealData = nullptr;
    g_pzmDialogSeal.sealDataLen = 0;
    g_pzmDialogSeal.picData = nullptr;
    g_pzmDialogSeal.picLen = 0;
}

void DropScannedSeals() {
    ForgetPickedBuffers();
    FreeSeals(g_pzmSealItems);
    ++g_pzmScanCount;
}

// What the dialog has picked, with the list's buffers for as long as it lives.
class CScanPick {
public:
    CScanPick() = default;
    CScanPick(const CScanPick&) = delete;
    CScanPick& operator=(const CScanPick&) = delete;
    ~CScanPick() {
        ForgetPickedBuffers();
        ReleasePzmSealPick(&pick);
    }

    PzmSealPick pick;
};

void SelectSize(const SealRecord& seal) {
    g_sealPicWidth = seal.picWidth;
    g_sealPicHeight = seal.picHeight;
}

// A host's call during the dialog can scan too: the picture that was clicked then belongs to a seal
// that is gone, and what is selected to the other scan.
bool UserConfirms(PzmSealPick* pick) {
    const unsigned int scan = g_pzmScanCount;
    return ShowPzmSealTree(pick) == DialogEnd::Confirmed && scan == g_pzmScanCount;
}

int SelectByDialog(const std::string& certId, int status, std::string& picture) {
    g_pzmDialogPick.clear();
    CScanPick picked;
    if (!UserConfirms(&picked.pick)) {
        TESMARK_LOG(kLogError, "user cancel dlg %d", TESMARK_CANCELLED);
        return TESMARK_CANCELLED;
    }
    const SealRecord& seal = picked.pick.seal;
    g_esealMode = seal.type;
    if (seal.sealData != nullptr) g_selectedSeal.Assign(View(seal.sealData, seal.sealDataLen));
    g_currentCertId.Assign(certId);
    g_selectedSealName.Assign(seal.name);
    SelectSize(seal);
    picture = picked.pick.picture;
    return status;
}

void SelectOnly(const std::string& certId, SealRecord& seal, std::string& picture) {
    g_esealMode = seal.type;
    g_currentCertId.Assign(certId);
    g_selectedSealName.Assign(seal.name);
    SelectSize(seal);
    if (seal.picData != nullptr) {
        g_sealInfoCache.Assign(View(seal.picData, seal.picLen));
        picture = View(seal.picData, seal.picLen);
        std::free(std::exchange(seal.picData, nullptr));
    }
    if (seal.sealData != nullptr) {
        g_selectedSeal.Assign(View(seal.sealData, seal.sealDataLen));
        std::free(std::exchange(seal.sealData, nullptr));
    }
}

}  // namespace

int GetPZMSealPic(const std::string& certId, std::string& picture) {
    TESMARK_LOG_SCOPE("GetPZMSealPic");
    std::string list;
    if (const int code = ListKeyFiles(g_appOpt, certId.c_str(), list)) return code;
    std::vector<std::string> files;
    if (praseEnumPZMFiles(list, files) == 0) {
        TESMARK_LOG(kLogWarning, "praseEnumPZMFiles error");
        return TESMARK_NO_SCANNED_FILE;
    }
    DropScannedSeals();
    const int status = GetPZMEsealList(files, certId.c_str());
    if (g_pzmSealItems.size() >= 2) return SelectByDialog(certId, status, picture);
    if (g_pzmSealItems.size() == 1) {
        SelectOnly(certId, g_pzmSealItems.front(), picture);
        return status;
    }
    TESMARK_LOG(kLogError, "GetPZMEsealList error : %d", status);
    return status != 0 ? status : TESMARK_NO_SCANNED_SEAL;
}
