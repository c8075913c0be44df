#include "FlowTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// What the short flow leaves to the dialog, which the user closes.
class ReachedDialogTest : public FlowTest {
protected:
    ReachedDialogTest() { TreeEndsWith(DialogEnd::Closed); }

    void ExpectDialog() {
        ExpectQueryFails(TESMARK_CANCELLED);
        EXPECT_EQ(m_treesShown, 1);
    }
};

TEST_F(ReachedDialogTest, TheScanEntryBesideACertificateReachesTheDialog) {
    fakes::AddCertificate("scan", "box/hlvqDev000000000000000000");
    AddEsKey();
    ExpectDialog();
    EXPECT_EQ(Failures().back(), "user cancel dlg -3004");
}

TEST_F(ReachedDialogTest, TwoSealsReachTheDialogWithoutATestSignature) {
    AddEsKey();
    fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("other"));
    ExpectDialog();
    EXPECT_THAT(Failures(), ElementsAre("user cancel dlg -3004"));
    EXPECT_THAT(ProbesAndChecks(), IsEmpty());
}

TEST_F(ReachedDialogTest, TwoCertificatesWithOneSealReachTheDialog) {
    AddEsKey();
    fakes::AddCertificate("label", "cert-2");
    ExpectDialog();
    EXPECT_THAT(ProbesAndChecks(), IsEmpty());
}

TEST_F(ReachedDialogTest, ACertificateWithoutSealsReachesTheDialog) {
    fakes::AddCertificate("label", "cert-1");
    ExpectDialog();
    EXPECT_THAT(ProbesAndChecks(), IsEmpty());
}

TEST_F(ReachedDialogTest, AnEmptyListReachesTheDialog) {
    fakes::AddCertificate("翠枫证书", "cert-1");
    ExpectDialog();
    EXPECT_THAT(Failures(), ElementsAre("user cancel dlg -3004"));
}

TEST_F(ReachedDialogTest, ADialogThatCouldNotBeShownLeavesTheNextQuestionOpen) {
    AddEsKey();
    fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("other"));
    TreeEndsWith(DialogEnd::Failed);
    EXPECT_EQ(Query(), TESMARK_CANCELLED);
    EXPECT_EQ(Query(), TESMARK_CANCELLED);
    EXPECT_EQ(m_treesShown, 2);
}

TEST_F(ReachedDialogTest, ACertificateWithoutSealsThatIsConfirmedIsACancel) {
    fakes::AddCertificate("label", "cert-1");
    TreeEndsWith(DialogEnd::Confirmed, {-1, -1});
    ExpectDialog();
    EXPECT_THAT(Failures(), ElementsAre("praseEnumFiles error"));
}

TEST_F(ReachedDialogTest, AfterACancelABufferStartsANewSelectionWithoutACache) {
    AddEsKey("picture");
    fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("other"));
    EXPECT_EQ(Query(), TESMARK_CANCELLED);
    fakes::ClearCalls();
    unsigned char buffer[16];
    int length = 16;
    EXPECT_EQ(session::GetSealInfo(buffer, &length), TESMARK_CANCELLED);
    EXPECT_EQ(length, 16);
    EXPECT_TRUE(Called("SOF_GetUserList"));
}

TEST_F(ReachedDialogTest, AfterACancelAnOlderPictureIsDeliveredWithoutAskingAnybody) {
    AddEsKey("older picture");
    ASSERT_EQ(Query(), 0);
    fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("other"));
    EXPECT_EQ(Query(), TESMARK_CANCELLED);
    fakes::ClearCalls();
    unsigned char picture[14] = {};
    int length = 13;
    EXPECT_EQ(session::GetSealInfo(picture, &length), 0);
    EXPECT_STREQ(reinterpret_cast<char*>(picture), "older picture");
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

}  // namespace
