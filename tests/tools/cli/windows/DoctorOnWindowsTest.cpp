#include "support/LockedStore.h"
#include "tools/cli/CliFixture.h"

namespace {

using DoctorOnWindows = CliTest;

TEST_F(DoctorOnWindows, RightsThatTheLibraryLacksOnItsSettingsAreAProblem) {
    m_prefix.SetNumber("bVerifyCRL", 1);
    EXPECT_EQ(Tesmark({"doctor"}).out.find("it runs on defaults"), std::string::npos);
    const LockedStore locked(m_prefix);
    const auto outcome = Tesmark({"doctor"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.out.find("it runs on defaults"), std::string::npos) << outcome.out;
}

// What the library can't read is not set to it, and none of the lines says otherwise.
TEST_F(DoctorOnWindows, WithoutRightsAllLinesTellTheDefaultsThatTheLibraryRunsOn) {
    m_prefix.SetNumber("bSealPosition", 3);
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    const auto subjects = [this](const std::string& text) {
        std::string found;
        const Json::Value findings = Json({"doctor"})["findings"];
        for (const Json::Value& finding : findings) {
            if (!finding["text"].asString().starts_with(text)) continue;
            found += finding["subject"].asString() + ";";
        }
        return found;
    };
    EXPECT_EQ(subjects("Seals are to be drawn"), "personal seals;");
    const LockedStore locked(m_prefix);
    EXPECT_EQ(subjects("the keys"), "seal source;");
    EXPECT_EQ(subjects("Seals are to be drawn"), "");
    EXPECT_EQ(subjects("no drawing control is registered, and none is in use"), "personal seals;");
    WriteFile(InPrefix("a.txt"), "a");
    const auto signing = Tesmark({"sign", InPrefix("a.txt"), "--timestamp"});
    EXPECT_NE(signing.error.find("get no time stamp on this machine"), std::string::npos);
}

}  // namespace
