// `tesmark config` and `doctor` about time stamps.

#include <gmock/gmock.h>

#include "CliFixture.h"
#include "components/timestamp/TimeStampSettings.h"
#include "platform/Module.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class TimeStampConfigTest : public CliTest {
protected:
    void Set(const std::string& name, const std::string& value) const {
        const auto outcome = Tesmark({"config", "set", name, value});
        ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    }
    // What doctor finds about time stamps, with "WRONG: " in front of a problem.
    std::string Finding() const {
        const Json::Value findings = Json({"doctor"})["findings"];
        for (const Json::Value& finding : findings) {
            if (finding["subject"] != "time stamps") continue;
            return (finding["ok"].asBool() ? "" : "WRONG: ") + finding["text"].asString();
        }
        return "none";
    }
};

TEST_F(TimeStampConfigTest, WhatIsSetIsWhatTheEngineReads) {
    Set("TimeStampUrl", "http://a/;" + std::string(300, 'b'));
    Set("TimeStampUser", "stamper");
    Set("TimeStampPassword", "secret");
    Set("TimeStampProxy", "http://proxy:3128");
    Set("TimeStampCaFile", InPrefix("ca.pem"));
    Set("TimeStampConnectTimeout", "3");
    Set("TimeStampTimeout", "7");
    const TimeStampSettings settings = ReadTimeStampSettings();
    EXPECT_THAT(settings.urls, testing::ElementsAre("http://a/", std::string(300, 'b')));
    EXPECT_EQ(settings.user, "stamper");
    EXPECT_EQ(settings.password, "secret");
    EXPECT_EQ(settings.proxy, "http://proxy:3128");
    EXPECT_EQ(settings.caFile, InPrefix("ca.pem"));
    EXPECT_EQ(settings.connectTimeoutMs, 3'000);
    EXPECT_EQ(settings.timeoutMs, 7'000);
}

TEST_F(TimeStampConfigTest, ThePasswordIsShownNowhere) {
    for (const std::vector<std::string>& line :
         std::vector<std::vector<std::string>>{{"config", "set", "TimeStampPassword", "Xq7-4711"},
                                               {"config", "get", "TimeStampPassword"},
                                               {"config", "get"},
                                               {"config", "get", "--json"},
                                               {"doctor"},
                                               {"doctor", "--json"}}) {
        const auto outcome = Tesmark(line);
        EXPECT_THAT(outcome.out, HasSubstr("(not shown)"));
        EXPECT_THAT(outcome.out + outcome.error, Not(HasSubstr("Xq7-4711")));
    }
    EXPECT_EQ(Tesmark({"config", "get", "TimeStampPassword"}).out, "(not shown)\n");
}

TEST_F(TimeStampConfigTest, AMachineWithoutAnEngineLacksOneOnlyIfSignaturesAreToBeStamped) {
    EXPECT_EQ(Finding(), "no engine is registered, and none is in use");
    Set("bSignWithTimeStamp", "1");
    EXPECT_THAT(Finding(), HasSubstr("WRONG: Signatures are to carry a time stamp"));
}

TEST_F(TimeStampConfigTest, ARegisteredEngineIsTriedAndNeedsAnAuthority) {
    Set("TimeStampEngine", CLI_TIME_STAMP_ENGINE);
    EXPECT_EQ(Finding(), std::string(CLI_TIME_STAMP_ENGINE) + " (not in use)");
    Set("bSignWithTimeStamp", "1");
    EXPECT_EQ(Finding(), "WRONG: The engine is told no time-stamp authority.");
    Set("TimeStampUrl", "http://127.0.0.1/");
    EXPECT_EQ(Finding(), CLI_TIME_STAMP_ENGINE);
}

TEST_F(TimeStampConfigTest, AnEngineThatCannotBeLoadedIsNamed) {
    const std::string file = InPrefix(platform::ModuleFileName("VelmoraTSEngine"));
    WriteFile(file, "no library");
    Set("TimeStampEngine", file);
    EXPECT_EQ(Finding(), "WRONG: The engine can't be loaded: " + file + ".");
}

TEST_F(TimeStampConfigTest, AnEngineIsTakenAwayAgain) {
    Set("TimeStampEngine", CLI_TIME_STAMP_ENGINE);
    ASSERT_EQ(Tesmark({"config", "unset", "TimeStampEngine"}).exitCode, 0);
    EXPECT_EQ(Finding(), "no engine is registered, and none is in use");
}

}  // namespace
