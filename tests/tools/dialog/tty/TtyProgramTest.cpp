// The real program on a pseudo terminal of the test's own: the test is the user, and a process of
// its own on that terminal is the host.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <pty.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <sstream>

#include "platform/linux/DialogProcess.h"
#include "platform/linux/dialogprogram/Utf8.h"
#include "support/Environment.h"

namespace {

using platform::BytesOf;
using platform::DialogWindow;

constexpr char kInterrupt[] = "\x03";
constexpr char kEndOfInput[] = "\x04";
constexpr char kStop[] = "\x1A";
constexpr char kStopOutput[] = "\x13";
constexpr char kStartOutput[] = "\x11";

// A dialog of the seal tree, or a list; ends with 1 for OK and 0 for Cancel or closing.
class Chooser : public platform::DialogProcedure {
public:
    void OnOpen(DialogWindow& window) override {
        for (const char* const row : {"first", "\x1B[31msecond"}) window.AppendRow(1001, row);
        window.SetText(1003, "old");
        const auto root = window.AppendNode(1004, platform::kNoNode, "请选择印章", 0);
        window.AppendNode(1004, root, "seal", 1);
    }
    bool OnClose(DialogWindow& window) override {
        window.End(0);
        return true;
    }
    bool OnButton(DialogWindow& window, int button) override {
        if (button == 2) window.End(0);
        if (button == 1) {
            const bool typed = window.Text(1003, 100) == "印章";
            window.End(window.SelectedRow(1001) == 1 || window.SelectedNode(1004) == 2 || typed);
        }
        return true;
    }
    bool OnNodeSelected(DialogWindow& window, int) override {
        window.Draw(1005, {2, 1, {0, 0}}, window.ClientArea(1005));
        return true;
    }
};

int Choose(int dialog) {
    const auto process = platform::DialogProcess::Start(TTY_PROGRAM);
    Chooser procedure;
    return process ? platform::RunDialog(*process, *platform::FindTemplate(dialog), procedure) : 99;
}

class TtyProgramOnLinux : public testing::Test {
protected:
    TtyProgramOnLinux() { SetVariable("LC_ALL", "C.UTF-8"); }
    ~TtyProgramOnLinux() override {
        if (m_host > 0) kill(m_host, SIGKILL);
        if (m_host > 0) waitpid(m_host, nullptr, 0);
        if (m_terminal >= 0) close(m_terminal);
    }

