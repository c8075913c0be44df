#include "dialogs/CertSelect.h"

#include "dialogs/DialogFrame.h"

// No program shows dialogs yet.
int ShowCertSelect() { return platform::kDialogNotShown; }
