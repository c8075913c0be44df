#include "Registration.h"

#include "LoadedObject.h"
#include "PlatformText.h"
#include "platform/Module.h"

std::string HowToRegister(const char* setting, const char* stem) {
    const std::string file = platform::ModuleFileName(stem);
    const std::string beside = BesideLibrary(file);
    return std::string("tesmark config set ") + setting + " " +
           (beside.empty() ? kExampleFolder + file : beside);
}
