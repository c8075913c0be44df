#include "session/CertificateChoice.h"

#include "ScanTest.h"
#include "dialogs/DialogFrame.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr int kFailure = 77;

class CertificateChoiceTest : public ScanTest {
protected:
    CertificateChoiceTest() { fakes::ResetWorld(); }

    int Choose() { return ChooseCertificate(m_certId); }
    // The user picks the certificate in the dialog, which ends so.
    void UserChooses(const std::string& label, const std::string& certId) {
        g_user.certSelect = [=, this] {
            m_offered = g_dialogCertLabel;
            g_pickedCertLabel = label;
            g_currentCertId.Assign(certId);
            return kDialogConfirmed;
        };
    }
    void DialogEndsWith(int end) {
        g_user.certSelect = [=, this] {
            m_offered = g_dialogCertLabel;
            return end;
        };
    }
    void ExpectForgotten() {
        EXPECT_EQ(g_pickedCertLabel, "");
        EXPECT_TRUE(g_currentCertId.Empty());
    }

    std::string m_certId;
    std::string m_offered = "no dialog";
};

TEST_F(CertificateChoiceTest, TheOnlyCertificateIsTakenWithoutADialogOrALogin) {
    fakes::AddCertificate("label", "cert-1");
    EXPECT_EQ(Choose(), 0);
    EXPECT_EQ(m_certId, "cert-1");
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
    EXPECT_EQ(g_pickedCertLabel, "label");
    EXPECT_FALSE(Called("SOF_Login"));
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(CertificateChoiceTest, AListThatCannotBeHadIsTheResult) {
    EXPECT_EQ(Choose(), TESMARK_NO_KEY);
    fakes::AddCertificate("label", "cert-1");
    fakes::On("SOF_GetUserList").Returns(kFailure);
    EXPECT_EQ(Choose(), TESMARK_CERT_LIST_FAILED);
    EXPECT_EQ(m_certId, "");
}

TEST_F(CertificateChoiceTest, OfSeveralTheUserPicksOne) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2");
    UserChooses("two", "cert-2");
    EXPECT_EQ(Choose(), 0);
    EXPECT_EQ(m_offered, "one||cert-1&&&two||cert-2&&&");
    EXPECT_EQ(m_certId, "cert-2");
    EXPECT_EQ(g_pickedCertLabel, "two");
}

TEST_F(CertificateChoiceTest, ACancelledDialogIsMinusOneAndLeavesTheIdentifier) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2");
    g_pickedCertLabel = "of an earlier choice";
    DialogEndsWith(kDialogCancelled);
    m_certId = "as it was";
    EXPECT_EQ(Choose(), TESMARK_FAILED);
    EXPECT_EQ(m_certId, "as it was");
    ExpectForgotten();
}

TEST_F(CertificateChoiceTest, ADialogThatCannotBeShownIsZeroAndLeavesTheIdentifier) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2");
    g_pickedCertLabel = "of an earlier choice";
    DialogEndsWith(platform::kDialogNotShown);
    m_certId = "as it was";
    EXPECT_EQ(Choose(), 0);
    EXPECT_EQ(m_certId, "as it was");
    ExpectForgotten();
}

TEST_F(CertificateChoiceTest, DevicesOfTheScanButItsPlaceholderAreLeftOut) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("left out", "box/hlvqDev123");
    fakes::AddCertificate("renamed", kScanCert);
    DialogEndsWith(kDialogCancelled);
    EXPECT_EQ(Choose(), TESMARK_FAILED);
    EXPECT_EQ(m_offered, "one||cert-1&&&扫码签章||" + std::string(kScanCert) + "&&&");
}

TEST_F(CertificateChoiceTest, AListWithAnotherDeviceOfTheScanAloneGivesZeroAndNoIdentifier) {
    fakes::AddCertificate("label", "box/hlvqDev123");
    EXPECT_EQ(Choose(), 0);
    EXPECT_EQ(m_certId, "");
    ExpectForgotten();
    EXPECT_FALSE(Called("SOF_Login"));
}

// The place behind the first label of the whole list is looked at in what is offered.
TEST_F(CertificateChoiceTest, ALongLabelThatIsLeftOutMakesTwoCertificatesCountAsOne) {
    fakes::AddCertificate("a label of 23 characters", "hlvqDev1");
    fakes::AddCertificate("x", "c1");
    fakes::AddCertificate("y", "c2");
    EXPECT_EQ(Choose(), 0);
    EXPECT_EQ(m_certId, "c1");
}

TEST_F(CertificateChoiceTest, AShortLabelThatIsLeftOutMakesOneCertificateCountAsSeveral) {
    fakes::AddCertificate("x", "hlvqDev1");
    fakes::AddCertificate("a longer label", "cert-1");
    UserChooses("a longer label", "cert-1");
    EXPECT_EQ(Choose(), 0);
    EXPECT_EQ(m_offered, "a longer label||cert-1&&&");
    EXPECT_EQ(m_certId, "cert-1");
}

