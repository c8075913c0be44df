#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/Files.h"
#include "support/Environment.h"
#include "support/TemporaryPrefix.h"

using namespace platform;

namespace {

class FilesOnLinux : public testing::Test {
protected:
    std::string Path(const std::string& name) const { return m_prefix.Below(name); }
    std::string Contents(const std::string& name) const {
        std::ostringstream contents;
        contents << std::ifstream(Path(name), std::ios::binary).rdbuf();
        return contents.str();
    }

    TemporaryPrefix m_prefix;
};

TEST_F(FilesOnLinux, ThePrefixMovesTheFolders) {
    EXPECT_EQ(UserDataFolder(), Path("Velmora/"));
    EXPECT_EQ(CrlFolder(), Path("CRLFilePath/"));
    EXPECT_EQ(CrlFolder(), m_prefix.CrlFolder());
}

TEST_F(FilesOnLinux, ThePrefixMayEndInASeparator) {
    SetVariable("VELMORA_PREFIX", m_prefix.Path() + "/");
    EXPECT_EQ(CrlFolder(), m_prefix.CrlFolder());
}

// Without a prefix.
class FoldersOnLinux : public FilesOnLinux {
protected:
    FoldersOnLinux() { ClearVariable("VELMORA_PREFIX"); }

    SavedVariable m_state{"XDG_STATE_HOME"}, m_home{"HOME"};
};

TEST_F(FoldersOnLinux, TheUsersDataAreInTheStateFolder) {
    SetVariable("XDG_STATE_HOME", "/state");
    EXPECT_EQ(UserDataFolder(), "/state/Velmora/");
    SetVariable("XDG_STATE_HOME", "/state/");
    EXPECT_EQ(UserDataFolder(), "/state/Velmora/");
}

TEST_F(FoldersOnLinux, WithoutThatFolderTheyAreBelowTheHome) {
    SetVariable("HOME", "/home/somebody");
    ClearVariable("XDG_STATE_HOME");
    EXPECT_EQ(UserDataFolder(), "/home/somebody/.local/state/Velmora/");
    SetVariable("XDG_STATE_HOME", "relative");
    EXPECT_EQ(UserDataFolder(), "/home/somebody/.local/state/Velmora/");
}

TEST_F(FoldersOnLinux, AHomeThatNoVariableTellsIsTheAccounts) {
    ClearVariable("XDG_STATE_HOME");
    ClearVariable("HOME");
    EXPECT_TRUE(UserDataFolder().ends_with("/.local/state/Velmora/"));
}

TEST_F(FoldersOnLinux, TheListsAreInTheMachinesCache) {
    EXPECT_EQ(CrlFolder(), "/var/cache/velmora/CRLFilePath/");
    SetVariable("VELMORA_PREFIX", "");
    EXPECT_EQ(CrlFolder(), "/var/cache/velmora/CRLFilePath/");
}

TEST_F(FilesOnLinux, ARecordEndsInALineFeed) {
    EXPECT_EQ(AppendTextRecord(Path("log").c_str(), "one\n"), 4);
    EXPECT_EQ(AppendTextRecord(Path("log").c_str(), "two\n"), 8);
    EXPECT_EQ(Contents("log"), "one\ntwo\n");
}

TEST_F(FilesOnLinux, AFullDeviceLosesTheRecord) {
    EXPECT_EQ(AppendTextRecord("/dev/full", "one\n"), 0);
}

TEST_F(FilesOnLinux, ALogOfTheUsersIsNobodyElses) {
    AppendTextRecord(Path("log").c_str(), "one\n");
    using std::filesystem::perms;
    EXPECT_EQ(
        std::filesystem::status(Path("log")).permissions() & (perms::group_all | perms::others_all),
        perms::none);
}

TEST_F(FilesOnLinux, AFileInADirectorysPlaceIsNoDirectoryThatCouldBeMade) {
    std::ofstream(Path("file")) << "x";
    EXPECT_FALSE(MakeDirectoryPath(Path("file/").c_str()));
}

TEST_F(FilesOnLinux, TheSeparatorIsThePlatforms) { EXPECT_EQ(PathSeparator(), '/'); }

}  // namespace
