#include "components/automation/RegisteredClass.h"

#include "platform/Module.h"

namespace {

bool Call(const char* file, const char* name) {
    const platform::ModuleHandle module = platform::LoadModule(file);
    void* const function = platform::FindSymbol(module, name);
    const bool done = function != nullptr && reinterpret_cast<long (*)()>(function)() == 0;
    platform::FreeModule(module);
    return done;
}

}  // namespace

bool RegisterClassFile(const char* file, const char*) { return Call(file, "DllRegisterServer"); }

bool UnregisterClassFile(const char* file, const char*) {
    return Call(file, "DllUnregisterServer");
}

const char* ClassFileExports(const char*) {
    return "DllCanUnloadNow DllGetClassObject DllRegisterServer DllUnregisterServer";
}
