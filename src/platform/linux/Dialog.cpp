#include "platform/Dialog.h"

#include "platform/Module.h"
#include "platform/linux/DialogProcess.h"

namespace platform {

int OpenDialog(const char* moduleStem, int templateId, DialogProcedure& procedure) {
    const DialogTemplate* const dialog = FindTemplate(templateId);
    if (LoadedModulePath(moduleStem).empty() || !dialog) return kDialogNotShown;
    const std::string program = FindDialogProgram(LibraryFolder());
    const auto process = program.empty() ? nullptr : DialogProcess::Start(program);
    return process ? RunDialog(*process, *dialog, procedure) : kDialogNotShown;
}

}  // namespace platform
