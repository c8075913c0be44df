#include <string>

#include "DrawingControl.h"
#include "Settings.h"
#include "StampPicture.h"
#include "TerminalText.h"
#include "commands/Findings.h"

namespace {

constexpr char kSubject[] = "personal seals";

}  // namespace

void ExaminePersonalSeals(Findings& findings) {
    const bool wanted = ConfiguredSource() == SealSource::kName;
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
