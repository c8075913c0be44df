// The address of the online service in the real window, typed, tried and stored by keyboard.
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "fakes/LibraryTest.h"
#include "foundation/Registry.h"
#include "support/Environment.h"
#include "support/linux/XServer.h"

namespace {

using testing::ElementsAre;

// Goes to the dialog's window, and waits for a second one or for its end. A user who waits in vain
// leaves the dialog.
constexpr char kUser[] = R"sh(
windows() { xdotool search --onlyvisible --class tesmark-dialog; }
box() { windows | grep -v "^$dialog\$" | head -n 1; }
await() {
    n=0
    until eval "$1"; do
        n=$((n + 1))
        [ $n -lt 3000 ] || { xdotool windowfocus --sync $dialog key Escape; exit 1; }
    done
}
dialog=$(xdotool search --sync --onlyvisible --class tesmark-dialog | head -n 1)
xdotool windowfocus --sync $dialog
xdotool key Tab Tab
xdotool type 192.0.2.7/qelm7
xdotool key Tab space
await '[ -n "$(box)" ]'
xdotool windowfocus --sync $(box)
xdotool key Return
await '[ -z "$(box)" ]'
xdotool windowfocus --sync $dialog
xdotool key Tab Return
)sh";

class AddressByKeyboardOnLinux : public LibraryTest {
protected:
    void SetUp() override { ASSERT_FALSE(m_server.Display().empty()); }
    // Those that `script` tells happen at the window.
    int ShowFor(const char* script) {
        SetVariable("DISPLAY", m_server.Display());
        const pid_t user = fork();
        if (user == 0) {
            execl("/bin/sh", "sh", "-c", script, static_cast<char*>(nullptr));
            _exit(127);
        }
        const int result = SetOnlineUrl();
        int status = 0;
        waitpid(user, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        return result;
    }

    XServer m_server;
    SavedVariable m_display{"DISPLAY"};
};

TEST_F(AddressByKeyboardOnLinux, IsTypedTriedAndStored) {
    m_prefix.SetNumber("bSealPosition", 1);
    m_prefix.SetText("sWSURL", "http://192.0.2.45/qelm42/QelmServlet");
    fakes::On("dwnt_http_response_data_get").Gives("<ROOT><STATUSCODE>200</STATUSCODE></ROOT>");
    EXPECT_EQ(ShowFor(kUser), TESMARK_OK);
    ASSERT_EQ(fakes::CountCalls("dwnt_http_processEx"), 1);
    EXPECT_EQ(fakes::Calls()[1].arguments[2], "http://192.0.2.7/qelm7/QelmServlet");
    EXPECT_EQ(ReadTextSetting("sWSURL"), "http://192.0.2.7/qelm7/QelmServlet");
}

}  // namespace
