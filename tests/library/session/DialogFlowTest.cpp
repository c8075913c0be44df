#include "FlowTest.h"
#include "StampEngine.h"
#include "foundation/StringFailure.h"
#include "foundation/Text.h"
#include "session/Selection.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DialogFlowTest : public FlowTest {
protected:
    DialogFlowTest() {
        TreeEndsWith(DialogEnd::Confirmed, {});
        AddWorld("national seal");
        fakes::AddCertificate("two", "cert-2");
        fakes::AddFile("cert-2", "SEAL01", "national seal");
    }
    // A certificate with an old seal and a national one, which has this file.
    static void AddWorld(const std::string& file, const std::string& certId = "cert-1") {
        fakes::AddCertificate("one", certId);
        fakes::AddFile(certId, "ESEAL01", fakes::EsSeal("old picture"));
        fakes::AddFile(certId, "GBESEAL01", file);
        fakes::AddNationalSeal(file, "name", "national picture");
    }
    // The user confirms this pick, and meanwhile the keys change so and the list is read anew.
    static void PicksWhile(CertSealPick picked, std::function<void()> change) {
        g_user.certSealTree = [=](CertSealPick* pick) {
            change();
            const unsigned char text[] = "text";
            session::SetCertSeal(text, 4, text, 4, 0);
            *pick = picked;
            return DialogEnd::Confirmed;
        };
    }
};

TEST_F(DialogFlowTest, ThePickedSealIsProbedCheckedAndDelivered) {
    TreeEndsWith(DialogEnd::Confirmed, {0, 1});
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(m_length, 16);
    EXPECT_EQ(g_selectedSeal.Text(), "national seal");
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
    EXPECT_EQ(g_selectedSealName.Text(), "name(国办)");
    EXPECT_EQ(g_selectedSealIndex, 1);
    EXPECT_EQ(g_esealMode, 2);
    EXPECT_EQ(g_sealFlowBusy, 0);
    EXPECT_THAT(ProbesAndChecks(),
                ElementsAre("SOF_SignData", "SOF_SignData", "TVK_Verify_SESeal"));
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(DialogFlowTest, ThePickedCertificateIsTheOneThatSigns) {
    TreeEndsWith(DialogEnd::Confirmed, {1, 0});
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_currentCertId.Text(), "cert-2");
    EXPECT_EQ(fakes::CallTexts("SOF_SignData").front(),
              "SOF_SignData(ctx, \"cert-2\", 1 \"1\", size?)");
}

TEST_F(DialogFlowTest, TheFetchShowsNoDialog) {
    TreeEndsWith(DialogEnd::Confirmed, {0, 0});
    ASSERT_EQ(Query(), 0);
    unsigned char picture[16] = {};
    EXPECT_EQ(session::GetSealInfo(picture, &m_length), 0);
    EXPECT_STREQ(reinterpret_cast<char*>(picture), "old picture");
    EXPECT_EQ(m_treesShown, 1);
}

TEST_F(DialogFlowTest, TwoSizeQueriesShowTwoDialogsAndTheFetchDeliversTheSecondPick) {
    TreeEndsWith(DialogEnd::Confirmed, {0, 1});
    ASSERT_EQ(Query(), 0);
    TreeEndsWith(DialogEnd::Confirmed, {0, 0});
    ASSERT_EQ(Query(), 0);
    unsigned char picture[16] = {};
    EXPECT_EQ(session::GetSealInfo(picture, &m_length), 0);
    EXPECT_STREQ(reinterpret_cast<char*>(picture), "old picture");
    EXPECT_EQ(m_treesShown, 2);
}

TEST_F(DialogFlowTest, ANestedQuestionIsBusyWithACacheToo) {
    TreeEndsWith(DialogEnd::Confirmed, {0, 1});
    ASSERT_EQ(Query(), 0);
    int nested = 0;
    int fetched = 0;
    g_user.certSealTree = [&](CertSealPick*) {
        int length = 4;
        unsigned char buffer[4];
        nested = session::GetSealInfo(nullptr, &length);
        fetched = session::GetSealInfo(buffer, &length);
        return DialogEnd::Closed;
    };
    EXPECT_EQ(Query(), TESMARK_CANCELLED);
    EXPECT_EQ(nested, TESMARK_BUSY);
    EXPECT_EQ(fetched, TESMARK_BUSY);
    EXPECT_EQ(g_sealFlowBusy, 0);
}

