#include "Settings.h"
#include "platform/linux/Places.h"

// The store's two files; the store itself tells nobody where they are.
std::string SettingFile(const Setting& setting) {
    const bool user = setting.root == platform::RegistryRoot::CurrentUser;
    const std::string prefix = platform::PrefixFolder();
    if (!prefix.empty()) return prefix + (user ? "user.reg" : "machine.reg");
    if (!user) return "/etc/velmora/machine.reg";
    const std::string folder = platform::UserFolder("XDG_CONFIG_HOME", ".config");
    return folder.empty() ? "" : folder + "velmora/user.reg";
}
