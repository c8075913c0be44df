#include <gtest/gtest.h>

#include <fstream>

#include "foundation/LogFolder.h"
#include "support/TemporaryPrefix.h"

namespace {

TEST(LogFolderOnLinux, AUserFolderThatCannotBeMadeIsEmpty) {
    const TemporaryPrefix prefix;
    std::ofstream(prefix.Below("Velmora")) << "x";
    EXPECT_EQ(GetAppDataFolder(), "");
    EXPECT_EQ(GetLogFolder(""), "");
}

}  // namespace
