#include "FlowUser.h"

#include "dialogs/CertSelect.h"
#include "host/ModuleState.h"

FlowUser g_user;

DialogEnd ShowCertSealTree(CertSealPick* pick) { return g_user.certSealTree(pick); }

DialogEnd ShowPzmSealTree(PzmSealPick* pick) { return g_user.pzmSealTree(pick); }

void ReleasePzmSealPick(PzmSealPick* pick) {
    FreeSeals(g_pzmSealItems);
    *pick = {};
}

int ShowCertSelect() { return g_user.certSelect(); }
