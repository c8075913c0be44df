#include "components/certservice/Places.h"

#include <cstdlib>

#include "platform/RegistryStore.h"

namespace {

std::string Setting(const char* name) {
    platform::RegistryKey key =
        platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine, kCertServiceSettingsKey,
                                  platform::RegistryAccess::Read64);
    if (!key) return {};
    std::string path;
    std::size_t size = 0;
    if (platform::QueryRegistryPath(key, name, nullptr, &size) && size > 0) {
        path.resize(size);
        if (!platform::QueryRegistryPath(key, name, path.data(), &size)) path.clear();
    }
    platform::CloseRegistryKey(key);
    path.resize(path.find_last_not_of('\0') + 1);
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

std::string UserFolder() {
    const char* data = secure_getenv("XDG_DATA_HOME");
    if (data && data[0] == '/') return std::string(data) + "/velmora";
    const char* home = secure_getenv("HOME");
    return home && home[0] == '/' ? std::string(home) + "/.local/share/velmora" : std::string();
}

std::string Folder(const char* setting, const char* name, const std::string& standard) {
    std::string path = Setting(setting);
    if (!path.empty()) return path;
    const char* prefix = secure_getenv("VELMORA_PREFIX");
    const std::string base = prefix && *prefix ? prefix : standard;
    return base.empty() ? std::string() : base + "/" + name;
}

}  // namespace

std::string KeyFolderPath() { return Folder("KeyFolder", "keys", UserFolder()); }

std::string TrustFolderPath() { return Folder("TrustFolder", "trust", "/etc/velmora"); }

std::string CaFolderPath() { return Folder("CaFolder", "ca", UserFolder()); }
