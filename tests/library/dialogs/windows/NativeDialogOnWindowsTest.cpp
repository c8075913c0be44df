#include "platform/windows/NativeDialog.h"

#include <gmock/gmock.h>

#include "Controls.h"
#include "OpenDialogTest.h"
#include "dialogs/CenterDialog.h"

namespace {

using platform::DialogWindow;
using platform::kNoNode;
using platform::NativeDialog;
using platform::Rectangle;
using testing::ElementsAre;
using testing::Ne;

Rectangle BoundsOf(HWND window) {
    RECT bounds{};
    GetWindowRect(window, &bounds);
    return {bounds.left, bounds.top, bounds.right, bounds.bottom};
}

class NativeDialogOnWindows : public OpenDialogOnWindowsTest {
protected:
    void SetUp() override { LoadLibraryAs("TesmarkOpt_x64.dll"); }
};

TEST_F(NativeDialogOnWindows, RowsStandInTheOrderOfTheirMakingThoughTheListSorts) {
    m_dialog.m_open = [](DialogWindow& window) {
        for (const char* row : {"-----请选择-----", "b", "印章", "a"}) {
            window.AppendRow(TESMARK_CERT_LIST, row);
        }
        window.SelectRow(TESMARK_CERT_LIST, 0);
        EXPECT_EQ(window.SelectedRow(TESMARK_CERT_LIST), 0);
    };
    std::vector<std::string> rows;
    Show(TESMARK_DIALOG_CERT, [&](HWND dialog) {
        rows = RowsOf(dialog, TESMARK_CERT_LIST);
        Click(dialog, IDOK);
    });
    EXPECT_THAT(rows, ElementsAre("-----请选择-----", "b", "印章", "a"));
}

TEST_F(NativeDialogOnWindows, TheRowThatTheUserPicksIsTheSelectedOne) {
    int row = 0;
    m_dialog.m_open = [](DialogWindow& window) {
        EXPECT_EQ(window.SelectedRow(TESMARK_ONLINE_SEAL_LIST), -1);
        for (const char* text : {"none", "one", "two"}) {
            window.AppendRow(TESMARK_ONLINE_SEAL_LIST, text);
        }
    };
    m_dialog.m_confirm = [&](DialogWindow& window) {
        row = window.SelectedRow(TESMARK_ONLINE_SEAL_LIST);
        window.End(1);
    };
    Show(TESMARK_DIALOG_ONLINE_SEAL, [](HWND dialog) {
        SendDlgItemMessageA(dialog, TESMARK_ONLINE_SEAL_LIST, CB_SETCURSEL, 2, 0);
        Click(dialog, IDOK);
    });
    EXPECT_EQ(row, 2);
}

TEST_F(NativeDialogOnWindows, ATextThatIsNoRowSelectsNone) {
    int row = 7;
    m_dialog.m_open = [](DialogWindow& window) {
        window.AppendRow(TESMARK_CERT_LIST, "one");
        window.SelectRow(TESMARK_CERT_LIST, 0);
    };
    m_dialog.m_confirm = [&](DialogWindow& window) {
        row = window.SelectedRow(TESMARK_CERT_LIST);
        window.End(1);
    };
    Show(TESMARK_DIALOG_CERT, [](HWND dialog) {
        const HWND field = GetWindow(GetDlgItem(dialog, TESMARK_CERT_LIST), GW_CHILD);
        SetFocus(field);
        SendMessageA(field, EM_SETSEL, 0, -1);
        SendMessageA(field, WM_CHAR, 'x', 0);
        Click(dialog, IDOK);
    });
    EXPECT_EQ(row, -1);
}

TEST_F(NativeDialogOnWindows, ALabelOfAnyLengthStandsInTheListInFull) {
    const std::string label(300, 'x');
    LRESULT length = 0;
    m_dialog.m_open = [&](DialogWindow& window) { window.AppendRow(TESMARK_CERT_LIST, label); };
    Show(TESMARK_DIALOG_CERT, [&](HWND dialog) {
        length = SendDlgItemMessageA(dialog, TESMARK_CERT_LIST, CB_GETLBTEXTLEN, 0, 0);
        Click(dialog, IDOK);
    });
    EXPECT_EQ(length, 300);
}

TEST_F(NativeDialogOnWindows, AFieldGivesWhatTheUserTypedUpToTheCapacity) {
    std::string whole, cut, none;
    m_dialog.m_open = [](DialogWindow& window) {
        window.SetText(TESMARK_URL_FIELD, "192.0.2.45/印章");
        EXPECT_EQ(window.Text(TESMARK_URL_FIELD, 512), "192.0.2.45/印章");
    };
    m_dialog.m_confirm = [&](DialogWindow& window) {
        whole = window.Text(TESMARK_URL_FIELD, 512);
        cut = window.Text(TESMARK_URL_FIELD, 4);
        none = window.Text(TESMARK_URL_FIELD, 0);
        window.End(1);
    };
    Show(TESMARK_DIALOG_ONLINE_URL, [](HWND dialog) {
        SetDlgItemTextA(dialog, TESMARK_URL_FIELD, "example.org");
        Click(dialog, IDOK);
    });
    EXPECT_EQ(whole, "example.org");
    EXPECT_EQ(cut, "exa");
    EXPECT_EQ(none, "");
}

TEST_F(NativeDialogOnWindows, AFieldThatIsToldThatItIsDisabledStaysUsable) {
    m_dialog.m_open = [](DialogWindow& window) { window.TellDisabled(TESMARK_URL_FIELD); };
    bool enabled = false;
    Show(TESMARK_DIALOG_ONLINE_URL, [&](HWND dialog) {
        enabled = IsWindowEnabled(GetDlgItem(dialog, TESMARK_URL_FIELD)) != 0;
        Click(dialog, IDOK);
    });
    EXPECT_TRUE(enabled);
}

TEST_F(NativeDialogOnWindows, AControlThatTheDialogLacksGivesNothing) {
    m_dialog.m_open = [](DialogWindow& window) {
        window.AppendRow(TESMARK_ONLINE_SEAL_LIST, "row");
        window.SetText(TESMARK_URL_FIELD, "text");
        window.Fill(TESMARK_SEAL_PREVIEW, 0);
        EXPECT_EQ(window.SelectedRow(TESMARK_ONLINE_SEAL_LIST), -1);
        EXPECT_EQ(window.Text(TESMARK_URL_FIELD, 512), "");
        EXPECT_EQ(window.AppendNode(TESMARK_SEAL_TREE, kNoNode, "node", 1), kNoNode);
        EXPECT_EQ(window.SelectedNode(TESMARK_SEAL_TREE), kNoNode);
        EXPECT_EQ(window.ClientArea(TESMARK_SEAL_PREVIEW), Rectangle{});
    };
    EXPECT_EQ(Show(TESMARK_DIALOG_CERT, [](HWND dialog) { Click(dialog, IDOK); }), 1);
}

std::string TextOf(HWND dialog, int control) {
    char text[64] = {};
    GetDlgItemTextA(dialog, control, text, sizeof text);
    return text;
}

TEST_F(NativeDialogOnWindows, AControlOfAnotherKindThanATextKeepsItsOwn) {
    constexpr int kNeverSpokenOf = -1;
    m_dialog.m_open = [](DialogWindow& window) {
        for (const int control : {TESMARK_BUTTON_OK, TESMARK_URL_TEST, kNeverSpokenOf}) {
            window.SetText(control, "text");
            EXPECT_EQ(window.Text(control, 64), "") << control;
        }
    };
    std::string ok, test, first;
    Show(TESMARK_DIALOG_ONLINE_URL, [&](HWND dialog) {
        ok = TextOf(dialog, TESMARK_BUTTON_OK);
        test = TextOf(dialog, TESMARK_URL_TEST);
        first = TextOf(dialog, kNeverSpokenOf);
        Click(dialog, IDOK);
    });
    EXPECT_EQ(ok, "确定");
    EXPECT_EQ(test, "测试连接");
    EXPECT_EQ(first, "URL地址：");
}

TEST_F(NativeDialogOnWindows, AListHasRowsAndNoText) {
    m_dialog.m_open = [](DialogWindow& window) {
        window.AppendRow(TESMARK_CERT_LIST, "one");
        window.SelectRow(TESMARK_CERT_LIST, 0);
        window.SetText(TESMARK_CERT_LIST, "text");
        EXPECT_EQ(window.Text(TESMARK_CERT_LIST, 64), "");
        EXPECT_EQ(window.SelectedRow(TESMARK_CERT_LIST), 0);
        EXPECT_EQ(window.ClientArea(TESMARK_CERT_LIST), Rectangle{});
    };
    std::string text;
    Show(TESMARK_DIALOG_CERT, [&](HWND dialog) {
        text = TextOf(dialog, TESMARK_CERT_LIST);
        Click(dialog, IDOK);
    });
    EXPECT_EQ(text, "one");
}

TEST_F(NativeDialogOnWindows, OnlyAListHasRowsAndOnlyATreeNodes) {
    m_dialog.m_open = [](DialogWindow& window) {
        const auto node = window.AppendNode(TESMARK_SEAL_TREE, kNoNode, "node", 1);
        for (const int control : {TESMARK_BUTTON_OK, TESMARK_SEAL_PREVIEW, TESMARK_SEAL_TREE}) {
            window.AppendRow(control, "row");
            window.SelectRow(control, 0);
            EXPECT_EQ(window.SelectedRow(control), -1) << control;
        }
        for (const int control : {TESMARK_BUTTON_OK, TESMARK_SEAL_PREVIEW}) {
            EXPECT_EQ(window.AppendNode(control, kNoNode, "node", 1), kNoNode) << control;
            EXPECT_EQ(window.SelectedNode(control), kNoNode) << control;
            EXPECT_EQ(window.NodeData(control, node), 0) << control;
        }
        EXPECT_EQ(window.NodeData(TESMARK_SEAL_TREE, node), 1);
    };
    EXPECT_EQ(Show(TESMARK_DIALOG_SEAL_TREE, [](HWND dialog) { Click(dialog, IDOK); }), 1);
}

TEST_F(NativeDialogOnWindows, NothingIsPaintedOnAControlOfAnotherKind) {
    constexpr COLORREF kPaint = RGB(255, 0, 128);
    std::vector<COLORREF> seen;
    m_dialog.m_other = [&](DialogWindow& window) {
        const HWND dialog = GetActiveWindow();
        ShowWindow(dialog, SW_SHOW);
        UpdateWindow(dialog);
        for (const int control : {TESMARK_SEAL_TREE, TESMARK_BUTTON_OK}) {
            window.Fill(control, 0xFF0080);
            window.Draw(control, {1, 1, {0xFF0080}}, {0, 0, 20, 10});
            EXPECT_EQ(window.ClientArea(control), Rectangle{}) << control;
            const HDC surface = GetDC(GetDlgItem(dialog, control));
            seen.push_back(GetPixel(surface, 10, 5));
            ReleaseDC(GetDlgItem(dialog, control), surface);
        }
    };
    constexpr int kAnyOther = 77;
    Show(TESMARK_DIALOG_SEAL_TREE, [](HWND dialog) {
        PostMessageA(dialog, WM_COMMAND, kAnyOther, 0);
        Click(dialog, IDOK);
    });
    EXPECT_THAT(seen, ElementsAre(Ne(kPaint), Ne(kPaint)));
}

// Two certificates with the same text, the first with two seals.
platform::TreeNode FillTree(DialogWindow& window) {
    const auto root = window.AppendNode(TESMARK_SEAL_TREE, kNoNode, "请选择印章", 0);
    const auto first = window.AppendNode(TESMARK_SEAL_TREE, root, "证书：甲", 10);
    window.AppendNode(TESMARK_SEAL_TREE, first, "seal", 11);
    window.AppendNode(TESMARK_SEAL_TREE, first, "a seal", 12);
    window.AppendNode(TESMARK_SEAL_TREE, root, "证书：甲", 20);
    window.ExpandNode(TESMARK_SEAL_TREE, first);
    window.ExpandNode(TESMARK_SEAL_TREE, root);
    return first;
}

TEST_F(NativeDialogOnWindows, NodesStandBelowTheirParentsInTheOrderOfTheirMaking) {
    m_dialog.m_open = [](DialogWindow& window) { FillTree(window); };
    std::vector<std::string> texts;
    bool expanded = false;
    Show(TESMARK_DIALOG_SEAL_TREE, [&](HWND dialog) {
        const Tree tree(dialog);
        const LRESULT root = tree.Next(TVGN_ROOT);
        const LRESULT first = tree.Next(TVGN_CHILD, root);
        const LRESULT seal = tree.Next(TVGN_CHILD, first);
        for (const LRESULT node :
             {root, first, seal, tree.Next(TVGN_NEXT, seal), tree.Next(TVGN_NEXT, first)}) {
            texts.push_back(tree.Text(node));
        }
        expanded = tree.IsExpanded(root) && tree.IsExpanded(first);
        Click(dialog, IDOK);
    });
    EXPECT_THAT(texts, ElementsAre("请选择印章", "证书：甲", "seal", "a seal", "证书：甲"));
    EXPECT_TRUE(expanded);
}

TEST_F(NativeDialogOnWindows, TheDataOfTheNodeThatTheUserSelectsTellsItApart) {
    std::vector<std::intptr_t> selected;
    m_dialog.m_open = [](DialogWindow& window) {
        FillTree(window);
        EXPECT_EQ(window.SelectedNode(TESMARK_SEAL_TREE), kNoNode);
    };
    m_dialog.m_select = [&](DialogWindow& window) {
        selected.push_back(
            window.NodeData(TESMARK_SEAL_TREE, window.SelectedNode(TESMARK_SEAL_TREE)));
    };
    Show(TESMARK_DIALOG_SEAL_TREE, [](HWND dialog) {
        const Tree tree(dialog);
        const LRESULT first = tree.Next(TVGN_CHILD, tree.Next(TVGN_ROOT));
        tree.Select(tree.Next(TVGN_NEXT, first));
        tree.Select(first);
        tree.Select(tree.Next(TVGN_CHILD, first));
        tree.Select(tree.Next(TVGN_ROOT));
        Click(dialog, IDOK);
    });
    EXPECT_THAT(selected, ElementsAre(20, 10, 11, 0));
}

TEST_F(NativeDialogOnWindows, AnEmptyTreeSelectsNothing) {
    int selections = 0;
    m_dialog.m_select = [&](DialogWindow&) { ++selections; };
    Show(TESMARK_DIALOG_SEAL_TREE, [](HWND dialog) { Click(dialog, IDOK); });
    EXPECT_EQ(selections, 0);
}

TEST_F(NativeDialogOnWindows, ThePreviewShowsWhatIsPaintedOnIt) {
    std::vector<COLORREF> seen;
    m_dialog.m_other = [&](DialogWindow& window) {
        const HWND preview = GetDlgItem(GetActiveWindow(), TESMARK_SEAL_PREVIEW);
        ShowWindow(GetParent(preview), SW_SHOW);
        UpdateWindow(GetParent(preview));
        window.Fill(TESMARK_SEAL_PREVIEW, 0xF0F0F0);
        window.Draw(TESMARK_SEAL_PREVIEW, {1, 1, {0xFF0080}}, {10, 20, 30, 40});
        const HDC surface = GetDC(preview);
        const Rectangle area = window.ClientArea(TESMARK_SEAL_PREVIEW);
        for (const POINT at : {POINT{0, 0}, POINT{area.right - 1, area.bottom - 1}, POINT{9, 20},
                               POINT{10, 20}, POINT{29, 39}, POINT{30, 40}}) {
            seen.push_back(GetPixel(surface, at.x, at.y));
        }
        ReleaseDC(preview, surface);
    };
    constexpr int kAnyOther = 77;
    Show(TESMARK_DIALOG_SEAL_TREE, [](HWND dialog) {
        PostMessageA(dialog, WM_COMMAND, kAnyOther, 0);
        Click(dialog, IDOK);
    });
    constexpr COLORREF kGrey = RGB(240, 240, 240), kPicture = RGB(255, 0, 128);
    EXPECT_THAT(seen, ElementsAre(kGrey, kGrey, kGrey, kPicture, kPicture, kGrey));
}

TEST_F(NativeDialogOnWindows, ATextStandsInThePreviewInFull) {
    m_dialog.m_open = [](DialogWindow& window) {
        window.SetText(TESMARK_SEAL_PREVIEW, "此证书包含印章 0 个！");
    };
    char text[64] = {};
    Show(TESMARK_DIALOG_SEAL_TREE, [&](HWND dialog) {
        GetDlgItemTextA(dialog, TESMARK_SEAL_PREVIEW, text, sizeof text);
        Click(dialog, IDOK);
    });
    EXPECT_STREQ(text, "此证书包含印章 0 个！");
}

TEST_F(NativeDialogOnWindows, ACentredDialogStandsInTheMiddleOfTheWorkArea) {
    m_dialog.m_open = [](DialogWindow& window) { CenterDialog(window); };
    Rectangle bounds;
    RECT area{};
    Show(TESMARK_DIALOG_SEAL_TREE, [&](HWND dialog) {
        bounds = BoundsOf(dialog);
        SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
        Click(dialog, IDOK);
    });
    ASSERT_GT(area.right, bounds.right - bounds.left);
    EXPECT_GT(bounds.left, 0);
    EXPECT_EQ(bounds.left, (area.left + area.right) / 2 - (bounds.right - bounds.left) / 2);
    EXPECT_EQ(bounds.top, (area.top + area.bottom) / 2 - (bounds.bottom - bounds.top) / 2);
}

TEST_F(NativeDialogOnWindows, ADialogStaysOnTopWhenItIsMoved) {
    m_dialog.m_open = [](DialogWindow& window) { window.MoveTo(30, 20); };
    Rectangle bounds;
    LONG extended = 0;
    Show(TESMARK_DIALOG_SEAL_TREE, [&](HWND dialog) {
        bounds = BoundsOf(dialog);
        extended = GetWindowLongA(dialog, GWL_EXSTYLE);
        Click(dialog, IDOK);
    });
    EXPECT_EQ(bounds.left, 30);
    EXPECT_EQ(bounds.top, 20);
    EXPECT_NE(extended & WS_EX_TOPMOST, 0);
}

// Windows of the test's own, gone at the end.
class PlacementOnWindows : public testing::Test {
protected:
    ~PlacementOnWindows() override { DestroyWindow(m_first); }
    HWND Make(DWORD style, HWND related, const Rectangle& place) {
        const HWND window =
            CreateWindowExA(0, "STATIC", "", style, place.left, place.top, place.right - place.left,
                            place.bottom - place.top, related, nullptr, nullptr, nullptr);
        if (m_first == nullptr) m_first = window;
        return window;
    }

