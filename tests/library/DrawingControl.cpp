#include "DrawingControl.h"

#include "RegisteredClasses.h"
#include "platform/closed/PersonalSealControl.h"

DrawingControl::DrawingControl() {
    platform::InitializeAutomation();
    Unregister();
}

DrawingControl::~DrawingControl() {
    Unregister();
    platform::UninitializeAutomation();
}

void DrawingControl::Register() { RegisterClassAt(kPersonalSealControlClass, DRAWING_STAND_IN); }

void DrawingControl::RegisterWithoutMethods() {
    RegisterClassAt(kPersonalSealControlClass, DRAWING_WITHOUT_METHODS);
}

void DrawingControl::RegisterMissing() {
    RegisterClassAt(kPersonalSealControlClass, DRAWING_STAND_IN ".none");
}
