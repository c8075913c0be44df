// Dialog.h - shows a modal dialog, and tells its logic what the user does.
#pragma once

#include "platform/DialogWindow.h"

namespace platform {

// What a dialog does at each event; true if it did something about it. An event that it leaves
// alone is handled as the system handles it by default: closing then presses Cancel (2). Whatever
// it throws ends the dialog and passes through OpenDialog.
class DialogProcedure {
public:
    virtual ~DialogProcedure() = default;

    // The dialog has its controls and isn't visible yet.
    virtual void OnOpen(DialogWindow& window) = 0;
    // The user wants the window closed, by its system menu or its close box.
    virtual bool OnClose(DialogWindow&) { return false; }
    // A button was pressed. The return key presses the default button, the escape key Cancel.
    virtual bool OnButton(DialogWindow&, int) { return false; }
    // Another node of the tree is now selected, or none.
    virtual bool OnNodeSelected(DialogWindow&, int) { return false; }
};

constexpr int kDialogNotShown = -1;

// Shows the dialog `templateId` of the loaded module with the name `moduleStem` ("TesmarkOpt" gives
// TesmarkOpt.dll or libTesmarkOpt.so), without an owner, and blocks until it has ended. On Linux
// the module need only be loaded: the template, and the program that shows it, are those of the
// library that this code is part of. Returns what the dialog ended with. kDialogNotShown: no such
// module is loaded, there is no such template, or there is nothing to show dialogs with;
// `procedure` then hears of nothing, or, where a program shows dialogs and fails after it has made
// this one and before it is visible, of its opening alone.
//
// Where that program fails later, the dialog is told to close as if by its user. If it doesn't end
// even then, the result is kDialogNotShown.
//
// To be called by one thread at a time. From within an event a second dialog can be opened: that
// event goes on when it has ended. Until then the first dialog still hears of others on Windows;
// elsewhere they wait.
int OpenDialog(const char* moduleStem, int templateId, DialogProcedure& procedure);

}  // namespace platform
