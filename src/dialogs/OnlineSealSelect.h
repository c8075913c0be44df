// OnlineSealSelect.h - the dialog that offers the seals of the online service in a list.
#pragma once

// Offers g_onlineSealNames. kDialogConfirmed: the number of the pick stands in g_onlineSealPick.
// kDialogCancelled: it is as before. Anything else: the dialog could not be shown, as under the
// name that the library is delivered with, and the number is as before.
int ShowOnlineSealSelect();
