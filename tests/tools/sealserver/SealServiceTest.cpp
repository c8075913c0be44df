// The service's answers, to the byte.

#include "tools/sealserver/SealService.h"

#include "foundation/Text.h"
#include "tests/tools/sealserver/StoreFixture.h"
#include "tools/sealserver/OfferedSeal.h"

namespace {

class SealServiceTest : public StoreFixture {
protected:
    std::string Ask(const std::string& inside) {
        return m_service.Answer("0", "XML", "<ROOT>\r\n" + inside + "</ROOT>\r\n").body;
    }
    std::string AskList(const std::string& serial, const std::string& name) {
        return Ask("<REQUESTTYPE>GetSealList</REQUESTTYPE>\r\n<SN>" + serial + "</SN>\r\n<DN>" +
                   name + "</DN>\r\n");
    }
    std::string AskSeal(const std::string& number) {
        return Ask("<REQUESTTYPE>GetAppointedSeal</REQUESTTYPE>\r\n<SN>" +
                   std::string(kSignerSerial) + "</SN>\r\n<DN>" + kSignerName +
                   "</DN>\r\n<SEALNUM>" + number + "</SEALNUM>\r\n");
    }
    std::string AskStatus(const std::string& number, const std::string& hash) {
        return Ask("<REQUESTTYPE>GetSealStatus</REQUESTTYPE>\r\n<SEALNUM>" + number +
                   "</SEALNUM>\r\n<SEALHASH>" + hash + "</SEALHASH>\r\n");
    }

