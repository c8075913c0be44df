#include "platform/Dialog.h"

namespace platform {

// There is no program that shows dialogs.
int OpenDialog(const char*, int, DialogProcedure&) { return kDialogNotShown; }

}  // namespace platform
