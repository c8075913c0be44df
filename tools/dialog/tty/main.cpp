// tesmark-dialog-tty - shows a dialog of the library's on the terminal. The library starts it and
// speaks with it over the standard streams.
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <iterator>
#include <string>

#include "tools/dialog/CommandLine.h"
#include "tools/dialog/HostWatch.h"
#include "tools/dialog/tty/TtyFrontEnd.h"
#include "tools/dialog/tty/UserTerminal.h"

namespace {

using State = DialogTalk::State;

constexpr int kFailed = 1;

// What doesn't arrive needs no word: the end of the input follows.
void Say(const std::string& lines) {
    for (std::size_t said = 0; said < lines.size();) {
        const ssize_t count = write(STDOUT_FILENO, lines.data() + said, lines.size() - said);
        if (count < 0 && errno != EINTR) return;
        if (count > 0) said += static_cast<std::size_t>(count);
    }
}

// Signals come in line with the rest, so that the terminal is always given back. Those of a
// terminal that another has the foreground of come not at all.
int WatchSignals() {
    sigset_t watched;
    sigemptyset(&watched);
    for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGTSTP, SIGCONT})
        sigaddset(&watched, signal);
    sigset_t blocked = watched;
    for (const int signal : {SIGTTIN, SIGTTOU}) sigaddset(&blocked, signal);
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
    signal(SIGPIPE, SIG_IGN);
    return signalfd(-1, &watched, SFD_CLOEXEC);
}

sigset_t Only(int signal) {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    return set;
}

// As the signal does it by default: not where nobody could let the program go on.
void StopNow() {
    const sigset_t stop = Only(SIGTSTP), goOn = Only(SIGCONT);
    raise(SIGTSTP);
    sigprocmask(SIG_UNBLOCK, &stop, nullptr);
    sigprocmask(SIG_BLOCK, &stop, nullptr);
    const timespec atOnce{};
    sigtimedwait(&goOn, nullptr, &atOnce);
}

class Program {
public:
    Program() : m_signals(WatchSignals()) {
        m_frontEnd.TellTo(m_talk);
        if (m_terminal.IsThere() && !m_terminal.Characters().IsUtf8()) {
            m_terminal.Print("The terminal's character set is " + m_terminal.Characters().Name() +
                             " and not UTF-8: what it lacks is shown as \"?\".\n");
        }
    }

    int Run() {
        if (!m_terminal.IsThere() || m_signals < 0) return kFailed;
        while (m_state == State::Going) Serve();
        return m_state == State::Ended ? 0 : kFailed;
    }

private:
    // The terminal isn't read while an event is being handled: another dialog may be open.
    void Serve() {
        const bool listening = m_frontEnd.IsOpen() && !m_talk.IsHandling();
        const int wanted = (listening ? POLLIN : 0) | (m_terminal.HasRest() ? POLLOUT : 0);
        pollfd waiting[] = {
            {STDIN_FILENO, POLLIN, 0},
            {m_signals, POLLIN, 0},
            {wanted != 0 ? m_terminal.Descriptor() : -1, static_cast<short>(wanted), 0},
            {m_host, POLLIN, 0}};
        if (poll(waiting, std::size(waiting), -1) < 0) return;
        if (waiting[3].revents != 0)
            m_state = State::GivenUp;
        else if (waiting[0].revents != 0)
            Hear();
        else if (waiting[1].revents != 0)
            ServeSignal();
        else
            ServeTerminal(listening && (waiting[2].revents & ~POLLOUT) != 0);
    }

    void Hear() {
        char bytes[65'536];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count > 0)
            m_state = m_talk.Receive({bytes, static_cast<std::size_t>(count)});
        else if (count == 0 || errno != EINTR)
            m_state = State::GivenUp;
    }

    void ServeSignal() {
        signalfd_siginfo info{};
        if (read(m_signals, &info, sizeof info) != sizeof info) return;
        const bool stops = info.ssi_signo == SIGTSTP;
        if (!stops && info.ssi_signo != SIGCONT) {
            m_state = State::GivenUp;
            return;
        }
        if (stops) m_terminal.GiveBack();
        if (stops) StopNow();
        if (m_terminal.TakeAgain())
            m_frontEnd.Prompt();
        else
            m_state = State::GivenUp;
    }

    void ServeTerminal(bool hasInput) {
        m_terminal.PrintRest();
        if (hasInput) ServeUser();
    }

    void ServeUser() {
        std::string line;
        switch (m_terminal.Read(line)) {
            case UserTerminal::Input::None: return;
            case UserTerminal::Input::Line: m_frontEnd.Typed(line); break;
            case UserTerminal::Input::Closed: m_frontEnd.Closed(); break;
            case UserTerminal::Input::Gone: m_state = State::GivenUp; return;
        }
        m_state = m_talk.CurrentState();
    }

    int m_signals;
    int m_host = WatchHost(STDIN_FILENO);
    UserTerminal m_terminal;
    TtyFrontEnd m_frontEnd{m_terminal.Characters().HasChinese() ? kChineseHints : kAsciiHints,
                           [this](const std::string& text) { m_terminal.Print(text); }};
    DialogTalk m_talk{m_frontEnd, Say};
    State m_state = State::Going;
};

}  // namespace

int main(int count, char** arguments) {
    const auto answered =
        AnswerPerson(count, arguments, "tesmark-dialog-tty",
                     "shows a dialog of the electronic seal library on the terminal");
    if (answered) return *answered;
    std::setlocale(LC_CTYPE, "");
    return Program().Run();
}
