#include "ScanTest.h"
#include "dialogs/Resource.h"
#include "session/CertificateChoice.h"
#include "session/Selection.h"
#include "support/ScriptedDialogs.h"

using testing::ElementsAre;

// Nobody: the dialogs of this program are the library's own.
FlowUser g_user;

namespace {

class PickedInDialogsTest : public ScanTest {
protected:
    static void PickNodeAndConfirm(ScriptedDialog& dialog, const std::string& node) {
        EXPECT_TRUE(dialog.PickNode(TESMARK_SEAL_TREE, node));
        dialog.PressButton(TESMARK_BUTTON_OK);
    }
};

TEST_F(PickedInDialogsTest, ACertificateOutOfTheListIsTheChosenOne) {
    fakes::ResetWorld();
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2").keyType = "RSA";
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) {
        dialog.PickRow(TESMARK_CERT_LIST, 2);
        dialog.PressButton(TESMARK_BUTTON_OK);
    });
    char type[kKeyTypeSize] = {};
    EXPECT_EQ(session::GetCertType(type), 0);
    EXPECT_STREQ(type, "RSA");
    EXPECT_EQ(g_currentCertId.Text(), "cert-2");
    EXPECT_THAT(dialogs.Asked(), ElementsAre("TesmarkOpt_x64 101"));
}

TEST_F(PickedInDialogsTest, ACertificateIsTheOneItsRowShowsThoughOthersWereOfferedMeanwhile) {
    fakes::ResetWorld();
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2");
    int depth = 0;
    const ScriptedDialogs dialogs([&](ScriptedDialog& dialog) {
        if (++depth == 2) return dialog.CloseWindow();
        fakes::ResetWorld();
        fakes::AddCertificate("three", "cert-3");
        fakes::AddCertificate("four", "cert-4");
        char type[kKeyTypeSize] = {};
        EXPECT_EQ(session::GetCertType(type), TESMARK_FAILED);
        dialog.PickRow(TESMARK_CERT_LIST, 2);
        dialog.PressButton(TESMARK_BUTTON_OK);
    });
    std::string certId;
    EXPECT_EQ(ChooseCertificate(certId), 0);
    EXPECT_EQ(depth, 2);
    EXPECT_EQ(certId, "cert-2");
    EXPECT_EQ(g_pickedCertLabel, "two");
}

TEST_F(PickedInDialogsTest, AClosedListOfCertificatesSelectsNone) {
    fakes::ResetWorld();
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2");
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) { dialog.CloseWindow(); });
    std::string certId;
    EXPECT_EQ(ChooseCertificate(certId), TESMARK_FAILED);
    EXPECT_EQ(certId, "");
}

TEST_F(PickedInDialogsTest, ASealOutOfTheTreeIsDelivered) {
    fakes::AddCertificate("key", "cert-1");
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("first picture", "first"));
    fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("second picture", "second"));
    const ScriptedDialogs dialogs(
        [](ScriptedDialog& dialog) { PickNodeAndConfirm(dialog, "second"); });
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_sealInfoCache.View(), "second picture");
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
}

TEST_F(PickedInDialogsTest, ACertificateWithoutSealsStandsAloneInTheTreeAndOkWithItIsACancel) {
    fakes::ResetWorld();
    fakes::AddCertificate("key", "cert-1");
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) {
        ASSERT_EQ(dialog[TESMARK_SEAL_TREE].nodes.size(), 2u) << "the root and the certificate";
        PickNodeAndConfirm(dialog, "证书：key");
    });
    ExpectQueryFails(TESMARK_CANCELLED);
    EXPECT_THAT(dialogs.Asked(), ElementsAre("TesmarkOpt_x64 104"));
    EXPECT_FALSE(Called("SOF_SignData"));
}

TEST_F(PickedInDialogsTest, TheScanOutOfTheTreeBringsASealThatIsPickedInASecondOne) {
    fakes::AddCertificate("key", "cert-1");
    AddNationalSeal();
    PhoneLeaves({{"HLVQSEAL", "bare picture"}, {"SEAL01", "national seal"}});
    const ScriptedDialogs dialogs([](ScriptedDialog& dialog) {
        const bool first = fakes::CountCalls("SOF_Login") == 0;
        PickNodeAndConfirm(dialog, first ? "证书：扫码签章" : "SEAL01");
    });
    EXPECT_EQ(Query(), 0);
    EXPECT_THAT(dialogs.Asked(), ElementsAre("TesmarkOpt_x64 104", "TesmarkOpt_x64 104"));
    EXPECT_EQ(g_currentCertId.Text(), kScanCert);
    EXPECT_EQ(g_sealInfoCache.View(), "national picture");
    EXPECT_EQ(g_selectedSeal.View(), "national seal");
    EXPECT_EQ(g_esealMode, 1);
}