TEST_F(DialogFlowTest, AClosedDialogAndOneThatCannotBeShownAreLogged) {
    TreeEndsWith(DialogEnd::Closed, {});
    ExpectQueryFails(TESMARK_CANCELLED);
    TreeEndsWith(DialogEnd::Failed, {});
    ExpectQueryFails(TESMARK_CANCELLED);
    EXPECT_THAT(Failures(), ElementsAre("user cancel dlg -3004", "user cancel dlg -3004"));
}

TEST_F(DialogFlowTest, OkWithNothingPickedIsACancelWithoutALine) {
    TreeEndsWith(DialogEnd::Confirmed, {-1, -1});
    ExpectQueryFails(TESMARK_CANCELLED);
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(DialogFlowTest, APickedCertificateWithoutASealIsACancel) {
    TreeEndsWith(DialogEnd::Confirmed, {1, -1});
    ExpectQueryFails(TESMARK_CANCELLED);
    EXPECT_THAT(ProbesAndChecks(), IsEmpty());
}

TEST_F(DialogFlowTest, AnIndexOutOfTheListIsACancel) {
    for (const CertSealPick pick : {CertSealPick{2, 0}, CertSealPick{2, -1}, CertSealPick{-2, 0},
                                    CertSealPick{-1, 0}, CertSealPick{0, 2}, CertSealPick{0, -2}}) {
        TreeEndsWith(DialogEnd::Confirmed, pick);
        ExpectQueryFails(TESMARK_CANCELLED);
    }
    EXPECT_THAT(ProbesAndChecks(), IsEmpty());
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(DialogFlowTest, ASearchDuringTheDialogThatEmptiesTheListMakesThePickACancel) {
    PicksWhile({0, 1}, [] {
        fakes::ResetWorld();
        fakes::AddCertificate("翠枫证书", "cert-1");  // is left out of the list
    });
    EXPECT_EQ(Query(), TESMARK_CANCELLED);
    EXPECT_TRUE(g_certEsealOpt.m_certs.empty());
    EXPECT_EQ(g_sealFlowBusy, 0);
}

TEST_F(DialogFlowTest, AnotherSealInThePlaceOfTheShownOneMakesThePickACancel) {
    PicksWhile({0, 1}, [] {
        fakes::ResetWorld();
        AddWorld("other seal");
    });
    ExpectQueryFails(TESMARK_CANCELLED);
    EXPECT_EQ(g_certEsealOpt.m_certs.at(0).seals.size(), 2U);
    EXPECT_THAT(Failures(), IsEmpty());
    EXPECT_THAT(ProbesAndChecks(), IsEmpty());
}

TEST_F(DialogFlowTest, AnotherCertificateInThePlaceOfTheShownOneMakesThePickACancel) {
    PicksWhile({0, 1}, [] {
        fakes::ResetWorld();
        AddWorld("national seal", "cert-3");
    });
    ExpectQueryFails(TESMARK_CANCELLED);
    EXPECT_EQ(g_certEsealOpt.m_certs.at(0).seals.size(), 2U);
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(DialogFlowTest, AnotherDeviceInThePlaceOfTheShownScanIsNotScanned) {
    fakes::AddCertificate("scan", "box/hlvqDev000000000000000000");
    PicksWhile({2, -1}, [] {
        fakes::ResetWorld();
        for (const char* certId : {"cert-1", "cert-2", "other/hlvqDev000000000000000000"}) {
            fakes::AddCertificate("any", certId);
        }
    });
    ExpectQueryFails(TESMARK_CANCELLED);
    EXPECT_EQ(g_certEsealOpt.m_certs.size(), 3U);
    EXPECT_FALSE(Called("SOF_Login"));
}

TEST_F(DialogFlowTest, AListThatWasReadAnewDuringTheDialogAsItWasKeepsThePick) {
    PicksWhile({0, 1}, [] {});
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
    EXPECT_EQ(g_selectedSeal.View(), "national seal");
    EXPECT_EQ(g_sealInfoCache.View(), "national picture");
}

TEST_F(DialogFlowTest, ASearchDuringTheTestSignatureDoesNotPullThePickedSealAway) {
    TreeEndsWith(DialogEnd::Confirmed, {0, 0});
    fakes::On("SOF_SignData").Does([](const fakes::Call& call) {
        const unsigned char text[] = "text";
        if (call.number == 2) session::SetCertSeal(text, 4, text, 4, 0);
        fakes::Answer answer;
        answer.output = "signature";
        return answer;
    });
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
    EXPECT_EQ(g_sealInfoCache.View(), "old picture");
    EXPECT_EQ(g_selectedSeal.View(), fakes::EsSeal("old picture"));
}

TEST_F(DialogFlowTest, AFailedProbeIsLoggedByTheFlow) {
    TreeEndsWith(DialogEnd::Confirmed, {0, 1});
    fakes::On("SOF_SignData").Returns(2148);
    ExpectQueryFails(2148);
    EXPECT_THAT(Failures(),
                ElementsAre("[SignData]SOF_SignData: error:2148", "SignData error 2148"));
    EXPECT_EQ(g_selectedSealIndex, -1);
}

TEST_F(DialogFlowTest, ATimeStampThatCannotBeMadeEndsTheFlow) {
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    TreeEndsWith(DialogEnd::Confirmed, {0, 1});
    ExpectQueryFails(TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(Failures(), ElementsAre("pVelmoraTSEngine: is null", "SignTimeStamp error -3008"));
}

TEST_F(DialogFlowTest, ATimeStampOfTheProbedByteIsMadeOnTheWay) {
    const StampEngine engine;
    StampEngine::Register();
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    TreeEndsWith(DialogEnd::Confirmed, {1, 0});
    EXPECT_EQ(Query(), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_TSGenPDFSignature"),
                ElementsAre(testing::EndsWith(", 1 \"1\", size?)")));
    fakes::On("SOF_TSGenPDFSignature").Returns(95);
    EXPECT_EQ(Query(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_EQ(Failures().back(), "SignTimeStamp error 95");
    EXPECT_EQ(g_sealFlowBusy, 0);
}

TEST_F(DialogFlowTest, AFailedCallOfTheTimeStampEngineLeavesNobodyBusy) {
    const StampEngine engine;
    StampEngine::Register();
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    fakes::On("SOF_TSGenREQ").Gives(StampEngine::kFailing);
    TreeEndsWith(DialogEnd::Confirmed, {1, 0});
    EXPECT_THROW(Query(), StringFailure);
    EXPECT_EQ(g_sealFlowBusy, 0);
}

TEST_F(DialogFlowTest, ASealThatIsNotValidEndsTheFlow) {
    TreeEndsWith(DialogEnd::Confirmed, {0, 1});
    fakes::On("TVK_Verify_SESeal").Returns(9);
    ExpectQueryFails(9);
    EXPECT_THAT(Failures(), ElementsAre("TVK_Verify_SESeal error 9"));
    EXPECT_EQ(g_esealMode, 2);
    EXPECT_EQ(g_selectedSealIndex, 1);
}

TEST_F(DialogFlowTest, AFailureKeepsTheFormerSelectionButForTheModeAndTheIndex) {
    TreeEndsWith(DialogEnd::Confirmed, {0, 0});
    ASSERT_EQ(Query(), 0);
    fakes::On("TVK_Verify_SESeal").Returns(9);
    fakes::AddFile("cert-2", "GBESEAL01", "national seal");
    TreeEndsWith(DialogEnd::Confirmed, {1, 1});
    EXPECT_EQ(Query(), 9);
    EXPECT_EQ(g_esealMode, 2);
    EXPECT_EQ(g_selectedSealIndex, 1);
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
    EXPECT_EQ(g_selectedSeal.View(), fakes::EsSeal("old picture"));
    EXPECT_EQ(g_selectedSealName.Text(), "seal");
    EXPECT_EQ(g_sealPicWidth, -1);
    EXPECT_EQ(g_sealPicHeight, -1);
    EXPECT_EQ(g_sealInfoCache.View(), "old picture");
}

TEST_F(DialogFlowTest, AnEmptyStatusFieldEndsTheFlowWithZeroAndNothingSelected) {
    m_prefix.SetNumber("ReqEsealStatus", 1);
    TreeEndsWith(DialogEnd::Confirmed, {0, 1});
    fakes::On("TVK_GetSealInfo").Gives("");
    ExpectQueryFails(0);
    EXPECT_THAT(Failures(), ElementsAre("TVK_Request_Eseal_Status error 0"));
}

TEST_F(DialogFlowTest, AFailureThatPassesThroughLeavesNobodyBusy) {
    TreeEndsWith(DialogEnd::Confirmed, {0, 1});
    fakes::ResetWorld();
    fakes::Certificate& cert = fakes::AddCertificate("one", "cert-1");
    cert.notAfter = "20990231995959";
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("a"));
    fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("b"));
    EXPECT_EQ(StringFailureOf([&] { Query(); }), StringFailure::kGeneral);
    EXPECT_EQ(g_sealFlowBusy, 0);
}

}  // namespace
