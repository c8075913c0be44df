#include "AddressUser.h"

#include "support/windows/DialogUser.h"
#include "support/windows/ThreadHook.h"

namespace {

std::string TextOf(HWND window) {
    char text[600] = {};
    GetWindowTextA(window, text, sizeof text);
    return text;
}

// The icon stands in a label of its own, under a number that isn't told.
int StyleOf(HWND box) {
    int style = 0;
    for (HWND part = GetWindow(box, GW_CHILD); part != nullptr;
         part = GetWindow(part, GW_HWNDNEXT)) {
        const auto icon = reinterpret_cast<HICON>(SendMessageA(part, STM_GETICON, 0, 0));
        if (icon == nullptr) continue;
        if (icon == LoadIconA(nullptr, IDI_WARNING)) style = MB_ICONWARNING;
        if (icon == LoadIconA(nullptr, IDI_INFORMATION)) style = MB_ICONINFORMATION;
    }
    return style;
}

std::string TextInBox(HWND box) {
    std::string text;
    for (HWND part = GetWindow(box, GW_CHILD); part != nullptr;
         part = GetWindow(part, GW_HWNDNEXT)) {
        char kind[32] = {};
        GetClassNameA(part, kind, sizeof kind);
        if (lstrcmpiA(kind, "Static") == 0) text += TextOf(part);
    }
    return text;
}

// One after the other: a button's message comes back when all has been done about it, its box too.
void Do(HWND dialog, const std::vector<AddressUser::Act>& acts) {
    for (const AddressUser::Act& act : acts) {
        if (act.button == 0) {
            SetDlgItemTextA(dialog, TESMARK_URL_FIELD, act.text.c_str());
        } else if (act.button == AddressUser::kClose) {
            SendMessageA(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
        } else {
            SendDlgItemMessageA(dialog, act.button, BM_CLICK, 0, 0);
        }
    }
}

}  // namespace

class AddressUser::Watch {
public:
    explicit Watch(std::vector<Act> acts)
        : m_acts(std::move(acts)),
          m_user([this](HWND window) { Meet(window); }),
          m_hook(WH_CALLWNDPROC, Watched) {
        g_watch = this;
    }
    ~Watch() { g_watch = nullptr; }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    const Seen& Look() const { return m_seen; }

private:
    // A dialog or a box of the library's, about to be seen.
    void Meet(HWND window) {
        const HWND field = GetDlgItem(window, TESMARK_URL_FIELD);
        if (field == nullptr) {
            m_seen.boxes.push_back(std::to_string(StyleOf(window)) + " " + TextOf(window) + ": " +
                                   TextInBox(window));
            PostMessageA(window, WM_COMMAND, IDOK, 0);
            return;
        }
        ++m_seen.dialogs;
        m_seen.field = TextOf(field);
        Later(window, [this, window] { Do(window, m_acts); });
    }
    static LRESULT CALLBACK Watched(int code, WPARAM first, LPARAM data) {
        const auto* const sent = reinterpret_cast<const CWPSTRUCT*>(data);
        if (code == HC_ACTION && sent->message == WM_ENABLE && sent->wParam == FALSE &&
            GetDlgCtrlID(sent->hwnd) == TESMARK_URL_FIELD) {
            g_watch->m_seen.toldDisabled = IsWindowEnabled(sent->hwnd) != 0;
        }
        return CallNextHookEx(nullptr, code, first, data);
    }

    static Watch* g_watch;

    std::vector<Act> m_acts;
    Seen m_seen;
    DialogUser m_user;
    ThreadHook m_hook;
};

AddressUser::Watch* AddressUser::Watch::g_watch = nullptr;

AddressUser::AddressUser(const TemporaryPrefix&, std::vector<Act> acts)
    : m_watch(std::make_unique<Watch>(std::move(acts))) {}

AddressUser::~AddressUser() = default;

AddressUser::Seen AddressUser::Look() const { return m_watch->Look(); }
