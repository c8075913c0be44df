#include "foundation/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "foundation/Text.h"
#include "platform/Files.h"
#include "support/MatchesPattern.h"
#include "support/Program.h"
#include "support/TemporaryPrefix.h"

namespace {

constexpr char kTime[] = "\\[[A-Z][a-z][a-z] [A-Z][a-z][a-z] [ 0-9][0-9] [0-9:]{8} [0-9]{4}\\] ";

// As text mode wrote it or not.
std::string WithoutReturns(std::string text) {
    std::erase(text, '\r');
    return text;
}

// A log from elsewhere is not this test's.
class LoggerTest : public testing::Test {
protected:
    LoggerTest() { std::filesystem::remove_all(DataFolder()); }
    ~LoggerTest() override { std::filesystem::remove_all(DataFolder()); }

    ProgramOutcome Run(std::vector<std::string> arguments, const ProgramOptions& options = {}) {
        arguments.insert(arguments.begin(), LOG_WRITER);
        return RunProgram(arguments, options);
    }
    void Record(const std::string& file, const std::string& level = "8",
                const std::string& status = "0", const std::string& text = "text") {
        ASSERT_EQ(Run({"record", file, "12", level, status, text}).exitCode, 0);
    }
    std::string Folder() const { return m_prefix.LogFolder(); }
    // The product's own, without a separator at its end.
    static std::string DataFolder() {
        const std::string folder = platform::UserDataFolder();
        return folder.substr(0, folder.size() - 1);
    }
    std::string LogFile() const { return Folder() + "Fenmoor.log"; }
    std::string Log() const { return WithoutReturns(ReadFileToString(LogFile())); }
    // What follows the thread id in the only record.
    std::string Rest() const {
        const std::string log = Log();
        const auto id = log.find("[tId:");
        const auto end = log.find("] ", id);
        return end == std::string::npos ? log : log.substr(end + 2);
    }
    void BlockDataFolder() const {
        std::filesystem::create_directories(std::filesystem::path(DataFolder()).parent_path());
        std::ofstream(DataFolder()) << "x";
    }
    void MakeLog(std::uintmax_t size) const {
        std::filesystem::create_directories(Folder());
        std::ofstream(LogFile()).put('x');
        std::filesystem::resize_file(LogFile(), size);
    }

