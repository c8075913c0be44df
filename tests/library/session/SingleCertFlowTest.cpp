#include "SessionTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SingleCertFlowTest : public SessionTest {
protected:
    // Runs a size query and expects that it ends in `code`, with `*length` untouched and with
    // nothing selected.
    void ExpectQueryFails(int code) {
        int length = -7;
        EXPECT_EQ(GetSealInfo(nullptr, &length), code);
        EXPECT_EQ(length, -7);
        int size = -7;
        GetSelectedCertId(nullptr, &size);
        GetSelectedSeal(nullptr, &size);
        EXPECT_EQ(size, -7);
    }
    void AskForStatus() { m_prefix.SetNumber("ReqEsealStatus", 1); }
};

TEST_F(SingleCertFlowTest, AnOldSealGetsOneProbeAndNoVerification) {
    AddEsKey();
    ASSERT_EQ(Query(), 0);
    EXPECT_THAT(ProbesAndChecks(), ElementsAre("SOF_SignData", "SOF_SignData"));
}

TEST_F(SingleCertFlowTest, ASealOfTypeOneIsVerifiedOnceAndNeverAskedForItsStatus) {
    AskForStatus();
    AddGmKey();
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(GetEsealMode(), 1);
    EXPECT_THAT(ProbesAndChecks(),
                ElementsAre("SOF_SignData", "SOF_SignData", "TVK_Verify_SESeal"));
    EXPECT_THAT(fakes::CallTexts("TVK_Verify_SESeal"),
                ElementsAre("TVK_Verify_SESeal(13 \"national seal\")"));
}

TEST_F(SingleCertFlowTest, ABarePictureIsDeliveredUnverified) {
    fakes::AddCertificate("label", "cert-1");
    fakes::AddFile("cert-1", "HLVQSEAL", "bare picture");
    EXPECT_EQ(Picture(), "bare picture");
    EXPECT_EQ(GetEsealMode(), 3);
    EXPECT_EQ(SelectedSeal(), "bare picture");
    EXPECT_THAT(ProbesAndChecks(), ElementsAre("SOF_SignData", "SOF_SignData"));
}

TEST_F(SingleCertFlowTest, ASealOfTypeTwoIsAskedForItsStatusWithItsFirstAndFifthField) {
    AskForStatus();
    fakes::NationalSeal& seal = AddGbKey();
    seal.fields[0] = "first";
    seal.fields[4] = "the fifth";
    ASSERT_EQ(Query(), 0);
    EXPECT_THAT(ProbesAndChecks(),
                ElementsAre("SOF_SignData", "SOF_SignData", "TVK_Verify_SESeal", "TVK_GetSealInfo",
                            "TVK_GetSealInfo", "TVK_Request_Eseal_Status"));
    const std::string unasked = ", size?, size?, size?, ";
    const std::string rest = ", size?, size?, size?, size?, size?, size?)";
    EXPECT_THAT(
        fakes::CallTexts("TVK_GetSealInfo"),
        ElementsAre("TVK_GetSealInfo(13 \"national seal\", size?" + unasked + "size?" + rest,
                    "TVK_GetSealInfo(13 \"national seal\", out[5]" + unasked + "out[9]" + rest));
    EXPECT_THAT(fakes::CallTexts("TVK_Request_Eseal_Status"),
                ElementsAre("TVK_Request_Eseal_Status(5 \"first\", 9 \"the fifth\", 0, 0)"));
}

TEST_F(SingleCertFlowTest, AStatusFieldIsHandedOnNoLongerThanItsMemory) {
    AskForStatus();
    AddGbKey();
    fakes::On("TVK_GetSealInfo").ReportsSizeAt(2, 600);
    ASSERT_EQ(Query(), 0);
    EXPECT_THAT(fakes::CallTexts("TVK_Request_Eseal_Status"),
                ElementsAre("TVK_Request_Eseal_Status(6 \"field\\x00\", 5 \"field\", 0, 0)"));
}

