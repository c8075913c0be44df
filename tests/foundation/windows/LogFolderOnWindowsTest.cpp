#include <gtest/gtest.h>

#include <string>

#include "foundation/LogFolder.h"
#include "platform/Files.h"
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

}  // namespace