    TemporaryPrefix m_prefix;
};

constexpr std::uintmax_t kLimit = 10'485'760;

TEST_F(LoggerTest, TheFirstRecordMakesTheFoldersAndTheFile) {
    Record("AppOpt");
    EXPECT_TRUE(std::filesystem::is_regular_file(LogFile()));
}

TEST_F(LoggerTest, ARecordIsOneLineOfTimeLevelThreadPlaceStatusAndMessage) {
    Record("AppOpt", "8", "0", "[HttpPost start]");
    EXPECT_THAT(Log(), MatchesPattern(std::string(kTime) + "\\[trace \\] \\[tId:[0-9]+\\] " +
                                      "AppOpt\\(12\\): status\\(0\\), \\[HttpPost start\\]\n"));
}

TEST_F(LoggerTest, TheTimeIsTheLocalTimeOfTheRecordAsCtimeWritesIt) {
    constexpr std::time_t kAheadOfUtc = (5 * 60 + 45) * 60;
    const std::time_t before = std::time(nullptr);
    ASSERT_EQ(
        Run({"record", "AppOpt", "12", "8", "0", "text"}, {{}, {{"TZ", "NPT-05:45"}}}).exitCode, 0);
    const std::time_t after = std::time(nullptr);
    const std::string log = Log();
    bool found = false;
    for (std::time_t second = before; second <= after && !found; ++second) {
        const std::time_t local = second + kAheadOfUtc;
        found = log.starts_with("[" + std::string(std::asctime(std::gmtime(&local)), 24) + "] ");
    }
    EXPECT_TRUE(found) << log;
}

TEST_F(LoggerTest, EachLevelHasItsNameOfSixCharacters) {
    const char* names[] = {"emerg ", "alert ", "crit  ", "error ", "warn  ",
                           "notice", "info  ", "debug ", "trace "};
    for (int level = 0; level <= 8; ++level) {
        Record("AppOpt", std::to_string(level));
        EXPECT_NE(Log().find(std::string("] [") + names[level] + "] [tId:"), std::string::npos);
    }
}

TEST_F(LoggerTest, TheWordTraceMatchesNoRowSoTheThresholdStaysEight) {
    Record("AppOpt", "8");
    EXPECT_FALSE(Log().empty());
}

TEST_F(LoggerTest, ALevelAboveTheThresholdIsNotWritten) {
    Record("AppOpt", "9");
    EXPECT_EQ(Log(), "");
}

TEST_F(LoggerTest, ANegativeLevelLeavesThePlaceOut) {
    Record("AppOpt", "-1");
    EXPECT_EQ(Rest(), "status(0), text\n");
}

TEST_F(LoggerTest, ANullFileLeavesThePlaceOut) {
    Record("-");
    EXPECT_EQ(Rest(), "status(0), text\n");
}

TEST_F(LoggerTest, TheStatusIsInLowerCaseHexadecimalWithoutPadding) {
    Record("AppOpt", "8", "3054");
    EXPECT_EQ(Rest(), "AppOpt(12): status(bee), text\n");
}

TEST_F(LoggerTest, TheNameIsWhatFollowsTheLastBackslashWithoutASlash) {
    Record(".\\AppOpt");
    EXPECT_EQ(Rest(), "AppOpt(12): status(0), text\n");
}

TEST_F(LoggerTest, ASlashIsSearchedBeforeABackslash) {
    Record("a/b\\c");
    EXPECT_EQ(Rest(), "b\\c(12): status(0), text\n");
}

TEST_F(LoggerTest, AParenthesisAtTheNamesEndIsRemovedOnce) {
    Record("x\\y)");
    EXPECT_EQ(Rest(), "y(12): status(0), text\n");
}

TEST_F(LoggerTest, OnlyOneParenthesisAtTheNamesEndIsRemoved) {
    Record("y))");
    EXPECT_EQ(Rest(), "y)(12): status(0), text\n");
}

TEST_F(LoggerTest, AFileThatEndsInASeparatorIsUsedWhole) {
    Record("a\\b/");
    EXPECT_EQ(Rest(), "a\\b/(12): status(0), text\n");
}

TEST_F(LoggerTest, TextsAreWrittenByteByByte) {
    Record("AppOpt", "8", "0", "返回状态码：5");
    EXPECT_EQ(Rest(), "AppOpt(12): status(0), 返回状态码：5\n");
}

TEST_F(LoggerTest, ARecordThatFillsTheBufferIsWrittenWhole) {
    ASSERT_EQ(Run({"exactly", "8192"}).exitCode, 0);
    const std::string log = Log();
    EXPECT_EQ(log.size() - (log.find('\n') + 1), 8192U);
    EXPECT_THAT(log, testing::EndsWith("xxx\n"));
}

TEST_F(LoggerTest, AMessageThatDoesNotFitVanishesWholeAndTheLineFeedTakesTheBlanksPlace) {
    ASSERT_EQ(Run({"exactly", "8193"}).exitCode, 0);
    const std::string log = Log();
    EXPECT_THAT(log.substr(log.find('\n') + 1),
                MatchesPattern(".*\\[tId:[0-9]+\\] AppOpt\\(1\\): status\\(0\\),\n"));
}

TEST_F(LoggerTest, AFileNameLongerThanAnyPathLeavesTheRestInPlace) {
    Record(std::string(9000, 'n'));
    EXPECT_EQ(Rest(), std::string(4096, 'n') + "(12): status(0), text\n");
}

TEST_F(LoggerTest, AFileOfExactlyTheLimitIsNotRotated) {
    MakeLog(kLimit - 4000);
    ASSERT_EQ(Run({"upto", std::to_string(kLimit)}).exitCode, 0);
    ASSERT_TRUE(std::filesystem::exists(LogFile()));
    EXPECT_EQ(std::filesystem::file_size(LogFile()), kLimit);
    EXPECT_FALSE(std::filesystem::exists(LogFile() + "1"));
}

TEST_F(LoggerTest, ARecordThatPassesTheLimitByOneByteIsWrittenWholeAndThenTheFileIsRenamed) {
    MakeLog(kLimit - 4000);
    ASSERT_EQ(Run({"upto", std::to_string(kLimit + 1)}).exitCode, 0);
    EXPECT_FALSE(std::filesystem::exists(LogFile()));
    ASSERT_TRUE(std::filesystem::exists(LogFile() + "1"));
    EXPECT_EQ(std::filesystem::file_size(LogFile() + "1"), kLimit + 1);
    EXPECT_THAT(WithoutReturns(ReadFileToString(LogFile() + "1")), testing::EndsWith("xxx\n"));
}

TEST_F(LoggerTest, TheEarlierGenerationIsGoneAfterARotation) {
    MakeLog(kLimit);
    std::ofstream(LogFile() + "1") << "old";
    Record("AppOpt");
    EXPECT_GT(std::filesystem::file_size(LogFile() + "1"), kLimit);
}

TEST_F(LoggerTest, TheNextRecordAfterARotationMakesAFreshFile) {
    MakeLog(kLimit);
    Record("AppOpt");
    Record("Second");
    EXPECT_EQ(Rest(), "Second(12): status(0), text\n");
}

TEST_F(LoggerTest, AFailedRotationIsIgnoredAndTheFileGoesOnGrowing) {
    MakeLog(kLimit);
    std::filesystem::create_directories(LogFile() + "1/held");
    Record("AppOpt");
    Record("AppOpt");
    EXPECT_GT(std::filesystem::file_size(LogFile()), kLimit + 80);
}

TEST_F(LoggerTest, ALogThatCannotBeOpenedGoesToStandardOutput) {
    std::filesystem::create_directories(LogFile());
    const ProgramOutcome outcome = Run({"record", "AppOpt", "12", "3", "0", "text"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(WithoutReturns(outcome.out), testing::EndsWith("AppOpt(12): status(0), text\n"));
}

TEST_F(LoggerTest, WithoutAUserFolderTheLogIsInTheWorkingDirectory) {
    BlockDataFolder();
    ASSERT_EQ(Run({"record", "AppOpt", "12", "3", "0", "text"}, {m_prefix.Path(), {}}).exitCode, 0);
    EXPECT_THAT(WithoutReturns(ReadFileToString(m_prefix.Below("Fenmoor.log"))),
                testing::EndsWith("AppOpt(12): status(0), text\n"));
}

TEST_F(LoggerTest, TheFoldersAreMadeAndEndInASeparator) {
    const ProgramOutcome outcome = Run({"folders"});
    EXPECT_EQ(WithoutReturns(outcome.out), platform::UserDataFolder() + "\n" + Folder() + "\n");
    EXPECT_TRUE(std::filesystem::is_directory(Folder()));
}

TEST_F(LoggerTest, ALogFolderThatCannotBeMadeIsEmpty) {
    BlockDataFolder();
    const std::string folders = WithoutReturns(Run({"folders"}, {m_prefix.Path(), {}}).out);
    EXPECT_THAT(folders, testing::EndsWith("\n\n"));
}

TEST_F(LoggerTest, AScopeWritesItsStartAndItsEndWithTheElapsedTime) {
    ASSERT_EQ(Run({"scope", "C:\\src\\AppOpt"}).exitCode, 0);
    EXPECT_THAT(Log(), MatchesPattern(".*AppOpt\\(77\\): status\\(0\\), \\[HttpPost start\\]\n"
                                      ".*AppOpt\\(77\\): status\\(0\\), \\[HttpPost end\\]"
                                      "\\[Time consume [0-9]+ ms\\]\n"));
}

TEST_F(LoggerTest, AFunctionLeftByAnExceptionHasItsEndWithTheLineOfTheOpening) {
    ASSERT_EQ(Run({"throw", "AppOpt"}).exitCode, 0);
    EXPECT_THAT(Log(),
                MatchesPattern(".*\n.*AppOpt\\(77\\): status\\(0\\), \\[HttpPost end\\].*\n"));
}

TEST_F(LoggerTest, AScopesFileNameIsCutAtTheEndOfItsField) {
    ASSERT_EQ(Run({"scope", std::string(300, 'n')}).exitCode, 0);
    EXPECT_THAT(Rest(), testing::StartsWith(std::string(255, 'n') + "(77): "));
}

}  // namespace
