// DialogFrame.h - what all dialogs have in common: how they end, and what their end tells.
#pragma once

#include "platform/Dialog.h"

// What a dialog ends with. Any other value of OpenDialog: it could not be shown.
constexpr int kDialogCancelled = 0;
constexpr int kDialogConfirmed = 1;

// The modules that the dialogs are resources of. Seals of the online service are looked for under
// the name without the suffix, under which the library isn't delivered: that dialog is shown only
// where somebody renamed the file, and its opener lives with it.
constexpr char kDialogModule[] = "TesmarkOpt_x64";
constexpr char kOnlineSealDialogModule[] = "TesmarkOpt";

// Closing the window and Cancel end the dialog with kDialogCancelled; OK, other buttons and trees
// are each dialog's own.
class CDialogFrame : public platform::DialogProcedure {
public:
    bool OnClose(platform::DialogWindow& window) final;
    bool OnButton(platform::DialogWindow& window, int button) final;

protected:
    // OK was pressed. The dialog stays open unless it is ended here.
    virtual void OnConfirm(platform::DialogWindow& window) = 0;
    // Any button but OK and Cancel; true if something was done about it.
    virtual bool OnOtherButton(platform::DialogWindow&, int) { return false; }
};
