#include <fcntl.h>
#include <gmock/gmock.h>
#include <pty.h>
#include <unistd.h>

#include "library/dialogs/linux/DialogProcessTest.h"
#include "platform/MessageBox.h"
#include "platform/RegistryStore.h"

namespace {

using platform::FindDialogProgram;
using testing::ElementsAre;

// Standard input and error on a terminal of the test's own, for as long as this lives.
class OwnTerminal {
public:
    explicit OwnTerminal(bool withInput = true) {
        openpty(&m_master, &m_slave, nullptr, nullptr, nullptr);
        if (withInput) dup2(m_slave, STDIN_FILENO);
        dup2(m_slave, STDERR_FILENO);
    }
    ~OwnTerminal() {
        dup2(m_input, STDIN_FILENO);
        dup2(m_error, STDERR_FILENO);
        for (const int descriptor : {m_input, m_error, m_master, m_slave}) close(descriptor);
    }
    OwnTerminal(const OwnTerminal&) = delete;
    OwnTerminal& operator=(const OwnTerminal&) = delete;

private:
    int m_input = dup(STDIN_FILENO);
    int m_error = dup(STDERR_FILENO);
    int m_master = -1;
    int m_slave = -1;
};

class DialogProgramOnLinux : public DialogProcessTest {
protected:
    DialogProgramOnLinux() {
        ClearVariable("DISPLAY");
        ClearVariable("WAYLAND_DISPLAY");
        std::filesystem::create_directory(m_prefix.Below("bin"));
    }
    void PutProgram(const std::string& name, bool executable = true) const {
        using std::filesystem::perms;
        std::ofstream(m_folder + name) << "#!/bin/false\n";
        if (executable) std::filesystem::permissions(m_folder + name, perms::owner_all);
    }
    void Configure(const std::string& path) const {
        const auto key = platform::CreateRegistryKey(
            platform::RegistryRootKey(platform::RegistryRoot::LocalMachine),
            "software\\Velmora\\platform");
        ASSERT_TRUE(platform::SetRegistryPath(key, "DialogProgram", path));
        platform::CloseRegistryKey(key);
    }

    SavedVariable m_display{"DISPLAY"}, m_wayland{"WAYLAND_DISPLAY"};
    std::string m_folder = m_prefix.Below("bin") + "/";
};

TEST_F(DialogProgramOnLinux, WithoutADisplayAndATerminalThereIsNone) {
    PutProgram("tesmark-dialog");
    PutProgram("tesmark-dialog-tty");
    EXPECT_EQ(FindDialogProgram(m_folder), "");
    const OwnTerminal terminal(false);
    EXPECT_EQ(FindDialogProgram(m_folder), "");
}

TEST_F(DialogProgramOnLinux, ADisplayTakesTheProgramWithWindows) {
    PutProgram("tesmark-dialog");
    PutProgram("tesmark-dialog-tty");
    const OwnTerminal terminal;
    SetVariable("DISPLAY", ":0");
    EXPECT_EQ(FindDialogProgram(m_folder), m_folder + "tesmark-dialog");
    SetVariable("DISPLAY", "");
    SetVariable("WAYLAND_DISPLAY", "wayland-0");
    EXPECT_EQ(FindDialogProgram(m_folder), m_folder + "tesmark-dialog");
}

TEST_F(DialogProgramOnLinux, ATerminalTakesTheProgramForTerminals) {
    PutProgram("tesmark-dialog");
    PutProgram("tesmark-dialog-tty");
    const OwnTerminal terminal;
    EXPECT_EQ(FindDialogProgram(m_folder), m_folder + "tesmark-dialog-tty");
}

TEST_F(DialogProgramOnLinux, AProgramThatIsNotInstalledIsNotTaken) {
    const OwnTerminal terminal;
    SetVariable("DISPLAY", ":0");
    EXPECT_EQ(FindDialogProgram(m_folder), "");
    PutProgram("tesmark-dialog-tty");
    EXPECT_EQ(FindDialogProgram(m_folder), m_folder + "tesmark-dialog-tty");
}

TEST_F(DialogProgramOnLinux, TheStoresProgramIsTakenAndNoOther) {
    PutProgram("tesmark-dialog");
    SetVariable("DISPLAY", ":0");
    Configure("/not/there");
    EXPECT_EQ(FindDialogProgram(m_folder), "/not/there");
    Configure("");
    EXPECT_EQ(FindDialogProgram(m_folder), "");
}

TEST_F(DialogProgramOnLinux, AMessageBoxIsShownByTheStoresProgram) {
    Configure(SCRIPTED_PROGRAM);
    SetVariable("DIALOG_SCRIPT",
                std::string(kGreeting) + "hear message\nsay shown\nsay closed\nrest");
    testing::internal::CaptureStderr();
    platform::ShowMessageBox("t", "c", platform::kMessageBoxWarning);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(Log(), ElementsAre("descriptors 0 1 2", "tesmark-dialog\t1", "message\t48\tc\tt"));
}

TEST_F(DialogProgramOnLinux, AMessageBoxThatCannotBeShownIsALineOnStandardError) {
    for (const std::string& program : {std::string(SCRIPTED_PROGRAM), std::string("/not/there")}) {
        Configure(program);
        SetVariable("DIALOG_SCRIPT", std::string(kGreeting) + "hear message\ndie");
        testing::internal::CaptureStderr();
        platform::ShowMessageBox("t", "c", platform::kMessageBoxWarning);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "c: t\n");
    }
}

TEST_F(DialogProgramOnLinux, AMessageBoxThatWasVisibleIsNotRepeated) {
    Configure(SCRIPTED_PROGRAM);
    SetVariable("DIALOG_SCRIPT", std::string(kGreeting) + "hear message\nsay shown\ndie");
    testing::internal::CaptureStderr();
    platform::ShowMessageBox("t", "c", platform::kMessageBoxWarning);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
