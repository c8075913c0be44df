#include "tools/dialog/qt/Host.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <utility>

namespace {

constexpr int kTurns = 1000;
constexpr int kTurn = 10;  // milliseconds

}  // namespace

Host::Host(int input, int output, std::function<void()> meanwhile)
    : m_input(input), m_output(output), m_meanwhile(std::move(meanwhile)) {}

Host::~Host() {
    Leave();
    if (m_input >= 0) close(m_input);
}

void Host::Say(std::initializer_list<std::string> fields) {
    std::string line;
    for (const std::string& field : fields) line += (line.empty() ? "" : "\t") + field;
    line += '\n';
    std::size_t written = 0;
    while (written < line.size()) {
        const ssize_t count = write(m_output, line.data() + written, line.size() - written);
        if (count < 0) return;
        written += static_cast<std::size_t>(count);
        m_meanwhile();
    }
}

// True if bytes or the end have come.
bool Host::Take(int milliseconds) {
    pollfd file{m_input, POLLIN, 0};
    if (poll(&file, 1, milliseconds) <= 0) return false;
    std::array<char, 4096> piece;
    const ssize_t count = read(m_input, piece.data(), piece.size());
    m_ended = count <= 0;
    if (!m_ended) m_bytes.append(piece.data(), static_cast<std::size_t>(count));
    return true;
}

std::string Host::Hear() {
    for (int turn = 0; turn < kTurns; ++turn) {
        const std::size_t end = m_bytes.find('\n');
        if (end != std::string::npos) {
            const std::string line = m_bytes.substr(0, end);
            m_bytes.erase(0, end + 1);
            return line;
        }
        if (m_ended) return "";
        m_meanwhile();
        Take(kTurn);
    }
    return "";
}

std::string Host::HearUpTo(const std::string& word) {
    std::string line = Hear();
    while (!line.empty() && line.substr(0, line.find('\t')) != word) line = Hear();
    return line;
}

std::string Host::Unheard() {
    m_meanwhile();
    while (!m_ended && Take(0)) m_meanwhile();
    return m_bytes;
}

void Host::Leave() {
    if (m_output < 0) return;
    if (m_output == m_input) {
        shutdown(m_output, SHUT_WR);
    } else {
        close(m_output);
    }
    m_output = -1;
}
