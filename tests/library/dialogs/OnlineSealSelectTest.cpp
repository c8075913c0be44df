#include "dialogs/OnlineSealSelect.h"

#include "SealDialogTest.h"
#include "dialogs/DialogFrame.h"

namespace {

using testing::ElementsAre;

class OnlineSealSelectTest : public SealDialogTest {
protected:
    OnlineSealSelectTest() {
        g_onlineSealNames = {{"公章", "no-7"}, {"a seal", "no-3"}};
        g_onlineSealPick = "earlier";
    }
    int Show(ScriptedDialogs::User user) {
        const ScriptedDialogs dialogs(std::move(user));
        const int value = ShowOnlineSealSelect();
        m_asked = dialogs.Asked();
        return value;
    }

    std::vector<std::string> m_asked;
};

TEST_F(OnlineSealSelectTest, TheRowsAreTheNamesInTheOrderOfTheAnswerBelowOneThatAsksToPick) {
    Show([](ScriptedDialog& dialog) {
        EXPECT_THAT(dialog[TESMARK_ONLINE_SEAL_LIST].rows,
                    ElementsAre("-----请选择-----", "公章", "a seal"));
        EXPECT_EQ(dialog[TESMARK_ONLINE_SEAL_LIST].row, 0);
    });
    EXPECT_THAT(m_asked, ElementsAre("TesmarkOpt 102"));
}

TEST_F(OnlineSealSelectTest, TheNumberOfThePickedSealIsLeftBehind) {
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PickRow(TESMARK_ONLINE_SEAL_LIST, 1);
                  dialog.PressButton(TESMARK_BUTTON_OK);
              }),
              kDialogConfirmed);
    EXPECT_EQ(g_onlineSealPick, "no-7");
}

TEST_F(OnlineSealSelectTest, OkAtOnceKeepsTheDialogOpen) {
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PressButton(TESMARK_BUTTON_OK);
                  EXPECT_FALSE(dialog.HasEnded());
              }),
              kDialogCancelled);
    EXPECT_EQ(g_onlineSealPick, "earlier");
}

TEST_F(OnlineSealSelectTest, CancelAndTheCloseBoxPickNothing) {
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PickRow(TESMARK_ONLINE_SEAL_LIST, 2);
                  dialog.PressButton(TESMARK_BUTTON_CANCEL);
              }),
              kDialogCancelled);
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PickRow(TESMARK_ONLINE_SEAL_LIST, 2);
                  dialog.CloseWindow();
              }),
              kDialogCancelled);
    EXPECT_EQ(g_onlineSealPick, "earlier");
}

TEST_F(OnlineSealSelectTest, ADialogThatCannotBeShownLeavesTheEarlierNumber) {
    EXPECT_EQ(Show(nullptr), platform::kDialogNotShown);
    EXPECT_EQ(g_onlineSealPick, "earlier");
}

TEST_F(OnlineSealSelectTest, WithoutSealsTheListAsksToPickAllTheSame) {
    g_onlineSealNames.clear();
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  EXPECT_THAT(dialog[TESMARK_ONLINE_SEAL_LIST].rows,
                              ElementsAre("-----请选择-----"));
                  dialog.PressButton(TESMARK_BUTTON_OK);
                  EXPECT_FALSE(dialog.HasEnded());
              }),
              kDialogCancelled);
}

TEST_F(OnlineSealSelectTest, TwoEqualNamesAreToldApartByTheirRows) {
    g_onlineSealNames = {{"seal", "no-1"}, {"seal", "no-2"}};
    Show([](ScriptedDialog& dialog) {
        dialog.PickRow(TESMARK_ONLINE_SEAL_LIST, 2);
        dialog.PressButton(TESMARK_BUTTON_OK);
    });
    EXPECT_EQ(g_onlineSealPick, "no-2");
}

}  // namespace
