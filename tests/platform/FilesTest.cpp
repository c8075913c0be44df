#include "platform/Files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "support/TemporaryPrefix.h"

using namespace platform;

namespace {

class FilesTest : public testing::Test {
protected:
    std::string Path(const std::string& name) const { return m_prefix.Path() + "/" + name; }
    void Touch(const std::string& name) const { std::ofstream(Path(name)) << "x"; }
    std::string Contents(const std::string& name) const {
        std::ostringstream contents;
        contents << std::ifstream(Path(name), std::ios::binary).rdbuf();
        return contents.str();
    }

    TemporaryPrefix m_prefix;
};

TEST_F(FilesTest, APathExistsWhateverItIsAndWhateverItsRights) {
    Touch("file");
    std::filesystem::permissions(Path("file"), std::filesystem::perms::none);
    EXPECT_TRUE(PathExists(Path("file").c_str()));
    EXPECT_TRUE(PathExists(m_prefix.Path().c_str()));
    EXPECT_FALSE(PathExists(Path("none").c_str()));
    EXPECT_FALSE(PathExists(""));
}

TEST_F(FilesTest, AFileIsNoDirectory) {
    Touch("file");
    EXPECT_TRUE(IsDirectory(m_prefix.Path().c_str()));
    EXPECT_FALSE(IsDirectory(Path("file").c_str()));
    EXPECT_FALSE(IsDirectory(Path("none").c_str()));
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
    EXPECT_TRUE(MakeDirectoryPath("/"));
}

TEST_F(FilesTest, ADirectoryPathThroughAFileCannotBeMade) {
    Touch("file");
    EXPECT_FALSE(MakeDirectoryPath(Path("file/a/").c_str()));
    EXPECT_FALSE(MakeDirectoryPath(Path("file/").c_str()));
}

TEST_F(FilesTest, APathThatEndsInASeparatorIsNeverFound) {
    Touch("file");
    EXPECT_TRUE(FindFile(Path("file").c_str()));
    EXPECT_TRUE(FindFile(m_prefix.Path().c_str()));
    EXPECT_FALSE(FindFile((m_prefix.Path() + "/").c_str()));
    EXPECT_FALSE(FindFile(Path("none").c_str()));
}

TEST_F(FilesTest, ThePrefixMovesTheFolders) {
    EXPECT_EQ(UserDataFolder(), Path("Velmora/"));
    EXPECT_EQ(CrlFolder(), Path("CRLFilePath/"));
    EXPECT_EQ(CrlFolder(), m_prefix.CrlFolder());
}

TEST_F(FilesTest, ThePrefixMayEndInASeparator) {
    setenv("VELMORA_PREFIX", (m_prefix.Path() + "/").c_str(), 1);
    EXPECT_EQ(CrlFolder(), m_prefix.CrlFolder());
}

class FoldersWithoutPrefixTest : public FilesTest {
protected:
    FoldersWithoutPrefixTest() {
        Save("XDG_STATE_HOME", m_state);
        Save("HOME", m_home);
        unsetenv("VELMORA_PREFIX");
    }
    ~FoldersWithoutPrefixTest() override {
        Restore("XDG_STATE_HOME", m_state);
        Restore("HOME", m_home);
    }
    static void Save(const char* name, std::optional<std::string>& value) {
        if (const char* found = std::getenv(name)) value = found;
    }
    static void Restore(const char* name, const std::optional<std::string>& value) {
        if (value) setenv(name, value->c_str(), 1);
        if (!value) unsetenv(name);
    }

    std::optional<std::string> m_state, m_home;
};

TEST_F(FoldersWithoutPrefixTest, TheUsersDataAreInTheStateFolder) {
    setenv("XDG_STATE_HOME", "/state", 1);
    EXPECT_EQ(UserDataFolder(), "/state/Velmora/");
    setenv("XDG_STATE_HOME", "/state/", 1);
    EXPECT_EQ(UserDataFolder(), "/state/Velmora/");
}

TEST_F(FoldersWithoutPrefixTest, WithoutThatFolderTheyAreBelowTheHome) {
    setenv("HOME", "/home/somebody", 1);
    unsetenv("XDG_STATE_HOME");
    EXPECT_EQ(UserDataFolder(), "/home/somebody/.local/state/Velmora/");
    setenv("XDG_STATE_HOME", "relative", 1);
    EXPECT_EQ(UserDataFolder(), "/home/somebody/.local/state/Velmora/");
}

TEST_F(FoldersWithoutPrefixTest, AHomeThatNoVariableTellsIsTheAccounts) {
    unsetenv("XDG_STATE_HOME");
    unsetenv("HOME");
    EXPECT_TRUE(UserDataFolder().ends_with("/.local/state/Velmora/"));
}

TEST_F(FoldersWithoutPrefixTest, TheListsAreInTheMachinesCache) {
    EXPECT_EQ(CrlFolder(), "/var/cache/velmora/CRLFilePath/");
    setenv("VELMORA_PREFIX", "", 1);
    EXPECT_EQ(CrlFolder(), "/var/cache/velmora/CRLFilePath/");
}

TEST_F(FilesTest, ARecordIsAppendedAndTheSizeTold) {
    EXPECT_EQ(AppendTextRecord(Path("log").c_str(), "one\n"), 4);
    EXPECT_EQ(AppendTextRecord(Path("log").c_str(), "two\n"), 8);
    EXPECT_EQ(Contents("log"), "one\ntwo\n");
}

TEST_F(FilesTest, AFileThatCannotBeOpenedIsMinusOne) {
    EXPECT_EQ(AppendTextRecord(Path("none/log").c_str(), "one\n"), -1);
    EXPECT_EQ(AppendTextRecord(m_prefix.Path().c_str(), "one\n"), -1);
}

TEST_F(FilesTest, AFullDeviceLosesTheRecord) {
    EXPECT_EQ(AppendTextRecord("/dev/full", "one\n"), 0);
}

TEST_F(FilesTest, ALogOfTheUsersIsNobodyElses) {
    AppendTextRecord(Path("log").c_str(), "one\n");
    using std::filesystem::perms;
    EXPECT_EQ(
        std::filesystem::status(Path("log")).permissions() & (perms::group_all | perms::others_all),
        perms::none);
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

TEST_F(FilesTest, TheSeparatorIsThePlatforms) { EXPECT_EQ(PathSeparator(), '/'); }

}  // namespace
