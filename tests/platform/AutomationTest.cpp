#include "platform/Automation.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "RegisteredClasses.h"
#include "support/TemporaryPrefix.h"

using namespace platform;

namespace {

class AutomationTest : public testing::Test {
protected:
    AutomationTest() {
        UnregisterClasses();
        InitializeAutomation();
    }
    ~AutomationTest() override {
        ReleaseAutomationObject(m_object);
        UninitializeAutomation();
        UnregisterClasses();
    }
    AutomationObject Engine(const char* method = "CreateTS",
                            const AutomationId& interfaceId = kEngineInterface) {
        RegisterClassAt(kEngineClass, ENGINE_STAND_IN);
        return m_object = CreateAutomationObject(IdOf(kEngineClass), interfaceId, method);
    }
    AutomationObject Control() {
        RegisterClassAt(kEngineClass, ENGINE_STAND_IN);
        return m_object = CreateAutomationControl(IdOf(kEngineClass));
    }
    std::string TextOf(const char* method, std::initializer_list<AutomationArgument> arguments) {
        const AutomationResult result = CallAutomation(m_object, method, arguments);
        if (result.failure != AutomationFailure::None) return "failed";
        return result.text.value_or("null");
    }

    TemporaryPrefix m_prefix;
    AutomationObject m_object = nullptr;
};

TEST_F(AutomationTest, AnIdentifierIsReadFromItsTextInEitherCase) {
    for (const auto parse : {ParseClassId, ParseInterfaceId}) {
        for (const char* const text :
             {"{5A0E71C3-3B28-46D9-8E4F-12C9D6F47A30}", "{5a0e71c3-3b28-46d9-8e4f-12c9d6f47a30}"}) {
            AutomationId id{};
            ASSERT_TRUE(parse(text, id));
            EXPECT_EQ(id.data1, kEngineInterface.data1);
            EXPECT_EQ(id.data2, kEngineInterface.data2);
            EXPECT_EQ(id.data3, kEngineInterface.data3);
            for (int i = 0; i < 8; ++i) EXPECT_EQ(id.data4[i], kEngineInterface.data4[i]) << i;
        }
    }
}

TEST_F(AutomationTest, ATextThatIsNoIdentifierIsRefused) {
    for (const auto parse : {ParseClassId, ParseInterfaceId}) {
        for (const char* const text :
             {"", "{5A0E71C3-3B28-46D9-8E4F-12C9D6F47A3}", "{5A0E71C3-3B28-46D9-8E4F-12C9D6F47A3G}",
              "{5A0E71C3-3B28-46D9-8E4F-12C9D6F47A30", "{5A0E71C3-3B28-46D9-8E4F+12C9D6F47A30}",
              "5A0E71C3-3B28-46D9-8E4F-12C9D6F47A30"}) {
            AutomationId id{};
            EXPECT_FALSE(parse(text, id)) << text;
        }
        AutomationId id{};
        EXPECT_FALSE(parse(nullptr, id));
    }
}

TEST_F(AutomationTest, AnEngineIsMadeOfItsClassAndCalled) {
    ASSERT_NE(Engine(), nullptr);
    EXPECT_EQ(TextOf("CreateTS", {"TUlJQg=="}), "TUlJQg==");
    EXPECT_EQ(TextOf("CreateTS", {"again"}), "again");
}

TEST_F(AutomationTest, AClassThatIsNotRegisteredIsNoObject) {
    EXPECT_EQ(CreateAutomationObject(IdOf(kEngineClass), kEngineInterface, "CreateTS"), nullptr);
    EXPECT_EQ(CreateAutomationControl(IdOf(kEngineClass)), nullptr);
}

TEST_F(AutomationTest, AClassWhoseLibraryCantBeLoadedIsNoObject) {
    std::ofstream(m_prefix.Below("engine")) << "text";
    for (const char* const name : {"engine", "none"}) {
        RegisterClassAt(kEngineClass, m_prefix.Below(name));
        EXPECT_EQ(CreateAutomationObject(IdOf(kEngineClass), kEngineInterface, "CreateTS"),
                  nullptr);
        EXPECT_EQ(CreateAutomationControl(IdOf(kEngineClass)), nullptr);
    }
}

TEST_F(AutomationTest, AClassWithoutTheInterfaceIsNoObject) {
    EXPECT_EQ(Engine("CreateTimeStamp", kOtherInterface), nullptr);
}

TEST_F(AutomationTest, ANullResultIsNotAFailureAndNotAnEmptyText) {
    ASSERT_NE(Engine(), nullptr);
    const AutomationResult null = CallAutomation(m_object, "CreateTS", {"null"});
    EXPECT_EQ(null.failure, AutomationFailure::None);
    EXPECT_EQ(null.status, 0);
    EXPECT_FALSE(null.text.has_value());
    const AutomationResult empty = CallAutomation(m_object, "CreateTS", {""});
    ASSERT_TRUE(empty.text.has_value());
    EXPECT_EQ(*empty.text, "");
}

TEST_F(AutomationTest, AFailedCallTellsItsStatusAndHasNoResult) {
    ASSERT_NE(Engine(), nullptr);
    const AutomationResult result = CallAutomation(m_object, "CreateTS", {"fail"});
    EXPECT_EQ(result.failure, AutomationFailure::Failed);
    EXPECT_EQ(result.status, -7);
    EXPECT_FALSE(result.text.has_value());
}

TEST_F(AutomationTest, AMethodThatIsNotThereIsAFailedLookUp) {
    ASSERT_NE(Control(), nullptr);
    const AutomationResult result = CallAutomation(m_object, "GetPersonalEseal", {"a", "b"});
    EXPECT_EQ(result.failure, AutomationFailure::NoMethod);
    EXPECT_EQ(result.status, static_cast<std::int32_t>(0x80020006));
    EXPECT_FALSE(result.text.has_value());
}

TEST_F(AutomationTest, ACallOfNoObjectIsAFailedLookUp) {
    const AutomationResult result = CallAutomation(nullptr, "CreateTS", {"a"});
    EXPECT_EQ(result.failure, AutomationFailure::NoMethod);
    EXPECT_EQ(result.status, static_cast<std::int32_t>(0x80004003));
}

TEST_F(AutomationTest, AControlTakesTextsAndNumbersInTheOrderOfItsDeclaration) {
    ASSERT_NE(Control(), nullptr);
    EXPECT_EQ(TextOf("GetNothing", {}), "called");
    EXPECT_EQ(TextOf("GetPersonalEsealByXML", {"<root/>", "text"}), "<root/>|text");
    EXPECT_EQ(TextOf("GetPersonalEsealByCertInfo", {"text", 300, 100}), "text|300|100");
    EXPECT_EQ(TextOf("GetPicByContent", {-2147483647, "two", "one"}), "-2147483647|two|one");
}

TEST_F(AutomationTest, MoreThanThreeArgumentsAreAFailedCall) {
    ASSERT_NE(Control(), nullptr);
    const AutomationResult result =
        CallAutomation(m_object, "GetPicByContent", {1, "two", "one", "zero"});
    EXPECT_EQ(result.failure, AutomationFailure::Failed);
    EXPECT_EQ(result.status, static_cast<std::int32_t>(0x8002000E));
}

TEST_F(AutomationTest, ChineseTextIsOfTheAnsiCodePageInAndOut) {
    ASSERT_NE(Control(), nullptr);
    EXPECT_EQ(TextOf("GetPersonalEsealByXML", {"<f>宋体</f>", "每列1个汉字"}),
              "<f>宋体</f>|每列1个汉字");
}

TEST_F(AutomationTest, ANullTextIsANullString) {
    ASSERT_NE(Control(), nullptr);
    EXPECT_EQ(TextOf("GetPersonalEsealByXML", {nullptr, ""}), "(null)|");
}

TEST_F(AutomationTest, ALongTextIsPassedWhole) {
    ASSERT_NE(Engine(), nullptr);
    const std::string text(100000, 'A');
    EXPECT_EQ(TextOf("CreateTS", {text.c_str()}), text);
}

TEST_F(AutomationTest, AnObjectIsHeldAcrossCallsBesideAnother) {
    const AutomationObject first = Engine();
    const AutomationObject second = Control();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    ReleaseAutomationObject(first);
    EXPECT_EQ(TextOf("CreateTS", {"still here"}), "still here");
}

TEST_F(AutomationTest, TheReleaseOfNoObjectIsHarmless) { ReleaseAutomationObject(nullptr); }

}  // namespace
