#include "support/ShownBoxes.h"

#include "platform/CodePage.h"
#include "support/windows/ThreadHook.h"

namespace {

std::string* g_shown;

std::string TextOf(HWND window) {
    char text[512] = {};
    GetWindowTextA(window, text, sizeof text);
    return text;
}

BOOL CALLBACK AppendText(HWND part, LPARAM) {
    char kind[32] = {};
    GetClassNameA(part, kind, sizeof kind);
    if (std::string(kind) == "Static") *g_shown += " " + TextOf(part);
    return TRUE;
}

bool IsBox(HWND window) {
    char kind[32] = {};
    GetClassNameA(window, kind, sizeof kind);
    return std::string(kind) == "#32770";
}

// A box is complete when it becomes the active window, and has not yet waited for anything.
LRESULT CALLBACK Watched(int code, WPARAM window, LPARAM data) {
    const HWND box = reinterpret_cast<HWND>(window);
    if (code == HCBT_ACTIVATE && IsBox(box)) {
        *g_shown += TextOf(box);
        EnumChildWindows(box, AppendText, 0);
        *g_shown += "\n";
        PostMessageA(box, WM_COMMAND, IDOK, 0);
    }
    return CallNextHookEx(nullptr, code, window, data);
}

}  // namespace

class ShownBoxes::Watch {
public:
    Watch() : m_hook(WH_CBT, Watched) { g_shown = &m_shown; }
    ~Watch() { g_shown = nullptr; }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    const std::string& Shown() const { return m_shown; }

private:
    ThreadHook m_hook;
    std::string m_shown;
};

ShownBoxes::ShownBoxes() : m_watch(std::make_unique<Watch>()) {}

ShownBoxes::~ShownBoxes() = default;

std::string ShownBoxes::Take() { return platform::Utf8FromAnsi(m_watch->Shown()); }
