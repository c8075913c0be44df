#include "tools/dialog/qt/Conversation.h"

#include <errno.h>
#include <unistd.h>

#include <array>

#include "tools/dialog/HostWatch.h"

namespace {

constexpr std::size_t kPiece = 65'536;

}  // namespace

Conversation::Conversation(int input, int output, std::function<void(int)> ended)
    : m_input(input),
      m_output(output),
      m_ended(std::move(ended)),
      m_talk(m_frontEnd, [this](const std::string& lines) { Send(lines); }),
      m_notifier(input, QSocketNotifier::Read),
      m_host(WatchHost(input)) {
    m_frontEnd.ReportTo(m_talk, [this] { End(0); });
    QObject::connect(&m_notifier, &QSocketNotifier::activated, [this] { Read(); });
    if (m_host < 0) return;
    m_hostsEnd = std::make_unique<QSocketNotifier>(m_host, QSocketNotifier::Read);
    QObject::connect(m_hostsEnd.get(), &QSocketNotifier::activated, [this] { End(0); });
}

Conversation::~Conversation() {
    m_hostsEnd.reset();
    if (m_host >= 0) close(m_host);
}

void Conversation::Read() {
    std::array<char, kPiece> piece;
    const ssize_t count = read(m_input, piece.data(), piece.size());
    if (count < 0 && errno == EINTR) return;
    if (count <= 0) return End(0);
    switch (m_talk.Receive({piece.data(), static_cast<std::size_t>(count)})) {
        case DialogTalk::State::Going: return;
        case DialogTalk::State::Ended: return End(0);
        case DialogTalk::State::GivenUp: return End(1);
    }
}

void Conversation::Send(const std::string& lines) const {
    std::size_t written = 0;
    while (written < lines.size()) {
        const ssize_t count = write(m_output, lines.data() + written, lines.size() - written);
        if (count < 0 && errno != EINTR) return;
        if (count > 0) written += static_cast<std::size_t>(count);
    }
}

void Conversation::End(int exitCode) {
    m_notifier.setEnabled(false);
    if (m_hostsEnd) m_hostsEnd->setEnabled(false);
    if (const auto ended = std::exchange(m_ended, nullptr)) ended(exitCode);
}
