#include "dialogs/DialogFrame.h"

#include "dialogs/Resource.h"

bool CDialogFrame::OnClose(platform::DialogWindow& window) {
    window.End(kDialogCancelled);
    return true;
}

bool CDialogFrame::OnButton(platform::DialogWindow& window, int button) {
    switch (button) {
        case TESMARK_BUTTON_OK: OnConfirm(window); return true;
        case TESMARK_BUTTON_CANCEL: window.End(kDialogCancelled); return true;
        default: return OnOtherButton(window, button);
    }
}
