#include "DrawingControl.h"

#include <dlfcn.h>

#include "RegisteredClasses.h"
#include "platform/closed/PersonalSealControl.h"

void DrawingControl::Unregister() { RegisterClassAt(kPersonalSealControlClass, ""); }

bool DrawingControl::IsHeld() {
    void* const module = dlopen(DRAWING_STAND_IN, RTLD_NOW | RTLD_NOLOAD);
    if (module != nullptr) dlclose(module);
    return module != nullptr;
}
