#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "platform/MessageBox.h"
#include "platform/windows/Win32.h"

namespace {

// What stands in the box, read by the thread that presses its button.
struct Shown {
    std::string caption;
    std::string text;
    bool icon = false;
};

BOOL CALLBACK ReadPart(HWND window, LPARAM data) {
    auto& shown = *reinterpret_cast<Shown*>(data);
    char kind[32] = {};
    char text[256] = {};
    GetClassNameA(window, kind, sizeof kind);
    GetWindowTextA(window, text, sizeof text);
    if (std::string(kind) != "Static") return TRUE;
    const bool icon = (GetWindowLongA(window, GWL_STYLE) & SS_TYPEMASK) == SS_ICON;
    if (icon) shown.icon = SendMessageA(window, STM_GETICON, 0, 0) != 0;
    if (!icon) shown.text = text;
    return TRUE;
}

// Waits for the box of this process and answers it.
Shown Answer(const char* caption) {
    HWND box = nullptr;
    for (DWORD owner = 0; box == nullptr || owner != GetCurrentProcessId();) {
        box = FindWindowA("#32770", caption);
        if (box != nullptr) GetWindowThreadProcessId(box, &owner);
        Sleep(1);
    }
    while (!IsWindowVisible(box)) Sleep(1);
    Shown shown{caption, {}};
    EnumChildWindows(box, ReadPart, reinterpret_cast<LPARAM>(&shown));
    PostMessageA(GetDlgItem(box, IDOK), BM_CLICK, 0, 0);
    return shown;
}

TEST(MessageBoxOnWindows, TheBoxShowsTextCaptionAndTheWarningIcon) {
    Shown shown;
    std::thread user([&] { shown = Answer("电子签章"); });
    platform::ShowMessageBox("印章", "电子签章", platform::kMessageBoxWarning);
    user.join();
    EXPECT_EQ(shown.text, "印章");
    EXPECT_TRUE(shown.icon);
}

TEST(MessageBoxOnWindows, ABoxWithoutAStyleHasNoIcon) {
    Shown shown;
    std::thread user([&] { shown = Answer("电子签章"); });
    platform::ShowMessageBox("印章", "电子签章", 0);
    user.join();
    EXPECT_FALSE(shown.icon);
}

}  // namespace
