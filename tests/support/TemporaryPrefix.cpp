#include "support/TemporaryPrefix.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "foundation/Registry.h"
#include "platform/Files.h"

namespace {

constexpr char kVariable[] = "VELMORA_PREFIX";
constexpr char kClassKey[] = "CLSID\\{7B1D40E2-6C55-4A9E-9F10-5E2C8D3A71B4}\\InprocServer32";

void Check(bool done) {
    if (!done) throw std::runtime_error("the test's prefix can't be prepared");
}

std::string MakeFolder() {
    std::string path = (std::filesystem::temp_directory_path() / "velmora-XXXXXX").string();
    Check(mkdtemp(path.data()) != nullptr);
    return path;
}

std::optional<std::string> Variable() {
    const char* value = std::getenv(kVariable);
    if (value == nullptr) return std::nullopt;
    return value;
}

CRegistry Created(platform::RegistryRoot root, const char* path) {
    return CRegistry(platform::CreateRegistryKey(platform::RegistryRootKey(root), path));
}

}  // namespace

TemporaryPrefix::TemporaryPrefix() : m_path(MakeFolder()), m_before(Variable()) {
    setenv(kVariable, m_path.c_str(), 1);
}

TemporaryPrefix::~TemporaryPrefix() {
    if (m_before) {
        setenv(kVariable, m_before->c_str(), 1);
    } else {
        unsetenv(kVariable);
    }
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string TemporaryPrefix::CrlFolder() const { return m_path + "/CRLFilePath/"; }

void TemporaryPrefix::SetNumber(const char* name, unsigned int value) const {
    const CRegistry settings = Created(platform::RegistryRoot::LocalMachine, kSettingsKey);
    Check(platform::SetRegistryNumber(settings.key, name, value));
}

void TemporaryPrefix::SetText(const char* name, const std::string& value) const {
    const CRegistry settings = Created(platform::RegistryRoot::LocalMachine, kSettingsKey);
    Check(platform::SetRegistryString(settings.key, name, value));
}

void TemporaryPrefix::RegisterCertService(const std::string& path) const {
    const CRegistry server = Created(platform::RegistryRoot::ClassesRoot, kClassKey);
    Check(platform::SetRegistryPath(server.key, "", path));
}