    HWND m_first = nullptr;
};

TEST_F(PlacementOnWindows, AChildsParentGivesItsClientAreaAndTheChildMovesWithinIt) {
    const HWND parent = Make(WS_POPUP, nullptr, {100, 80, 400, 280});
    const HWND child = Make(WS_CHILD, parent, {0, 0, 50, 40});
    NativeDialog dialog(child);
    EXPECT_EQ(dialog.ParentArea(), (Rectangle{0, 0, 300, 200}));
    CenterDialog(dialog);
    EXPECT_EQ(BoundsOf(child), (Rectangle{225, 160, 275, 200}));
}

TEST_F(PlacementOnWindows, AVisibleOwnerIsTheCentre) {
    const HWND owner = Make(WS_POPUP | WS_VISIBLE, nullptr, {100, 80, 400, 280});
    const HWND owned = Make(WS_POPUP, owner, {0, 0, 50, 40});
    NativeDialog dialog(owned);
    EXPECT_EQ(dialog.ParentArea(), std::nullopt);
    const auto told = dialog.OwnerWindow();
    ASSERT_TRUE(told.has_value());
    EXPECT_EQ(told->bounds, (Rectangle{100, 80, 400, 280}));
    EXPECT_TRUE(told->visible);
    EXPECT_FALSE(told->minimised);
    CenterDialog(dialog);
    EXPECT_EQ(BoundsOf(owned), (Rectangle{225, 160, 275, 200}));
}

TEST_F(PlacementOnWindows, AnOwnerTellsThatItIsHiddenOrMinimised) {
    const HWND owner = Make(WS_POPUP, nullptr, {100, 80, 400, 280});
    const NativeDialog dialog(Make(WS_POPUP, owner, {0, 0, 50, 40}));
    ASSERT_TRUE(dialog.OwnerWindow().has_value());
    EXPECT_FALSE(dialog.OwnerWindow()->visible);
    ShowWindow(owner, SW_SHOWMINNOACTIVE);
    EXPECT_TRUE(dialog.OwnerWindow()->minimised);
}

TEST_F(PlacementOnWindows, AWindowWithoutAnOwnerHasTheWorkAreaOfItsMonitor) {
    const NativeDialog dialog(Make(WS_POPUP, nullptr, {0, 0, 50, 40}));
    EXPECT_EQ(dialog.OwnerWindow(), std::nullopt);
    RECT area{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
    const Rectangle expected{area.left, area.top, area.right, area.bottom};
    EXPECT_EQ(dialog.WorkArea(NativeDialog::Nearest::ToWindow), expected);
}

}  // namespace
