// CertSealTree.h - the dialog that shows certificates with their seals, and what was picked in it.
#pragma once

#include "dialogs/DialogEnd.h"

// Places in the list of g_certEsealOpt. A seal gives both, the entry of the scan its certificate
// alone, anything else neither.
struct CertSealPick {
    int certIndex = -1;
    int sealIndex = -1;
};

// Shows the enumerated list and blocks until the user has answered. `pick` is filled for Confirmed
// and else left alone.
DialogEnd ShowCertSealTree(CertSealPick* pick);
