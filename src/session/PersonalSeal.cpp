#include "session/PersonalSeal.h"

#include <initializer_list>
#include <memory>
#include <utility>

#include "TesmarkOpt.h"
#include "foundation/StringFailure.h"
#include "foundation/Text.h"
#include "host/ModuleState.h"
#include "platform/Automation.h"
#include "platform/closed/PersonalSealControl.h"

namespace {

constexpr int kWidth = 300;
constexpr int kHeight = 100;
constexpr int kSmallestFont = 10;
constexpr int kLargestFont = 40;
constexpr int kFewestPerColumn = 1;
constexpr int kMostPerColumn = 5;

using Engine =
    std::unique_ptr<platform::AutomationObjectState, decltype(&platform::ReleaseAutomationObject)>;
using Arguments = std::initializer_list<platform::AutomationArgument>;

bool HoldEngine() {
    if (g_personalSealEngine != nullptr) return true;
    platform::AutomationId classId{};
    if (!platform::ParseClassId(kPersonalSealControlClass, classId)) return false;
    const platform::AutomationObject made = platform::CreateAutomationControl(classId);
    if (made == nullptr) return false;
    // A call that the host made from within that one may have left a control of its own.
    while (g_personalSealEngine != nullptr)
        platform::ReleaseAutomationObject(std::exchange(g_personalSealEngine, nullptr));
    g_personalSealEngine = made;
    return true;
}

std::string Element(const std::string& name, const std::string& value) {
    return "<" + name + ">" + value + "</" + name + ">";
}

// One line in the ANSI code page, whatever its declaration says; the control knows it so.
std::string SettingsXml(const PersonalSealStyle& style) {
    return "<?xml version='1.0' encoding='UTF-8'?>" +
           Element("root", Element("m_iRadioColor", std::to_string(style.radioColor)) +
                               Element("m_strFrameThick", std::to_string(style.frameThick)) +
                               Element("m_strFont", style.font.c_str()) +
                               Element("m_bFrame", std::to_string(style.bFrame)) +
                               Element("m_strFontSpace", std::to_string(style.fontSpace)) +
                               Element("m_strFontSize", std::to_string(style.fontSize)) +
                               Element("m_strFontThick", style.bold == 1 ? "粗体" : "常规") +
                               Element("m_strArrangement",
                                       "每列" + std::to_string(style.perColumn) + "个汉字"));
}

bool IsInRange(const PersonalSealStyle& style) {
    return style.fontSize >= kSmallestFont && style.fontSize <= kLargestFont &&
           style.perColumn >= kFewestPerColumn && style.perColumn <= kMostPerColumn;
}

// While the control works it is this call's alone: one that the host makes meanwhile, as a control
// with a message loop of its own lets it, has a control of its own.
int Draw(const char* method, Arguments arguments, std::string& picture) {
    Engine engine(std::exchange(g_personalSealEngine, nullptr), &platform::ReleaseAutomationObject);
    const platform::AutomationResult result =
        platform::CallAutomation(engine.get(), method, arguments);
    if (result.failure == platform::AutomationFailure::NoText) {
        g_personalSealEngine = engine.release();
        throw StringFailure(static_cast<std::uint32_t>(result.status));
    }
    if (result.failure != platform::AutomationFailure::None) return TESMARK_DRAWING_FAILED;
    if (result.text) picture = Base64Decode(*result.text);
    return 0;
}

int DrawStyled(const char* method, const PersonalSealStyle& style, const std::string& content,
               std::string& picture) {
    const std::string settings = SettingsXml(style);
    return Draw(method, {settings.c_str(), content.c_str()}, picture);
}

}  // namespace

int BuildPersonalSeal(const std::string& content, PersonalSealMode mode, std::string& picture,
                      const PersonalSealStyle& style) {
    if (!HoldEngine()) return TESMARK_FAILED;
    switch (mode) {
        case PersonalSealMode::FixedStyle:
            return DrawStyled("GetPersonalEsealByXML", {0, 3, "宋体", 0, 6, 28, 0, 1}, content,
                              picture);
        case PersonalSealMode::BySize:
            return Draw("GetPersonalEsealByCertInfo", {content.c_str(), kWidth, kHeight}, picture);
        case PersonalSealMode::Styled: break;
    }
    if (!IsInRange(style)) return TESMARK_STYLE_OUT_OF_RANGE;
    return DrawStyled("GetPersonalEsealByContentWithXML", style, content, picture);
}

int BuildContentPicture(int kind, const std::string& text1, const std::string& text2,
                        std::string& picture) {
    if (!HoldEngine()) return TESMARK_FAILED;
    return Draw("GetPicByContent", {kind, text2.c_str(), text1.c_str()}, picture);
}
