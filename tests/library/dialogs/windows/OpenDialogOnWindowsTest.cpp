#include "OpenDialogTest.h"

#include <stdexcept>

#include "dialogs/CertSealTree.h"
#include "dialogs/CertSelect.h"
#include "dialogs/OnlineSealSelect.h"
#include "dialogs/OnlineUrl.h"
#include "dialogs/PzmSealTree.h"
#include "foundation/StringFailure.h"

namespace {

constexpr int kTemplates[] = {TESMARK_DIALOG_CERT, TESMARK_DIALOG_ONLINE_SEAL,
                              TESMARK_DIALOG_ONLINE_URL, TESMARK_DIALOG_SEAL_TREE};

class OpenDialogOnWindows : public OpenDialogOnWindowsTest {
protected:
    void SetUp() override { LoadLibraryAs("TesmarkOpt_x64.dll"); }
};

TEST_F(OpenDialogOnWindows, OkEndsEveryDialogWithTheValueThatItGives) {
    for (const int id : kTemplates) {
        EXPECT_EQ(Show(id, [](HWND dialog) { Click(dialog, IDOK); }), 1) << id;
    }
    EXPECT_EQ(m_dialog.m_opened, 4);
}

TEST_F(OpenDialogOnWindows, CancelEndsEveryDialogWithZero) {
    for (const int id : kTemplates) {
        EXPECT_EQ(Show(id, [](HWND dialog) { Click(dialog, IDCANCEL); }), 0) << id;
    }
    EXPECT_EQ(m_dialog.m_opened, 4);
}

TEST_F(OpenDialogOnWindows, ClosingByTheSystemMenuEndsEveryDialogLikeCancel) {
    for (const int id : kTemplates) {
        const auto close = [](HWND dialog) { PostMessageA(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); };
        EXPECT_EQ(Show(id, close), 0) << id;
    }
    EXPECT_EQ(m_dialog.m_opened, 4);
}

TEST_F(OpenDialogOnWindows, ADialogThatLeavesClosingAloneIsCancelledByTheSystem) {
    class Careless : public platform::DialogProcedure {
    public:
        void OnOpen(platform::DialogWindow&) override {}
        bool OnButton(platform::DialogWindow& window, int button) override {
            window.End(40 + button);
            return true;
        }
    };
    Careless procedure;
    const DialogUser user([](HWND dialog) { PostMessageA(dialog, WM_CLOSE, 0, 0); });
    EXPECT_EQ(platform::OpenDialog(kDialogModule, TESMARK_DIALOG_CERT, procedure), 42);
}

TEST_F(OpenDialogOnWindows, ADialogEndsAsSoonAsItSaysSoAtItsOpening) {
    m_dialog.m_open = [](platform::DialogWindow& window) {
        window.End(7);
        window.End(8);
    };
    EXPECT_EQ(Show(TESMARK_DIALOG_CERT, [](HWND) {}), 7);
}

TEST_F(OpenDialogOnWindows, ADialogThatHasEndedHearsOfNothingMore) {
    int others = 0;
    m_dialog.m_other = [&](platform::DialogWindow&) { ++others; };
    m_dialog.m_confirm = [](platform::DialogWindow& window) {
        const HWND dialog = GetActiveWindow();  // an ended one isn't
        window.End(1);
        ASSERT_NE(dialog, nullptr);
        SendMessageA(dialog, WM_COMMAND, TESMARK_URL_TEST, 0);
        SendMessageA(dialog, WM_CLOSE, 0, 0);
    };
    EXPECT_EQ(Show(TESMARK_DIALOG_ONLINE_URL, [](HWND dialog) { Click(dialog, IDOK); }), 1);
    EXPECT_EQ(others, 0);
}

TEST_F(OpenDialogOnWindows, OtherButtonsAreTheDialogsOwnAndLeaveItOpen) {
    int others = 0;
    m_dialog.m_other = [&](platform::DialogWindow&) { ++others; };
    EXPECT_EQ(Show(TESMARK_DIALOG_ONLINE_URL,
                   [](HWND dialog) {
                       Click(dialog, TESMARK_URL_TEST);
                       Click(dialog, IDOK);
                   }),
              1);
    EXPECT_EQ(others, 1);
}

TEST_F(OpenDialogOnWindows, WhatAFieldOrAListTellsIsNoButton) {
    int others = 0;
    m_dialog.m_other = [&](platform::DialogWindow&) { ++others; };
    EXPECT_EQ(Show(TESMARK_DIALOG_ONLINE_URL,
                   [](HWND dialog) {
                       SetDlgItemTextA(dialog, TESMARK_URL_FIELD, "192.0.2.45");
                       SendDlgItemMessageA(dialog, TESMARK_URL_FIELD, EM_REPLACESEL, 0,
                                           reinterpret_cast<LPARAM>("x"));
                       Click(dialog, IDOK);
                   }),
              1);
    EXPECT_EQ(others, 0);
}

TEST_F(OpenDialogOnWindows, ADialogHasNoOwnerEvenWhereTheHostHasAWindow) {
    const HWND host = CreateWindowExA(0, "STATIC", "host", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50,
                                      nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(host, nullptr);
    HWND owner = host;
    bool enabled = false;
    Show(TESMARK_DIALOG_CERT, [&](HWND dialog) {
        owner = GetWindow(dialog, GW_OWNER);
        enabled = IsWindowEnabled(host) != 0;
        Click(dialog, IDOK);
    });
    EXPECT_EQ(owner, nullptr);
    EXPECT_TRUE(enabled);
    DestroyWindow(host);
}

TEST_F(OpenDialogOnWindows, ATemplateThatTheModuleLacksCannotBeShown) {
    EXPECT_EQ(Show(105, [](HWND dialog) { Click(dialog, IDOK); }), platform::kDialogNotShown);
    EXPECT_EQ(m_dialog.m_opened, 0);
}

TEST_F(OpenDialogOnWindows, ALibraryWithTheSuffixShowsNoDialogUnderTheNameWithoutIt) {
    const DialogUser user([](HWND dialog) { Click(dialog, IDOK); });
    EXPECT_EQ(platform::OpenDialog(kOnlineSealDialogModule, TESMARK_DIALOG_ONLINE_SEAL, m_dialog),
              platform::kDialogNotShown);
    EXPECT_EQ(m_dialog.m_opened, 0);
}

TEST_F(OpenDialogOnWindows, ADialogMayOpenAnotherAndGoesOnAfterIt) {
    TestedDialog inner;
    int innerValue = 0, selections = 0;
    inner.m_confirm = [](platform::DialogWindow& window) { window.End(5); };
    m_dialog.m_open = [](platform::DialogWindow& window) {
        window.AppendNode(TESMARK_SEAL_TREE, platform::kNoNode, "node", 0);
    };
    m_dialog.m_select = [&](platform::DialogWindow& window) {
        if (++selections > 1) return;
        innerValue = platform::OpenDialog(kDialogModule, TESMARK_DIALOG_CERT, inner);
        window.End(9);
    };
    const int value = Show(TESMARK_DIALOG_SEAL_TREE, [](HWND dialog) {
        if (GetDlgItem(dialog, TESMARK_SEAL_TREE) == nullptr) return Click(dialog, IDOK);
        const HWND tree = GetDlgItem(dialog, TESMARK_SEAL_TREE);
        constexpr UINT kGetNext = 0x110A, kSelect = 0x110B;  // TVM_GETNEXTITEM, TVM_SELECTITEM
        PostMessageA(tree, kSelect, 9, SendMessageA(tree, kGetNext, 0, 0));
    });
    EXPECT_EQ(innerValue, 5);
    EXPECT_EQ(value, 9);
}

TEST_F(OpenDialogOnWindows, AnEventOfTheOuterDialogReachesItWhileTheInnerOneIsOpen) {
    TestedDialog inner;
    HWND outer = nullptr;
    int outerButtons = 0, innerButtons = 0;
    inner.m_other = [&](platform::DialogWindow&) { ++innerButtons; };
    m_dialog.m_other = [&](platform::DialogWindow&) {
        if (++outerButtons == 1) platform::OpenDialog(kDialogModule, TESMARK_DIALOG_CERT, inner);
    };
    EXPECT_EQ(Show(TESMARK_DIALOG_ONLINE_URL,
                   [&](HWND dialog) {
                       if (outer == nullptr) {
                           outer = dialog;
                           return Click(dialog, TESMARK_URL_TEST);
                       }
                       PostMessageA(outer, WM_COMMAND, TESMARK_URL_TEST, 0);
                       Click(dialog, IDCANCEL);
                       Click(outer, IDOK);
                   }),
              1);
    EXPECT_EQ(outerButtons, 2);
    EXPECT_EQ(innerButtons, 0);
    EXPECT_EQ(inner.m_opened, 1);
}

TEST_F(OpenDialogOnWindows, WhatADialogThrowsAtAnEventEndsItAndReachesTheOpener) {
    m_dialog.m_confirm = [](platform::DialogWindow&) {
        throw StringFailure(StringFailure::kInvalidArgument);
    };
    EXPECT_THROW(Show(TESMARK_DIALOG_CERT, [](HWND dialog) { Click(dialog, IDOK); }),
                 StringFailure);
    m_dialog.m_confirm = [](platform::DialogWindow& window) { window.End(1); };
    EXPECT_EQ(Show(TESMARK_DIALOG_CERT, [](HWND dialog) { Click(dialog, IDOK); }), 1);
}

TEST_F(OpenDialogOnWindows, WhatADialogThrowsAtItsOpeningReachesTheOpener) {
    m_dialog.m_open = [](platform::DialogWindow&) { throw std::runtime_error("opening"); };
    EXPECT_THROW(Show(TESMARK_DIALOG_CERT, [](HWND dialog) { Click(dialog, IDOK); }),
                 std::runtime_error);
}

using RenamedLibraryOnWindows = OpenDialogOnWindowsTest;

TEST_F(RenamedLibraryOnWindows, ALibraryUnderAnotherNameShowsNoDialogUnderTheOld) {
    LoadLibraryAs("TesmarkOpt_x64_2.dll");
    for (const int id : kTemplates) {
        EXPECT_EQ(Show(id, [](HWND dialog) { Click(dialog, IDOK); }), platform::kDialogNotShown);
    }
    EXPECT_EQ(m_dialog.m_opened, 0);
}

TEST_F(RenamedLibraryOnWindows, NoneOfItsOpenersShowsADialog) {
    LoadLibraryAs("TesmarkOpt_x64_2.dll");
    int shown = 0;
    const DialogUser user([&](HWND dialog) {
        ++shown;
        Click(dialog, IDCANCEL);
    });
    EXPECT_EQ(ShowCertSelect(), platform::kDialogNotShown);
    EXPECT_EQ(ShowOnlineSealSelect(), platform::kDialogNotShown);
    EXPECT_EQ(ShowOnlineUrl(), platform::kDialogNotShown);
    CertSealPick picked{7, 8};
    EXPECT_EQ(ShowCertSealTree(&picked), DialogEnd::Failed);
    EXPECT_EQ(picked.certIndex, 7);
    EXPECT_EQ(picked.sealIndex, 8);
    PzmSealPick scanned;
    EXPECT_EQ(ShowPzmSealTree(&scanned), DialogEnd::Failed);
    EXPECT_EQ(shown, 0);
}

TEST_F(RenamedLibraryOnWindows, ItsOwnAddressCannotBeAskedForEither) {
    LoadLibraryAs("TesmarkOpt_x64_2.dll");
    const auto setOnlineUrl =
        reinterpret_cast<int (*)()>(platform::FindSymbol(m_library, "SetOnlineUrl"));
    ASSERT_NE(setOnlineUrl, nullptr);
    EXPECT_EQ(setOnlineUrl(), -2);
}

TEST_F(RenamedLibraryOnWindows, ALibraryWithoutTheSuffixShowsTheDialogOfTheOnlineSeals) {
    LoadLibraryAs("TesmarkOpt.dll");
    const DialogUser user([](HWND dialog) { Click(dialog, IDOK); });
    EXPECT_EQ(platform::OpenDialog(kOnlineSealDialogModule, TESMARK_DIALOG_ONLINE_SEAL, m_dialog),
              1);
}

}  // namespace