TEST_F(CertificateChoiceTest, ALabelLeftOutOfTheSameLengthCountsRightly) {
    fakes::AddCertificate("same", "hlvqDev1");
    fakes::AddCertificate("here", "cert-1");
    EXPECT_EQ(Choose(), 0);
    EXPECT_EQ(m_certId, "cert-1");
}

TEST_F(CertificateChoiceTest, TheBarsJustAtTheLookedAtPlaceCountAsSeveral) {
    fakes::AddCertificate("four", "hlvqDev1");
    fakes::AddCertificate("sixsix", "cert-1");
    DialogEndsWith(kDialogCancelled);
    EXPECT_EQ(Choose(), TESMARK_FAILED);
    fakes::ResetWorld();
    fakes::AddCertificate("four", "hlvqDev1");
    fakes::AddCertificate("fives", "cert-1");
    EXPECT_EQ(Choose(), 0);
    EXPECT_EQ(m_certId, "cert-1");
}

TEST_F(CertificateChoiceTest, ARecordWhoseEndComesBeforeItsBarsHasNoIdentifier) {
    fakes::AddCertificate("odd&&&label", "cert-1");
    fakes::On("GetDeviceInfo").Gives("HARD");
    DialogEndsWith(kDialogCancelled);
    EXPECT_EQ(Choose(), TESMARK_FAILED);
    EXPECT_EQ(m_offered, "odd&&&label||&&&label||cert-1&&&");
}

TEST_F(CertificateChoiceTest, AnIdentifierOfAnyLengthIsTakenWhole) {
    fakes::AddCertificate("label", std::string(1000, 'c'));
    EXPECT_EQ(Choose(), 0);
    EXPECT_EQ(m_certId, std::string(1000, 'c'));
}

TEST_F(CertificateChoiceTest, ACertificateOfTheCloudIsLoggedInToAndKnownByItsLastLogin) {
    fakes::AddCertificate("我的翠枫证书", "cloud");
    fakes::On("SOF_GetLastLoginCertID").Gives("cloud-in-use");
    EXPECT_EQ(Choose(), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_Login"), ElementsAre("SOF_Login(ctx, \"cloud\", \"\")"));
    EXPECT_EQ(fakes::CallTexts("SOF_GetLastLoginCertID").front(),
              "SOF_GetLastLoginCertID(ctx, \"cloud\", size?)");
    EXPECT_EQ(m_certId, "cloud-in-use");
    EXPECT_EQ(g_currentCertId.Text(), "cloud-in-use");
    EXPECT_EQ(g_pickedCertLabel, "我的翠枫证书");
    EXPECT_FALSE(Called("SOF_Logout"));
}

TEST_F(CertificateChoiceTest, AFailedLoginToTheCloudForgetsTheChoice) {
    fakes::AddCertificate("翠枫证书", "cloud");
    fakes::On("SOF_Login").Returns(kFailure);
    EXPECT_EQ(Choose(), TESMARK_LOGIN_FAILED);
    ExpectForgotten();
    EXPECT_THAT(Failures(), ElementsAre("wfk LoginIn error 77"));
    EXPECT_FALSE(Called("SOF_GetLastLoginCertID"));
}

TEST_F(CertificateChoiceTest, AnUnknownLastLoginIsReturnedAsItIsWithTheChoiceKept) {
    fakes::AddCertificate("翠枫证书", "cloud");
    for (const auto& [number, code] :
         {std::pair{1, TESMARK_LAST_LOGIN_FAILED}, std::pair{2, TESMARK_LAST_LOGIN_FAILED}}) {
        fakes::ClearCalls();
        fakes::On("SOF_GetLastLoginCertID") = {};
        fakes::On("SOF_GetLastLoginCertID").ReturnsAt(number, kFailure);
        EXPECT_EQ(Choose(), code);
    }
    fakes::On("SOF_GetLastLoginCertID") = {};
    fakes::On("SOF_GetLastLoginCertID").Gives("");
    EXPECT_EQ(Choose(), TESMARK_NO_LAST_LOGIN);
    EXPECT_EQ(g_currentCertId.Text(), "cloud");
    EXPECT_EQ(g_pickedCertLabel, "翠枫证书");
}

TEST_F(CertificateChoiceTest, AServiceThatKnowsNoLastLoginHasItsOwnCode) {
    m_prefix.RegisterCertService(fakes::ServicePath(fakes::Service::WithoutLastLogin));
    fakes::AddCertificate("翠枫证书", "cloud");
    EXPECT_EQ(Choose(), TESMARK_NO_LAST_LOGIN_CALL);
}

