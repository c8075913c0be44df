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

}  // namespace
