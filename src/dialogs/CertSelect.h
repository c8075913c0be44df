// CertSelect.h - the dialog that offers certificates in a list.
#pragma once

// Offers what g_dialogCertLabel holds (label "||" identifier "&&&", repeated). kDialogConfirmed:
// the pick stands in g_pickedCertLabel and g_currentCertId. kDialogCancelled: they are as before.
// Anything else: the dialog could not be shown.
int ShowCertSelect();
