// A server that is asked to end by a signal.

#include <gmock/gmock.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <utility>

#include "foundation/Text.h"
#include "tests/tools/sealserver/RawClient.h"
#include "tests/tools/sealserver/StoreFixture.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class EndOnLinux : public StoreFixture {
protected:
    ~EndOnLinux() override {
        if (m_program > 0) kill(m_program, SIGKILL);
        if (m_program > 0) waitpid(m_program, nullptr, 0);
    }

    // The signals are as a terminal's shell leaves them, but for the one that is ignored.
    void Start(int ignored = 0) {
        int output[2] = {-1, -1};
        ASSERT_EQ(pipe(output), 0);
        m_program = fork();
        if (m_program == 0) {
            dup2(output[1], STDOUT_FILENO);
            close(output[0]);
            close(output[1]);
            for (const int signal : {SIGINT, SIGTERM, SIGHUP}) ::signal(signal, SIG_DFL);
            if (ignored != 0) ::signal(ignored, SIG_IGN);
            execl(SEALSERVER_PROGRAM, SEALSERVER_PROGRAM, "serve", "--database", Path().c_str(),
                  "--access-log", LogPath().c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        close(output[1]);
        std::FILE* const told = fdopen(output[0], "r");
        char line[256] = "";
        ASSERT_NE(std::fgets(line, sizeof line, told), nullptr);
        std::fclose(told);
        m_address = line;
        m_address.resize(m_address.rfind('/'));
        m_listening = ListeningSocket();
        ASSERT_NE(m_listening, "");
    }
    // A form whose last byte isn't there yet.
    RawClient BegunRequest() const {
        RawClient client(m_address);
        client.Send(
            "POST /login HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1\r\n"
            "Expect: 100-continue\r\n\r\n");
        EXPECT_THAT(client.Receive("\r\n\r\n"), StartsWith("HTTP/1.1 100 "));
        return client;
    }
    // Another program's socket may have the port by then.
    void AwaitClosedPort() const {
        while (ListeningSocket() == m_listening) sched_yield();
    }
    // What the kernel calls the one that listens at the server's port; empty if none does.
    std::string ListeningSocket() const {
        char end[16];
        std::snprintf(end, sizeof end, ":%04X",
                      std::stoi(m_address.substr(m_address.rfind(':') + 1)));
        std::ifstream sockets("/proc/net/tcp");
        for (std::string line; std::getline(sockets, line);) {
            std::istringstream fields(line);
            const std::vector<std::string> field{std::istream_iterator<std::string>(fields), {}};
            constexpr std::size_t kLocal = 1, kState = 3, kInode = 9;
            if (field.size() > kInode && field[kLocal].ends_with(end) && field[kState] == "0A")
                return field[kInode];
        }
        return {};
    }
    // Of the server's first thread.
    bool HasInSet(const std::string& set, int signal) const {
        std::ifstream status("/proc/" + std::to_string(m_program) + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with(set + ":"))
                return std::stoull(line.substr(set.size() + 1), nullptr, 16) >> (signal - 1) & 1;
        }
        ADD_FAILURE() << "no " << set;
        return false;
    }
    int Status() {
        int status = -1;
        waitpid(m_program, &status, 0);
        m_program = 0;
        return status;
    }
    // To the request that `client` has begun. The server waits a moment for a connection that isn't
    // closed behind it.
    static std::string AnswerTo(RawClient client) {
        client.Send("x");
        return client.Receive();
    }
    void ExpectAnswerAndOrderlyEnd(RawClient client) {
        EXPECT_THAT(AnswerTo(std::move(client)), StartsWith("HTTP/1.1 403 "));
        const int status = Status();
        EXPECT_TRUE(WIFEXITED(status)) << status;
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
    std::string LogPath() const { return m_folder.Below("access.log"); }

    pid_t m_program = 0;
    std::string m_address;
    std::string m_listening;
};

TEST_F(EndOnLinux, ARequestUnderWayIsAnsweredAndLoggedAheadOfTheEnd) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        SCOPED_TRACE(signal);
        Start();
        RawClient client = BegunRequest();
        kill(m_program, signal);
        AwaitClosedPort();
        ExpectAnswerAndOrderlyEnd(std::move(client));
        const std::string log = ReadFileToString(LogPath());
        EXPECT_THAT(log, HasSubstr(" POST /login 403 "));
        EXPECT_TRUE(log.ends_with('\n'));
    }
}

TEST_F(EndOnLinux, ASecondSignalEndsItAtOnce) {
    Start();
    const RawClient client = BegunRequest();
    kill(m_program, SIGTERM);
    AwaitClosedPort();
    kill(m_program, SIGINT);
    const int status = Status();
    EXPECT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(WTERMSIG(status), SIGINT);
}

TEST_F(EndOnLinux, AClosedTerminalsSecondHangUpChangesNothing) {
    Start();
    RawClient client = BegunRequest();
    kill(m_program, SIGHUP);
    AwaitClosedPort();
    kill(m_program, SIGHUP);
    ExpectAnswerAndOrderlyEnd(std::move(client));
}

TEST_F(EndOnLinux, AHangUpRightBehindAnotherSignalChangesNothing) {
    Start();
    RawClient client = BegunRequest();
    // While it is stopped, it finds both.
    kill(m_program, SIGSTOP);
    ASSERT_EQ(waitpid(m_program, nullptr, WUNTRACED), m_program);
    kill(m_program, SIGTERM);
    kill(m_program, SIGHUP);
    kill(m_program, SIGCONT);
    AwaitClosedPort();
    ExpectAnswerAndOrderlyEnd(std::move(client));
}

TEST_F(EndOnLinux, ASignalThatIsIgnoredStaysIgnored) {
    Start(SIGHUP);
    RawClient client = BegunRequest();
    EXPECT_TRUE(HasInSet("SigBlk", SIGTERM)) << "its end is not awaited yet";
    // Ignored and not held: it is dropped as it comes.
    EXPECT_TRUE(HasInSet("SigIgn", SIGHUP));
    EXPECT_FALSE(HasInSet("SigBlk", SIGHUP));
    kill(m_program, SIGHUP);
    client.Send("x");
    EXPECT_THAT(client.Receive(), StartsWith("HTTP/1.1 403 "));
    EXPECT_EQ(waitpid(m_program, nullptr, WNOHANG), 0);
    EXPECT_NO_THROW(BegunRequest());
}

}  // namespace
