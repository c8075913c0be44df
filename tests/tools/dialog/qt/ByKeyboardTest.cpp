// The program as it is delivered, on an X server, with a keyboard.
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/Program.h"
#include "support/TemporaryFolder.h"
#include "support/linux/XServer.h"
#include "tools/dialog/qt/Host.h"

namespace {

class DialogByKeyboardOnLinux : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(m_server.Display().empty());
        chmod(m_folder.Path().c_str(), 0700);
        int ends[2];
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        m_program = fork();
        if (m_program == 0) BecomeProgram(ends[1]);
        close(ends[1]);
        m_host = std::make_unique<Host>(ends[0], ends[0]);
        m_host->Say({"tesmark-dialog", "1"});
        ASSERT_EQ(m_host->Hear(), "tesmark-dialog\t1");
    }
    void TearDown() override {
        if (m_program > 0) {
            kill(m_program, SIGKILL);
            ExitCode();
        }
    }

    int ExitCode() {
        int status = 0;
        waitpid(m_program, &status, 0);
        m_program = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    // Types keys, as xdotool names them.
    void Type(std::vector<std::string> keys) {
        keys.insert(keys.begin(), {"/usr/bin/xdotool", "key"});
        EXPECT_EQ(RunProgram(keys, {.environment = {{"DISPLAY", m_server.Display()}}}).exitCode, 0);
    }
    // Hears of the event, and handles it.
    void ExpectNode(const std::string& node) {
        EXPECT_EQ(m_host->Hear(), "node\t1004\t" + node);
        EXPECT_EQ(m_host->Hear(), "selected\t1004");
        m_host->Say({"fill", "1005", "f0f0f0"});
        m_host->Say({"done"});
    }

    XServer m_server;
    std::unique_ptr<Host> m_host;

private:
    [[noreturn]] void BecomeProgram(int end) {
        dup2(end, STDIN_FILENO);
        dup2(end, STDOUT_FILENO);
        setenv("DISPLAY", m_server.Display().c_str(), 1);
        setenv("XDG_RUNTIME_DIR", m_folder.Path().c_str(), 1);
        for (const char* const other : {"WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_SCALE_FACTOR"})
            unsetenv(other);
        execl(DIALOG_PROGRAM, DIALOG_PROGRAM, static_cast<char*>(nullptr));
        _exit(127);
    }

    TemporaryFolder m_folder;
    pid_t m_program = -1;
};

TEST_F(DialogByKeyboardOnLinux, ASealIsPickedByKeyboardAlone) {
    m_host->Say({"dialog", "104"});
    EXPECT_EQ(m_host->HearUpTo("built"), "built");
    m_host->Say({"node", "1004", "0", "请选择印章"});
    m_host->Say({"node", "1004", "1", "证书：alice"});
    m_host->Say({"node", "1004", "2", "合同专用章"});
    m_host->Say({"expand", "1004", "2"});
    m_host->Say({"expand", "1004", "1"});
    m_host->Say({"show"});
    ASSERT_EQ(m_host->Hear(), "shown");
    Type({"Tab", "Tab", "Down", "Down", "Return"});
    ExpectNode("2");
    ExpectNode("3");
    EXPECT_EQ(m_host->Hear(), "button\t1");
    m_host->Say({"end"});
    EXPECT_EQ(ExitCode(), 0);
}

TEST_F(DialogByKeyboardOnLinux, AMessageIsAnsweredByTheReturnKey) {
    m_host->Say({"message", "48", "电子签章", "连接服务器失败！"});
    ASSERT_EQ(m_host->Hear(), "shown");
    Type({"Return"});
    EXPECT_EQ(m_host->Hear(), "closed");
    EXPECT_EQ(ExitCode(), 0);
}

TEST_F(DialogByKeyboardOnLinux, TheProgramGoesWithItsHost) {
    m_host->Say({"dialog", "101"});
    m_host->Say({"show"});
    ASSERT_EQ(m_host->HearUpTo("shown"), "shown");
    m_host->Leave();
    EXPECT_EQ(ExitCode(), 0);
}

}  // namespace
