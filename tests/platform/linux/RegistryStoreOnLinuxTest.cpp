#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "RegistryStoreTest.h"
#include "support/Environment.h"
#include "support/Program.h"

using namespace platform;

namespace {

using namespace std::string_literals;

class RegistryStoreOnLinux : public RegistryStoreTest {
protected:
    std::string Path(const std::string& name) const { return m_prefix.Below(name); }
    void Store(const std::string& contents, const std::string& name = "machine.reg") const {
        std::ofstream(Path(name), std::ios::binary) << contents;
    }
    std::string Stored(const std::string& name = "machine.reg") const {
        std::ostringstream contents;
        contents << std::ifstream(Path(name), std::ios::binary).rdbuf();
        return contents.str();
    }
};

TEST_F(RegistryStoreOnLinux, AMissingKeyDoesNotOpen) {
    EXPECT_EQ(Open("software\\a"), nullptr);
    Store("[HKEY_LOCAL_MACHINE\\software\\b]\n");
    EXPECT_EQ(Open("software\\a"), nullptr);
    EXPECT_EQ(Open("software\\b", RegistryAccess::AllAccess, RegistryRoot::CurrentUser), nullptr);
}

TEST_F(RegistryStoreOnLinux, AKeyOpensWithoutRegardToCaseAndClosingBackslash) {
    Store("[HKEY_LOCAL_MACHINE\\SOFTWARE\\B]\n\"A\"=\"x\"\n");
    ASSERT_NE(Open("software\\b\\"), nullptr);
    EXPECT_EQ(Value("a"), "x\0"s);
}

TEST_F(RegistryStoreOnLinux, TheMachinesFileHoldsTwoRootsAndTheUsersFileTheThird) {
    ASSERT_NE(Create("a"), nullptr);
    ASSERT_NE(Create("b", RegistryRoot::ClassesRoot), nullptr);
    ASSERT_NE(Create("c", RegistryRoot::CurrentUser), nullptr);
    EXPECT_NE(Stored().find("[HKEY_LOCAL_MACHINE\\a]"), std::string::npos);
    EXPECT_NE(Stored().find("[HKEY_CLASSES_ROOT\\b]"), std::string::npos);
    EXPECT_NE(Stored("user.reg").find("[HKEY_CURRENT_USER\\c]"), std::string::npos);
}

TEST_F(RegistryStoreOnLinux, BothViewsAreOne) {
    Store("[HKLM\\a]\n@=\"x\"\n");
    ASSERT_NE(Open("a", RegistryAccess::Read64), nullptr);
    EXPECT_EQ(Value(""), "x\0"s);
    ASSERT_NE(Open("a", RegistryAccess::Read32), nullptr);
    EXPECT_EQ(Value(""), "x\0"s);
}

TEST_F(RegistryStoreOnLinux, AKeyOpenedForReadingCannotBeWritten) {
    Store("[HKLM\\a]\n");
    ASSERT_NE(Open("a", RegistryAccess::Read64), nullptr);
    EXPECT_FALSE(SetRegistryString(m_key, "x", "y"));
    EXPECT_EQ(Stored(), "[HKLM\\a]\n");
}

TEST_F(RegistryStoreOnLinux, TextsAreGbkOutsideAndUtf8InTheFile) {
    ASSERT_NE(Create("软件"), nullptr);
    ASSERT_TRUE(SetRegistryString(m_key, "名", "印章"));
    EXPECT_NE(Stored().find("\"\xE5\x90\x8D\"=\"\xE5\x8D\xB0\xE7\xAB\xA0\""), std::string::npos);
    EXPECT_EQ(Value("名"), "印章\0"s);
}

TEST_F(RegistryStoreOnLinux, PathsAreNotConverted) {
    Store("[HKLM\\a]\n@=\"/\xE5\x8D\xB0\xFF\"\n\"raw\"=hex:2f,ff\n");
    ASSERT_NE(Open("a"), nullptr);
    EXPECT_EQ(PathValue(""), "/\xE5\x8D\xB0\xFF\0"s);
    EXPECT_EQ(PathValue("raw"), "/\xFF");
    ASSERT_TRUE(SetRegistryPath(m_key, "", "/\xFE\n\\"));
    EXPECT_EQ(PathValue(""), "/\xFE\n\\\0"s);
}

TEST_F(RegistryStoreOnLinux, NumbersAndRawBytesComeAsTheyAre) {
    ASSERT_NE(Create("a"), nullptr);
    ASSERT_TRUE(SetRegistryNumber(m_key, "n", 0x01020304));
    EXPECT_EQ(Value("n"), "\x04\x03\x02\x01");
    Store("[HKLM\\a]\n\"r\"=hex:00,ff\n");
    EXPECT_EQ(Value("r"), "\0\xFF"s);
}

TEST_F(RegistryStoreOnLinux, BytesThatAreNoTextComeBackAllTheSame) {
    ASSERT_NE(Create("a"), nullptr);
    ASSERT_TRUE(SetRegistryString(m_key, "t", "\xFF\x81"));
    EXPECT_EQ(Value("t"), "\xFF\x81\0"s);
}

TEST_F(RegistryStoreOnLinux, ACreatedKeyIsWrittenOnceAndOpensAfterwards) {
    ASSERT_NE(Create("software\\a\\"), nullptr);
    const std::string once = Stored();
    ASSERT_NE(Create("Software\\A"), nullptr);
    EXPECT_EQ(Stored(), once);
    ASSERT_NE(Open("software\\a"), nullptr);
    ASSERT_NE(Open("software"), nullptr);
}

TEST_F(RegistryStoreOnLinux, AKeyCanBeCreatedBelowAnotherAndBelowNone) {
    ASSERT_NE(Create("a"), nullptr);
    const RegistryKey below = CreateRegistryKey(m_key, "b");
    ASSERT_NE(below, nullptr);
    EXPECT_TRUE(SetRegistryNumber(below, "n", 1));
    CloseRegistryKey(below);
    EXPECT_NE(Stored().find("[HKEY_LOCAL_MACHINE\\a\\b]"), std::string::npos);
    EXPECT_EQ(CreateRegistryKey(nullptr, "b"), nullptr);
}

TEST_F(RegistryStoreOnLinux, ARootIsAKeyLikeAnyOther) {
    const RegistryKey root = RegistryRootKey(RegistryRoot::LocalMachine);
    ASSERT_TRUE(SetRegistryNumber(root, "n", 1));
    EXPECT_NE(Stored().find("[HKEY_LOCAL_MACHINE]\n\"n\"=dword:00000001\n"), std::string::npos);
    ASSERT_NE(Open(""), nullptr);
    EXPECT_EQ(Value("n"), "\x01\0\0\0"s);
}

TEST_F(RegistryStoreOnLinux, AWriteKeepsCommentsUnknownLinesAndOrder) {
    Store("; mine\nnonsense\n[HKLM\\a]\n\"n\"=dword:1 ; one\n; end\n");
    ASSERT_NE(Open("a"), nullptr);
    ASSERT_TRUE(SetRegistryNumber(m_key, "n", 2));
    EXPECT_EQ(Stored(), "; mine\nnonsense\n[HKLM\\a]\n\"n\"=dword:00000002 ; one\n; end\n");
}

TEST_F(RegistryStoreOnLinux, AWriteKeepsTheFilesRights) {
    Store("[HKLM\\a]\n");
    using std::filesystem::perms;
    const perms rights = perms::owner_read | perms::owner_write | perms::group_read;
    std::filesystem::permissions(Path("machine.reg"), rights);
    ASSERT_NE(Open("a"), nullptr);
    ASSERT_TRUE(SetRegistryNumber(m_key, "n", 2));
    EXPECT_EQ(std::filesystem::status(Path("machine.reg")).permissions(), rights);
}

TEST_F(RegistryStoreOnLinux, ALinkStaysAndItsTargetIsReplaced) {
    Store("[HKLM\\a]\n", "real.reg");
    std::filesystem::create_symlink(Path("real.reg"), Path("machine.reg"));
    ASSERT_NE(Open("a"), nullptr);
    ASSERT_TRUE(SetRegistryNumber(m_key, "n", 2));
    EXPECT_TRUE(std::filesystem::is_symlink(Path("machine.reg")));
    EXPECT_EQ(Stored("real.reg"), "[HKLM\\a]\n\"n\"=dword:00000002\n");
}

TEST_F(RegistryStoreOnLinux, AWriteLeavesNoTemporaryFileBehind) {
    ASSERT_NE(Create("a"), nullptr);
    ASSERT_TRUE(SetRegistryNumber(m_key, "n", 2));
    for (const auto& entry : std::filesystem::directory_iterator(m_prefix.Path())) {
        const std::string name = entry.path().filename().string();
        EXPECT_TRUE(name == "machine.reg" || name == "machine.reg.lock") << name;
    }
}

TEST_F(RegistryStoreOnLinux, AFolderInTheStoresPlaceFailsReadingAndWriting) {
    std::filesystem::create_directory(Path("machine.reg"));
    EXPECT_EQ(Open("a"), nullptr);
    EXPECT_EQ(Create("a"), nullptr);
    EXPECT_FALSE(SetRegistryNumber(RegistryRootKey(RegistryRoot::LocalMachine), "n", 1));
}

TEST_F(RegistryStoreOnLinux, AFolderThatCannotBeMadeFailsAWrite) {
    Store("x", "file");
    SetVariable("VELMORA_PREFIX", Path("file"));
    EXPECT_EQ(Create("a"), nullptr);
    SetVariable("VELMORA_PREFIX", Path("file/below"));
    EXPECT_EQ(Create("a"), nullptr);
}

TEST_F(RegistryStoreOnLinux, MissingFoldersAreMadeByAWrite) {
    SetVariable("VELMORA_PREFIX", Path("new/prefix"));
    ASSERT_NE(Create("a"), nullptr);
    EXPECT_TRUE(std::filesystem::exists(Path("new/prefix/machine.reg")));
}

TEST_F(RegistryStoreOnLinux, ALockThatCannotBeTakenFailsAWriteAndChangesNothing) {
    Store("[HKLM\\a]\n");
    std::filesystem::create_directory(Path("machine.reg.lock"));
    ASSERT_NE(Open("a"), nullptr);
    EXPECT_FALSE(SetRegistryNumber(m_key, "n", 1));
    EXPECT_EQ(Stored(), "[HKLM\\a]\n");
}

TEST_F(RegistryStoreOnLinux, AFileThatIsNotUtf8IsNeitherReadNorWritten) {
    const std::string wide = "\xFF\xFE[\0H\0"s;
    Store(wide);
    EXPECT_EQ(Open("a"), nullptr);
    EXPECT_EQ(Create("a"), nullptr);
    EXPECT_EQ(Stored(), wide);
}

TEST_F(RegistryStoreOnLinux, NamesThatALineCannotHoldFailAWrite) {
    ASSERT_NE(Create("a"), nullptr);
    EXPECT_FALSE(SetRegistryNumber(m_key, "two\nlines", 1));
    EXPECT_EQ(CreateRegistryKey(m_key, "two\nlines"), nullptr);
}

TEST_F(RegistryStoreOnLinux, AProgramWithoutRightsReadsWithAllAccessAndItsWritesFailQuietly) {
    Store("[HKLM\\a]\n\"n\"=\"x\"\n");
    std::filesystem::permissions(m_prefix.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(Path("machine.reg"), std::filesystem::perms(0644));
    const ProgramOutcome outcome = RunProgram({STORE_WRITER, "unprivileged"});
    if (outcome.exitCode == 4) GTEST_SKIP() << "only root can give its rights away";
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "x\nfailed\n");
    EXPECT_EQ(Stored(), "[HKLM\\a]\n\"n\"=\"x\"\n");
    EXPECT_FALSE(std::filesystem::exists(Path("machine.reg.lock")));
}

TEST_F(RegistryStoreOnLinux, NoValueOfSeveralWritersAtATimeIsLost) {
    constexpr int kValues = 40;
    const std::string values = std::to_string(kValues);
    Store("; stays\n");
    ProgramOutcome first, second;
    std::thread other([&] { second = RunProgram({STORE_WRITER, "values", "b", values}); });
    std::thread another([&] { first = RunProgram({STORE_WRITER, "values", "a", values}); });
    for (int i = 0; i < kValues; ++i) m_prefix.SetNumber(("c" + std::to_string(i)).c_str(), 3);
    other.join();
    another.join();
    EXPECT_EQ(first.exitCode, 0);
    EXPECT_EQ(second.exitCode, 0);
    ASSERT_NE(Open("software\\Velmora\\fenmoor"), nullptr);
    for (const char* writer : {"a", "b", "c"}) {
        for (int i = 0; i < kValues; ++i) {
            EXPECT_NE(Value((writer + std::to_string(i)).c_str()), "absent") << writer << i;
        }
    }
    EXPECT_TRUE(Stored().starts_with("; stays\n"));
}

TEST_F(RegistryStoreOnLinux, AReaderNeverSeesHalfAFile) {
    Store("[HKLM\\software\\Velmora\\fenmoor]\n\"last\"=\"x\"\n");
    ProgramOutcome outcome;
    std::thread writer([&] { outcome = RunProgram({STORE_WRITER, "values", "a", "60"}); });
    for (int i = 0; i < 500; ++i) {
        ASSERT_NE(Open("software\\Velmora\\fenmoor"), nullptr);
        ASSERT_EQ(Value("last"), "x\0"s);
    }
    writer.join();
    EXPECT_EQ(outcome.exitCode, 0);
}

// Without a prefix the user's file is in the configuration folder.
class UserFolderOnLinux : public RegistryStoreOnLinux {
protected:
    UserFolderOnLinux() { ClearVariable("VELMORA_PREFIX"); }
};

TEST_F(UserFolderOnLinux, TheUsersFileIsInTheConfigurationFolder) {
    const ProgramOutcome outcome =
        RunProgram({STORE_WRITER, "user"}, {"", {{"XDG_CONFIG_HOME", Path("config")}}});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(std::filesystem::exists(Path("config/velmora/user.reg")));
}

TEST_F(UserFolderOnLinux, WithoutThatFolderTheUsersFileIsBelowTheHome) {
    for (const char* none : {"", "relative"}) {
        const ProgramOutcome outcome = RunProgram(
            {STORE_WRITER, "user"}, {"", {{"XDG_CONFIG_HOME", none}, {"HOME", m_prefix.Path()}}});
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_TRUE(std::filesystem::remove(Path(".config/velmora/user.reg")));
    }
}

}  // namespace
