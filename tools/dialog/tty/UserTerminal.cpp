#include "tools/dialog/tty/UserTerminal.h"

#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>

#include <cerrno>

namespace {

constexpr char kInterrupt = '\x03';
constexpr std::size_t kLongestLine = 65'536;

int OpenTerminal() {
    const int terminal = open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY);
    if (terminal >= 0) return terminal;
    const int mode = isatty(STDERR_FILENO) == 1 ? fcntl(STDERR_FILENO, F_GETFL) : -1;
    if (mode < 0 || (mode & O_ACCMODE) != O_RDWR) return -1;
    return fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
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

UserTerminal::UserTerminal() : m_characters(nl_langinfo(CODESET)), m_terminal(OpenTerminal()) {
    m_hasModes = IsThere() && tcgetattr(m_terminal, &m_former) == 0;
    const termios modes = InLines(m_former);
    if (m_hasModes) tcsetattr(m_terminal, TCSAFLUSH, &modes);
}

UserTerminal::~UserTerminal() {
    GiveBack();
    if (IsThere()) close(m_terminal);
}

void UserTerminal::GiveBack() const {
    if (m_hasModes) tcsetattr(m_terminal, TCSADRAIN, &m_former);
}

void UserTerminal::TakeAgain() const {
    const termios modes = InLines(m_former);
    if (m_hasModes) tcsetattr(m_terminal, TCSADRAIN, &modes);
}

void UserTerminal::Print(const std::string& text) const {
    const std::string bytes = m_characters.FromUtf8(text);
    for (std::size_t written = 0; written < bytes.size();) {
        const ssize_t count = write(m_terminal, bytes.data() + written, bytes.size() - written);
        if (count < 0 && errno != EINTR) return;
        if (count > 0) written += static_cast<std::size_t>(count);
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
