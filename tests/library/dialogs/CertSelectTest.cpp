#include "dialogs/CertSelect.h"

#include "SealDialogTest.h"
#include "dialogs/DialogFrame.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class CertSelectTest : public SealDialogTest {
protected:
    CertSelectTest() {
        g_dialogCertLabel = "two||cert-2&&&one||cert-1&&&";
        g_pickedCertLabel = "earlier";
        g_currentCertId.Assign("earlier-id");
    }
    int Show(ScriptedDialogs::User user) {
        const ScriptedDialogs dialogs(std::move(user));
        const int value = ShowCertSelect();
        m_asked = dialogs.Asked();
        return value;
    }
    std::vector<std::string> Rows() {
        std::vector<std::string> rows;
        Show([&](ScriptedDialog& dialog) {
            rows = dialog[TESMARK_CERT_LIST].rows;
            m_row = dialog[TESMARK_CERT_LIST].row;
        });
        return rows;
    }
    void ExpectNothingPicked() {
        EXPECT_EQ(g_pickedCertLabel, "earlier");
        EXPECT_EQ(g_currentCertId.Text(), "earlier-id");
    }

    std::vector<std::string> m_asked;
    int m_row = -7;
};

TEST_F(CertSelectTest, TheRowsAreTheLabelsInTheirOrderBelowOneThatAsksToPick) {
    EXPECT_THAT(Rows(), ElementsAre("-----请选择-----", "two", "one"));
    EXPECT_EQ(m_row, 0);
    EXPECT_THAT(m_asked, ElementsAre("TesmarkOpt_x64 101"));
}

TEST_F(CertSelectTest, ThePickedCertificateIsLeftBehind) {
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PickRow(TESMARK_CERT_LIST, 2);
                  dialog.PressButton(TESMARK_BUTTON_OK);
              }),
              kDialogConfirmed);
    EXPECT_EQ(g_pickedCertLabel, "one");
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
}

TEST_F(CertSelectTest, OkAtOnceKeepsTheDialogOpen) {
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PressButton(TESMARK_BUTTON_OK);
                  EXPECT_FALSE(dialog.HasEnded());
                  dialog.PickRow(TESMARK_CERT_LIST, 1);
                  dialog.PickRow(TESMARK_CERT_LIST, 0);
                  dialog.PressButton(TESMARK_BUTTON_OK);
                  EXPECT_FALSE(dialog.HasEnded());
              }),
              kDialogCancelled);
    ExpectNothingPicked();
}

TEST_F(CertSelectTest, CancelAndTheCloseBoxPickNothing) {
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PickRow(TESMARK_CERT_LIST, 1);
                  dialog.PressButton(TESMARK_BUTTON_CANCEL);
              }),
              kDialogCancelled);
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PickRow(TESMARK_CERT_LIST, 1);
                  dialog.CloseWindow();
              }),
              kDialogCancelled);
    ExpectNothingPicked();
}

TEST_F(CertSelectTest, ADialogThatCannotBeShownLeavesTheEarlierPick) {
    EXPECT_EQ(Show(nullptr), platform::kDialogNotShown);
    ExpectNothingPicked();
}

TEST_F(CertSelectTest, AListOfOneBehavesAsOneOfSeveral) {
    g_dialogCertLabel = "one||cert-1&&&";
    EXPECT_THAT(Rows(), ElementsAre("-----请选择-----", "one"));
    EXPECT_EQ(m_row, 0);
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PressButton(TESMARK_BUTTON_OK);
                  EXPECT_FALSE(dialog.HasEnded());
                  dialog.PickRow(TESMARK_CERT_LIST, 1);
                  dialog.PressButton(TESMARK_BUTTON_OK);
              }),
              kDialogConfirmed);
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
}

TEST_F(CertSelectTest, WithoutCertificatesTheListHasNoRowAtAll) {
    g_dialogCertLabel.clear();
    g_dialogCertItems = {{"old", "old"}};
    EXPECT_THAT(Rows(), IsEmpty());
    EXPECT_EQ(m_row, -1);
    EXPECT_THAT(g_dialogCertItems, IsEmpty());
}

TEST_F(CertSelectTest, ATextWithoutAWholeEntryHasTheFirstRowAlone) {
    g_dialogCertLabel = "one||cert-1";
    EXPECT_THAT(Rows(), ElementsAre("-----请选择-----"));
    g_dialogCertLabel = "one&&&";
    EXPECT_THAT(Rows(), ElementsAre("-----请选择-----"));
}

TEST_F(CertSelectTest, TheEntriesStayUntilTheNextOpening) {
    Rows();
    EXPECT_THAT(g_dialogCertItems, ElementsAre(Pair("two", "cert-2"), Pair("one", "cert-1")));
    g_dialogCertLabel = "three||cert-3&&&rest||";
    Rows();
    EXPECT_THAT(g_dialogCertItems, ElementsAre(Pair("three", "cert-3")));
}

TEST_F(CertSelectTest, TheCertificateThatTheRowShowsIsTakenThoughTheEntriesWereFilledAnew) {
    for (const bool emptied : {false, true}) {
        EXPECT_EQ(Show([&](ScriptedDialog& dialog) {
                      g_dialogCertItems.clear();
                      if (!emptied) g_dialogCertItems.assign(2, {"other", "cert-9"});
                      dialog.PickRow(TESMARK_CERT_LIST, 2);
                      dialog.PressButton(TESMARK_BUTTON_OK);
                  }),
                  kDialogConfirmed);
        EXPECT_EQ(g_pickedCertLabel, "one");
        EXPECT_EQ(g_currentCertId.Text(), "cert-1");
    }
}

TEST_F(CertSelectTest, ALabelOfAnyLengthStandsInTheListInFull) {
    const std::string label(300, 'x');
    g_dialogCertLabel = label + "||" + std::string(100, 'c') + "&&&";
    EXPECT_THAT(Rows(), ElementsAre("-----请选择-----", label));
    EXPECT_THAT(g_dialogCertItems, ElementsAre(Pair(label, std::string(100, 'c'))));
}

TEST_F(CertSelectTest, TwoEqualLabelsAreToldApartByTheirRows) {
    g_dialogCertLabel = "one||cert-1&&&one||cert-2&&&";
    Show([](ScriptedDialog& dialog) {
        dialog.PickRow(TESMARK_CERT_LIST, 2);
        dialog.PressButton(TESMARK_BUTTON_OK);
    });
    EXPECT_EQ(g_currentCertId.Text(), "cert-2");
}

}  // namespace
