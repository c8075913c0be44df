#include "components/timestamp/EngineClass.h"

#include "platform/Module.h"

const char kEngineExports[] =
    "DllCanUnloadNow DllGetClassObject DllRegisterServer DllUnregisterServer";

namespace {

bool Call(const char* name) {
    const platform::ModuleHandle file = platform::LoadModule(ENGINE_FILE);
    void* const function = platform::FindSymbol(file, name);
    const bool done = function != nullptr && reinterpret_cast<long (*)()>(function)() == 0;
    platform::FreeModule(file);
    return done;
}

}  // namespace

bool RegisterEngineClass() { return Call("DllRegisterServer"); }

bool UnregisterEngineClass() { return Call("DllUnregisterServer"); }
