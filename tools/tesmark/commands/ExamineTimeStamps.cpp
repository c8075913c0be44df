#include <filesystem>
#include <string>

#include "LoadedObject.h"
#include "PathText.h"
#include "Registration.h"
#include "Settings.h"
#include "TerminalText.h"
#include "TimeStampWish.h"
#include "commands/ExamineExchange.h"
#include "components/http/Address.h"
#include "components/timestamp/TimeStampSettings.h"
#include "platform/Automation.h"
#include "platform/Module.h"
#include "platform/closed/TimeStampEngine.h"

namespace {

constexpr char kSubject[] = "time stamps";
constexpr char kSetAddress[] = "tesmark config set TimeStampUrl http://HOST/PATH";

constexpr char kEngineStem[] = "VelmoraTSEngine";

std::string HowToRegisterEngine() { return HowToRegister("TimeStampEngine", kEngineStem); }

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
    const std::string beside = BesideLibrary(platform::ModuleFileName(kEngineStem));
    std::error_code error;
    return !beside.empty() && std::filesystem::equivalent(FileAt(path), FileAt(beside), error);
}

void ExamineMissing(Findings& findings, bool wanted) {
    if (wanted) {
        findings.Problem(kSubject, "Signatures are to carry a time stamp; no engine is registered.",
                         HowToRegisterEngine());
    } else {
        findings.Good(kSubject, "no engine is registered, and none is in use");
    }
}

// As the engine reads them. Nobody is asked.
void ExamineSettings(Findings& findings) {
    const TimeStampSettings settings = ReadTimeStampSettings();
    if (settings.urls.empty()) {
        findings.Problem(kSubject, "The engine is told no time-stamp authority.", kSetAddress);
    }
    for (const std::string& url : settings.urls) {
        const std::string fault = FaultOfAddress(url);
        if (fault.empty()) continue;
        findings.Problem(
            kSubject,
            "No authority can be asked at " + Printable(WithoutPasswords(url)) + ": " + fault + ".",
            kSetAddress);
    }
    ExamineExchange(findings, {kSubject, "TimeStamp", "the engine"});
}

}  // namespace

void ExamineTimeStamps(Findings& findings) {
    const bool wanted = TimeStampsAreOn();
    const auto engine = ReadSetting(FindSetting("TimeStampEngine"));
    if (!engine) return ExamineMissing(findings, wanted);
    if (!CanBeMade()) {
        findings.Problem(kSubject, "The engine can't be loaded: " + Printable(*engine) + ".",
                         HowToRegisterEngine());
        return;
    }
    const std::size_t before = findings.Problems();
    if (wanted && IsOpenEngine(*engine)) ExamineSettings(findings);
    if (findings.Problems() > before) return;
    findings.Good(kSubject, Printable(*engine) + (wanted ? "" : " (not in use)"));
}
