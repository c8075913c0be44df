#include "components/timestamp/EngineClass.h"

#include "foundation/Registry.h"
#include "platform/closed/TimeStampEngine.h"

const char kEngineExports[] = "CreateTS";

namespace {

CRegistry ClassKey() {
    const std::string path = std::string("CLSID\\") + kTimeStampEngineClass + "\\InprocServer32";
    return CRegistry(platform::CreateRegistryKey(
        platform::RegistryRootKey(platform::RegistryRoot::ClassesRoot), path.c_str()));
}

}  // namespace

bool RegisterEngineClass() { return platform::SetRegistryPath(ClassKey().key, "", ENGINE_FILE); }

bool UnregisterEngineClass() { return platform::DeleteRegistryValue(ClassKey().key, ""); }
