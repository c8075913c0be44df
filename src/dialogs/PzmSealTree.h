// PzmSealTree.h - the dialog that shows the seals of a scan, and what was picked in it.
#pragma once

#include <string>

#include "dialogs/DialogEnd.h"
#include "seal/SealRecord.h"

struct PzmSealPick {
    std::string picture;
    SealRecord seal;  // shares its buffers with the list of the scan
};

// Shows g_pzmSealItems and blocks until the user has answered. Confirmed fills `pick` from
// g_pzmDialogPick and g_pzmDialogSeal, which without any click are as they were before; any other
// end leaves it alone. After another scan during the dialog clicks change nothing any more; whether
// one came, g_pzmScanCount tells.
DialogEnd ShowPzmSealTree(PzmSealPick* pick);

// Frees the buffers of the scan's list and empties it, and drops what `pick` holds.
void ReleasePzmSealPick(PzmSealPick* pick);
