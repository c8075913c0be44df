#include "components/automation/RegisteredClass.h"

#include <string>

#include "foundation/Registry.h"

namespace {

CRegistry ClassKey(const char* classId) {
    const std::string path = std::string("CLSID\\") + classId + "\\InprocServer32";
    return CRegistry(platform::CreateRegistryKey(
        platform::RegistryRootKey(platform::RegistryRoot::ClassesRoot), path.c_str()));
}

}  // namespace

bool RegisterClassFile(const char* file, const char* classId) {
    return platform::SetRegistryPath(ClassKey(classId).key, "", file);
}

bool UnregisterClassFile(const char*, const char* classId) {
    return platform::DeleteRegistryValue(ClassKey(classId).key, "");
}

const char* ClassFileExports(const char* methods) { return methods; }
