// The verdict on a certificate, and the revocation that a signature's time forgives.
#include <gmock/gmock.h>

#include "ExportCalls.h"
#include "Verdicts.h"
#include "fakes/LibraryTest.h"
#include "support/LoopbackServer.h"
#include "support/ShownBoxes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kValidate[] = "SOF_ValidateCert(ctx, 8 \"DER of A\")";
constexpr char kTime[] = "2026-11-21 09:30:00";
constexpr int kRevoked = -3;

class VerifyCertTest : public LibraryTest {
protected:
    VerifyCertTest() : m_certificate(fakes::AddCertificate("label", "A")) { Start(); }

    // With the service up.
    void Start() {
        UnInitKVLLib();
        InitKVLLib();
        fakes::ClearCalls();
        ForgetLog();
    }
    static int Verify() { return VerifySignCert(AsBytes("DER of A"), 8, kTime); }

    fakes::Certificate& m_certificate;
};

TEST_F(VerifyCertTest, AGoodCertificateIsOneQuestionToTheService) {
    EXPECT_EQ(Verify(), 0);
    EXPECT_THAT(fakes::CallTexts(), ElementsAre(kValidate));
    EXPECT_THAT(Log(), ElementsAre("8 [VerifyTimeStamp]: begin", "8 [VerifySignCert]: ok"));
}

TEST_F(VerifyCertTest, TheServicesVerdictDecides) {
    for (const auto& [verdict, code] : kRefusals) {
        ForgetLog();
        m_certificate.validity = verdict;
        EXPECT_EQ(Verify(), code);
        EXPECT_THAT(Log(), ElementsAre("8 [VerifyTimeStamp]: begin",
                                       "3 [VerifySignCert]call SOF_ValidateCert error:" +
                                           std::to_string(verdict)));
    }
}

TEST_F(VerifyCertTest, AnyOtherVerdictCountsAsGood) {
    for (const int verdict : {-4, -7, 1, 0x0A00001B}) {
        ForgetLog();
        m_certificate.validity = verdict;
        EXPECT_EQ(Verify(), 0);
        EXPECT_THAT(Log(), ElementsAre("8 [VerifyTimeStamp]: begin", "8 [VerifySignCert]: ok"));
    }
}

TEST_F(VerifyCertTest, ARevokedCertificateWithoutTheSettingIsRefusedWithoutReadingTheTime) {
    m_certificate.validity = kRevoked;
    EXPECT_EQ(VerifySignCert(AsBytes("DER of A"), 8, nullptr), TESMARK_CERT_REVOKED);
    EXPECT_THAT(fakes::CallTexts(), ElementsAre(kValidate));
}

TEST_F(VerifyCertTest, TheSelectionOutlivesARefusal) {
    SetCurrentCertID("A");
    m_certificate.validity = kRevoked;
    EXPECT_EQ(Verify(), TESMARK_CERT_REVOKED);
    int length = 0;
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(length, 1);
}

// With the setting, and a list that a server gives.
class VerifyCertByListTest : public VerifyCertTest {
protected:
    VerifyCertByListTest() {
        m_prefix.SetNumber("bVerifyCRL", 1);
        fakes::On("SOF_GetCertInfoByOid").Gives("URI:" + m_server.Url("/ca1.crl"));
        Start();
    }

    const LoopbackServer m_server{
        [](const std::string&) { return LoopbackServer::Page("200 OK", "a list"); }};
};

TEST_F(VerifyCertByListTest, TheListGoesToTheServiceAsBase64BeforeItsVerdict) {
    EXPECT_EQ(Verify(), 0);
    EXPECT_THAT(fakes::CalledFunctions(),
                ElementsAre("SOF_GetCertInfoByOid", "SOF_GetCertInfoByOid", "SetUserConfig",
                            "SOF_ValidateCert"));
    EXPECT_THAT(fakes::CallTexts("SetUserConfig"),
                ElementsAre("SetUserConfig(ctx, 5, \"YSBsaXN0\")"));
    EXPECT_EQ(fakes::CallTexts().back(), kValidate);
}

TEST_F(VerifyCertByListTest, ACertificateRevokedAfterTheTimeCountsAsGood) {
    for (const int verdict : {-3, -6}) {
        fakes::ClearCalls();
        ForgetLog();
        m_certificate.validity = verdict;
        EXPECT_EQ(Verify(), 0);
        const auto calls = fakes::CallTexts();
        ASSERT_GE(calls.size(), 3u);
        EXPECT_EQ(calls[calls.size() - 3], "SOF_GetCertInfo(ctx, 8 \"DER of A\", 2, size?)");
        EXPECT_EQ(calls[calls.size() - 2], "SOF_GetCertInfo(ctx, 8 \"DER of A\", 2, out[11])");
        EXPECT_EQ(calls.back(),
                  "TVK_Check_CRL_Time(6 \"a list\", 11 \"serial of A\", "
                  "19 \"2026-11-21 09:30:00\")");
        EXPECT_THAT(Errors(), ElementsAre("[VerifySignCert]call SOF_ValidateCert error:" +
                                          std::to_string(verdict)));
    }
}

