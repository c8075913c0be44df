#include "components/certservice/DurableFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "components/certservice/FileRights.h"
#include "platform/Files.h"
#include "support/TemporaryFolder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DurableFileTest : public testing::Test {
protected:
    std::string Read(const std::string& path) {
        std::string content;
        EXPECT_TRUE(ReadWholeFile(path, content)) << path;
        return content;
    }
    std::string Below(const std::string& name) const { return m_folder.Below(name); }

    TemporaryFolder m_folder;
};

TEST_F(DurableFileTest, WhatIsWrittenIsReadBackByteForByte) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    bytes += "\r\n\n\x1A end";
    ASSERT_TRUE(WriteDurably(Below("file"), bytes));
    EXPECT_EQ(Read(Below("file")), bytes);
    ASSERT_TRUE(WriteDurably(Below("file"), ""));
    EXPECT_EQ(Read(Below("file")), "");
}

TEST_F(DurableFileTest, AReplacedFileLeavesNothingBeside) {
    ASSERT_TRUE(WriteDurably(Below("file"), "old and longer"));
    ASSERT_TRUE(WriteDurably(Below("file"), "new"));
    EXPECT_EQ(Read(Below("file")), "new");
    EXPECT_THAT(FilesIn(m_folder.Path()), ElementsAre("file"));
    const std::filesystem::directory_iterator entries(m_folder.Path());
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST_F(DurableFileTest, AFileIsForItsOwnerAloneUnlessItIsForEverybody) {
    ASSERT_TRUE(WriteDurably(Below("private"), "x"));
    ASSERT_TRUE(WriteDurably(Below("public"), "x", true));
    EXPECT_TRUE(IsForOwnerAlone(Below("private")));
    EXPECT_FALSE(IsForOwnerAlone(Below("public")));
}

TEST_F(DurableFileTest, AFolderIsMadeWithThoseAboveItForTheirOwnerAlone) {
    ASSERT_TRUE(MakePrivateFolder(Below("a/b/c")));
    EXPECT_TRUE(platform::IsDirectory(Below("a/b/c").c_str()));
    for (const char* name : {"a", "a/b", "a/b/c"}) EXPECT_TRUE(IsForOwnerAlone(Below(name)));
    EXPECT_TRUE(MakePrivateFolder(Below("a/b/c"))) << "it is there already";
}

TEST_F(DurableFileTest, WhereAFileStandsThereIsNoFolderAndNoFileInIt) {
    ASSERT_TRUE(WriteDurably(Below("file"), "x"));
    EXPECT_FALSE(MakePrivateFolder(Below("file")));
    EXPECT_FALSE(MakePrivateFolder(Below("file/below")));
    EXPECT_FALSE(WriteDurably(Below("file/below"), "x"));
    EXPECT_FALSE(WriteDurably(Below("absent/file"), "x"));
}

TEST_F(DurableFileTest, AFolderIsntReplacedByAFile) {
    ASSERT_TRUE(MakePrivateFolder(Below("folder")));
    EXPECT_FALSE(WriteDurably(Below("folder"), "x"));
    EXPECT_THAT(FoldersIn(m_folder.Path()), ElementsAre("folder"));
    EXPECT_THAT(FilesIn(m_folder.Path()), IsEmpty());
}

TEST_F(DurableFileTest, WhatCantBeReadLeavesTheContentAlone) {
    std::string content = "untouched";
    EXPECT_FALSE(ReadWholeFile(Below("absent"), content));
    EXPECT_FALSE(ReadWholeFile(m_folder.Path(), content));
    EXPECT_EQ(content, "untouched");
}

TEST_F(DurableFileTest, NamesComeInTheOrderOfTheirBytesAndWithoutHiddenOnes) {
    for (const char* name : {"b", "a", "印章", ".hidden"}) {
        ASSERT_TRUE(WriteDurably(Below(name), "x"));
    }
    ASSERT_TRUE(MakePrivateFolder(Below("folder")));
    ASSERT_TRUE(MakePrivateFolder(Below(".folder")));
    EXPECT_THAT(FilesIn(m_folder.Path()), ElementsAre("a", "b", "印章"));
    EXPECT_THAT(FoldersIn(m_folder.Path()), ElementsAre("folder"));
    EXPECT_THAT(FilesIn(Below("absent")), IsEmpty());
}

TEST_F(DurableFileTest, AStampTellsOneStateFromTheNext) {
    FileStamp first;
    FileStamp again;
    FileStamp second;
    ASSERT_TRUE(WriteDurably(Below("file"), "x"));
    ASSERT_TRUE(ReadStamp(Below("file"), first));
    ASSERT_TRUE(ReadStamp(Below("file"), again));
    EXPECT_EQ(first, again);
    EXPECT_EQ(first.size, 1);
    ASSERT_TRUE(WriteDurably(Below("file"), "xy"));
    ASSERT_TRUE(ReadStamp(Below("file"), second));
    EXPECT_NE(first, second);
    EXPECT_TRUE(ReadStamp(m_folder.Path(), first)) << "of a folder too";
    EXPECT_FALSE(ReadStamp(Below("absent"), first));
}

TEST_F(DurableFileTest, ALockIsHeldByOneAtATime) {
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (int round = 0; round < 25; ++round) {
                    const FileLock lock(Below("lock"));
                    if (!lock.Held()) most = 99;
                    const int now = ++inside;
                    if (now > most) most = now;
                    --inside;
                }
            });
        }
    }
    EXPECT_EQ(most, 1);
    EXPECT_FALSE(FileLock(Below("absent/lock")).Held());
}

TEST_F(DurableFileTest, ANameWithASeparatorOrWithoutLettersIsNotPlain) {
    for (const char* name : {"a", "a.b", "印章", "a b", "COM", "console"}) {
        EXPECT_TRUE(IsPlainName(name)) << name;
    }
    EXPECT_FALSE(IsPlainName(""));
    EXPECT_FALSE(IsPlainName("."));
    EXPECT_FALSE(IsPlainName(".."));
    EXPECT_FALSE(IsPlainName("a/b"));
    EXPECT_FALSE(IsPlainName("/"));
    EXPECT_FALSE(IsPlainName(std::string_view("a\0b", 3)));
}

}  // namespace
