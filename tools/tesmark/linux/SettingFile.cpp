#include <algorithm>
#include <string>
#include <string_view>

#include "Settings.h"
#include "platform/Files.h"
#include "platform/linux/Places.h"
#include "platform/linux/StoreFile.h"

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view Trimmed(std::string_view line) {
    const auto first = line.find_first_not_of(kBlanks);
    if (first == line.npos) return {};
    return line.substr(first, line.find_last_not_of(kBlanks) - first + 1);
}

// A key, a value of it, a comment, a header, or the rest of the bytes of the line before.
bool IsStoreLine(std::string_view line, bool goesOn) {
    if (line.empty() || goesOn) return true;
    switch (line.front()) {
        case ';': return true;
        case '[': return line.find(']') != line.npos;
        case '@':
        case '"': return line.find('=') != line.npos;
        default: return line.starts_with("Windows Registry Editor") || line == "REGEDIT4";
    }
}

// The number of the first line that says nothing to the store; 0 without one.
std::size_t FirstStrayLine(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    bool goesOn = false;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const auto end = std::min(text.find('\n'), text.size());
        const std::string_view line = Trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (!IsStoreLine(line, goesOn)) return number;
        goesOn = line.ends_with('\\') && !line.starts_with(';');
    }
    return 0;
}

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
    const std::size_t stray = FirstStrayLine(text->Contents());
    if (stray == 0) return {};
    return "Line " + std::to_string(stray) + " of the settings' file " + holder.name +
           " is neither a key nor a value; such lines are skipped.";
}
