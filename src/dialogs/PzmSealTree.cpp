#include "dialogs/PzmSealTree.h"

#include <cstdlib>

#include "host/ModuleState.h"

// No program shows dialogs yet.
DialogEnd ShowPzmSealTree(PzmSealPick*) { return DialogEnd::Failed; }

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
