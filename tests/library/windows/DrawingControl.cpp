#include "DrawingControl.h"

#include <string>

#include "platform/Module.h"
#include "platform/closed/PersonalSealControl.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <shlwapi.h>

void DrawingControl::Unregister() {
    SHDeleteKeyA(HKEY_CLASSES_ROOT, ("CLSID\\" + std::string(kPersonalSealControlClass)).c_str());
}

bool DrawingControl::IsHeld() {
    const HMODULE module = GetModuleHandleA(DRAWING_STAND_IN);
    if (module == nullptr) return false;
    const auto held = reinterpret_cast<long (*)()>(platform::FindSymbol(module, "HeldReferences"));
    return held != nullptr && held() != 0;
}
