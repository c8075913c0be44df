#include "tools/dialog/tty/UserTerminal.h"

#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>

#include <cerrno>

namespace {

constexpr char kInterrupt = '\x03';
constexpr std::size_t kLongestLine = 65'536;

// Without a controlling terminal there is no foreground, and nobody is stopped.
bool IsInForeground(int terminal) {
    const pid_t foreground = tcgetpgrp(terminal);
    return foreground == getpgrp() || (foreground < 0 && errno == ENOTTY);
}

// Opened anew, so that what is set for it is no matter of the host's.
int OpenTerminal() {
    constexpr int kMode = O_RDWR | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    int terminal = open("/dev/tty", kMode);
    if (terminal < 0 && isatty(STDERR_FILENO) == 1) terminal = open("/proc/self/fd/2", kMode);
    if (terminal < 0 || IsInForeground(terminal)) return terminal;
    close(terminal);
    return -1;
}

// Ctrl-C ends a line instead of interrupting. The other keys, to stop the program for one, keep
// their sense.
termios InLines(termios modes) {
    modes.c_iflag |= ICRNL;
    modes.c_lflag |= ICANON | ECHO | ECHOE | ECHOK | ISIG;
    modes.c_cc[VINTR] = _POSIX_VDISABLE;
    modes.c_cc[VEOL2] = kInterrupt;
    modes.c_lflag |= IEXTEN;
    return modes;
}

}  // namespace

// None of this waits until what was printed has left: the user may have stopped the output.
UserTerminal::UserTerminal() : m_characters(nl_langinfo(CODESET)), m_terminal(OpenTerminal()) {
    m_hasModes = IsThere() && tcgetattr(m_terminal, &m_former) == 0;
    if (IsThere() && TakeAgain()) tcflush(m_terminal, TCIFLUSH);
}

UserTerminal::~UserTerminal() {
    GiveBack();
    if (IsThere()) close(m_terminal);
}

// Whoever has the foreground by now may have set modes of his own.
void UserTerminal::GiveBack() const {
    termios modes{};
    if (!m_hasModes || tcgetattr(m_terminal, &modes) != 0) return;
    const termios own = InLines(m_former);
    if (modes.c_cc[VINTR] == own.c_cc[VINTR] && modes.c_cc[VEOL2] == own.c_cc[VEOL2])
        tcsetattr(m_terminal, TCSANOW, &m_former);
}

bool UserTerminal::TakeAgain() const {
    if (!IsInForeground(m_terminal)) return false;
    const termios modes = InLines(m_former);
    if (m_hasModes) tcsetattr(m_terminal, TCSANOW, &modes);
    return true;
}

void UserTerminal::Print(const std::string& text) {
    m_unprinted += m_characters.FromUtf8(text);
    PrintRest();
}

void UserTerminal::PrintRest() {
    while (!m_unprinted.empty()) {
        const ssize_t count = write(m_terminal, m_unprinted.data(), m_unprinted.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN) return;
        m_unprinted.erase(0, count > 0 ? static_cast<std::size_t>(count) : std::string::npos);
    }
}

UserTerminal::Input UserTerminal::Read(std::string& line) {
    char bytes[4096];
    const ssize_t count = read(m_terminal, bytes, sizeof bytes);
    if (count < 0) return errno == EINTR || errno == EAGAIN ? Input::None : Input::Gone;
    if (count == 0) return Input::Closed;
    m_typed.append(bytes, static_cast<std::size_t>(count));
    if (m_typed.find(kInterrupt) != std::string::npos) {
        m_typed.clear();
        return Input::Closed;
    }
    if (m_typed.size() > kLongestLine) m_typed.clear();
    if (!m_typed.ends_with('\n')) return Input::None;
    m_typed.pop_back();
    line = m_characters.ToUtf8(m_typed);
    m_typed.clear();
    return Input::Line;
}