TEST_F(PickedInDialogsTest, ASealThatACallDuringTheDialogTookOffTheListCannotBePicked) {
    fakes::AddCertificate("key", "cert-1");
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("first picture", "first"));
    fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("second picture", "second"));
    for (const bool keyIsLeft : {true, false}) {
        const ScriptedDialogs dialogs([&](ScriptedDialog& dialog) {
            fakes::ResetWorld();
            if (keyIsLeft) AddScanEntry();
            fakes::AddCertificate(keyIsLeft ? "key" : "翠枫证书", "cert-1");
            const unsigned char text[] = "text";
            session::SetCertSeal(text, 4, text, 4, 0);
            PickNodeAndConfirm(dialog, "second");
        });
        ExpectQueryFails(TESMARK_CANCELLED);
        fakes::ResetWorld();
        fakes::AddCertificate("key", "cert-1");
        fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("first picture", "first"));
        fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("second picture", "second"));
    }
}

TEST_F(PickedInDialogsTest, AnotherSealInThePlaceOfTheOneInTheTreeIsNeitherPreviewedNorPicked) {
    fakes::ResetWorld();
    const auto addSeals = [](const std::string& picture) {
        fakes::AddCertificate("key", "cert-1");
        fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("GIF of the first", "first"));
        fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal(picture, "second"));
    };
    addSeals("GIF of the second");
    const ScriptedDialogs dialogs([&](ScriptedDialog& dialog) {
        dialog.PickNode(TESMARK_SEAL_TREE, "first");
        fakes::ResetWorld();
        addSeals("GIF of another");
        const unsigned char text[] = "text";
        session::SetCertSeal(text, 4, text, 4, 0);
        PickNodeAndConfirm(dialog, "second");
        EXPECT_EQ(g_dialogSealRow, -1);
        EXPECT_EQ(g_dialogSealCol, -1);
    });
    ExpectQueryFails(TESMARK_CANCELLED);
}

TEST_F(PickedInDialogsTest, ASealOfAScanThatAnotherOneThrewAwayCannotBePicked) {
    PhoneLeaves({{"HLVQSEAL01", "first"}, {"HLVQSEAL02", "second"}});
    int depth = 0;
    const ScriptedDialogs dialogs([&](ScriptedDialog& dialog) {
        if (++depth == 1) {
            int length = 0;
            EXPECT_EQ(session::GetSealInfo(nullptr, &length), TESMARK_CANCELLED);
            PickNodeAndConfirm(dialog, "HLVQSEAL02");
        }
    });
    ExpectQueryFails(TESMARK_CANCELLED);
    EXPECT_EQ(depth, 2);
    EXPECT_TRUE(g_pzmSealItems.empty());
}

TEST_F(PickedInDialogsTest, ASealOfAnotherScanCannotBePickedByAPlaceInTheTreeOfTheFirst) {
    PhoneLeaves({{"HLVQSEAL01", "first"}, {"HLVQSEAL02", "second"}});
    const ScriptedDialogs dialogs([&](ScriptedDialog& dialog) {
        dialog.PickNode(TESMARK_SEAL_TREE, "HLVQSEAL02");
        LeaveOneNationalSeal();
        int length = 0;
        EXPECT_EQ(session::GetSealInfo(nullptr, &length), 0);
        PickNodeAndConfirm(dialog, "HLVQSEAL01");
        EXPECT_EQ(g_pzmDialogPick, "second");
    });
    EXPECT_EQ(Query(), TESMARK_CANCELLED);
    EXPECT_EQ(m_length, -7);
    EXPECT_EQ(g_sealInfoCache.View(), "national picture");
    EXPECT_EQ(g_selectedSeal.View(), "national seal");
    EXPECT_THAT(dialogs.Asked(), ElementsAre("TesmarkOpt_x64 104"));
}

TEST_F(PickedInDialogsTest, TheSealsOfAScanConfirmedWithoutAClickDeliverNothing) {
    PhoneLeaves({{"HLVQSEAL01", "first"}, {"HLVQSEAL02", "second"}});
    const ScriptedDialogs dialogs(
        [](ScriptedDialog& dialog) { dialog.PressButton(TESMARK_BUTTON_OK); });
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(m_length, -7);
}

TEST_F(PickedInDialogsTest, WithoutAnyDialogTheScanOfTwoSealsIsACancel) {
    PhoneLeaves({{"HLVQSEAL01", "first"}, {"HLVQSEAL02", "second"}});
    ExpectQueryFails(TESMARK_CANCELLED);
}

}  // namespace
