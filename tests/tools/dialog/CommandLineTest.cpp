// What the dialog programs say to a person who starts them, with nothing to show anything on.
#include <gtest/gtest.h>

#include "support/Program.h"

namespace {

class DialogCommandLineOnLinux : public testing::TestWithParam<const char*> {
protected:
    static ProgramOutcome Run(const std::string& argument) {
        ProgramOptions nobodyThere;
        nobodyThere.hasTerminal = false;
        nobodyThere.environment = {{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}};
        return RunProgram({GetParam(), argument}, nobodyThere);
    }
    static std::string Name() {
        const std::string path = GetParam();
        return path.substr(path.rfind('/') + 1);
    }
};

TEST_P(DialogCommandLineOnLinux, HelpTellsWhatTheProgramIsFor) {
    const auto outcome = Run("--help");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_TRUE(outcome.out.starts_with(Name() + " shows a dialog")) << outcome.out;
    EXPECT_NE(outcome.out.find("tesmark config set DialogProgram"), std::string::npos);
    EXPECT_EQ(outcome.error, "");
}

TEST_P(DialogCommandLineOnLinux, TheVersionIsTold) {
    const auto outcome = Run("--version");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_EQ(outcome.out, Name() + " " DIALOG_VERSION "\n");
    EXPECT_EQ(outcome.error, "");
}

INSTANTIATE_TEST_SUITE_P(Programs, DialogCommandLineOnLinux,
                         testing::Values(WINDOW_PROGRAM, TTY_PROGRAM),
                         [](const auto& tested) { return tested.index == 0 ? "Window" : "Tty"; });

}  // namespace
