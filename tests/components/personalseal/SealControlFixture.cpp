#include "components/personalseal/SealControlFixture.h"

#include "components/automation/RegisteredClass.h"
#include "foundation/Text.h"
#include "platform/closed/PersonalSealControl.h"

SealControlFixture::SealControlFixture() {
    platform::InitializeAutomation();
    EXPECT_TRUE(RegisterClassFile(CONTROL_FILE, kPersonalSealControlClass));
    platform::AutomationId id{};
    EXPECT_TRUE(platform::ParseClassId(kPersonalSealControlClass, id));
    m_control = platform::CreateAutomationControl(id);
    EXPECT_NE(m_control, nullptr);
}

SealControlFixture::~SealControlFixture() {
    platform::ReleaseAutomationObject(m_control);
    UnregisterClassFile(CONTROL_FILE, kPersonalSealControlClass);
    platform::UninitializeAutomation();
}

std::string SealControlFixture::Png(const char* method,
                                    std::initializer_list<platform::AutomationArgument> call) {
    const platform::AutomationResult result = platform::CallAutomation(m_control, method, call);
    EXPECT_EQ(result.failure, platform::AutomationFailure::None) << result.status;
    EXPECT_TRUE(result.text.has_value());
    return Base64Decode(result.text.value_or(""));
}

int SealControlFixture::Refusal(const char* method,
                                std::initializer_list<platform::AutomationArgument> call) {
    const platform::AutomationResult result = platform::CallAutomation(m_control, method, call);
    EXPECT_EQ(result.failure, platform::AutomationFailure::Failed);
    EXPECT_FALSE(result.text.has_value());
    return result.status;
}

DrawnPicture SealControlFixture::Styled(const SettingsText& settings, const std::string& text) {
    const std::string xml = settings.Xml();
    return DrawnPicture(Png("GetPersonalEsealByContentWithXML", {xml.c_str(), text.c_str()}));
}

int SealControlFixture::StyledRefusal(const SettingsText& settings, const std::string& text) {
    const std::string xml = settings.Xml();
    return Refusal("GetPersonalEsealByContentWithXML", {xml.c_str(), text.c_str()});
}

DrawnPicture SealControlFixture::Name(const std::string& text, int width, int height) {
    return DrawnPicture(Png("GetPersonalEsealByCertInfo", {text.c_str(), width, height}));
}

DrawnPicture SealControlFixture::Content(int kind, const std::string& text2,
                                         const std::string& text1) {
    return DrawnPicture(Png("GetPicByContent", {kind, text2.c_str(), text1.c_str()}));
}
