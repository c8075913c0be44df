#include <string>

#include "LoadedObject.h"
#include "Settings.h"
#include "TerminalText.h"
#include "commands/Findings.h"
#include "platform/Automation.h"
#include "platform/Module.h"
#include "platform/closed/PersonalSealControl.h"

namespace {

constexpr char kSubject[] = "personal seals";

std::string HowToRegister() {
    const std::string file = platform::ModuleFileName("VelmoraPersonalSeal");
    const std::string beside = BesideLibrary(file);
    return "tesmark config set PersonalSealControl " +
           (beside.empty() ? "/path/of/" + file : beside);
}

// Seals are drawn from the certificate's name instead of being fetched.
bool SealsAreDrawn() {
    const auto position = ReadSetting(FindSetting("bSealPosition"));
    return position == "3" || position == "4";
}

// Makes the control as the library does.
bool CanBeMade() {
    platform::AutomationId control{};
    platform::InitializeAutomation();
    const platform::AutomationObject object =
        platform::ParseClassId(kPersonalSealControlClass, control)
            ? platform::CreateAutomationControl(control)
            : nullptr;
    platform::ReleaseAutomationObject(object);
    platform::UninitializeAutomation();
    return object != nullptr;
}

}  // namespace

void ExaminePersonalSeals(Findings& findings) {
    const bool wanted = SealsAreDrawn();
    const auto control = ReadSetting(FindSetting("PersonalSealControl"));
    if (control && CanBeMade()) {
        findings.Good(kSubject, Printable(*control) + (wanted ? "" : " (not in use)"));
    } else if (control) {
        findings.Problem(kSubject, "The control can't be loaded: " + Printable(*control) + ".",
                         HowToRegister());
    } else if (wanted) {
        findings.Problem(kSubject, "Seals are to be drawn; no drawing control is registered.",
                         HowToRegister());
    } else {
        findings.Good(kSubject, "no drawing control is registered, and none is in use");
    }
}