TEST_F(VerifyCertByListTest, ANullTimeIsAnEmptyOne) {
    m_certificate.validity = kRevoked;
    EXPECT_EQ(VerifySignCert(AsBytes("DER of A"), 8, nullptr), 0);
    EXPECT_EQ(fakes::CallTexts().back(),
              "TVK_Check_CRL_Time(6 \"a list\", 11 \"serial of A\", 0 \"\")");
}

TEST_F(VerifyCertByListTest, ACertificateRevokedBeforeTheTimeIsRefused) {
    m_certificate.validity = kRevoked;
    for (const int result : {99, -1}) {
        ForgetLog();
        fakes::On("TVK_Check_CRL_Time").Returns(result);
        EXPECT_EQ(Verify(), TESMARK_CERT_REVOKED);
        EXPECT_THAT(Errors(), ElementsAre("[VerifySignCert]call SOF_ValidateCert error:-3",
                                          "[VerifySignCert]call TVK_Check_CRL_Time error:" +
                                              std::to_string(result)));
    }
}

TEST_F(VerifyCertByListTest, ARevokedCertificateWhoseSerialNumberCannotBeReadCountsAsGood) {
    m_certificate.validity = kRevoked;
    fakes::On("SOF_GetCertInfo").ReturnsAt(1, 51).ReturnsAt(3, 52).ReportsSizeAt(4, -20);
    EXPECT_EQ(Verify(), 0);
    EXPECT_EQ(Verify(), 0);
    EXPECT_EQ(Verify(), 0);
    EXPECT_EQ(fakes::CountCalls("TVK_Check_CRL_Time"), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_GetCertInfo"), 4);
}

TEST_F(VerifyCertByListTest, TheTimeGoesToTheSealLibraryUnread) {
    m_certificate.validity = kRevoked;
    EXPECT_EQ(VerifySignCert(AsBytes("DER of A"), 8, ""), 0);
    EXPECT_EQ(VerifySignCert(AsBytes("DER of A"), 8, "no time"), 0);
    EXPECT_THAT(fakes::CallTexts("TVK_Check_CRL_Time"),
                ElementsAre("TVK_Check_CRL_Time(6 \"a list\", 11 \"serial of A\", 0 \"\")",
                            "TVK_Check_CRL_Time(6 \"a list\", 11 \"serial of A\", 7 \"no time\")"));
}

TEST_F(VerifyCertByListTest, AListForgivesNothingButARevocation) {
    for (const int verdict : {-1, -2, -5}) {
        m_certificate.validity = verdict;
        EXPECT_NE(Verify(), 0);
    }
    EXPECT_EQ(fakes::CountCalls("TVK_Check_CRL_Time"), 0);
}

TEST_F(VerifyCertByListTest, AListThatTheServiceRefusesEndsTheCheckWithoutABox) {
    fakes::On("SetUserConfig").Returns(113);
    ShownBoxes boxes;
    EXPECT_EQ(Verify(), TESMARK_CRL_NOT_ACCEPTED);
    EXPECT_EQ(TESMARK_CRL_NOT_ACCEPTED, 4637);
    EXPECT_EQ(boxes.Take(), "");
    EXPECT_EQ(fakes::CountCalls("SOF_ValidateCert"), 0);
    EXPECT_THAT(Errors(), ElementsAre("[SetCRL]call SetUserConfig error:113"));
}

TEST_F(VerifyCertByListTest, AListThatCannotBeHadEndsTheCheckWithoutABox) {
    const struct {
        const char* extension;
        const char* error;
    } cases[] = {{"", "GetCrlDataFromCert error:0"},
                 {"x", "GetCrlDataFromCert error:0"},
                 {"URI:ldap://192.0.2.7/cn=ca1", "GetCrlDataFromCert error:-3048"}};
    for (const auto& [extension, error] : cases) {
        fakes::ClearCalls();
        ForgetLog();
        fakes::On("SOF_GetCertInfoByOid").Gives(extension);
        ShownBoxes boxes;
        EXPECT_EQ(Verify(), TESMARK_CRL_FAILED);
        EXPECT_EQ(boxes.Take(), "");
        EXPECT_EQ(fakes::CountCalls("SOF_ValidateCert"), 0);
        EXPECT_THAT(Errors(), ElementsAre(error));
    }
}

TEST_F(VerifyCertByListTest, AnExtensionThatCannotBeReadAtEitherStepEndsTheCheck) {
    fakes::On("SOF_GetCertInfoByOid").ReturnsAt(1, 111).ReturnsAt(3, 112);
    EXPECT_EQ(Verify(), TESMARK_CRL_FAILED);
    EXPECT_EQ(Verify(), TESMARK_CRL_FAILED);
    EXPECT_THAT(Errors(),
                ElementsAre("GetCrlDataFromCert error:111", "GetCrlDataFromCert error:112"));
    EXPECT_THAT(m_server.Requests(), IsEmpty());
}

TEST_F(VerifyCertTest, StartsTheServiceByItself) {
    UnInitKVLLib();
    fakes::ClearCalls();
    EXPECT_EQ(Verify(), 0);
    EXPECT_EQ(fakes::CalledFunctions()[0], "SOF_Initialize");
}

}  // namespace
