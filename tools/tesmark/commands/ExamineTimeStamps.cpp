#include <filesystem>
#include <string>

#include "LoadedObject.h"
#include "PathText.h"
#include "Settings.h"
#include "TerminalText.h"
#include "commands/Findings.h"
#include "platform/Automation.h"
#include "platform/Module.h"
#include "platform/closed/TimeStampEngine.h"

namespace {

constexpr char kSubject[] = "time stamps";

std::string EngineFile() { return platform::ModuleFileName("VelmoraTSEngine"); }

std::string HowToRegister() {
    const std::string beside = BesideLibrary(EngineFile());
    return "tesmark config set TimeStampEngine " +
           (beside.empty() ? "/path/of/" + EngineFile() : beside);
}

// Makes the engine as the library does.
bool CanBeMade() {
    platform::AutomationId engine{};
    platform::AutomationId interfaceId{};
    platform::InitializeAutomation();
    const bool known = platform::ParseClassId(kTimeStampEngineClass, engine) &&
                       platform::ParseInterfaceId(kTimeStampEngineInterface, interfaceId);
    const platform::AutomationObject object =
        known ? platform::CreateAutomationObject(engine, interfaceId, "CreateTS") : nullptr;
    platform::ReleaseAutomationObject(object);
    platform::UninitializeAutomation();
    return object != nullptr;
}

// Another maker's engine has its address in a place of its own.
bool IsOpenEngine(const std::string& path) {
    const std::string beside = BesideLibrary(EngineFile());
    std::error_code error;
    return !beside.empty() && std::filesystem::equivalent(FileAt(path), FileAt(beside), error);
}

void ExamineMissing(Findings& findings, bool wanted) {
    if (wanted) {
        findings.Problem(kSubject, "Signatures are to carry a time stamp; no engine is registered.",
                         HowToRegister());
    } else {
        findings.Good(kSubject, "no engine is registered, and none is in use");
    }
}

}  // namespace

void ExamineTimeStamps(Findings& findings) {
    const bool wanted = ReadSetting(FindSetting("bSignWithTimeStamp")).value_or("0") != "0";
    const auto engine = ReadSetting(FindSetting("TimeStampEngine"));
    if (!engine) return ExamineMissing(findings, wanted);
    if (!CanBeMade()) {
        findings.Problem(kSubject, "The engine can't be loaded: " + Printable(*engine) + ".",
                         HowToRegister());
        return;
    }
    const bool unaddressed = ReadSetting(FindSetting("TimeStampUrl")).value_or("").empty();
    if (wanted && unaddressed && IsOpenEngine(*engine)) {
        findings.Problem(kSubject, "The engine is told no time-stamp authority.",
                         "tesmark config set TimeStampUrl http://HOST/PATH");
        return;
    }
    findings.Good(kSubject, Printable(*engine) + (wanted ? "" : " (not in use)"));
}
