#include "FlowTest.h"
#include "session/SealFlows.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// What the short flow leaves to the dialog, which the user closes.
class ReachedDialogTest : public FlowTest {
protected:
    ReachedDialogTest() { TreeEndsWith(DialogEnd::Closed); }

    // One certificate with two seals.
    static void AddTwoSeals() {
        AddEsKey("picture");
        fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("other"));
    }
    void ExpectDialog() {
        ExpectQueryFails(TESMARK_CANCELLED);
        EXPECT_EQ(m_treesShown, 1);
    }
    // The bytes of the length that was told.
    std::string Fetched() {
        std::string picture(static_cast<std::size_t>(m_length), '?');
        EXPECT_EQ(session::GetSealInfo(reinterpret_cast<unsigned char*>(picture.data()), &m_length),
                  0);
        return picture;
    }
};

TEST_F(ReachedDialogTest, TheScanEntryBesideACertificateReachesTheDialog) {
    fakes::AddCertificate("scan", "box/hlvqDev000000000000000000");
    AddEsKey();
    ExpectDialog();
    EXPECT_EQ(Failures().back(), "user cancel dlg -3004");
}

TEST_F(ReachedDialogTest, TwoSealsReachTheDialogWithoutATestSignature) {
    AddTwoSeals();
    ExpectDialog();
    EXPECT_THAT(Failures(), ElementsAre("user cancel dlg -3004"));
    EXPECT_THAT(ProbesAndChecks(), IsEmpty());
}

TEST_F(ReachedDialogTest, TheShortFlowTellsOfTwoSealsOrNoneAtOnceAndChangesNothing) {
    AddTwoSeals();
    fakes::AddCertificate("label", "cert-2");
    ASSERT_EQ(g_certEsealOpt.GetCertAndPic(), 0);
    ASSERT_EQ(g_certEsealOpt.m_certs.size(), 2u);
    g_sealFlowBusy = 1;
    g_esealMode = 2;
    fakes::ClearCalls();
    ForgetLog();
    for (const std::size_t seals : {2u, 0u}) {
        ASSERT_EQ(g_certEsealOpt.m_certs.front().seals.size(), seals);
        m_length = -7;
        EXPECT_EQ(SelectSingleCertFlow(nullptr, &m_length, true, 1), TESMARK_NOT_SHORT);
        EXPECT_EQ(m_length, -7);
        std::swap(g_certEsealOpt.m_certs[0], g_certEsealOpt.m_certs[1]);
    }
    EXPECT_EQ(g_sealFlowBusy, 1);
    EXPECT_EQ(g_esealMode, 2);
    EXPECT_EQ(g_selectedSealIndex, -1);
    EXPECT_EQ(m_treesShown, 0);
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(ReachedDialogTest, OneCertificateWithOneSealShowsNoDialogInEitherCall) {
    AddEsKey("picture");
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(Fetched(), "picture");
    EXPECT_EQ(m_treesShown, 0);
}

TEST_F(ReachedDialogTest, OneCertificateWithTwoSealsShowsTheDialogAtTheSizeQueryAndNoneAtTheFetch) {
    AddTwoSeals();
    TreeEndsWith(DialogEnd::Confirmed, {0, 1});
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(m_treesShown, 1);
    EXPECT_EQ(Fetched(), "other");
    EXPECT_EQ(m_treesShown, 1);
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
    AddTwoSeals();
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

TEST_F(ReachedDialogTest, AnEmptyStatusFieldIsZeroAndLeavesTheLengthAndTheOlderPicture) {
    AddEsKey("older picture");
    ASSERT_EQ(Query(), 0);
    fakes::ResetWorld();
    m_prefix.SetNumber("ReqEsealStatus", 1);
    for (const std::size_t field : {0u, 4u}) {
        fakes::ResetWorld();
        AddGbKey().fields[field] = "";
        EXPECT_EQ(Query(), 0);
        EXPECT_EQ(m_length, -7);
        EXPECT_EQ(g_sealInfoCache.View(), "older picture");
        EXPECT_EQ(g_selectedSeal.View(), fakes::EsSeal("older picture"));
        EXPECT_EQ(g_esealMode, 2);
    }
}

TEST_F(ReachedDialogTest, AfterACancelABufferStartsANewSelectionWithoutACache) {
    AddTwoSeals();
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
