#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/Files.h"
#include "platform/windows/UserData.h"
#include "platform/windows/Win32.h"
#include "support/TemporaryPrefix.h"

using namespace platform;

namespace {

class FilesOnWindows : public testing::Test {
protected:
    std::string Contents(const std::string& name) const {
        std::ostringstream contents;
        contents << std::ifstream(m_prefix.Below(name), std::ios::binary).rdbuf();
        return contents.str();
    }

    TemporaryPrefix m_prefix;
};

TEST_F(FilesOnWindows, ARecordEndsAsALineOfATextFileDoes) {
    EXPECT_EQ(AppendTextRecord(m_prefix.Below("log").c_str(), "one\n"), 5);
    EXPECT_EQ(AppendTextRecord(m_prefix.Below("log").c_str(), "a\nb\n"), 11);
    EXPECT_EQ(Contents("log"), "one\r\na\r\nb\r\n");
}

TEST_F(FilesOnWindows, ADriveAStreamAndADeviceLeadElsewhere) {
    for (const char* name : {"c:a", "a:stream", "NUL", "con.crl", "Com1 .txt", "a\\b"}) {
        EXPECT_TRUE(LeadsElsewhere(name)) << name;
    }
    EXPECT_FALSE(LeadsElsewhere("COM1a"));
}

TEST_F(FilesOnWindows, AFileThatAnotherKeepsToItselfTakesNoRecord) {
    const std::string file = m_prefix.Below("log");
    const HANDLE other =
        CreateFileA(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    EXPECT_EQ(AppendTextRecord(file.c_str(), "one\n"), -1);
    CloseHandle(other);
}

TEST_F(FilesOnWindows, AFileThatAnotherHasOpenForWritingTakesARecordToo) {
    std::ofstream other(m_prefix.Below("log"), std::ios::binary | std::ios::app);
    other << "x" << std::flush;
    EXPECT_EQ(AppendTextRecord(m_prefix.Below("log").c_str(), "one\n"), 6);
}

TEST_F(FilesOnWindows, ChineseNamesAreTheCodePagesBytes) {
    ASSERT_TRUE(CreateDirectoryAt(m_prefix.Below("印章").c_str()));
    const std::string file = m_prefix.Below("印章/日志");
    EXPECT_EQ(AppendTextRecord(file.c_str(), "x\n"), 3);
    EXPECT_TRUE(FindFile(file.c_str()));
    EXPECT_TRUE(PathExists(file.c_str()));
    EXPECT_TRUE(IsDirectory(m_prefix.Below("印章").c_str()));
    EXPECT_TRUE(MakeDirectoryPath(m_prefix.Below("印章/更深/").c_str()));
    EXPECT_TRUE(IsDirectory(m_prefix.Below("印章/更深").c_str()));
    RemoveFile(file.c_str());
    EXPECT_FALSE(PathExists(file.c_str()));
}

TEST_F(FilesOnWindows, OnlyTheMajorVersionSixHasTheLowFolder) {
    EXPECT_EQ(LowFolder("c:\\Local", 6), "c:\\LocalLow");
    for (const unsigned long major : {5UL, 7UL, 10UL}) {
        EXPECT_EQ(LowFolder("c:\\Local", major), "c:\\Local");
    }
}

TEST_F(FilesOnWindows, ASystemThatTellsNoVersionHasTheLowFolder) {
    EXPECT_EQ(LowFolder("c:\\Local", std::nullopt), "c:\\LocalLow");
}

TEST_F(FilesOnWindows, TheUsersDataAreBelowTheLocalApplicationData) {
    const std::string local = std::getenv("LOCALAPPDATA");
    EXPECT_EQ(UserDataFolder(), LowFolder(local, SystemMajorVersion()) + "\\Velmora\\");
}

TEST_F(FilesOnWindows, TheListsAreInTheirFixedFolder) {
    EXPECT_EQ(CrlFolder(), "c:\\CRLFilePath\\");
}

TEST_F(FilesOnWindows, TheSeparatorIsABackslash) { EXPECT_EQ(PathSeparator(), '\\'); }

}  // namespace