TEST_F(SingleCertFlowTest, AStatusSettingOtherThanOneCountsAsOff) {
    AddGbKey();
    for (const unsigned int setting : {0u, 2u, 0x101u}) {
        m_prefix.SetNumber("ReqEsealStatus", setting);
        ASSERT_EQ(Query(), 0);
    }
    EXPECT_FALSE(Called("TVK_GetSealInfo"));
    EXPECT_FALSE(Called("TVK_Request_Eseal_Status"));
}

TEST_F(SingleCertFlowTest, WithPictureModeZeroTheKeyIsLeftAloneAndTheSealStillVerified) {
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    AddGbKey();
    SetGetStampPictureMode(0);
    ASSERT_EQ(Query(), 0);
    EXPECT_THAT(ProbesAndChecks(), ElementsAre("TVK_Verify_SESeal"));
    EXPECT_FALSE(Called("SOF_ExportUserCert"));
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(SingleCertFlowTest, AnyOtherPictureModeProbesTheKey) {
    AddEsKey();
    SetGetStampPictureMode(200);
    ASSERT_EQ(Query(), 0);
    EXPECT_TRUE(Called("SOF_SignData"));
}

TEST_F(SingleCertFlowTest, ATimeStampThatCannotBeMadeEndsTheFlow) {
    m_prefix.SetNumber("bSignWithTimeStamp", 7);
    AddGbKey();
    ExpectQueryFails(TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(Failures(), ElementsAre("pVelmoraTSEngine: is null", "SignTimeStamp error -3008"));
    EXPECT_FALSE(Called("TVK_Verify_SESeal"));
    EXPECT_EQ(GetEsealMode(), 0);
}

TEST_F(SingleCertFlowTest, AFailedProbeIsReturnedAndNotLoggedByTheFlow) {
    AddGbKey();
    fakes::On("SOF_SignData").ReturnsAt(2, 2148);
    ExpectQueryFails(2148);
    EXPECT_THAT(Failures(), ElementsAre("[SignData]SOF_SignData: error:2148"));
    EXPECT_FALSE(Called("TVK_Verify_SESeal"));
    EXPECT_EQ(GetEsealMode(), 0);
}

TEST_F(SingleCertFlowTest, ACertificateThatFailsItsChecksStopsAtTheProbe) {
    AddEsKey();
    struct {
        int validity;
        int code;
    } const cases[] = {{-1, TESMARK_NOT_TRUSTED},
                       {-2, TESMARK_CERT_EXPIRED},
                       {-3, TESMARK_CERT_REVOKED},
                       {-4, -4}};
    for (const auto& [validity, code] : cases) {
        fakes::On("SOF_ValidateCert").Returns(validity);
        ExpectQueryFails(code);
    }
    EXPECT_FALSE(Called("SOF_SignData"));
}

TEST_F(SingleCertFlowTest, ASealThatIsNotValidEndsTheFlowWithItsTypeAsTheMode) {
    AddGmKey().verifyResult = 4242;
    ExpectQueryFails(4242);
    EXPECT_THAT(Failures(), ElementsAre("TVK_Verify_SESeal error 4242"));
    EXPECT_EQ(GetEsealMode(), 1);
}

TEST_F(SingleCertFlowTest, AFailedSizeQueryOfTheSealsFieldsEndsTheFlow) {
    AskForStatus();
    AddGbKey();
    fakes::On("TVK_GetSealInfo").ReturnsAt(1, 77);
    ExpectQueryFails(77);
    EXPECT_THAT(Failures(), ElementsAre("TVK_Request_Eseal_Status error 77"));
    EXPECT_EQ(fakes::CountCalls("TVK_GetSealInfo"), 1);
    EXPECT_EQ(GetEsealMode(), 2);
}

TEST_F(SingleCertFlowTest, AFailedReadingOfTheSealsFieldsEndsTheFlow) {
    AskForStatus();
    AddGbKey();
    fakes::On("TVK_GetSealInfo").ReturnsAt(2, 78);
    ExpectQueryFails(78);
    EXPECT_THAT(Failures(), ElementsAre("TVK_Request_Eseal_Status error 78"));
    EXPECT_FALSE(Called("TVK_Request_Eseal_Status"));
}

TEST_F(SingleCertFlowTest, AStatusThatForbidsUseEndsTheFlow) {
    AskForStatus();
    AddGbKey();
    fakes::On("TVK_Request_Eseal_Status").Returns(79);
    ExpectQueryFails(79);
    EXPECT_THAT(Failures(), ElementsAre("TVK_Request_Eseal_Status error 79"));
}

TEST_F(SingleCertFlowTest, AnEmptyFirstFieldEndsTheFlowWithZeroAndNothingSelected) {
    AskForStatus();
    AddGbKey().fields[0] = "";
    ExpectQueryFails(0);
    EXPECT_THAT(Failures(), ElementsAre("TVK_Request_Eseal_Status error 0"));
    EXPECT_FALSE(Called("TVK_Request_Eseal_Status"));
    EXPECT_EQ(GetEsealMode(), 2);
}

TEST_F(SingleCertFlowTest, AnEmptyFifthFieldEndsTheFlowWithZeroAndNothingSelected) {
    AskForStatus();
    AddGbKey().fields[4] = "";
    ExpectQueryFails(0);
    EXPECT_THAT(Failures(), ElementsAre("TVK_Request_Eseal_Status error 0"));
    EXPECT_EQ(fakes::CountCalls("TVK_GetSealInfo"), 1);
}

TEST_F(SingleCertFlowTest, AFailureKeepsTheFormerSelectionButForTheMode) {
    AddEsKey("old picture");
    ASSERT_EQ(Query(), 0);
    fakes::ResetWorld();
    fakes::AddCertificate("label", "certificate-2");
    fakes::AddFile("certificate-2", "GBESEAL01", "national seal");
    fakes::AddNationalSeal("national seal", "name", "national picture").verifyResult = 5;
    EXPECT_EQ(Query(), 5);
    EXPECT_EQ(GetEsealMode(), 2);
    EXPECT_EQ(SelectedSeal(), fakes::EsSeal("old picture"));
    EXPECT_EQ(Fetch(11), "old picture");
    int width = 0;
    int height = 0;
    GetSealPicSize(&width, &height);
    EXPECT_EQ(width, -1);
    EXPECT_EQ(height, -1);
    fakes::AddCertificate("label", "cert-1");
    EXPECT_EQ(SelectedCert(), "cert-1");
}

TEST_F(SingleCertFlowTest, ACertificateOfTheScanNeverReachesTheDialogWhateverItsSeals) {
    fakes::AddCertificate("label", "box/hlvqDev000000000000000000");
    fakes::AddFile("box/hlvqDev000000000000000000", "ESEAL01", fakes::EsSeal("picture"));
    fakes::On("SOF_Login").Returns(5);
    ExpectQueryFails(TESMARK_LOGIN_FAILED);
    EXPECT_THAT(Failures(), ElementsAre("g_appId is ", "pzm LoginIn error 5"));
    EXPECT_THAT(ProbesAndChecks(), IsEmpty());
    fakes::On("SOF_Login") = {};
    EXPECT_EQ(Picture(), "picture");
    EXPECT_EQ(SelectedCert(), "box/hlvqDev000000000000000000");
}

TEST_F(SingleCertFlowTest, AnIdentifierOf64BytesRunsOnIntoTheLabel) {
    const std::string certId(70, 'c');
    fakes::AddCertificate("label", certId);
    const std::string known = std::string(64, 'c') + "label";
    fakes::AddCertificate("dummy", known).device = "SOFT";
    fakes::AddFile(known, "ESEAL01", fakes::EsSeal("picture"));
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(SelectedCert(), known);
}

}  // namespace
