#include <cstring>
#include <string>

#include "Declare.h"
#include "PlatformText.h"
#include "ServiceEntries.h"
#include "Settings.h"
#include "TerminalText.h"
#include "commands/ConfigOnline.h"

namespace {

struct Options {
    std::string name;
    std::string value;
};

const char* TypeText(SettingType type) {
    switch (type) {
        case SettingType::kNumber: return "number";
        case SettingType::kText:
        case SettingType::kAddress:
        case SettingType::kLongText:
        case SettingType::kLongAddress: return "text";
        case SettingType::kSecret: return "secret";
        case SettingType::kFile:
        case SettingType::kFiles:
        case SettingType::kFolder: return "path";
    }
    return "";
}

const char* ScopeText(const Setting& setting) {
    return setting.root == platform::RegistryRoot::CurrentUser ? "user" : "machine";
}

Json::Value JsonOf(const Setting& setting) {
    const auto value = ShownSetting(setting);
    Json::Value json(Json::objectValue);
    json["name"] = setting.name;
    json["value"] = value ? Json::Value(*value) : Json::Value();
    json["default"] = setting.absent;
    json["type"] = TypeText(setting.type);
    json["scope"] = ScopeText(setting);
    json["key"] = SettingPlace(setting);
    json["meaning"] = setting.meaning;
    return json;
}

Report GetAll() {
    Report report;
    report.json["settings"] = Json::arrayValue;
    Table table({"NAME", "VALUE", "", "MEANING"});
    for (const Setting& setting : KnownSettings()) {
        const auto value = ShownSetting(setting);
        std::string shown = value ? Printable(*value) : setting.absent;
        if (shown.empty()) shown = "-";
        table.Add({setting.name, shown, value ? "set" : "default", setting.meaning});
        report.json["settings"].append(JsonOf(setting));
    }
    report.text = table.Text();
    return report;
}

Report Get(const Options& options) {
    if (options.name.empty()) return GetAll();
    const Setting& setting = FindSetting(options.name);
    const auto value = ShownSetting(setting);
    Report report;
    report.text = (value ? *value : std::string(setting.absent)) + "\n";
    report.json = JsonOf(setting);
    return report;
}

Report Set(const Options& options) {
    const Setting& setting = FindSetting(options.name);
    if (std::strcmp(setting.name, "CertService") == 0) CheckServiceFile(options.value);
    WriteSetting(setting, options.value);
    Report report;
    report.text =
        std::string(setting.name) + " = " + Printable(ShownSetting(setting).value_or("")) + "\n";
    report.json = JsonOf(setting);
    return report;
}

Report Unset(const Options& options) {
    const Setting& setting = FindSetting(options.name);
    const bool removed = RemoveSetting(setting);
    Report report;
    report.text =
        std::string(setting.name) + (removed ? " is not set any more\n" : " was not set\n");
    report.json = JsonOf(setting);
    return report;
}

void BindGet(CLI::App& command, Options& options) {
    command.add_option("NAME", options.name, "The setting; without it all are shown");
}

void BindSet(CLI::App& command, Options& options) {
    command.add_option("NAME", options.name, "The setting")->required();
    command.add_option("VALUE", options.value, "A number, a text, or a path")->required();
}

void BindUnset(CLI::App& command, Options& options) {
    command.add_option("NAME", options.name, "The setting")->required();
}

}  // namespace

void DeclareConfig(CLI::App& parent, Invocation& invocation) {
    CLI::App* group = AddGroup(parent, "config", "Show and change the settings of this machine",
                               "  tesmark config get\n"
                               "  tesmark config set bVerifyCRL 1\n"
                               "  tesmark config online http://seals.example/QelmServlet --test");
    AddCommand<Options>(*group, invocation, "get", "Show one setting, or all",
                        "  tesmark config get\n"
                        "  tesmark config get TrustFolder\n"
                        "  tesmark config get --json",
                        BindGet, Get);
    AddCommand<Options>(*group, invocation, "set", "Change one setting", kConfigSetExamples,
                        BindSet, Set);
    AddCommand<Options>(*group, invocation, "unset", "Remove one setting: its default holds again",
                        "  tesmark config unset sWSURL", BindUnset, Unset);
    DeclareConfigOnline(*group, invocation);
}
