// The whole road: the command-line host, the library, the dialog's window, and the user's keys.
#include <sys/wait.h>
#include <unistd.h>

#include <initializer_list>
#include <vector>

#include "support/linux/XServer.h"
#include "tools/cli/StampFixture.h"

namespace {

class StampByDialogOnLinux : public StampFixture<CliTest> {
protected:
    StampByDialogOnLinux() {
        MakeKey("alice", "sm2");
        MakeSeal("alice", "gb2020", "first");
        MakeSeal("alice", "gb2020", "second");
    }

    // Stamps, while somebody types these keys into the window that comes up.
    ProgramOutcome StampAndType(std::initializer_list<const char*> keys) {
        std::vector<const char*> typing = {"xdotool",       "search",  "--sync",
                                           "--onlyvisible", "--class", "tesmark-dialog",
                                           "windowfocus",   "--sync",  "key"};
        typing.insert(typing.end(), keys);
        typing.push_back(nullptr);
        const pid_t user = fork();
        if (user == 0) {
            setenv("DISPLAY", m_server.Display().c_str(), 1);
            execvp(typing[0], const_cast<char* const*>(typing.data()));
            _exit(127);
        }
        const ProgramOutcome outcome =
            Tesmark({"stamp", kContract, m_out, "--pin", "123456"},
                    ProgramOptions{.environment = {{"DISPLAY", m_server.Display()}}});
        kill(user, SIGKILL);
        waitpid(user, nullptr, 0);
        return outcome;
    }

    XServer m_server;
};

TEST_F(StampByDialogOnLinux, TheSealThatIsPickedByKeyboardIsTheOneOnThePage) {
    ASSERT_FALSE(m_server.Display().empty());
    // The buttons, the tree, the certificate, the first seal, the second.
    const ProgramOutcome outcome = StampAndType({"Tab", "Tab", "Down", "Down", "Down", "Return"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_NE(Tesmark({"verify", m_out}).out.find("seal    second,"), std::string::npos);
}

TEST_F(StampByDialogOnLinux, NothingIsWrittenWhenTheDialogIsLeft) {
    EXPECT_EQ(StampAndType({"Escape"}).exitCode, 5);
    EXPECT_TRUE(NothingWritten());
}

}  // namespace
