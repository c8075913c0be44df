#include "support/windows/DialogUser.h"

#include <map>
#include <set>
#include <string>
#include <utility>

#include "support/windows/ThreadHook.h"

namespace {

bool IsDialog(HWND window) {
    char kind[32] = {};
    GetClassNameA(window, kind, sizeof kind);
    return std::string(kind) == "#32770";
}

struct Waiting {
    HWND dialog;
    std::function<void()> act;
};

std::map<UINT_PTR, Waiting> g_waiting;

void CALLBACK Due(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    const auto found = g_waiting.extract(timer);
    if (!found || !IsWindow(found.mapped().dialog)) return;
    ShowWindow(found.mapped().dialog, SW_SHOW);
    RedrawWindow(found.mapped().dialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    found.mapped().act();
}

}  // namespace

class DialogUser::Watch {
public:
    explicit Watch(Act act) : m_act(std::move(act)), m_hook(WH_CBT, Watched) { g_watch = this; }
    ~Watch() { g_watch = nullptr; }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

private:
    static LRESULT CALLBACK Watched(int code, WPARAM window, LPARAM data) {
        const HWND dialog = reinterpret_cast<HWND>(window);
        if (code == HCBT_ACTIVATE && IsDialog(dialog) && g_watch->m_seen.insert(dialog).second) {
            g_watch->m_act(dialog);
        }
        if (code == HCBT_DESTROYWND) g_watch->m_seen.erase(dialog);
        return CallNextHookEx(nullptr, code, window, data);
    }

    static Watch* g_watch;

    Act m_act;
    std::set<HWND> m_seen;
    ThreadHook m_hook;
};

DialogUser::Watch* DialogUser::Watch::g_watch = nullptr;

DialogUser::DialogUser(Act act) : m_watch(std::make_unique<Watch>(std::move(act))) {}

DialogUser::~DialogUser() = default;

void Later(HWND dialog, std::function<void()> act) {
    g_waiting[SetTimer(nullptr, 0, USER_TIMER_MINIMUM, Due)] = {dialog, std::move(act)};
}

void Click(HWND dialog, int button) { PostMessageA(GetDlgItem(dialog, button), BM_CLICK, 0, 0); }
