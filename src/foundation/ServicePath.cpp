#include "foundation/ServicePath.h"

#include <optional>

#include "foundation/Registry.h"
#include "platform/Files.h"
#include "platform/Module.h"

namespace {

constexpr char kServiceStem[] = "KVLAppCOM";
constexpr char kClassKey[] = "CLSID\\{7B1D40E2-6C55-4A9E-9F10-5E2C8D3A71B4}\\InprocServer32";
constexpr char kInstallKey[] = "Software\\Velmora\\InstallPath";

// By size first, then into a text of that size, without its trailing zero bytes.
std::optional<std::string> ReadPath(platform::RegistryRoot root, const char* keyPath,
                                    platform::RegistryAccess access, const char* name) {
    const CRegistry opened(platform::OpenRegistryKey(root, keyPath, access));
    if (opened.key == nullptr) return std::nullopt;
    std::size_t size = 0;
    if (!platform::QueryRegistryPath(opened.key, name, nullptr, &size)) return std::nullopt;
    std::string path(size, '\0');
    if (!platform::QueryRegistryPath(opened.key, name, path.data(), &size)) return std::nullopt;
    path.resize(size);
    path.resize(path.find_last_not_of('\0') + 1);
    return path;
}

}  // namespace

std::string get_kvl_path() {
    using platform::RegistryAccess;
    using platform::RegistryRoot;
    if (auto path = ReadPath(RegistryRoot::ClassesRoot, kClassKey, RegistryAccess::Read64, "")) {
        return *path;
    }
    if (auto folder = ReadPath(RegistryRoot::CurrentUser, kInstallKey, RegistryAccess::Read32,
                               "InstallPath")) {
        return *folder + platform::ModuleBelowInstallFolder(kServiceStem);
    }
    return platform::ModuleFileName(kServiceStem);
}

// The first place of the module's name counts, even if that is a folder's name.
void GetKvlPathBesideModule(std::string& result) {
    const std::string module = platform::LoadedModulePath("TesmarkOpt");
    const auto name = module.find(platform::ModuleFileName("TesmarkOpt"));
    if (name == std::string::npos) return;
    result = module.substr(0, name) + platform::ModuleFileName(kServiceStem);
}

std::string LocateCertService(std::string* first) {
    std::string path = get_kvl_path();
    if (first != nullptr) *first = path;
    if (platform::PathExists(path.c_str())) return path;
    GetKvlPathBesideModule(path);
    return platform::PathExists(path.c_str()) ? path : "";
}
