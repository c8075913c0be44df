// The built engine, made of its class and called as the library does.

#include <gmock/gmock.h>

#include <sstream>

#include "components/automation/RegisteredClass.h"
#include "components/exports/ExportedNames.h"
#include "components/timestamp/ResponseCheck.h"
#include "components/timestamp/TimeStampFixture.h"
#include "foundation/Registry.h"
#include "foundation/Text.h"
#include "platform/Automation.h"
#include "platform/closed/TimeStampEngine.h"

namespace {

using testing::HasSubstr;

// The engine's log is where it was when its file was loaded, so that all tests share a prefix.
class EngineClassTest : public testing::Test {
protected:
    static void SetUpTestSuite() { g_prefix = new TemporaryPrefix; }
    static void TearDownTestSuite() { delete g_prefix; }

    EngineClassTest() : m_logged(Log().size()) {
        platform::InitializeAutomation();
        UnregisterClassFile(ENGINE_FILE, kTimeStampEngineClass);
        EXPECT_TRUE(RegisterClassFile(ENGINE_FILE, kTimeStampEngineClass));
    }
    ~EngineClassTest() override {
        platform::ReleaseAutomationObject(m_engine);
        UnregisterClassFile(ENGINE_FILE, kTimeStampEngineClass);
        platform::UninitializeAutomation();
    }
    bool Create() {
        platform::AutomationId engine{};
        platform::AutomationId interfaceId{};
        return platform::ParseClassId(kTimeStampEngineClass, engine) &&
               platform::ParseInterfaceId(kTimeStampEngineInterface, interfaceId) &&
               (m_engine = platform::CreateAutomationObject(engine, interfaceId, "CreateTS"));
    }
    platform::AutomationResult CreateTs(const std::string& request) {
        return platform::CallAutomation(m_engine, "CreateTS", {request.c_str()});
    }
    static void SetUrl(const std::string& url) {
        const CRegistry key(platform::CreateRegistryKey(
            platform::RegistryRootKey(platform::RegistryRoot::LocalMachine),
            kTimeStampSettingsKey));
        ASSERT_TRUE(platform::SetRegistryString(key.key, "Url", url));
    }
    static std::string Log() { return ReadFileToString(g_prefix->LogFolder() + "Fenmoor.log"); }
    std::string Logged() const { return Log().substr(m_logged); }

    static TemporaryPrefix* g_prefix;
    platform::AutomationObject m_engine = nullptr;
    std::size_t m_logged;
};

TemporaryPrefix* EngineClassTest::g_prefix = nullptr;

TEST_F(EngineClassTest, ARegisteredEngineStampsAndSaysWho) {
    const LoopbackServer server(
        [](const LoopbackServer::Request& request) { return HttpReply(Stamp(request.body)); });
    SetUrl(server.Url("/tsa"));
    const std::string request = MakeRequest();
    ASSERT_TRUE(Create());
    const platform::AutomationResult result = CreateTs(Base64Encode(request));
    EXPECT_EQ(result.failure, platform::AutomationFailure::None);
    ASSERT_TRUE(result.text.has_value());
    EXPECT_EQ(CheckResponse(request, Base64Decode(*result.text)).fault, "");
    EXPECT_THAT(Logged(), HasSubstr("[CreateTS]: " + server.Url("/tsa: granted, serial number ")));
}

TEST_F(EngineClassTest, AFailureGivesNullAndARecord) {
    const std::string dead = LoopbackServer::DeadUrl("/tsa");
    SetUrl(dead);
    ASSERT_TRUE(Create());
    const platform::AutomationResult result = CreateTs(Base64Encode(MakeRequest()));
    EXPECT_EQ(result.failure, platform::AutomationFailure::None);
    EXPECT_FALSE(result.text.has_value());
    EXPECT_THAT(Logged(), HasSubstr("[CreateTS]: " + dead + ": "));
    EXPECT_THAT(Logged(), HasSubstr("[error "));
}

TEST_F(EngineClassTest, AnEngineIsMadeAnewForEachStamp) {
    SetUrl("");
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(Create());
        EXPECT_FALSE(CreateTs("rubbish").text.has_value());
        platform::ReleaseAutomationObject(m_engine);
        m_engine = nullptr;
    }
}

TEST_F(EngineClassTest, AClassThatIsTakenAwayIsNoObject) {
    ASSERT_TRUE(UnregisterClassFile(ENGINE_FILE, kTimeStampEngineClass));
    EXPECT_FALSE(Create());
}

TEST_F(EngineClassTest, TheFileLetsNothingElseOut) {
    std::ostringstream names;
    for (const std::string& name : ExportedNames(ENGINE_FILE)) {
        names << (names.str().empty() ? "" : " ") << name;
    }
    EXPECT_EQ(names.str(), ClassFileExports("CreateTS"));
}

}  // namespace
