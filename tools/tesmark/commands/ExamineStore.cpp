#include "commands/ExamineStore.h"

#include <string>

#include "PathText.h"
#include "Settings.h"
#include "TerminalText.h"
#include "foundation/Registry.h"
#include "platform/RegistryStore.h"

namespace {

// A key that isn't there is no lack of rights.
bool LibraryReadsSettings() {
    using platform::RegistryAccess;
    const auto opens = [](RegistryAccess access) {
        const CRegistry key(
            platform::OpenRegistryKey(platform::RegistryRoot::LocalMachine, kSettingsKey, access));
        return key.key != nullptr;
    };
    return opens(RegistryAccess::AllAccess) || !opens(RegistryAccess::Read64);
}

void ExamineHolder(Findings& findings, const Setting& setting, const SettingHolder& holder) {
    const std::string fault = FaultOfHolder(setting);
    if (fault.empty()) {
        findings.Good("store", holder.name + (holder.there ? "" : " (not there: defaults hold)"));
        return;
    }
    findings.Problem("store", fault,
                     "mend the file; or remove it, and set the settings anew: tesmark config set");
}

// Of a class the system may find a bare name in folders of its own; its file is looked at
// elsewhere.
bool IsFoundBySystem(const Setting& setting, const std::string& path) {
    return setting.root == platform::RegistryRoot::ClassesRoot && !FileAt(path).has_parent_path();
}

void ExamineSettings(Findings& findings) {
    for (const Setting& setting : KnownSettings()) {
        const auto value = ShownSetting(setting);
        if (!value) continue;
        const std::string relative = RelativePathOf(setting, *value);
        if (relative.empty() || IsFoundBySystem(setting, relative)) {
            findings.Good("setting", std::string(setting.name) + " = " + Printable(*value));
            continue;
        }
        findings.Problem("setting",
                         std::string(setting.name) + " is no absolute path: " +
                             Printable(relative) + " means another place in each working folder.",
                         std::string("tesmark config set ") + setting.name + " ABSOLUTE_PATH");
    }
}

}  // namespace

void ExamineStore(Findings& findings) {
    std::string former;
    for (const Setting& setting : KnownSettings()) {
        const SettingHolder holder = HolderOf(setting);
        if (holder.name.empty() || holder.name == former) continue;
        if (former.empty() || setting.root == platform::RegistryRoot::CurrentUser) {
            ExamineHolder(findings, setting, holder);
        }
        former = holder.name;
    }
    if (!LibraryReadsSettings()) {
        findings.Problem(
            "store",
            "This user lacks rights on the settings' key, which the library opens with "
            "all access: it runs on defaults.",
            "give the user full control of HKEY_LOCAL_MACHINE\\software\\Velmora");
    }
    ExamineSettings(findings);
}
