#include "platform/Dialog.h"

#include <exception>
#include <optional>
#include <utility>

#include "platform/Module.h"
#include "platform/windows/NativeDialog.h"
// After the system's own header.
#include <commctrl.h>

namespace platform {

namespace {

// One dialog from its first event to its end.
class Conversation {
public:
    explicit Conversation(DialogProcedure& procedure) : m_procedure(procedure) {}

    // What is thrown stops here: the system's own functions stand between an event and OpenDialog.
    bool Tell(HWND window, UINT message, WPARAM first, LPARAM second) {
        if (!m_dialog) m_dialog.emplace(window);
        if (m_dialog->HasEnded()) return false;
        try {
            return Pass(message, first, second);
        } catch (...) {
            m_failure = std::current_exception();
            m_dialog->End(kDialogNotShown);
            return true;
        }
    }

    int Result(INT_PTR value) const {
        if (m_failure) std::rethrow_exception(m_failure);
        return m_dialog ? static_cast<int>(value) : kDialogNotShown;
    }

private:
    bool Pass(UINT message, WPARAM first, LPARAM second) {
        switch (message) {
            case WM_INITDIALOG: m_procedure.OnOpen(*m_dialog); return true;
            case WM_CLOSE: return m_procedure.OnClose(*m_dialog);
            case WM_COMMAND:
                return HIWORD(first) == BN_CLICKED &&
                       m_procedure.OnButton(*m_dialog, LOWORD(first));
            case WM_NOTIFY: return PassNotification(*reinterpret_cast<const NMHDR*>(second));
            default: return false;
        }
    }
    bool PassNotification(const NMHDR& notification) {
        return notification.code == TVN_SELCHANGEDA &&
               m_procedure.OnNodeSelected(*m_dialog, static_cast<int>(notification.idFrom));
    }

    DialogProcedure& m_procedure;
    std::optional<NativeDialog> m_dialog;
    std::exception_ptr m_failure;
};

// The dialog's argument is 0, so what belongs to the window that is being made is handed over here
// and stands with the window from then on: another dialog may open meanwhile.
Conversation* g_opening = nullptr;

INT_PTR CALLBACK Receive(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(window, DWLP_USER,
                          reinterpret_cast<LONG_PTR>(std::exchange(g_opening, nullptr)));
    }
    auto* const own = reinterpret_cast<Conversation*>(GetWindowLongPtrA(window, DWLP_USER));
    return own != nullptr && own->Tell(window, message, first, second);
}

// The class of the tree is the common controls'; a dialog with a control of an unknown class isn't
// shown.
void RegisterTree() {
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_TREEVIEW_CLASSES};
    InitCommonControlsEx(&classes);
}

}  // namespace

int OpenDialog(const char* moduleStem, int templateId, DialogProcedure& procedure) {
    const HMODULE module = GetModuleHandleA(ModuleFileName(moduleStem).c_str());
    if (module == nullptr) return kDialogNotShown;
    RegisterTree();
    Conversation conversation(procedure);
    g_opening = &conversation;
    const INT_PTR value =
        DialogBoxParamA(module, MAKEINTRESOURCEA(templateId), nullptr, Receive, 0);
    g_opening = nullptr;
    return conversation.Result(value);
}

}  // namespace platform
