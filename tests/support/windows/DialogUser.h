// DialogUser.h - the user of the dialogs that come up, as a program sees him: by the messages of
// their windows.
#pragma once

#include <functional>
#include <memory>

#include "platform/windows/Win32.h"

// Once for each dialog that the calling thread shows while this lives, when it is complete and
// about to be seen, calls `act` with its window. What is sent there happens at once, what is posted
// when the dialog waits. One at a time.
class DialogUser {
public:
    using Act = std::function<void(HWND dialog)>;

    explicit DialogUser(Act act);
    ~DialogUser();
    DialogUser(const DialogUser&) = delete;
    DialogUser& operator=(const DialogUser&) = delete;

private:
    class Watch;
    std::unique_ptr<Watch> m_watch;
};

// Calls `act` once out of the dialog's loop of messages, when it is visible and has been painted;
// not at all if it ends before.
void Later(HWND dialog, std::function<void()> act);

// Posts the click on a button of the dialog.
void Click(HWND dialog, int button);
