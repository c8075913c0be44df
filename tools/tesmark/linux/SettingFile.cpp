#include <string>

#include "Settings.h"
#include "platform/Files.h"
#include "platform/linux/Places.h"
#include "platform/linux/StoreFile.h"

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

std::string FaultOfHolder(const Setting& setting) {
    const SettingHolder holder = HolderOf(setting);
    if (!holder.there) return {};
    if (platform::IsDirectory(holder.name.c_str())) {
        return "A folder stands in the place of the settings' file " + holder.name + ".";
    }
    const auto text = platform::StoreFile(holder.name).Read();
    if (!text) {
        return "The settings' file " + holder.name +
               " can't be read: there is no right to, or it is UTF-16 and not UTF-8.";
    }
    const std::size_t stray = text->FirstStrayLine();
    if (stray == 0) return {};
    return "Line " + std::to_string(stray) + " of the settings' file " + holder.name +
           " is neither a key nor a value that can be read; such lines are skipped.";
}
