// The revocation list in the check of a certificate.
#include <gmock/gmock.h>

#include "ExportCalls.h"
#include "fakes/LibraryTest.h"
#include "foundation/Text.h"
#include "support/LoopbackServer.h"
#include "support/ShownBoxes.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class CrlCheckTest : public LibraryTest {
protected:
    CrlCheckTest() {
        fakes::AddCertificate("label", "A");
        SetCurrentCertID("A");
        m_prefix.SetNumber("bVerifyCRL", 1);
        InitKVLLib();
        fakes::ClearCalls();
        ForgetLog();
    }

    static void HasDistributionPoint(const std::string& text) {
        fakes::On("SOF_GetCertInfoByOid").Gives(text);
    }
    // The signature's result; the user's message goes to m_message, in UTF-8.
    int Sign() {
        OutPair out(512);
        ShownBoxes boxes;
        const int result = P7Sign("data", "", out.buffer, &out.length);
        m_message = boxes.Take();
        return result;
    }

    const LoopbackServer m_server{
        [](const std::string&) { return LoopbackServer::Page("200 OK", "a list"); }};
    std::string m_message;
};

TEST_F(CrlCheckTest, TheListGoesToTheServiceAsBase64BeforeTheChainIsChecked) {
    HasDistributionPoint("URI:" + m_server.Url("/ca1.crl"));
    EXPECT_EQ(Sign(), 0);
    const auto calls = fakes::CallTexts();
    const std::string size = std::to_string(4 + m_server.Url("/ca1.crl").size());
    ASSERT_GE(calls.size(), 9u);
    EXPECT_EQ(calls[4], "SOF_GetCertInfo(ctx, 8 \"DER of A\", 3, out[260])");
    EXPECT_EQ(calls[5], "SOF_GetCertInfoByOid(ctx, 8 \"DER of A\", \"2.5.29.31\", size?)");
    EXPECT_EQ(calls[6],
              "SOF_GetCertInfoByOid(ctx, 8 \"DER of A\", \"2.5.29.31\", out[" + size + "])");
    EXPECT_EQ(calls[7], "SetUserConfig(ctx, 5, \"YSBsaXN0\")");
    EXPECT_EQ(calls[8], "SOF_ValidateCert(ctx, 8 \"DER of A\")");
    EXPECT_EQ(m_message, "");
    EXPECT_THAT(Log(), Contains("8 [GetCrlDataFromCert]: begin"));
}

TEST_F(CrlCheckTest, WithoutTheSettingNoListIsAskedFor) {
    m_prefix.SetNumber("bVerifyCRL", 0);
    UnInitKVLLib();
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_GetCertInfoByOid"), 0);
}

TEST_F(CrlCheckTest, TheSettingIsThatOfTheServicesStart) {
    m_prefix.SetNumber("bVerifyCRL", 0);
    HasDistributionPoint("URI:" + m_server.Url("/ca1.crl"));
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(fakes::CountCalls("SetUserConfig"), 1);
}

TEST_F(CrlCheckTest, AnUnreachableServerWarnsTheUserAndTheSignatureGoesOn) {
    HasDistributionPoint("URI:" + LoopbackServer::DeadUrl("/ca1.crl"));
    EXPECT_EQ(Sign(), 0);
    EXPECT_THAT(m_message, HasSubstr(AnsiToUtf8("电子签章")));
    EXPECT_THAT(m_message, HasSubstr(AnsiToUtf8("获取CRL失败！")));
    EXPECT_THAT(Errors(), ElementsAre("curl_easy_perform failed, 7", "GetCrlDataFromCert error:7"));
    EXPECT_EQ(fakes::CountCalls("SetUserConfig"), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_SignMessageEx"), 1);
}

TEST_F(CrlCheckTest, AnEmptyListIsHandledAsAFailureWithTheValueZero) {
    for (const char* nothing : {"", "x"}) {
        ForgetLog();
        HasDistributionPoint(nothing);
        EXPECT_EQ(Sign(), 0);
        EXPECT_THAT(m_message, HasSubstr(AnsiToUtf8("获取CRL失败！")));
        EXPECT_THAT(Errors(), ElementsAre("GetCrlDataFromCert error:0"));
    }
}

TEST_F(CrlCheckTest, AFailureOfTheServiceIsPassedAtEitherStep) {
    HasDistributionPoint("URI:" + m_server.Url("/ca1.crl"));
    fakes::On("SOF_GetCertInfoByOid").ReturnsAt(1, 111).ReturnsAt(3, 112);
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(Sign(), 0);
    EXPECT_THAT(Errors(),
                ElementsAre("GetCrlDataFromCert error:111", "GetCrlDataFromCert error:112"));
    EXPECT_THAT(m_server.Requests(), IsEmpty());
}

TEST_F(CrlCheckTest, APointWithoutAUsableAddressIsToldByItsCode) {
    HasDistributionPoint("URI:ldap://192.0.2.7/cn=ca1");
    EXPECT_EQ(Sign(), 0);
    EXPECT_THAT(Errors(), ElementsAre("GetCrlDataFromCert error:-3048"));
    EXPECT_THAT(Log(), Contains("8 [GetCrlDataFromCert]: can not find crl url"));
}

TEST_F(CrlCheckTest, AListThatTheServiceRefusesWarnsTheUserAndTheSignatureGoesOn) {
    HasDistributionPoint("URI:" + m_server.Url("/ca1.crl"));
    fakes::On("SetUserConfig").Returns(113);
    EXPECT_EQ(Sign(), 0);
    EXPECT_THAT(m_message, HasSubstr(AnsiToUtf8("设置CRL失败！")));
    EXPECT_THAT(Errors(), ElementsAre("[SetCRL]call SetUserConfig error:113"));
    EXPECT_EQ(fakes::CountCalls("SOF_SignMessageEx"), 1);
}

TEST_F(CrlCheckTest, ASecondSignatureOfTheDayTakesTheListFromTheFile) {
    HasDistributionPoint("URI:" + m_server.Url("/ca1.crl"));
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(m_server.Requests().size(), 1u);
    EXPECT_EQ(fakes::CountCalls("SetUserConfig"), 2);
}

}  // namespace
