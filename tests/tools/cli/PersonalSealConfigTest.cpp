// `tesmark config` and `doctor` about the drawing control.

#include <gmock/gmock.h>

#include "CliFixture.h"
#include "platform/Module.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class PersonalSealConfigTest : public CliTest {
protected:
    void Set(const std::string& name, const std::string& value) const {
        const auto outcome = Tesmark({"config", "set", name, value});
        ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    }
    // What doctor finds about personal seals, with "WRONG: " in front of a problem.
    std::string Finding() const {
        const Json::Value findings = Json({"doctor"})["findings"];
        for (const Json::Value& finding : findings) {
            if (finding["subject"] != "personal seals") continue;
            return (finding["ok"].asBool() ? "" : "WRONG: ") + finding["text"].asString();
        }
        return "none";
    }
};

TEST_F(PersonalSealConfigTest, AControlIsNeededOnlyWhereSealsAreDrawn) {
    for (const char* const position : {"0", "1", "2"}) {
        Set("bSealPosition", position);
        EXPECT_EQ(Finding(), "no drawing control is registered, and none is in use");
    }
    for (const char* const position : {"3", "4"}) {
        Set("bSealPosition", position);
        EXPECT_EQ(Finding(), "WRONG: Seals are to be drawn; no drawing control is registered.");
    }
}

TEST_F(PersonalSealConfigTest, ARegisteredControlIsMadeAsTheLibraryMakesIt) {
    Set("PersonalSealControl", CLI_PERSONAL_SEAL);
    EXPECT_THAT(Finding(), HasSubstr("(not in use)"));
    Set("bSealPosition", "4");
    EXPECT_THAT(Finding(), HasSubstr(platform::ModuleFileName("VelmoraPersonalSeal")));
    EXPECT_THAT(Finding(), Not(StartsWith("WRONG")));
}

TEST_F(PersonalSealConfigTest, AFileThatCannotBeLoadedIsAProblem) {
    Set("PersonalSealControl", InPrefix("none.so"));
    EXPECT_THAT(Finding(), StartsWith("WRONG: The control can't be loaded: "));
}

TEST_F(PersonalSealConfigTest, WhatIsTakenAwayIsGone) {
    Set("PersonalSealControl", CLI_PERSONAL_SEAL);
    ASSERT_EQ(Tesmark({"config", "unset", "PersonalSealControl"}).exitCode, 0);
    EXPECT_EQ(Finding(), "no drawing control is registered, and none is in use");
}

}  // namespace
