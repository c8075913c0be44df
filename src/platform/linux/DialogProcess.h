// DialogProcess.h - the program that shows a dialog: which one it is, and its process.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/linux/DialogConversation.h"
#include "platform/linux/dialogprogram/ProtocolLine.h"

namespace platform {

// Where the library or the program stands that this code is part of, with a separator at its end.
// Absolute, and as it was at loading, wherever the host's working folder has gone since; empty if
// that can't be found.
std::string LibraryFolder();

// The absolute path of the program that shows dialogs here: the store's value `DialogProgram`, and
// then no other, even if it names none; else, in the absolute `folder` (with a separator at its
// end), tesmark-dialog in a session with a display or tesmark-dialog-tty where standard input and
// standard error are the terminal in whose foreground the host runs. Empty if there is none, or if
// its path is relative.
std::string FindDialogProgram(const std::string& folder);

// Milliseconds.
struct DialogLimits {
    int opening = 10'000;  // all that the library waits until the window is there
    int writing = 10'000;  // with nothing taken of what is written, within the opening's time too
    int ending = 2'000;    // for the program to end by itself, and again when it has been killed
};

// The program's standard input and output are two socket pairs: so that nothing that is written to
// a program which is gone raises SIGPIPE in the host, and that an end of one stream alone is seen.
// Its standard error is the host's, or /dev/null where the host has none or has a file there that
// closes at an exec; it gets no other descriptor, and its signals are as at first.
class DialogProcess final : public DialogLink {
public:
    // Null if the program can't be started in this way, or the system gives no descriptor of its
    // process: it has been killed then.
    static std::unique_ptr<DialogProcess> Start(const std::string& program,
                                                const DialogLimits& limits = {});
    // Ends both streams, whoever else holds them, waits for the program's end, and kills it if that
    // doesn't come in time. Leaves no process behind but one that the host may not kill, of another
    // user, and the host's other children alone.
    ~DialogProcess() override;
    DialogProcess(const DialogProcess&) = delete;
    DialogProcess& operator=(const DialogProcess&) = delete;

    bool Write(const std::string& line) override;
    std::optional<std::string> Read(Patience patience) override;

private:
    explicit DialogProcess(const DialogLimits& limits)
        : m_limits(limits), m_openingLeft(limits.opening) {}

    bool ReceiveWithin(std::int64_t milliseconds);
    bool AwaitRoom();
    void Charge(std::int64_t begin);

    DialogLimits m_limits;
    std::int64_t m_openingLeft;
    bool m_isOpen = false;  // the window is there
    int m_process = -1;     // a descriptor of the process
    int m_input = -1;       // of the program
    int m_output = -1;
    LineReader m_reader{kLongestLineFromProgram};
};

}  // namespace platform
