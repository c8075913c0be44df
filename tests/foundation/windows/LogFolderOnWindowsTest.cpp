#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "foundation/LogFolder.h"
#include "platform/Files.h"
#include "platform/windows/Win32.h"
#include "support/Program.h"
#include "support/TemporaryPrefix.h"

namespace {

TEST(LogFolderOnWindows, TheLogIsBelowTheUsersLocalApplicationData) {
    const TemporaryPrefix prefix;
    EXPECT_EQ(GetLogFolder(""), platform::UserDataFolder() + "ESealLog\\");
    EXPECT_TRUE(platform::IsDirectory(prefix.LogFolder().c_str()));
}

TEST(LogFolderOnWindows, AFolderOfTheCallersWithAChineseNameIsMade) {
    const TemporaryPrefix prefix;
    const std::string base = prefix.Below("签章/");
    EXPECT_EQ(GetLogFolder(base), base + "ESealLog\\");
    EXPECT_TRUE(platform::IsDirectory((base + "ESealLog").c_str()));
}

// Wine tells the program of that name the version of the test's choice.
class SystemVersion {
public:
    explicit SystemVersion(const char* name) {
        RegSetKeyValueA(HKEY_CURRENT_USER, kKey, "Version", REG_SZ, name,
                        static_cast<DWORD>(std::strlen(name) + 1));
    }
    ~SystemVersion() { RegDeleteKeyA(HKEY_CURRENT_USER, kKey); }
    SystemVersion(const SystemVersion&) = delete;
    SystemVersion& operator=(const SystemVersion&) = delete;

private:
    static constexpr char kKey[] = "Software\\Wine\\AppDefaults\\log_writer.exe";
};

class FirstRecordOnWindows : public testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(FirstRecordOnWindows, MakesTheLogInTheFolderOfTheSystemsMajorVersion) {
    const TemporaryPrefix prefix;
    const std::string folder = std::getenv("LOCALAPPDATA") + std::string(GetParam().second);
    const std::string log = folder + "\\Velmora\\ESealLog\\Fenmoor.log";
    DeleteFileA(log.c_str());
    const SystemVersion version(GetParam().first);
    ASSERT_EQ(RunProgram({LOG_WRITER, "record", "AppOpt", "12", "3", "0", "text"}).exitCode, 0);
    EXPECT_TRUE(platform::PathExists(log.c_str()));
    DeleteFileA(log.c_str());
}

INSTANTIATE_TEST_SUITE_P(Versions, FirstRecordOnWindows,
                         testing::Values(std::pair("winxp64", ""), std::pair("win7", "Low"),
                                         std::pair("win81", "Low"), std::pair("win10", "")));

}  // namespace
