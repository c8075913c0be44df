#include "support/TemporaryPrefix.h"

#include <windows.h>
// After the system's own header.
#include <shlobj.h>
#include <shlwapi.h>

#include <filesystem>
#include <stdexcept>

#include "platform/Files.h"

namespace {

void Empty() {
    SHDeleteKeyA(HKEY_LOCAL_MACHINE, "software\\Velmora");
    SHDeleteKeyA(HKEY_CURRENT_USER, "Software\\Velmora");
    SHDeleteKeyA(HKEY_CLASSES_ROOT, "CLSID\\{7B1D40E2-6C55-4A9E-9F10-5E2C8D3A71B4}");
    SHDeleteKeyA(HKEY_CLASSES_ROOT, "CLSID\\{2D8C4E07-91BA-4F36-A4D2-7C16E05B3F9A}");
    SHDeleteKeyA(HKEY_CLASSES_ROOT, "CLSID\\{D7A3E1C2-58B4-4F06-93C1-7E2A6B0D4F19}");
    std::error_code ignored;
    std::filesystem::remove_all(platform::CrlFolder(), ignored);
    for (const int place : {CSIDL_LOCAL_APPDATA, CSIDL_COMMON_APPDATA}) {
        char folder[MAX_PATH] = {};
        if (SHGetFolderPathA(nullptr, place, nullptr, SHGFP_TYPE_CURRENT, folder) != S_OK) continue;
        std::filesystem::remove_all(std::string(folder) + "\\Velmora", ignored);
    }
}

}  // namespace

// The log stays: the library of this process may have it, and whoever reads it begins at its end.
class TemporaryPrefix::Surroundings {
public:
    Surroundings() { Empty(); }
    ~Surroundings() { Empty(); }
};

TemporaryPrefix::TemporaryPrefix() : m_surroundings(std::make_unique<Surroundings>()) {}

TemporaryPrefix::~TemporaryPrefix() = default;

void TemporaryPrefix::SetBytes(platform::RegistryRoot root, const char* key, const char* name,
                               const std::string& bytes) const {
    const platform::RegistryKey made =
        platform::CreateRegistryKey(platform::RegistryRootKey(root), key);
    const LSTATUS status = RegSetValueExA(reinterpret_cast<HKEY>(made), name, 0, REG_BINARY,
                                          reinterpret_cast<const BYTE*>(bytes.data()),
                                          static_cast<DWORD>(bytes.size()));
    platform::CloseRegistryKey(made);
    if (status != ERROR_SUCCESS) {
        throw std::runtime_error("the test's settings can't be prepared");
    }
}
