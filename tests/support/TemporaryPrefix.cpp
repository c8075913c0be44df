#include "support/TemporaryPrefix.h"

#include <stdexcept>

#include "foundation/Registry.h"
#include "platform/Files.h"

namespace {

constexpr char kClassKey[] = "CLSID\\{7B1D40E2-6C55-4A9E-9F10-5E2C8D3A71B4}\\InprocServer32";
constexpr char kInstallKey[] = "Software\\Velmora\\InstallPath";

void Check(bool done) {
    if (!done) throw std::runtime_error("the test's settings can't be prepared");
}

CRegistry Created(platform::RegistryRoot root, const char* path) {
    return CRegistry(platform::CreateRegistryKey(platform::RegistryRootKey(root), path));
}

}  // namespace

std::string TemporaryPrefix::CrlFolder() const { return platform::CrlFolder(); }

std::string TemporaryPrefix::LogFolder() const {
    return platform::UserDataFolder() + "ESealLog" + platform::PathSeparator();
}

void TemporaryPrefix::SetNumber(const char* name, unsigned int value) const {
    const CRegistry settings = Created(platform::RegistryRoot::LocalMachine, kSettingsKey);
    Check(platform::SetRegistryNumber(settings.key, name, value));
}

void TemporaryPrefix::SetText(const char* name, const std::string& value) const {
    const CRegistry settings = Created(platform::RegistryRoot::LocalMachine, kSettingsKey);
    Check(platform::SetRegistryString(settings.key, name, value));
}

void TemporaryPrefix::Remove(const char* name) const {
    const CRegistry settings = Created(platform::RegistryRoot::LocalMachine, kSettingsKey);
    Check(platform::DeleteRegistryValue(settings.key, name));
}

void TemporaryPrefix::SetBytes(const char* name, const std::string& bytes) const {
    SetBytes(platform::RegistryRoot::LocalMachine, kSettingsKey, name, bytes);
}

void TemporaryPrefix::RegisterCertService(const std::string& path) const {
    const CRegistry server = Created(platform::RegistryRoot::ClassesRoot, kClassKey);
    Check(platform::SetRegistryPath(server.key, "", path));
}

void TemporaryPrefix::RegisterInstallation(const std::string& folder) const {
    const CRegistry install = Created(platform::RegistryRoot::CurrentUser, kInstallKey);
    Check(platform::SetRegistryPath(install.key, "InstallPath", folder));
}
