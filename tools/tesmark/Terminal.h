// Terminal.h - what the program asks of the terminal and of signals.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

bool StandardErrorIsTerminal();
bool StandardInputIsTerminal();

// Writes `prompt` to the terminal and reads one line that it doesn't show. None without a terminal,
// at its end, or after an interrupt; the terminal shows what is typed again in every case.
std::optional<std::string> ReadHidden(const std::string& prompt);

// While it lives, an interrupt (SIGINT, SIGTERM, SIGHUP; Ctrl-C, Ctrl-Break, the console's end, a
// logoff or shutdown on Windows) no longer ends the process: work that has
// an output half written goes on to where it can stop cleanly. One at a time.
class InterruptGuard {
public:
    InterruptGuard();
    // What was ignored before stays ignored; what came meanwhile isn't raised anew.
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

    static bool Interrupted();
};

// One line of ASCII on standard error while long work runs, gone at the end. Nothing for an empty
// text, or where standard error is no terminal.
class Progress {
public:
    explicit Progress(const std::string& text);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    std::size_t m_width;  // 0: nothing is shown
};
