// What shows dialogs in this session.

#include "tools/cli/CliFixture.h"

namespace {

using DoctorOnLinux = CliTest;

TEST_F(DoctorOnLinux, WithoutADisplayAndATerminalNothingShowsDialogs) {
    const std::string told = Tesmark({"doctor"}).out;
    EXPECT_NE(told.find("none without a display or a terminal"), std::string::npos) << told;
}

TEST_F(DoctorOnLinux, TheConfiguredProgramShowsDialogs) {
    ASSERT_EQ(Tesmark({"config", "set", "DialogProgram", kTesmark}).exitCode, 0);
    const std::string told = Tesmark({"doctor"}).out;
    const auto line = told.find("dialogs");
    ASSERT_NE(line, std::string::npos) << told;
    EXPECT_EQ(told.find(kTesmark, line), told.find_first_not_of(' ', line + 7)) << told;
}

TEST_F(DoctorOnLinux, AConfiguredProgramThatIsNotThereIsAProblem) {
    ASSERT_EQ(Tesmark({"config", "set", "DialogProgram", "/not/there"}).exitCode, 0);
    const auto outcome = Tesmark({"doctor"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.out.find("The dialog program is not there: /not/there."), std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.out.find("tesmark config unset DialogProgram"), std::string::npos);
}

}  // namespace
