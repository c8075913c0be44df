// The dialogs with a list, in windows of the system's.
#include <gmock/gmock.h>

#include <cstdlib>

#include "Controls.h"
#include "DialogLists.h"
#include "OpenDialogTest.h"
#include "dialogs/CertSelect.h"
#include "dialogs/OnlineSealSelect.h"

namespace {

using testing::ElementsAre;

class ListsOnWindows : public OpenDialogOnWindowsTest, protected DialogLists {
protected:
    ListsOnWindows() {
        g_dialogCertLabel = "证书乙||cert-2&&&a label||cert-1&&&";
        g_onlineSealNames = {{"公章", "no-7"}, {"a seal", "no-3"}};
        g_onlineSealPick = "earlier";
    }
};

int g_failures;

void CountFailure(const wchar_t*, const wchar_t*, const wchar_t*, unsigned, uintptr_t) {
    ++g_failures;
}

// The user types a text that is no certificate, confirms, and cancels if the dialog is still there.
int TypeAndConfirm() {
    const DialogUser user([](HWND dialog) {
        TypeIntoList(dialog, TESMARK_CERT_LIST, "x");
        Click(dialog, IDOK);
        Later(dialog, [dialog] { Click(dialog, IDCANCEL); });
    });
    g_dialogCertLabel = "label||cert-1&&&";
    return ShowCertSelect();
}

TEST_F(ListsOnWindows, ACertificateIsPicked) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    std::vector<std::string> rows;
    LRESULT row = -1;
    const DialogUser user([&](HWND dialog) {
        rows = RowsOf(dialog, TESMARK_CERT_LIST);
        row = SendDlgItemMessageA(dialog, TESMARK_CERT_LIST, CB_GETCURSEL, 0, 0);
        SendDlgItemMessageA(dialog, TESMARK_CERT_LIST, CB_SETCURSEL, 2, 0);
        Click(dialog, IDOK);
    });
    EXPECT_EQ(ShowCertSelect(), kDialogConfirmed);
    EXPECT_THAT(rows, ElementsAre("-----请选择-----", "证书乙", "a label"));
    EXPECT_EQ(row, 0);
    EXPECT_EQ(g_pickedCertLabel, "a label");
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
}

TEST_F(ListsOnWindows, OkAtOnceKeepsTheDialogOpenAndTheCloseBoxEndsItLikeCancel) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    bool open = false;
    const DialogUser user([&](HWND dialog) {
        Click(dialog, IDOK);
        Later(dialog, [&open, dialog] {
            open = IsWindowEnabled(dialog) != 0;
            PostMessageA(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
        });
    });
    EXPECT_EQ(ShowCertSelect(), kDialogCancelled);
    EXPECT_TRUE(open);
    EXPECT_TRUE(g_currentCertId.Empty());
}

TEST_F(ListsOnWindows, CancelPicksNothing) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    const DialogUser user([](HWND dialog) {
        SendDlgItemMessageA(dialog, TESMARK_CERT_LIST, CB_SETCURSEL, 1, 0);
        Click(dialog, IDCANCEL);
    });
    EXPECT_EQ(ShowCertSelect(), kDialogCancelled);
    EXPECT_TRUE(g_currentCertId.Empty());
}

TEST_F(ListsOnWindows, ALongLabelStandsInTheListInFull) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    const std::string label(300, 'x');
    g_dialogCertLabel = label + "||cert-1&&&";
    std::vector<std::string> rows;
    const DialogUser user([&](HWND dialog) {
        rows = RowsOf(dialog, TESMARK_CERT_LIST);
        Click(dialog, IDCANCEL);
    });
    ShowCertSelect();
    EXPECT_THAT(rows, ElementsAre("-----请选择-----", label));
}

TEST_F(ListsOnWindows, AnOnlineSealIsPickedOutOfALibraryWithoutTheSuffix) {
    LoadLibraryAs("TesmarkOpt.dll");
    std::vector<std::string> rows;
    const DialogUser user([&](HWND dialog) {
        rows = RowsOf(dialog, TESMARK_ONLINE_SEAL_LIST);
        SendDlgItemMessageA(dialog, TESMARK_ONLINE_SEAL_LIST, CB_SETCURSEL, 1, 0);
        Click(dialog, IDOK);
    });
    EXPECT_EQ(ShowOnlineSealSelect(), kDialogConfirmed);
    EXPECT_THAT(rows, ElementsAre("-----请选择-----", "公章", "a seal"));
    EXPECT_EQ(g_onlineSealPick, "no-7");
}

TEST_F(ListsOnWindows, UnderTheNameWithTheSuffixOnlineSealsCannotBeShownAndTheNumberStays) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    EXPECT_EQ(ShowOnlineSealSelect(), platform::kDialogNotShown);
    EXPECT_EQ(g_onlineSealPick, "earlier");
}

TEST_F(ListsOnWindows, ATextThatIsNoRowGoesToTheHandlerOfTheHostAndTheDialogStaysOpen) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    g_failures = 0;
    const auto before = _set_invalid_parameter_handler(CountFailure);
    EXPECT_EQ(TypeAndConfirm(), kDialogCancelled);
    _set_invalid_parameter_handler(before);
    EXPECT_EQ(g_failures, 1);
    EXPECT_TRUE(g_currentCertId.Empty());
}

TEST(FreeTextOnWindows, ATextThatIsNoRowEndsTheProcessOfAHostWithoutAHandler) {
    constexpr auto kInvalidRunTimeParameter = static_cast<int>(0xC0000417);
    EXPECT_EXIT(
        {
            _set_invalid_parameter_handler(nullptr);
            platform::LoadModule(LIBRARY_FILE);
            TypeAndConfirm();
        },
        testing::ExitedWithCode(kInvalidRunTimeParameter), "");
}

}  // namespace
