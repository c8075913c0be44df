#include "Settings.h"
#include "platform/Files.h"
#include "platform/linux/Places.h"

namespace {

// The store's two files; the store itself tells nobody where they are.
std::string StoreFile(bool user) {
    const std::string prefix = platform::PrefixFolder();
    if (!prefix.empty()) return prefix + (user ? "user.reg" : "machine.reg");
    if (!user) return "/etc/velmora/machine.reg";
    const std::string folder = platform::UserFolder("XDG_CONFIG_HOME", ".config");
    return folder.empty() ? "" : folder + "velmora/user.reg";
}

}  // namespace

SettingHolder HolderOf(const Setting& setting) {
    const std::string file = StoreFile(setting.root == platform::RegistryRoot::CurrentUser);
    return {file, !file.empty() && platform::PathExists(file.c_str())};
}
