#include "dialogs/CertSealTree.h"

// No program shows dialogs yet.
DialogEnd ShowCertSealTree(CertSealPick*) { return DialogEnd::Failed; }
