#include "DrawingControl.h"

#include "Failure.h"
#include "Registration.h"
#include "include/TesmarkOpt.h"
#include "platform/Automation.h"
#include "platform/closed/PersonalSealControl.h"

AutomationSession::AutomationSession() { platform::InitializeAutomation(); }

AutomationSession::~AutomationSession() { platform::UninitializeAutomation(); }

bool DrawingControlCanBeMade() {
    const AutomationSession automation;
    platform::AutomationId control{};
    if (!platform::ParseClassId(kPersonalSealControlClass, control)) return false;
    const platform::AutomationObject object = platform::CreateAutomationControl(control);
    platform::ReleaseAutomationObject(object);
    return object != nullptr;
}

std::string HowToRegisterDrawingControl() {
    return HowToRegister("PersonalSealControl", "VelmoraPersonalSeal");
}

void CheckDrawn(int code) {
    // The code has other causes as well.
    if (code == TESMARK_FAILED && !DrawingControlCanBeMade()) {
        throw Failure{ExitCode::kSetup,
                      "There is no control that draws personal seals.",
                      {},
                      "  to register one: " + HowToRegisterDrawingControl()};
    }
    if (code == TESMARK_DRAWING_FAILED) {
        throw Failure{
            ExitCode::kFailed, "The control can't draw this.", code,
            "  try another text, size or font: it refuses what is too long or too large, and a "
            "text\n  that no font of this machine has"};
    }
}
