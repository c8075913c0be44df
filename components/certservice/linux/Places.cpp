#include "components/certservice/Places.h"

#include <cstdlib>

#include "components/certservice/ServiceStore.h"

namespace {

std::string Setting(const char* name) {
    std::string path = ReadStorePath(name);
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
