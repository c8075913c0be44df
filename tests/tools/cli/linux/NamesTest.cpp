// Names of files that are no text.

#include "tools/cli/CliFixture.h"

namespace {

using NamesOnLinux = CliTest;

TEST_F(NamesOnLinux, AByteThatIsNoUtf8LeavesTheJsonWellFormed) {
    const std::string file = InPrefix("a\xFFz");
    WriteFile(file, "content");
    const ProgramOutcome outcome = Tesmark({"hash", file, "--json"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_NE(outcome.out.find("a\xEF\xBF\xBDz"), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.out.find('\xFF'), std::string::npos);
    const ProgramOutcome absent = Tesmark({"hash", file + "none", "--json"});
    EXPECT_EQ(absent.exitCode, 4);
    EXPECT_EQ(absent.out.find('\xFF'), std::string::npos) << absent.out;
}

TEST_F(NamesOnLinux, ControlCharactersNeverReachTheTerminal) {
    const std::string file = InPrefix("a\033[2J\n\xC2\x9B\x9Bz");
    WriteFile(file, "content");
    const ProgramOutcome outcome = Tesmark({"hash", file});
    EXPECT_NE(outcome.out.find("a?[2J???z\n"), std::string::npos) << outcome.out;
    const ProgramOutcome absent = Tesmark({"hash", file + "none"});
    EXPECT_EQ(absent.exitCode, 4);
    EXPECT_NE(absent.error.find("a?[2J???znone"), std::string::npos) << absent.error;
}

}  // namespace
