#include <vector>

#include "dialogs/Resource.h"
#include "road/RoadTest.h"
#include "support/windows/DialogUser.h"
// After the system's own header.
#include <commctrl.h>

namespace {

constexpr int kStampButton = 100;
constexpr UINT_PTR kNestedTimer = 1;

// A host's main window with one button, which asks for the picture of a seal as a host does that
// knows of no dialog. While one is open a timer of the host asks again, once.
class HostWindow {
public:
    HostWindow() {
        WNDCLASSA kind = {};
        kind.lpfnWndProc = Handle;
        kind.hInstance = GetModuleHandleA(nullptr);
        kind.lpszClassName = kClass;
        RegisterClassA(&kind);
        m_window = CreateWindowExA(0, kClass, "host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 400,
                                   300, nullptr, nullptr, kind.hInstance, nullptr);
        m_button =
            CreateWindowExA(0, "BUTTON", "stamp", WS_CHILD | WS_VISIBLE, 10, 10, 80, 24, m_window,
                            reinterpret_cast<HMENU>(kStampButton), kind.hInstance, nullptr);
        SetWindowLongPtrA(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    ~HostWindow() {
        DestroyWindow(m_window);
        UnregisterClassA(kClass, GetModuleHandleA(nullptr));
    }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    // The click goes through the host's own message loop.
    Handed Press() {
        const std::size_t before = m_handed.size();
        PostMessageA(m_button, BM_CLICK, 0, 0);
        MSG message;
        while (m_handed.size() == before && GetMessageA(&message, nullptr, 0, 0) > 0) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
        return m_handed.back();
    }
    void AskAgainInTheLoop() { SetTimer(m_window, kNestedTimer, 1, nullptr); }

    HWND Window() const { return m_window; }
    const std::vector<int>& Nested() const { return m_nested; }

private:
    static constexpr char kClass[] = "TesmarkTestHost";

    static Handed Picture() {
        return InTwoSteps([](unsigned char* out, int* length) { return GetSealInfo(out, length); });
    }
    void Ask() { m_handed.push_back(Picture()); }
    void AskNested() {
        KillTimer(m_window, kNestedTimer);
        m_nested.push_back(Picture().code);
    }
    static LRESULT CALLBACK Handle(HWND window, UINT message, WPARAM word, LPARAM data) {
        auto* host = reinterpret_cast<HostWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
        if (message == WM_COMMAND && LOWORD(word) == kStampButton) return host->Ask(), 0;
        if (message == WM_TIMER && word == kNestedTimer) return host->AskNested(), 0;
        return DefWindowProcA(window, message, word, data);
    }

    HWND m_window = nullptr;
    HWND m_button = nullptr;
    std::vector<Handed> m_handed;
    std::vector<int> m_nested;
};

HTREEITEM ChildOf(HWND tree, HTREEITEM node) { return TreeView_GetChild(tree, node); }

// The first seal of the first certificate.
void PickFirstSeal(HWND dialog) {
    const HWND tree = GetDlgItem(dialog, TESMARK_SEAL_TREE);
    TreeView_SelectItem(tree, ChildOf(tree, ChildOf(tree, TreeView_GetRoot(tree))));
    Click(dialog, TESMARK_BUTTON_OK);
}

int OpenDialogs() {
    int count = 0;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM counter) -> BOOL {
            char kind[32] = {};
            GetClassNameA(window, kind, sizeof kind);
            if (std::string(kind) == "#32770") ++*reinterpret_cast<int*>(counter);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    return count;
}

DWORD Handles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

// Two keys with a seal each, so that there is a choice.
class WindowedHostOnWindows : public RoadTest {
protected:
    WindowedHostOnWindows() {
        for (const char* name : {"first", "second"}) {
            const std::string certId = MakeKey(KeyKind::kRsa, name);
            AddEsSeal(certId);
            EXPECT_EQ(Login(certId), 0);
        }
        ClearSelectKeyID();
    }
    // A new selection, with what the user does in the dialog.
    Handed Stamp(DialogUser::Act act) {
        ClearSelectKeyID();
        const DialogUser user(std::move(act));
        return m_host.Press();
    }

    HostWindow m_host;
};

TEST_F(WindowedHostOnWindows, PicksCancelsAndPicksAgain) {
    const Handed first = Stamp(PickFirstSeal);
    ASSERT_EQ(first.code, 0);
    EXPECT_EQ(first.bytes, SealPicture());
    EXPECT_EQ(Stamp([](HWND dialog) { Click(dialog, TESMARK_BUTTON_CANCEL); }).code, -3004);
    const Handed again = Stamp(PickFirstSeal);
    ASSERT_EQ(again.code, 0);
    EXPECT_EQ(again.bytes, SealPicture());
    EXPECT_EQ(OpenDialogs(), 0);
    EXPECT_TRUE(IsWindowEnabled(m_host.Window()));
}

TEST_F(WindowedHostOnWindows, ATimerOfTheHostThatAsksInTheLoopIsToldThatItIsBusy) {
    const Handed picture = Stamp([&](HWND dialog) {
        m_host.AskAgainInTheLoop();
        // The dialog ends only when the timer has been heard.
        SetTimer(dialog, 1, 50, [](HWND window, UINT, UINT_PTR timer, DWORD) {
            KillTimer(window, timer);
            PickFirstSeal(window);
        });
    });
    EXPECT_EQ(m_host.Nested(), std::vector<int>{-3006});
    EXPECT_EQ(picture.code, 0);
    EXPECT_EQ(picture.bytes, SealPicture());
}

TEST_F(WindowedHostOnWindows, DialogsLeaveNoHandlesBehind) {
    for (int i = 0; i < 5; ++i) ASSERT_EQ(Stamp(PickFirstSeal).code, 0);
    const DWORD before = Handles();
    for (int i = 0; i < 20; ++i) ASSERT_EQ(Stamp(PickFirstSeal).code, 0);
    EXPECT_LE(Handles(), before + 2);
}

}  // namespace
