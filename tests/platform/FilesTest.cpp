#include "platform/Files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/TemporaryPrefix.h"

using namespace platform;

namespace {

class FilesTest : public testing::Test {
protected:
    std::string Path(const std::string& name) const { return m_prefix.Below(name); }
    void Touch(const std::string& name) const { std::ofstream(Path(name)) << "x"; }

    TemporaryPrefix m_prefix;
};

TEST_F(FilesTest, APathExistsWhateverItIsAndWhateverItsRights) {
    Touch("file");
    std::filesystem::permissions(Path("file"), std::filesystem::perms::none);
    EXPECT_TRUE(PathExists(Path("file").c_str()));
    EXPECT_TRUE(PathExists(m_prefix.Path().c_str()));
    EXPECT_FALSE(PathExists(Path("none").c_str()));
    EXPECT_FALSE(PathExists(""));
    std::filesystem::permissions(Path("file"), std::filesystem::perms::owner_all);
}

TEST_F(FilesTest, AFileIsNoDirectory) {
    Touch("file");
    EXPECT_TRUE(IsDirectory(m_prefix.Path().c_str()));
    EXPECT_FALSE(IsDirectory(Path("file").c_str()));
    EXPECT_FALSE(IsDirectory(Path("none").c_str()));
}

TEST_F(FilesTest, AFileInAFolderIsFoundWhateverTheCaseOfItsLetters) {
    const std::string folder = m_prefix.Path() + PathSeparator();
    EXPECT_EQ(FileInFolder(folder, "list.crl"), folder + "list.crl");
    Touch("List.CRL");
    EXPECT_TRUE(FindFile(FileInFolder(folder, "list.crl").c_str()));
    EXPECT_EQ(FileInFolder(folder, "List.CRL"), folder + "List.CRL");
    EXPECT_EQ(FileInFolder(folder, "list.crl2"), folder + "list.crl2");
    EXPECT_EQ(FileInFolder(folder, ""), folder);
    EXPECT_EQ(FileInFolder(Path("none/"), "a"), Path("none/a"));
}

TEST_F(FilesTest, ANameWithASeparatorLeadsElsewhere) {
    EXPECT_TRUE(LeadsElsewhere("../a"));
    EXPECT_TRUE(LeadsElsewhere(std::string("..") + PathSeparator() + "a"));
    for (const char* name : {"", "a", "a.b c", "ca1.crl) more", "\x81\x5C.crl"}) {
        EXPECT_FALSE(LeadsElsewhere(name)) << name;
    }
}

TEST_F(FilesTest, AChineseNameIsFoundByThePathOfItsTextAndToldByIt) {
    const std::u8string name = u8"合同（已盖章）";
    const std::string text(name.begin(), name.end());
    std::ofstream(std::filesystem::path(m_prefix.Path()) / name) << "x";
    const std::string path = Path(PathFromUtf8(text));
    EXPECT_TRUE(PathExists(path.c_str()));
    EXPECT_EQ(Utf8FromPath(PathFromUtf8(text)), text);
    EXPECT_EQ(Utf8FromPath(PathFromUtf8("")), "");
}

TEST_F(FilesTest, ADirectoryIsMadeOneLevelDeepAndOnce) {
    EXPECT_FALSE(CreateDirectoryAt(Path("a/b/").c_str()));
    EXPECT_TRUE(CreateDirectoryAt(Path("a/").c_str()));
    EXPECT_FALSE(CreateDirectoryAt(Path("a").c_str()));
}

TEST_F(FilesTest, EveryDirectoryOfAPathIsMade) {
    EXPECT_TRUE(MakeDirectoryPath(Path("a/b/c/").c_str()));
    EXPECT_TRUE(IsDirectory(Path("a/b/c").c_str()));
    EXPECT_TRUE(MakeDirectoryPath(Path("a/b/c/").c_str()));
}

TEST_F(FilesTest, ADirectoryPathThroughAFileCannotBeMade) {
    Touch("file");
    EXPECT_FALSE(MakeDirectoryPath(Path("file/a/").c_str()));
}

TEST_F(FilesTest, APathThatEndsInASeparatorIsNeverFound) {
    Touch("file");
    EXPECT_TRUE(FindFile(Path("file").c_str()));
    EXPECT_TRUE(FindFile(m_prefix.Path().c_str()));
    EXPECT_FALSE(FindFile(Path("").c_str()));
    EXPECT_FALSE(FindFile(Path("none").c_str()));
}

TEST_F(FilesTest, TheSizeOfTheFileIsToldAfterEachRecord) {
    for (const char* record : {"one\n", "two\n"}) {
        const std::int64_t size = AppendTextRecord(Path("log").c_str(), record);
        EXPECT_EQ(static_cast<std::uintmax_t>(size), std::filesystem::file_size(Path("log")));
    }
}

TEST_F(FilesTest, AFileThatCannotBeOpenedIsMinusOne) {
    EXPECT_EQ(AppendTextRecord(Path("none/log").c_str(), "one\n"), -1);
    EXPECT_EQ(AppendTextRecord(m_prefix.Path().c_str(), "one\n"), -1);
}

TEST_F(FilesTest, FilesAreRenamedAndRemovedAndFailuresIgnored) {
    Touch("a");
    RenameFile(Path("a").c_str(), Path("b").c_str());
    EXPECT_FALSE(PathExists(Path("a").c_str()));
    EXPECT_TRUE(PathExists(Path("b").c_str()));
    RemoveFile(Path("b").c_str());
    EXPECT_FALSE(PathExists(Path("b").c_str()));
    RemoveFile(Path("b").c_str());
    RenameFile(Path("b").c_str(), Path("a").c_str());
}

}  // namespace
