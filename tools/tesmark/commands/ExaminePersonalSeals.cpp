#include <string>

#include "DrawingControl.h"
#include "Settings.h"
#include "TerminalText.h"
#include "commands/Findings.h"

namespace {

constexpr char kSubject[] = "personal seals";

// Seals are drawn from the certificate's name instead of being fetched.
bool SealsAreDrawn() {
    const auto position = ReadSetting(FindSetting("bSealPosition"));
    return position == "3" || position == "4";
}

}  // namespace

void ExaminePersonalSeals(Findings& findings) {
    const bool wanted = SealsAreDrawn();
    const auto control = ReadSetting(FindSetting("PersonalSealControl"));
    if (control && DrawingControlCanBeMade()) {
        findings.Good(kSubject, Printable(*control) + (wanted ? "" : " (not in use)"));
    } else if (control) {
        findings.Problem(kSubject, "The control can't be loaded: " + Printable(*control) + ".",
                         HowToRegisterDrawingControl());
    } else if (wanted) {
        findings.Problem(kSubject, "Seals are to be drawn; no drawing control is registered.",
                         HowToRegisterDrawingControl());
    } else {
        findings.Good(kSubject, "no drawing control is registered, and none is in use");
    }
}
