#include "components/certservice/DurableFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/certservice/KeyFolder.h"
#include "components/certservice/ServiceCodes.h"
#include "platform/Files.h"
#include "support/TemporaryFolder.h"

namespace {

using testing::ElementsAre;

// Its second byte in GBK is that of a backslash.
constexpr char kHalfBackslash[] = "\x81\x5C";

TEST(DurableFileTestOnWindows, BothSeparatorsDivideAPath) {
    const TemporaryFolder folder;
    ASSERT_TRUE(MakePrivateFolder(folder.Path() + "/a\\b/c"));
    EXPECT_TRUE(platform::IsDirectory(folder.Below("a/b/c").c_str()));
    ASSERT_TRUE(WriteDurably(folder.Path() + "\\a/b\\file", "one"));
    ASSERT_TRUE(WriteDurably(folder.Path() + "/a\\b/other", "two"));
    EXPECT_THAT(FilesIn(folder.Path() + "/a/b"), ElementsAre("file", "other"));
}

TEST(DurableFileTestOnWindows, HalfOfACharacterIsNoSeparator) {
    const TemporaryFolder folder;
    const std::string name = std::string("x") + kHalfBackslash + "y";
    EXPECT_TRUE(IsPlainName(name));
    ASSERT_TRUE(MakePrivateFolder(folder.Path() + "\\" + name + "\\below"));
    EXPECT_THAT(FoldersIn(folder.Path()), ElementsAre(name));
    ASSERT_TRUE(WriteDurably(folder.Path() + "\\" + name + ".pem", "x"));
    EXPECT_THAT(FilesIn(folder.Path()), ElementsAre(name + ".pem"));
}

TEST(DurableFileTestOnWindows, DevicesStreamsAndNamesThatTheSystemChangesAreNotPlain) {
    for (const char* name : {"CON", "nul", "Aux.txt", "prn", "COM1", "lpt9.pem", "CONIN$", "a:b",
                             "a\\b", "a*", "a?", "a<", "a>", "a|", "a\"", "a.", "a ", "a\tb"}) {
        EXPECT_FALSE(IsPlainName(name)) << name;
    }
}

TEST(DurableFileTestOnWindows, NoKeyHasTheNameOfADevice) {
    const TemporaryFolder folder;
    KeyFolder keys(folder.Path());
    EXPECT_EQ(keys.Login("DevKeys/NUL", "x"), kServiceNoSuchCertificate);
    EXPECT_EQ(keys.Login("DevKeys/con.1", "x"), kServiceNoSuchCertificate);
}

}  // namespace
