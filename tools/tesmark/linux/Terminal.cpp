#include "Terminal.h"

#include <fcntl.h>
#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace {

constexpr std::array<int, 3> kSignals = {SIGINT, SIGTERM, SIGHUP};

volatile sig_atomic_t g_interrupted = 0;
std::array<struct sigaction, kSignals.size()> g_former;

void NoteInterrupt(int) { g_interrupted = 1; }

// The terminal without echo, and as it was again at the end.
class HiddenInput {
public:
    explicit HiddenInput(int terminal) : m_terminal(terminal) {
        m_changed = tcgetattr(terminal, &m_former) == 0;
        if (!m_changed) return;
        termios hidden = m_former;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(terminal, TCSAFLUSH, &hidden);
    }
    ~HiddenInput() {
        if (m_changed) tcsetattr(m_terminal, TCSAFLUSH, &m_former);
    }
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;

    bool Changed() const { return m_changed; }

private:
    int m_terminal;
    termios m_former{};
    bool m_changed = false;
};

// To the end of the line. False at the end of input or after a signal.
bool ReadLine(int file, std::string& line) {
    for (char byte = 0;;) {
        const ssize_t count = read(file, &byte, 1);
        if (count != 1) return false;
        if (byte == '\n') return true;
        line += byte;
    }
}

bool WriteAll(int file, const std::string& text) {
    return write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

}  // namespace

bool StandardErrorIsTerminal() { return isatty(STDERR_FILENO) == 1; }

bool StandardInputIsTerminal() { return isatty(STDIN_FILENO) == 1; }

std::optional<std::string> ReadHidden(const std::string& prompt) {
    const int terminal = open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY);
    if (terminal < 0) return {};
    std::optional<std::string> line;
    {
        // An interrupt must not leave the terminal without echo.
        const InterruptGuard guard;
        const HiddenInput hidden(terminal);
        std::string typed;
        if (hidden.Changed() && WriteAll(terminal, prompt) && ReadLine(terminal, typed)) {
            line = typed;
        }
        WriteAll(terminal, "\n");
    }
    close(terminal);
    return line;
}

InterruptGuard::InterruptGuard() {
    g_interrupted = 0;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        struct sigaction action {};
        // Without SA_RESTART, so that a wait for the terminal ends.
        action.sa_handler = NoteInterrupt;
        sigaction(kSignals[i], nullptr, &g_former[i]);
        if (g_former[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &action, nullptr);
    }
}

InterruptGuard::~InterruptGuard() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &g_former[i], nullptr);
}

bool InterruptGuard::Interrupted() { return g_interrupted != 0; }
