// A server of revocation lists that never answers, until the system gives up on it.
#include <gmock/gmock.h>

#include "ExportCalls.h"
#include "bridge/AppOpt.h"
#include "fakes/Curl.h"
#include "fakes/LibraryTest.h"
#include "foundation/Text.h"
#include "support/ShownBoxes.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int kTimedOut = 28;

class SlowServerTest : public LibraryTest {
protected:
    SlowServerTest() {
        fakes::Curl() = {};
        fakes::Curl().results["curl_easy_perform"] = kTimedOut;
        fakes::AddCertificate("label", "A");
        m_prefix.SetNumber("bVerifyCRL", 1);
        fakes::On("SOF_GetCertInfoByOid").Gives("URI:http://192.0.2.7/ca1.crl");
        KVLInitialize(m_appOpt);
        ForgetLog();
    }
    ~SlowServerTest() override { KVLUnInitialize(m_appOpt); }

    CAppOpt m_appOpt;
};

TEST_F(SlowServerTest, IsWaitedForWithoutALimitOfTheLibrarysOwn) {
    EXPECT_EQ(m_appOpt.VerifySignCert(AsBytes("DER of A"), 8, "time"), TESMARK_CRL_FAILED);
    for (const std::string& call : fakes::Curl().calls) {
        EXPECT_THAT(call, testing::Not(HasSubstr("TIMEOUT")));
        EXPECT_THAT(call, testing::Not(HasSubstr("option ")));
    }
    EXPECT_THAT(fakes::Curl().calls, Contains("curl_easy_perform"));
}

TEST_F(SlowServerTest, EndsAVerificationWithTheSystemsLimit) {
    EXPECT_EQ(m_appOpt.VerifySignCert(AsBytes("DER of A"), 8, "time"), TESMARK_CRL_FAILED);
    EXPECT_THAT(Errors(),
                ElementsAre("curl_easy_perform failed, 28", "GetCrlDataFromCert error:28"));
}

TEST_F(SlowServerTest, EndsTheCheckOfASealSignature) {
    fakes::On("SOF_VerifySignedMessage").Returns(91);
    fakes::On("TVK_Get_Sign_Cert_From_SIG").Gives("REVSIG9mIEE=");
    EXPECT_EQ(m_appOpt.VerifyPlainDataEx(AsBytes("s"), 1, AsBytes("data"), 4), TESMARK_CRL_FAILED);
    EXPECT_EQ(fakes::CountCalls("TVK_Verify_SES_Sign"), 0);
}

TEST_F(SlowServerTest, WarnsASignerWhoseKeyTypeComesAllTheSame) {
    char type[kKeyTypeSize] = {};
    ShownBoxes boxes;
    EXPECT_EQ(m_appOpt.GetKeyType("A", type), 0);
    EXPECT_STREQ(type, "SM2");
    EXPECT_THAT(boxes.Take(), HasSubstr(AnsiToUtf8("获取CRL失败！")));
}

TEST_F(SlowServerTest, LeavesAnEmptyListThatTheNextQuestionRenews) {
    EXPECT_EQ(m_appOpt.VerifySignCert(AsBytes("DER of A"), 8, "time"), TESMARK_CRL_FAILED);
    fakes::Curl() = {};
    ForgetLog();
    EXPECT_EQ(m_appOpt.VerifySignCert(AsBytes("DER of A"), 8, "time"), TESMARK_CRL_FAILED);
    EXPECT_THAT(fakes::Curl().calls, Contains("curl_easy_perform"));
    EXPECT_THAT(Errors(), ElementsAre("GetCrlDataFromCert error:0"));
}

}  // namespace
