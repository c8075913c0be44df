#include <gtest/gtest.h>

#include <sstream>

#include "foundation/Text.h"
#include "support/MatchesPattern.h"
#include "support/Program.h"
#include "support/TemporaryPrefix.h"

namespace {

// Windows and Linux both append in one step, but Wine doesn't: there two records of one moment may
// come to stand at one place.
TEST(LogThreadsOnLinux, RecordsOfSeveralThreadsStayWholeAndNoneIsLost) {
    const TemporaryPrefix prefix;
    ASSERT_EQ(RunProgram({LOG_WRITER, "threads", "4", "100"}, {}).exitCode, 0);
    std::istringstream lines(ReadFileToString(prefix.LogFolder() + "Fenmoor.log"));
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        ASSERT_THAT(line, MatchesPattern("\\[.*\\[tId:[0-9]+\\] AppOpt\\([0-9]+\\): " +
                                         std::string("status\\(0\\), [0-9]{200}")));
    }
    EXPECT_EQ(count, 400);
}

}  // namespace