TEST_F(CertificateChoiceTest, AServiceWhoseFileIsGoneLeavesNothingSelectedAfterTheLoginToTheCloud) {
    fakes::AddCertificate("翠枫证书", "cloud");
    ASSERT_EQ(EnsureServiceReady(), 0);
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    EXPECT_EQ(Choose(), 0);
    EXPECT_EQ(m_certId, "");
    EXPECT_TRUE(g_currentCertId.Empty());
}

TEST_F(CertificateChoiceTest, APickedCertificateOfTheCloudIsLoggedInToAsWell) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("翠枫证书", "cloud");
    UserChooses("翠枫证书", "cloud");
    fakes::On("SOF_GetLastLoginCertID").Gives("in-use");
    EXPECT_EQ(Choose(), 0);
    EXPECT_EQ(m_certId, "in-use");
}

TEST_F(CertificateChoiceTest, ThePlaceholderOfTheScanIsLoggedInToByAScan) {
    m_prefix.SetText("appid", "host");
    fakes::AddCertificate("longlabel", kScanCert);
    ASSERT_EQ(EnsureServiceReady(), 0);
    fakes::ClearCalls();
    fakes::On("SOF_Logout").Returns(kFailure);
    EXPECT_EQ(Choose(), 0);
    EXPECT_EQ(m_certId, kScanCert);
    EXPECT_EQ(g_pickedCertLabel, "扫码签章");
    EXPECT_EQ(SentPin(), Pin("host"));
    const std::vector<std::string> calls = fakes::CalledFunctions();
    EXPECT_THAT((std::vector<std::string>{calls.end() - 2, calls.end()}),
                ElementsAre("SOF_Logout", "SOF_Login"));
    EXPECT_THAT(Failures(), ElementsAre("g_appId is host"));
}

TEST_F(CertificateChoiceTest, AFailedScanForgetsTheChoice) {
    fakes::AddCertificate("longlabel", kScanCert);
    fakes::On("SOF_Login").Returns(kFailure);
    EXPECT_EQ(Choose(), TESMARK_LOGIN_FAILED);
    ExpectForgotten();
    EXPECT_THAT(ScanFailures(), ElementsAre("pzm LoginIn error 77"));
}

TEST_F(CertificateChoiceTest, ACancelledDialogStillLogsInToTheScanThatIsSelected) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2");
    g_currentCertId.Assign(kScanCert);
    DialogEndsWith(kDialogCancelled);
    EXPECT_EQ(Choose(), TESMARK_FAILED);
    EXPECT_EQ(fakes::CountCalls("SOF_Login"), 1);
    EXPECT_EQ(g_currentCertId.Text(), kScanCert);
}

TEST_F(CertificateChoiceTest, TheKeyTypeOfTheChosenCertificateIsTold) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2").keyType = "RSA";
    UserChooses("two", "cert-2");
    char type[kKeyTypeSize] = {};
    EXPECT_EQ(session::GetCertType(type), 0);
    EXPECT_STREQ(type, "RSA");
    EXPECT_EQ(g_currentCertId.Text(), "cert-2");
}

TEST_F(CertificateChoiceTest, ASelectedCertificateIsNotChosenAnew) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2");
    g_currentCertId.Assign("cert-1");
    char type[kKeyTypeSize] = {};
    EXPECT_EQ(session::GetCertType(type), 0);
    EXPECT_STREQ(type, "SM2");
    EXPECT_FALSE(Called("SOF_GetUserList"));
}

TEST_F(CertificateChoiceTest, ACancelledChoiceEndsTheSelectionWithTheSeal) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddCertificate("two", "cert-2");
    g_selectedSeal.Assign("seal");
    DialogEndsWith(kDialogCancelled);
    char type[kKeyTypeSize] = "as it was";
    EXPECT_EQ(session::GetCertType(type), TESMARK_FAILED);
    EXPECT_STREQ(type, "as it was");
    EXPECT_TRUE(g_selectedSeal.Empty());
}

TEST_F(CertificateChoiceTest, ACertificateThatFailsItsChecksEndsTheSelection) {
    fakes::AddCertificate("one", "cert-1").validity = -2;
    g_selectedSeal.Assign("seal");
    char type[kKeyTypeSize] = {};
    EXPECT_EQ(session::GetCertType(type), TESMARK_CERT_EXPIRED);
    EXPECT_TRUE(g_currentCertId.Empty());
    EXPECT_TRUE(g_selectedSeal.Empty());
}

TEST_F(CertificateChoiceTest, AnUnidentifiedChoiceFailsAtTheCheck) {
    fakes::AddCertificate("label", "hlvqDev123");
    char type[kKeyTypeSize] = {};
    EXPECT_EQ(session::GetCertType(type), TESMARK_CERT_EXPORT_FAILED);
}

TEST_F(CertificateChoiceTest, AServiceThatCannotStartEndsTheSelection) {
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    g_currentCertId.Assign("cert-1");
    char type[kKeyTypeSize] = {};
    EXPECT_EQ(session::GetCertType(type), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_TRUE(g_currentCertId.Empty());
}

}  // namespace
