// `tesmark stamp` where a seal's status is asked for.

#include <gmock/gmock.h>

#include "SourceFixture.h"
#include "support/LoopbackServer.h"

namespace {

using testing::HasSubstr;

class SealStatusStampTest : public SourceFixture {
protected:
    SealStatusStampTest() {
        MakeKey("alice", "sm2");
        MakeSeal("alice", "gb2020", "alice");
        Set("ReqEsealStatus", "1");
        Set("sEsealStateUrl", m_service.Address());
    }
    std::int64_t Offer() {
        return m_service.Offer(FileContent(InKeys("alice/certificate.pem")),
                               FileContent(InKeys("alice/files/GBESEAL")));
    }

    NoProxy m_noProxy;
    OnlineSeals m_service{platform::Utf8FromPath(InPrefix("seals.db"))};
};

TEST_F(SealStatusStampTest, ASealThatIsSuspendedOrUnknownIsToldAsSuch) {
    ExpectRefusal({}, 1, "the seal status service doesn't know the seal");
    const std::int64_t seal = Offer();
    ASSERT_EQ(Stamped()["mode"].asInt(), 2);
    ASSERT_TRUE(std::filesystem::remove(m_out));
    m_service.Suspend(seal);
    ExpectRefusal({}, 1, "0x0C000075: the seal is suspended");
}

TEST_F(SealStatusStampTest, ASealThatIsNamedIsAskedAboutToo) {
    const std::int64_t seal = Offer();
    ASSERT_EQ(Stamped({"--cert", "alice", "--seal", "GBESEAL"})["mode"].asInt(), 2);
    ASSERT_TRUE(std::filesystem::remove(m_out));
    m_service.Suspend(seal);
    for (const std::vector<std::string>& named : std::vector<std::vector<std::string>>{
             {"--cert", "alice"}, {"--seal", "GBESEAL"}, {"--cert", "alice", "--seal", "alice"}}) {
        ExpectRefusal(named, 1, "0x0C000075: the seal is suspended");
    }
    Set("ReqEsealStatus", "0");
    EXPECT_EQ(Stamped({"--seal", "GBESEAL"})["mode"].asInt(), 2);
}

TEST_F(SealStatusStampTest, AServiceThatIsNotThereIsToldWithTheSetting) {
    Set("sEsealStateUrl", LoopbackServer::DeadUrl("/QelmServlet"));
    ExpectRefusal({}, 1, "the seal status service can't be reached");
    ExpectRefusal({}, 1, "tesmark config get sEsealStateUrl");
    LoopbackServer server(
        [](const std::string&) { return LoopbackServer::Page("200 OK", "<html></html>"); });
    Set("sEsealStateUrl", server.Url("/"));
    ExpectRefusal({}, 1, "tells no seal's status");
}

TEST_F(SealStatusStampTest, AnAddressThatIsNoneIsForTheAdministrator) {
    Set("sEsealStateUrl", "status.example");
    ExpectRefusal({}, 3, "sEsealStateUrl is no address of http or https");
    ExpectRefusal({}, 3, "tesmark config set sEsealStateUrl http://HOST/PATH");
    ASSERT_EQ(Tesmark({"config", "unset", "sEsealStateUrl"}).exitCode, 0);
    ExpectRefusal({}, 3, "tesmark config set sEsealStateUrl http://HOST/PATH");
}

}  // namespace
