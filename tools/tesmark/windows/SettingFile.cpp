#include "Settings.h"

namespace {

std::string ProductKey(platform::RegistryRoot root) {
    switch (root) {
        case platform::RegistryRoot::LocalMachine: return "HKEY_LOCAL_MACHINE\\software\\Velmora";
        case platform::RegistryRoot::CurrentUser: return "HKEY_CURRENT_USER\\Software\\Velmora";
        case platform::RegistryRoot::ClassesRoot: break;
    }
    return "HKEY_CLASSES_ROOT\\CLSID";
}

bool IsThere(platform::RegistryRoot root) {
    const char* path = root == platform::RegistryRoot::ClassesRoot ? "CLSID" : "software\\Velmora";
    const auto key = platform::OpenRegistryKey(root, path, platform::RegistryAccess::Read64);
    if (key == nullptr) return false;
    platform::CloseRegistryKey(key);
    return true;
}

}  // namespace

SettingHolder HolderOf(const Setting& setting) {
    return {ProductKey(setting.root), IsThere(setting.root)};
}

// The system keeps its registry in order.
std::string FaultOfHolder(const Setting&) { return {}; }