    void Start(const std::function<int()>& host) {
        m_host = forkpty(&m_terminal, nullptr, nullptr, nullptr);
        ASSERT_GE(m_host, 0);
        if (m_host == 0) _exit(host());
    }
    void StartDialog(int id) {
        Start([id] { return Choose(id); });
    }
    // Reads what the terminal shows until `text` appears; false if it doesn't within 20 seconds.
    bool Expect(std::string_view text) {
        pollfd waiting{m_terminal, POLLIN, 0};
        while (m_shown.find(text) == std::string::npos && poll(&waiting, 1, 20'000) > 0) {
            char buffer[512];
            const ssize_t count = read(m_terminal, buffer, sizeof buffer);
            if (count <= 0) break;
            m_shown.append(buffer, static_cast<std::size_t>(count));
        }
        const auto place = m_shown.find(text);
        if (place == std::string::npos) return false;
        m_all += m_shown.substr(0, place + text.size());
        m_shown.erase(0, place + text.size());
        return true;
    }
    bool Expect(std::u8string_view text) { return Expect(BytesOf(text)); }
    void Type(const std::string& text) {
        ASSERT_EQ(write(m_terminal, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    // What the host came to; -1 if it was killed.
    int Result() {
        Expect("never shown");
        int status = 0;
        EXPECT_EQ(waitpid(m_host, &status, 0), m_host);
        m_host = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    SavedVariable m_locale{"LC_ALL"};
    pid_t m_host = -1;
    int m_terminal = -1;
    std::string m_shown;
    std::string m_all;
};

TEST_F(TtyProgramOnLinux, ARowIsChosenByItsNumber) {
    StartDialog(101);
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    Type("1\n");
    ASSERT_TRUE(Expect(u8"已选择：")) << m_shown;
    Type("y\n");
    EXPECT_EQ(Result(), 1);
}

TEST_F(TtyProgramOnLinux, ASealIsChosenInTheTreeAndItsPreviewTold) {
    StartDialog(104);
    ASSERT_TRUE(Expect(u8"  1  请选择印章\r\n  2    seal")) << m_shown;
    Type("2\n");
    ASSERT_TRUE(Expect(u8"印章预览：图片，2 x 1 像素")) << m_shown;
    Type("\n");
    EXPECT_EQ(Result(), 1);
}

TEST_F(TtyProgramOnLinux, AnAddressOfChineseCharactersArrives) {
    StartDialog(103);
    ASSERT_TRUE(Expect(u8"当前内容：old")) << m_shown;
    Type(std::string(BytesOf(u8"印章\n")));
    ASSERT_TRUE(Expect(u8"当前内容：印章")) << m_shown;
    Type("y\n");
    EXPECT_EQ(Result(), 1);
}

TEST_F(TtyProgramOnLinux, NoEscapeSequenceOfALabelReachesTheTerminal) {
    StartDialog(101);
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    EXPECT_EQ(m_all.find('\x1B'), std::string::npos);
    EXPECT_NE(m_all.find("[31msecond"), std::string::npos);
    Type("n\n");
    EXPECT_EQ(Result(), 0);
}

TEST_F(TtyProgramOnLinux, ControlCClosesTheDialogAndNotTheHost) {
    StartDialog(101);
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    Type(std::string("half a word") + kInterrupt);
    EXPECT_EQ(Result(), 0);
}

TEST_F(TtyProgramOnLinux, TheEndOfTheInputClosesTheDialog) {
    StartDialog(101);
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    Type(kEndOfInput);
    EXPECT_EQ(Result(), 0);
}

TEST_F(TtyProgramOnLinux, TheTerminalIsGivenBackAsItWas) {
    Start([] {
        termios before{}, after{};
        tcgetattr(STDIN_FILENO, &before);
        Choose(101);
        tcgetattr(STDIN_FILENO, &after);
        const bool same = std::equal(std::begin(before.c_cc), std::end(before.c_cc), after.c_cc);
        return same && before.c_lflag == after.c_lflag && before.c_iflag == after.c_iflag ? 6 : 99;
    });
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    termios during{};
    tcgetattr(m_terminal, &during);
    EXPECT_EQ(during.c_cc[VINTR], _POSIX_VDISABLE);
    Type("n\n");
    EXPECT_EQ(Result(), 6);
}

std::string FirstWordOf(const std::string& path, const std::string& behind) {
    std::ifstream file(path);
    std::string text, word;
    std::getline(file, text);
    std::istringstream(text.substr(behind.empty() ? 0 : text.rfind(behind) + 1)) >> word;
    return word;
}

// Until the program that `host` has started is stopped too.
void AwaitStop(pid_t host) {
    const std::string own = "/proc/" + std::to_string(host);
    const std::string program =
        FirstWordOf(own + "/task/" + std::to_string(host) + "/children", "");
    while (FirstWordOf("/proc/" + program + "/stat", ")") == "S") sched_yield();
}

void TakeForeground() {
    sigset_t output, before;
    sigemptyset(&output);
    sigaddset(&output, SIGTTOU);
    sigprocmask(SIG_BLOCK, &output, &before);
    tcsetpgrp(STDIN_FILENO, getpgrp());
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

enum class GoesOn { InForeground, InBackground };

// A shell without a user: its one job is let go on as soon as it has been stopped.
int RunAsJob(const std::function<int()>& job, GoesOn how = GoesOn::InForeground) {
    const pid_t child = fork();
    if (child == 0) {
        setpgid(0, 0);
        TakeForeground();
        _exit(job());
    }
    int status = 0;
    waitpid(child, &status, WUNTRACED);
    if (!WIFSTOPPED(status)) return 98;
    AwaitStop(child);
    if (how == GoesOn::InBackground) TakeForeground();
    kill(-child, SIGCONT);
    waitpid(child, &status, WUNTRACED);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 97;
}

// What the job came to; 97 if it was stopped.
int RunInBackground(const std::function<int()>& job) {
    const pid_t child = fork();
    if (child == 0) {
        setpgid(0, 0);
        _exit(job());
    }
    int status = 0;
    waitpid(child, &status, WUNTRACED);
    if (!WIFSTOPPED(status)) return WEXITSTATUS(status);
    kill(-child, SIGKILL);
    waitpid(child, &status, 0);
    return 97;
}

TEST_F(TtyProgramOnLinux, InTheBackgroundNothingIsShownAndNobodyStopped) {
    Start([] {
        return RunInBackground([] { return Choose(101) == platform::kDialogNotShown ? 7 : 8; });
    });
    EXPECT_EQ(Result(), 7);
    EXPECT_EQ(m_shown, "");
}

TEST_F(TtyProgramOnLinux, AStoppedProgramThatGoesOnInTheBackgroundClosesTheDialog) {
    Start([] { return RunAsJob([] { return Choose(101); }, GoesOn::InBackground); });
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    Type(kStop);
    EXPECT_EQ(Result(), 0);
}

TEST_F(TtyProgramOnLinux, AStoppedProgramAsksAgainWhenItGoesOn) {
    Start([] { return RunAsJob([] { return Choose(101); }); });
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    Type(kStop);
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    Type("n\n");
    EXPECT_EQ(Result(), 0);
}

TEST_F(TtyProgramOnLinux, AProgramThatNobodyCouldLetGoOnIsNotStopped) {
    StartDialog(101);
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    Type(kStop);
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    Type("n\n");
    EXPECT_EQ(Result(), 0);
}

TEST_F(TtyProgramOnLinux, WhatWasTypedBeforeTheDialogIsNoAnswer) {
    Start([] {
        pollfd typed{STDIN_FILENO, POLLIN, 0};
        poll(&typed, 1, -1);
        return Choose(101);
    });
    Type("n\n");
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    Type("1\n\n");
    EXPECT_EQ(Result(), 1);
}

TEST_F(TtyProgramOnLinux, StoppedOutputComesWhenTheUserLetsItGoOn) {
    StartDialog(101);
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    Type(kStopOutput + std::string("1\n") + kStartOutput);
    ASSERT_TRUE(Expect(u8"已选择：")) << m_shown;
    Type("y\n");
    EXPECT_EQ(Result(), 1);
}

TEST_F(TtyProgramOnLinux, ADialogWithStoppedOutputIsClosedAndTheTerminalGivenBack) {
    Start([] {
        Choose(101);
        termios after{};
        tcgetattr(STDIN_FILENO, &after);
        return after.c_cc[VINTR] == kInterrupt[0] ? 6 : 99;
    });
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    Type(kStopOutput + std::string("1\n") + kInterrupt);
    EXPECT_EQ(Result(), 6);
}

// The host isn't its session's first process, so that its end hangs nothing up. The first has let
// go of the terminal, and ends when the test does.
class TtyJobOnLinux : public TtyProgramOnLinux {
protected:
    TtyJobOnLinux() { EXPECT_EQ(pipe(m_held), 0); }
    ~TtyJobOnLinux() override {
        for (const int end : m_held) close(end);
    }

    void AwaitTestsEnd() const {
        char nothing;
        for (const int standard : {0, 1, 2, m_held[1]}) close(standard);
        _exit(read(m_held[0], &nothing, 1) == 0 ? 0 : 1);
    }
    void StartJob(const std::function<int()>& host) {
        int told[2];
        ASSERT_EQ(pipe(told), 0);
        Start([&] {
            const pid_t job = fork();
            if (job == 0) _exit(host());
            if (write(told[1], &job, sizeof job) == sizeof job) AwaitTestsEnd();
            return 1;
        });
        ASSERT_EQ(read(told[0], &m_job, sizeof m_job), static_cast<ssize_t>(sizeof m_job));
        for (const int end : told) close(end);
    }
    // Until nobody holds the terminal any more, but for the time that Expect allows.
    bool IsLeftByAll() {
        Expect("never shown");
        pollfd terminal{m_terminal, 0, 0};
        return poll(&terminal, 1, 0) == 1 && (terminal.revents & POLLHUP) != 0;
    }

    int m_held[2];
    pid_t m_job = -1;
};

TEST_F(TtyJobOnLinux, AProgramWithStoppedOutputEndsWithItsHost) {
    StartJob([] { return Choose(101); });
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    Type(kStopOutput + std::string("1\n"));
    kill(m_job, SIGKILL);
    EXPECT_TRUE(IsLeftByAll());
    termios after{};
    tcgetattr(m_terminal, &after);
    EXPECT_EQ(after.c_cc[VINTR], kInterrupt[0]);
}

// The host has forked: another process holds its ends of the streams.
TEST_F(TtyJobOnLinux, TheProgramEndsWithItsHostWhoeverHoldsTheHostsStreams) {
    StartJob([this] {
        const auto process = platform::DialogProcess::Start(TTY_PROGRAM);
        if (fork() == 0) AwaitTestsEnd();
        Chooser procedure;
        return platform::RunDialog(*process, *platform::FindTemplate(101), procedure);
    });
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    kill(m_job, SIGKILL);
    EXPECT_TRUE(IsLeftByAll());
}

TEST_F(TtyProgramOnLinux, TheProgramEndsWithItsHost) {
    StartDialog(101);
    ASSERT_TRUE(Expect(u8"输入序号选择")) << m_shown;
    kill(m_host, SIGKILL);
    // Ends when nobody holds the terminal any more, not after the time that Expect allows.
    EXPECT_EQ(Result(), -1);
    pollfd terminal{m_terminal, 0, 0};
    EXPECT_EQ(poll(&terminal, 1, 0), 1);
    EXPECT_NE(terminal.revents & POLLHUP, 0);
}

TEST_F(TtyProgramOnLinux, AMessageWaitsForTheReturnKey) {
    Start([] {
        const auto process = platform::DialogProcess::Start(TTY_PROGRAM);
        return process && platform::RunMessageBox(*process, "文本", "电子签章", 48) ? 5 : 99;
    });
    ASSERT_TRUE(Expect(u8"电子签章\r\n文本\r\n按回车键确定：")) << m_shown;
    Type("\n");
    EXPECT_EQ(Result(), 5);
}

// The dialog of the address, whose test tells its outcome in a box.
class Tester : public platform::DialogProcedure {
public:
    void OnOpen(DialogWindow& window) override { window.SetText(1003, "old"); }
    bool OnClose(DialogWindow& window) override {
        window.End(0);
        return true;
    }
    bool OnButton(DialogWindow& window, int button) override {
        if (button == 1) window.End(window.Text(1003, 512) == "192.0.2.7" ? m_boxes : 98);
        if (button != 1006) return true;
        const auto process = platform::DialogProcess::Start(TTY_PROGRAM);
        if (process && platform::RunMessageBox(*process, "连接服务器成功！", "电子签章", 48))
            ++m_boxes;
        return true;
    }

private:
    int m_boxes = 0;
};

TEST_F(TtyProgramOnLinux, ABoxDuringTheDialogIsAnsweredAndTheDialogGoesOn) {
    Start([] {
        const auto process = platform::DialogProcess::Start(TTY_PROGRAM);
        Tester procedure;
        return process ? platform::RunDialog(*process, *platform::FindTemplate(103), procedure)
                       : 99;
    });
    ASSERT_TRUE(Expect(u8"y 确定；n 取消；t 测试连接：")) << m_shown;
    for (const char* const address : {"192.0.2.4\n", "192.0.2.7\n"}) {
        Type(address);
        ASSERT_TRUE(Expect(u8"测试连接：")) << m_shown;
        Type("t\n");
        ASSERT_TRUE(Expect(u8"电子签章\r\n连接服务器成功！\r\n按回车键确定：")) << m_shown;
        Type("\n");
        ASSERT_TRUE(Expect(u8"测试连接：")) << m_shown;
    }
    Type("y\n");
    EXPECT_EQ(Result(), 2);
}

TEST_F(TtyProgramOnLinux, ATerminalWithoutChineseIsToldSo) {
    SetVariable("LC_ALL", "C");
    StartDialog(104);
    ASSERT_TRUE(Expect("character set is ANSI_X3.4-1968 and not UTF-8")) << m_shown;
    ASSERT_TRUE(Expect("  1  ?????\r\n  2    seal")) << m_shown;
    ASSERT_TRUE(Expect("number to choose; y OK; n Cancel: ")) << m_shown;
    Type("2\n");
    ASSERT_TRUE(Expect("Preview: picture, 2 x 1 pixels")) << m_shown;
    Type("y\n");
    EXPECT_EQ(Result(), 1);
}

TEST_F(TtyProgramOnLinux, WithoutATerminalNothingIsShown) {
    int status = 0;
    const pid_t host = fork();
    if (host == 0) {
        setsid();
        const int nothing = open("/dev/null", O_RDWR);
        dup2(nothing, STDERR_FILENO);
        _exit(Choose(101) == platform::kDialogNotShown ? 7 : 8);
    }
    ASSERT_EQ(waitpid(host, &status, 0), host);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 7);
}

}  // namespace
