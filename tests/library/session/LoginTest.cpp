#include "SessionTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LoginTest : public SessionTest {};

TEST_F(LoginTest, ALoginSelectsTheCertificate) {
    fakes::AddCertificate("label", "cert-1");
    EXPECT_EQ(LoginIn("cert-1", "1234"), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_Login"), ElementsAre("SOF_Login(ctx, \"cert-1\", \"1234\")"));
    EXPECT_THAT(Failures(), IsEmpty());
    EXPECT_EQ(SelectedCert(), "cert-1");
}

TEST_F(LoginTest, AWrongPinLeavesTheSelectionAndTheInnerCodeInTheLogAlone) {
    fakes::AddCertificate("label", "cert-1");
    SetCurrentCertID("cert-1");
    fakes::On("SOF_Login").Returns(2148);
    EXPECT_EQ(LoginIn("cert-2", "wrong"), TESMARK_LOGIN_FAILED);
    EXPECT_THAT(Failures(), ElementsAre("LoginIn error 2148"));
    EXPECT_EQ(SelectedCert(), "cert-1");
}

TEST_F(LoginTest, ALoginOfANullIdentifierEmptiesTheSelection) {
    fakes::AddCertificate("label", "cert-1");
    SetCurrentCertID("cert-1");
    EXPECT_EQ(LoginIn(nullptr, "1234"), 0);
    EXPECT_EQ(SelectedCert(), "");
}

TEST_F(LoginTest, ALoginLeavesTheSeal) {
    AddGbKey();
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(LoginIn("cert-1", "1234"), 0);
    EXPECT_EQ(SelectedSeal(), "national seal");
    EXPECT_EQ(GetEsealMode(), 2);
}

TEST_F(LoginTest, ALoginWithoutAServiceFailsWithoutATraceOfIt) {
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    EXPECT_EQ(LoginIn("cert-1", "1234"), TESMARK_LOGIN_FAILED);
    EXPECT_THAT(Failures(), testing::Contains("LoginIn error -3022"));
    EXPECT_FALSE(Called("SOF_Login"));
}

TEST_F(LoginTest, TheLoginOfTheCurrentCertificateLeavesTheSelection) {
    fakes::AddCertificate("label", "cert-1");
    SetCurrentCertID("cert-1");
    EXPECT_EQ(CurrentCertLogin("cert-2", "1234"), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_Login"), ElementsAre("SOF_Login(ctx, \"cert-2\", \"1234\")"));
    EXPECT_EQ(SelectedCert(), "cert-1");
}

TEST_F(LoginTest, AFailedLoginOfTheCurrentCertificateHasItsOwnWordsAndLeavesTheSelection) {
    SetCurrentCertID("cert-2");
    fakes::On("SOF_Login").Returns(9);
    EXPECT_EQ(CurrentCertLogin("cert-1", "1234"), TESMARK_LOGIN_FAILED);
    EXPECT_THAT(Failures(), ElementsAre("pzm LoginIn error 9"));
    int length = 0;
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(length, 6);
}

}  // namespace
