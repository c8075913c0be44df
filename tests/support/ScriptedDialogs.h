// ScriptedDialogs.h - the dialogs that a program opens, answered by the test.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "support/ScriptedDialog.h"

// A program that links tesmark_scripted_dialogs ahead of the library's logic has
// platform::OpenDialog from there: no window comes up, and the user is the one given here. Without
// one of these, or with no user, no dialog can be shown. A user who leaves the dialog open closes
// its window. One at a time.
class ScriptedDialogs {
public:
    using User = std::function<void(ScriptedDialog&)>;

    explicit ScriptedDialogs(User user);
    ~ScriptedDialogs();
    ScriptedDialogs(const ScriptedDialogs&) = delete;
    ScriptedDialogs& operator=(const ScriptedDialogs&) = delete;

    // Every attempt so far, as "<module> <template>".
    const std::vector<std::string>& Asked() const { return m_asked; }

private:
    friend int platform::OpenDialog(const char*, int, platform::DialogProcedure&);

    User m_user;
    std::vector<std::string> m_asked;
};
