// `tesmark sign` and `stamp` while a time-stamp authority is waited for.

#include <signal.h>

#include <cstdlib>

#include "support/LoopbackServer.h"
#include "tools/cli/StampFixture.h"
#include "tools/cli/linux/PinentryFixture.h"

namespace {

// The program may end while a thread of libcurl's does, and the leak checker then fails to read
// that thread's storage.
const std::string kNoLeakCheck = "export LSAN_OPTIONS=detect_leaks=0; ";

class AuthorityWaitOnLinux : public StampFixture<PinentryFixture> {
protected:
    AuthorityWaitOnLinux() {
        MakeKey("rsa", "rsa2048");
        MakeSeal("rsa", "es", "rsa");
        WriteFile(m_file, "a text to be signed\n");
        for (const auto& [name, value] : std::vector<std::pair<std::string, std::string>>{
                 {"TimeStampEngine", CLI_TIME_STAMP_ENGINE},
                 {"TimeStampUrl", m_server.Url("/")},
                 {"bSignWithTimeStamp", "1"}}) {
            EXPECT_EQ(Tesmark({"config", "set", name, value}).exitCode, 0) << name;
        }
    }

    // While the authority is asked, the program gets `signal`; then the authority fails.
    ProgramOutcome Interrupted(int signal, const std::string& arguments) {
        m_signal = signal;
        return Shell(kNoLeakCheck + "echo $$ > pid; exec $TESMARK " + arguments + " --pin 123456");
    }
    // With the terminal that `script` makes; what is shown there.
    ProgramOutcome OnTerminal(const std::string& arguments) const {
        return Shell(kNoLeakCheck + "script -qec \"$TESMARK " + arguments +
                     " --pin 123456\" /dev/null");
    }

    std::string m_file = InPrefix("text.txt");

private:
    std::string FailInterrupting() const {
        const int process = std::atoi(FileContent(InPrefix("pid")).c_str());
        if (m_signal != 0 && process > 1) kill(process, m_signal);
        return LoopbackServer::Page("503 Service Unavailable", "");
    }

    int m_signal = 0;
    LoopbackServer m_server{[this](const std::string&) { return FailInterrupting(); }};
};

TEST_F(AuthorityWaitOnLinux, AnInterruptedSignatureWhoseAuthorityFailsThenIsInterruptedAllTheSame) {
    for (const int signal : {SIGINT, SIGTERM}) {
        for (const char* const option : {"", " --timestamp"}) {
            const auto outcome = Interrupted(signal, "sign " + m_file + option);
            EXPECT_EQ(outcome.exitCode, 130) << outcome.error;
            EXPECT_EQ(outcome.error, "tesmark: Interrupted; nothing was written.\n");
            EXPECT_EQ(FilesBeginningWith("text.txt").size(), 1u);
        }
    }
}

TEST_F(AuthorityWaitOnLinux, SoIsAnInterruptedStamp) {
    const auto outcome =
        Interrupted(SIGINT, "stamp " + std::string(kContract) + " " + m_out + " --cert rsa");
    EXPECT_EQ(outcome.exitCode, 130) << outcome.error;
    EXPECT_TRUE(NothingWritten());
}

TEST_F(AuthorityWaitOnLinux, ATerminalIsToldWhatIsWaitedFor) {
    constexpr char kTold[] = "Waiting for the time-stamp authority ...\r";
    const auto sign = OnTerminal("sign " + m_file);
    EXPECT_NE(sign.out.find(kTold), std::string::npos) << sign.out << sign.error;
    // Once the library's own choice asks for one, and once the seal is named.
    for (const char* const option : {"", " --cert rsa"}) {
        const auto stamp = OnTerminal("stamp " + std::string(kContract) + " " + m_out + option);
        EXPECT_NE(stamp.out.find(kTold), std::string::npos) << stamp.out << stamp.error;
    }
    const auto big = OnTerminal("sign " + m_file + " --big");
    EXPECT_EQ(big.out.find("Waiting"), std::string::npos) << big.out;
}

TEST_F(AuthorityWaitOnLinux, WithoutATerminalNothingIsTold) {
    const auto outcome = Tesmark({"sign", m_file, "--pin", "123456"});
    EXPECT_EQ(outcome.error.find("Waiting"), std::string::npos) << outcome.error;
}

}  // namespace
