// The real pinentry program for a plain terminal, on a pseudo terminal of the test's own.
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "components/certservice/tokens/TokenFixture.h"

namespace {

class PinentryTerminalTestOnLinux : public testing::Test {
protected:
    void SetUp() override { SetServicePath("PinentryProgram", PINENTRY_TTY); }
    void TearDown() override {
        if (m_terminal >= 0) close(m_terminal);
    }

    void Start() {
        m_child = forkpty(&m_terminal, nullptr, nullptr, nullptr);
        ASSERT_GE(m_child, 0);
        if (m_child != 0) return;
        execl(ASK_FOR_PIN, ASK_FOR_PIN, nullptr);
        _exit(127);
    }
    // Reads what the terminal shows until `text` appears; false if it doesn't within 20 seconds.
    bool Expect(const std::string& text) {
        pollfd waiting{m_terminal, POLLIN, 0};
        while (m_shown.find(text) == std::string::npos && poll(&waiting, 1, 20'000) > 0) {
            char buffer[512];
            const ssize_t count = read(m_terminal, buffer, sizeof buffer);
            if (count <= 0) break;
            m_shown.append(buffer, static_cast<std::size_t>(count));
        }
        return m_shown.find(text) != std::string::npos;
    }
    void Type(const std::string& text) {
        ASSERT_EQ(write(m_terminal, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    int ExitCode() {
        // Until the program lets go of the terminal.
        Expect("never shown");
        int status = 0;
        EXPECT_EQ(waitpid(m_child, &status, 0), m_child);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    TemporaryPrefix m_prefix;
    pid_t m_child = -1;
    int m_terminal = -1;
    std::string m_shown;
};

TEST_F(PinentryTerminalTestOnLinux, ThePinTypedAtTheTerminalArrivesAndIsNotShown) {
    Start();
    ASSERT_TRUE(Expect("PIN")) << m_shown;
    Type("13%579\n");
    EXPECT_EQ(ExitCode(), 0) << m_shown;
    EXPECT_EQ(m_shown.find("13%579"), std::string::npos);
}

TEST_F(PinentryTerminalTestOnLinux, WithoutATerminalNobodyCanBeAsked) {
    const std::string command = std::string(ASK_FOR_PIN) + " </dev/null >/dev/null 2>&1";
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 3);
}

}  // namespace
