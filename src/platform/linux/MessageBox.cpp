#include "platform/MessageBox.h"

#include <signal.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <string_view>

#include "platform/CodePage.h"
#include "platform/linux/DialogProcess.h"
#include "platform/linux/dialogprogram/Utf8.h"

namespace platform {

namespace {

bool ShowByProgram(const char* text, const char* caption, int style) {
    const std::string program = FindDialogProgram(LibraryFolder());
    const auto process = program.empty() ? nullptr : DialogProcess::Start(program);
    return process && RunMessageBox(*process, text, caption, style);
}

// Keeps a SIGPIPE that this thread raises meanwhile from the host, whatever that does with signals.
// One that is pending already stays so.
class WithoutPipeSignal {
public:
    WithoutPipeSignal() {
        sigset_t pending;
        sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
        sigemptyset(&m_pipe);
        sigaddset(&m_pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &m_pipe, &m_before);
    }
    ~WithoutPipeSignal() {
        const timespec atOnce{};
        while (!m_wasPending && sigtimedwait(&m_pipe, nullptr, &atOnce) < 0 && errno == EINTR) {
        }
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    WithoutPipeSignal(const WithoutPipeSignal&) = delete;
    WithoutPipeSignal& operator=(const WithoutPipeSignal&) = delete;

private:
    bool m_wasPending = false;
    sigset_t m_pipe{};
    sigset_t m_before{};
};

// Without what a terminal might obey.
std::string OneLine(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        const char32_t code = TakeCharacter(text).value_or(kReplacementCharacter);
        AppendCharacter(IsControlCharacter(code) ? U' ' : code, line);
    }
    return line;
}

void WriteLine(const char* text, const char* caption) {
    const std::string line = OneLine(Utf8FromAnsi(caption) + ": " + Utf8FromAnsi(text)) + "\n";
    const WithoutPipeSignal quiet;
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

}  // namespace

void ShowMessageBox(const char* text, const char* caption, int style) {
    if (!ShowByProgram(text, caption, style)) WriteLine(text, caption);
}

}  // namespace platform
