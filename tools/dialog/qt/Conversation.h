// Conversation.h - the program's pipes to the library, beside the windows' own events.
#pragma once

#include <QSocketNotifier>
#include <memory>

#include "tools/dialog/DialogTalk.h"
#include "tools/dialog/qt/WindowFrontEnd.h"

// Goes on in the application's event loop until the library has ended the dialog, the user has
// answered the message box, or the library is gone or says what it may not.
class Conversation {
public:
    // `ended` is called once, with the program's exit code; what is on the screen has to go then.
    // The descriptors stay the caller's.
    Conversation(int input, int output, std::function<void(int)> ended);
    ~Conversation();
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

private:
    void Read();
    void Send(const std::string& lines) const;
    void End(int exitCode);

    int m_input;
    int m_output;
    std::function<void(int)> m_ended;
    WindowFrontEnd m_frontEnd;
    DialogTalk m_talk;
    QSocketNotifier m_notifier;
    int m_host;  // told when the host's process has ended
    std::unique_ptr<QSocketNotifier> m_hostsEnd;
};