    SealService m_service{m_store};
};

std::string Refused(const std::string& status, const std::string& message) {
    return "<ROOT>\r\n<STATUSCODE>" + status + "</STATUSCODE>\r\n<MESSAGE>" + message +
           "</MESSAGE>\r\n</ROOT>\r\n";
}

std::string Status(const std::string& text) {
    return "<ROOT>\r\n<STATUSCODE>200</STATUSCODE>\r\n<SEALSTATUS>" + text +
           "</SEALSTATUS>\r\n</ROOT>\r\n";
}

constexpr char kNoSeals[] =
    "<ROOT>\r\n<STATUSCODE>200</STATUSCODE>\r\n<COUNT>0</COUNT>\r\n</ROOT>\r\n";

TEST_F(SealServiceTest, HelloIsAnsweredByAStatus) {
    EXPECT_EQ(Ask("<REQUESTTYPE>Hello</REQUESTTYPE>\r\n"),
              "<ROOT>\r\n<STATUSCODE>200</STATUSCODE>\r\n</ROOT>\r\n");
}

TEST_F(SealServiceTest, TheListHasTheCountFirstAndEachNumberBeforeItsName) {
    AddSeal({EsSeal(), "7001", "财务专用章"});
    AddSeal({EsSeal(), "7&2", "A <B>"});
    EXPECT_EQ(AskList(kSignerSerial, kSignerName),
              "<ROOT>\r\n<STATUSCODE>200</STATUSCODE>\r\n<COUNT>2</COUNT>\r\n"
              "<SEALINFO>\r\n<SEALNUM>7001</SEALNUM>\r\n<SEALNAME>财务专用章</SEALNAME>\r\n"
              "</SEALINFO>\r\n"
              "<SEALINFO>\r\n<SEALNUM>7&amp;2</SEALNUM>\r\n<SEALNAME>A &lt;B&gt;</SEALNAME>\r\n"
              "</SEALINFO>\r\n</ROOT>\r\n");
}

TEST_F(SealServiceTest, ACertificateThatIsNotKnownHasNoSeals) {
    EXPECT_EQ(AskList(kSignerSerial, kSignerName), kNoSeals);
    AddSeal({EsSeal(), "1", ""});
    EXPECT_EQ(AskList("1234ABCE", kSignerName), kNoSeals);
    EXPECT_EQ(AskList(kSignerSerial, "CN=signer"), kNoSeals);
    EXPECT_EQ(AskList(kSignerSerial, "CN=Signer, C=CN"), kNoSeals);
    EXPECT_NE(AskList("00:12:34:ab:cd", kSignerName), kNoSeals);
}

TEST_F(SealServiceTest, TheAppointedSealIsTheFile) {
    const std::string seal = NationalSeal();
    AddSeal({seal, "", ""});
    EXPECT_EQ(AskSeal(kSealNumber), "<ROOT>\r\n<STATUSCODE>200</STATUSCODE>\r\n<SEAL>" +
                                        Base64Encode(seal) + "</SEAL>\r\n</ROOT>\r\n");
}

TEST_F(SealServiceTest, AnEmptySealNumberGetsAStatusAndAMessage) {
    AddSeal({EsSeal(), "1", ""});
    EXPECT_EQ(AskSeal(""), Refused("400", "没有选择印章：印章编号为空"));
}

TEST_F(SealServiceTest, SealsOfOthersAreNotGivenOut) {
    EXPECT_EQ(AskSeal("1"), Refused("404", "没有找到该证书的印章"));
    EnterSeal(m_store, EnterCertificate(m_store, "", "99", "CN=Other"), {EsSeal(), "1", ""});
    AddSeal({EsSeal(), "2", ""});
    EXPECT_EQ(AskSeal("1"), Refused("404", "没有找到该编号的印章"));
}

TEST_F(SealServiceTest, ASuspendedSealIsInNoListAndRefused) {
    const std::int64_t id = AddSeal({EsSeal(), "1", ""});
    m_store.SetSuspended(id, true);
    EXPECT_EQ(AskList(kSignerSerial, kSignerName), kNoSeals);
    EXPECT_EQ(AskSeal("1"), Refused("403", "印章已停用"));
    m_store.SetSuspended(id, false);
    EXPECT_NE(AskList(kSignerSerial, kSignerName), kNoSeals);
}

TEST_F(SealServiceTest, TheStatusFollowsTheSealInItsFile) {
    const std::string seal = NationalSeal();
    const auto offered = ReadOfferedSeal(seal);
    ASSERT_TRUE(offered);
    EXPECT_EQ(AskStatus(offered->sealId, offered->hash), Status("unknown"));
    // The number under which it is given out doesn't count, the one in it does.
    const std::int64_t id = AddSeal({seal, "7001", ""});
    EXPECT_EQ(AskStatus(offered->sealId, offered->hash), Status("valid"));
    EXPECT_EQ(AskStatus("7001", offered->hash), Status("unknown"));
    EXPECT_EQ(AskStatus(offered->sealId, std::string(64, '0')), Status("replaced"));
    m_store.SetSuspended(id, true);
    EXPECT_EQ(AskStatus(offered->sealId, offered->hash), Status("suspended"));
    EXPECT_EQ(AskStatus("", offered->hash), Refused("400", "没有选择印章：印章编号为空"));
}

TEST_F(SealServiceTest, SuspendedForOneCertificateIsSuspendedForAll) {
    const std::string seal = NationalSeal();
    const auto offered = ReadOfferedSeal(seal);
    ASSERT_TRUE(offered);
    const std::int64_t id = AddSeal({seal, "", ""});
    EnterSeal(m_store, EnterCertificate(m_store, "", "99", "CN=Other"), {seal, "", ""});
    m_store.SetSuspended(id, true);
    EXPECT_EQ(AskStatus(offered->sealId, offered->hash), Status("suspended"));
}

TEST_F(SealServiceTest, OtherHeaderFieldsAreRefused) {
    const std::string hello = "<ROOT><REQUESTTYPE>Hello</REQUESTTYPE></ROOT>";
    const std::string refused = Refused("400", "请求头EncryptType或RequestContent不正确");
    EXPECT_EQ(m_service.Answer("1", "XML", hello).body, refused);
    EXPECT_EQ(m_service.Answer("", "XML", hello).body, refused);
    EXPECT_EQ(m_service.Answer("0", "JSON", hello).body, refused);
    EXPECT_EQ(m_service.Answer("0", "", hello).body, refused);
    EXPECT_NE(m_service.Answer("0", "XML", hello).body, refused);
}

TEST_F(SealServiceTest, TheLogIsToldWhatWasAskedWithoutNames) {
    AddSeal({EsSeal(), "7001", "财务"});
    const ServiceReply reply = m_service.Answer(
        "0", "XML",
        "<ROOT><REQUESTTYPE>GetSealList</REQUESTTYPE><SN>1234ABCD</SN><DN>CN=Signer</DN></ROOT>");
    EXPECT_EQ(reply.summary, "GetSealList 200 1");
    EXPECT_EQ(m_service.Answer("0", "XML", "<").summary, "- 400");
}

TEST_F(SealServiceTest, AFailureOfTheDatabaseIsAnAnswer) {
    Database(Path()).Execute("DROP TABLE seals; DROP TABLE certificates;");
    EXPECT_EQ(AskList(kSignerSerial, kSignerName), Refused("500", "服务器内部错误"));
}

}  // namespace
