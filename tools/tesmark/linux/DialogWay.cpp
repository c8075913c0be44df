#include "commands/DialogWay.h"

#include "Settings.h"
#include "platform/Files.h"
#include "platform/Module.h"
#include "platform/linux/DialogProcess.h"

namespace {

constexpr char kSubject[] = "dialogs";

std::string LibraryFolder() {
    const std::string library = platform::LoadedModulePath("TesmarkOpt_x64");
    return library.substr(0, library.rfind('/') + 1);
}

}  // namespace

void ExamineDialogs(Findings& findings) {
    const std::string program = platform::FindDialogProgram(LibraryFolder());
    if (!program.empty() && !platform::PathExists(program.c_str())) {
        findings.Problem(
            kSubject, "The dialog program is not there: " + platform::Utf8FromPath(program) + ".",
            "tesmark config unset DialogProgram");
    } else if (!program.empty()) {
        findings.Good(kSubject, platform::Utf8FromPath(program));
    } else {
        findings.Good(kSubject,
                      "none without a display or a terminal; --cert and --seal name what they "
                      "would ask for");
    }
}
