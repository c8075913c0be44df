#include "SessionTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int kFailure = 77;

class LogoutTest : public SessionTest {
protected:
    // What stands selected, unchecked.
    static int SelectedLength() {
        int length = 0;
        GetSelectedCertId(nullptr, &length);
        return length;
    }
};

TEST_F(LogoutTest, EveryCertificateIsLoggedOutAndTheSelectionEnds) {
    AddGbKey();
    fakes::AddCertificate("two", "cert-2");
    SetCurrentCertID("cert-1");
    EXPECT_EQ(Logout(), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_Logout"),
                ElementsAre("SOF_Logout(ctx, \"cert-1\")", "SOF_Logout(ctx, \"cert-2\")"));
    EXPECT_EQ(SelectedLength(), 0);
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(LogoutTest, TheSealItsPictureAndTheCertificatesTextAreDroppedAndTheSizeStays) {
    AddGbKey();
    ASSERT_EQ(Query(), 0);
    int length = 0;
    ASSERT_EQ(GetCertBase64Data(nullptr, &length), 0);
    EXPECT_EQ(Logout(), 0);
    fakes::ResetWorld();
    unsigned char buffer[16];
    length = 16;
    EXPECT_EQ(GetSealInfo(buffer, &length), TESMARK_NO_KEY);
    EXPECT_EQ(GetCertBase64Data(buffer, &length), TESMARK_NO_KEY);
    EXPECT_EQ(SelectedSeal(), "");
    EXPECT_EQ(GetEsealMode(), 0);
    int width = 0;
    int height = 0;
    GetSealPicSize(&width, &height);
    EXPECT_EQ(width, 40);
    EXPECT_EQ(height, 40);
}

TEST_F(LogoutTest, AScansCertificateIsLoggedOutAloneWithAllKeysPulled) {
    SetCurrentCertID("box/hlvqDev123");
    EXPECT_EQ(Logout(), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_Logout"), ElementsAre("SOF_Logout(ctx, \"box/hlvqDev123\")"));
    EXPECT_FALSE(Called("SOF_GetUserList"));
    EXPECT_FALSE(Called("GetDeviceCountEx"));
    EXPECT_EQ(SelectedLength(), 0);
}

TEST_F(LogoutTest, AFailedLogoutOfTheScanIsTheResultAndEndsTheSelection) {
    fakes::On("SOF_Logout").Returns(kFailure);
    SetCurrentCertID("box/hlvqDev123");
    EXPECT_EQ(Logout(), kFailure);
    EXPECT_EQ(SelectedLength(), 0);
}

TEST_F(LogoutTest, WithoutAnyKeyTheCodeOfTheListComesBackAndTheSelectionStays) {
    SetCurrentCertID("cert-1");
    EXPECT_EQ(Logout(), TESMARK_NO_KEY);
    EXPECT_EQ(SelectedLength(), 6);
    EXPECT_FALSE(Called("SOF_Logout"));
}

TEST_F(LogoutTest, TheResultOfTheLastOneCountsAndAFailureDoesNotStopTheWalk) {
    for (const char* certId : {"cert-1", "cert-2", "cert-3"}) fakes::AddCertificate("x", certId);
    fakes::On("SOF_Logout").ReturnsAt(1, kFailure);
    EXPECT_EQ(Logout(), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_Logout"), 3);
    fakes::ClearCalls();
    fakes::On("SOF_Logout") = {};
    fakes::On("SOF_Logout").ReturnsAt(3, kFailure);
    SetCurrentCertID("cert-1");
    EXPECT_EQ(Logout(), kFailure);
    EXPECT_EQ(SelectedLength(), 0);
}

TEST_F(LogoutTest, AServiceThatCannotStartLeavesTheSelection) {
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    SetCurrentCertID("cert-1");
    EXPECT_EQ(Logout(), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(SelectedLength(), 6);
    SetCurrentCertID("hlvqDev1");
    EXPECT_EQ(Logout(), TESMARK_SERVICE_DOWN);
    EXPECT_EQ(SelectedLength(), 0);
}

TEST_F(LogoutTest, ItsScopeStandsInTheLog) {
    Logout();
    EXPECT_EQ(Log().front(), "8 [Logout start]");
    EXPECT_EQ(Log().back(), "8 [Logout end][Time consume N ms]");
}

// Through the exports; what they do in detail is told of the logic.
TEST_F(LogoutTest, TheExportsOfTheScanReachTheirWork) {
    const unsigned char name[] = "host";
    EXPECT_EQ(SetAppId(name, 4), 0);
    EXPECT_EQ(PZMLogin(), 0);
    EXPECT_THAT(Failures(), ElementsAre("g_appId is host"));
    EXPECT_EQ(SetAppId(nullptr, 0), 0);
    fakes::AddCertificate("label", "cert-1").keyType = "RSA";
    char type[261] = {};
    EXPECT_EQ(GetCertType(type), 0);
    EXPECT_STREQ(type, "RSA");
    EXPECT_EQ(SelectedCert(), "cert-1");
}

}  // namespace
