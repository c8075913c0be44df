#include "dialogs/PzmSealTree.h"

#include <cstdlib>

#include "dialogs/CenterDialog.h"
#include "dialogs/Resource.h"
#include "dialogs/SealPreview.h"
#include "dialogs/SealTree.h"
#include "host/ModuleState.h"

namespace {

class PzmSealTreeDlgProc final : public CSealTreeDialog {
public:
    void OnOpen(platform::DialogWindow& window) override {
        CenterDialog(window);
        m_scan = g_pzmScanCount;
        if (g_pzmSealItems.empty()) return;
        const platform::TreeNode root = AppendRoot(window);
        std::intptr_t index = 0;
        for (const SealRecord& seal : g_pzmSealItems) {
            window.AppendNode(TESMARK_SEAL_TREE, root, seal.name, index++);
        }
        window.ExpandNode(TESMARK_SEAL_TREE, root);
    }

private:
    // The root's data is 0 as well, so that it picks the first seal: users know it so. Another scan
    // during the dialog leaves a list of its own, whose seals aren't those that are shown.
    void ShowNode(platform::DialogWindow& window, std::intptr_t data) override {
        if (m_scan != g_pzmScanCount) return;
        if (static_cast<std::size_t>(data) >= g_pzmSealItems.size()) return;
        const SealRecord& seal = g_pzmSealItems[static_cast<std::size_t>(data)];
        g_pzmDialogPick = PictureOf(seal);
        g_pzmDialogSeal = seal;
        DrawPreview(window, g_pzmDialogPick);
    }

    unsigned int m_scan = 0;
};

}  // namespace

DialogEnd ShowPzmSealTree(PzmSealPick* pick) {
    PzmSealTreeDlgProc procedure;
    const DialogEnd end = OpenSealTree(procedure);
    if (end == DialogEnd::Confirmed) *pick = {g_pzmDialogPick, g_pzmDialogSeal};
    return end;
}

void ReleasePzmSealPick(PzmSealPick* pick) {
    for (SealRecord& seal : g_pzmSealItems) {
        std::free(seal.picData);
        seal.picData = nullptr;
        std::free(seal.sealData);
        seal.sealData = nullptr;
    }
    g_pzmSealItems.clear();
    *pick = {};
}
