#include "RegisteredClasses.h"

#include "platform/windows/Win32.h"
// After the system's own header.
#include <shlwapi.h>

void UnregisterClasses() {
    for (const char* const classId : {kEngineClass, kPlainClass, kMuteClass, kExceptionClass}) {
        SHDeleteKeyA(HKEY_CLASSES_ROOT, ("CLSID\\" + std::string(classId)).c_str());
    }
}
