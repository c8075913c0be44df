#include "dialogs/DialogFrame.h"

#include <gtest/gtest.h>

#include "dialogs/CenterDialog.h"
#include "dialogs/Resource.h"
#include "support/ScriptedDialogs.h"

namespace {

// Confirms once a row has been picked, and counts what else it hears of.
class PickingDialog : public CDialogFrame {
public:
    void OnOpen(platform::DialogWindow& window) override {
        CenterDialog(window);
        for (const char* row : {"-----请选择-----", "one"}) {
            window.AppendRow(TESMARK_CERT_LIST, row);
        }
        window.SelectRow(TESMARK_CERT_LIST, 0);
        window.AppendNode(TESMARK_SEAL_TREE, platform::kNoNode, "请选择印章", 7);
    }
    bool OnNodeSelected(platform::DialogWindow& window, int tree) override {
        m_data = window.NodeData(tree, window.SelectedNode(tree));
        return true;
    }

    int m_others = 0;
    std::intptr_t m_data = 0;

protected:
    void OnConfirm(platform::DialogWindow& window) override {
        if (window.SelectedRow(TESMARK_CERT_LIST) > 0) window.End(kDialogConfirmed);
    }
    bool OnOtherButton(platform::DialogWindow&, int button) override {
        m_others += button == TESMARK_URL_TEST;
        return true;
    }
};

class DialogFrameTest : public testing::Test {
protected:
    int Show(ScriptedDialogs::User user) {
        const ScriptedDialogs dialogs(std::move(user));
        return platform::OpenDialog(kDialogModule, TESMARK_DIALOG_CERT, m_procedure);
    }

    PickingDialog m_procedure;
};

TEST_F(DialogFrameTest, CancelEndsADialogWithZero) {
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PressButton(TESMARK_BUTTON_CANCEL);
                  EXPECT_TRUE(dialog.HasEnded());
              }),
              0);
}

TEST_F(DialogFrameTest, ClosingTheWindowEndsADialogLikeCancel) {
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.CloseWindow();
                  EXPECT_TRUE(dialog.HasEnded());
              }),
              0);
}

TEST_F(DialogFrameTest, ConfirmingIsEachDialogsOwnAndMayLeaveItOpen) {
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PressButton(TESMARK_BUTTON_OK);
                  EXPECT_FALSE(dialog.HasEnded());
                  dialog.PickRow(TESMARK_CERT_LIST, 1);
                  dialog.PressButton(TESMARK_BUTTON_OK);
                  EXPECT_TRUE(dialog.HasEnded());
              }),
              1);
}

TEST_F(DialogFrameTest, ADialogThatHasEndedHearsOfNothingMore) {
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PickRow(TESMARK_CERT_LIST, 1);
                  dialog.PressButton(TESMARK_BUTTON_OK);
                  dialog.PressButton(TESMARK_BUTTON_CANCEL);
                  dialog.PressButton(TESMARK_URL_TEST);
              }),
              1);
    EXPECT_EQ(m_procedure.m_others, 0);
}

TEST_F(DialogFrameTest, OtherButtonsLeaveTheDialogOpen) {
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PressButton(TESMARK_URL_TEST);
                  EXPECT_FALSE(dialog.HasEnded());
              }),
              0);
    EXPECT_EQ(m_procedure.m_others, 1);
}

TEST_F(DialogFrameTest, ADialogIsToldOfTheNodeThatTheUserPicks) {
    Show([](ScriptedDialog& dialog) {
        EXPECT_TRUE(dialog.PickNode(TESMARK_SEAL_TREE, "请选择印章"));
    });
    EXPECT_EQ(m_procedure.m_data, 7);
}

TEST_F(DialogFrameTest, ADialogMovesItselfWhenItOpens) {
    Show([](ScriptedDialog& dialog) {
        EXPECT_EQ(dialog.Bounds(), (platform::Rectangle{262, 214, 762, 514}));
    });
}

TEST_F(DialogFrameTest, ADialogThatCannotBeShownGivesAThirdValue) {
    EXPECT_EQ(Show(nullptr), platform::kDialogNotShown);
    EXPECT_EQ(platform::OpenDialog(kDialogModule, TESMARK_DIALOG_CERT, m_procedure),
              platform::kDialogNotShown);
}

}  // namespace
