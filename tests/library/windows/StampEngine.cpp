#include "StampEngine.h"

#include "platform/Module.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <objbase.h>

// A library that went with COM is held by nobody.
bool StampEngine::IsLetGo() const {
    const HMODULE module = GetModuleHandleA(ENGINE_STAND_IN);
    if (module == nullptr) return true;
    const auto held = reinterpret_cast<long (*)()>(platform::FindSymbol(module, "HeldReferences"));
    return held != nullptr && held() == 0;
}

int StampEngine::LeaveCom() {
    APTTYPE type;
    APTTYPEQUALIFIER qualifier;
    int count = 0;
    for (; CoGetApartmentType(&type, &qualifier) == S_OK; ++count) CoUninitialize();
    return count;
}
