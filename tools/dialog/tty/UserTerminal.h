// UserTerminal.h - the terminal in front of the user, apart from the standard streams.
#pragma once

#include <termios.h>

#include <string>

#include "tools/dialog/tty/TtyText.h"

// The controlling terminal, or the one on standard error, if the program runs in its foreground.
// While this lives it gives whole lines, edited as the user is used to, and Ctrl-C as input: it
// doesn't interrupt the host, which runs in the same group of processes. Nothing here waits. Needs
// SIGTTOU and SIGTTIN blocked, which would stop the host too.
class UserTerminal {
public:
    enum class Input { None, Line, Closed, Gone };

    // What was typed before is thrown away: it was no answer to what is asked now.
    UserTerminal();
    // The terminal is as it was, unless another has changed it meanwhile. What it didn't take of
    // what was printed is dropped.
    ~UserTerminal();
    UserTerminal(const UserTerminal&) = delete;
    UserTerminal& operator=(const UserTerminal&) = delete;

    bool IsThere() const { return m_terminal >= 0; }
    int Descriptor() const { return m_terminal; }
    const CharacterSet& Characters() const { return m_characters; }

    // UTF-8. What the terminal doesn't take now is kept: PrintRest is to be called when it takes
    // more.
    void Print(const std::string& text);
    void PrintRest();
    bool HasRest() const { return !m_unprinted.empty(); }
    // Takes what the terminal has, to be called when it has something. Line: `line` is what the
    // user typed, in UTF-8 without its end. Closed: the end of the input, or Ctrl-C. Gone: there
    // is no terminal any more.
    Input Read(std::string& line);

    // Before and after the time in which the program is stopped. TakeAgain gives false, and leaves
    // the terminal alone, if the program goes on in the background.
    void GiveBack() const;
    bool TakeAgain() const;

private:
    CharacterSet m_characters;
    int m_terminal;
    bool m_hasModes = false;
    termios m_former{};
    std::string m_typed;
    std::string m_unprinted;
};
