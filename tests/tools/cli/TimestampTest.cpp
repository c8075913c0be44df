// Signatures with time stamps of an authority on the loopback address: made, shown, verified.

#include <filesystem>

#include "StampFixture.h"
#include "components/certservice/Certificate.h"
#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/Places.h"
#include "components/certservice/ServiceCodes.h"
#include "support/LoopbackServer.h"
#include "tools/timestampauthority/TimeStampAuthority.h"

namespace {

// An authority below the development CA, which this machine trusts.
class TimestampTest : public StampFixture<CliTest> {
protected:
    TimestampTest() {
        MakeKey("rsa", "rsa2048");
        MakeSeal("rsa", "es", "rsa");
        int code = 0;
        const auto ca = DevelopmentCa::Open(KeyKind::kRsa, CaFolderPath(), TrustFolderPath(), code);
        const CertificateHandle issuer = ParseCertificate(ca->Certificate());
        m_authority = TimeStampAuthority::Make(issuer.get(), ca->Key());
    }

    // From here on signatures are to be stamped.
    void UseAuthority(const std::string& url) const {
        for (const auto& [name, value] : std::vector<std::pair<std::string, std::string>>{
                 {"TimeStampEngine", CLI_TIME_STAMP_ENGINE},
                 {"TimeStampUrl", url},
                 {"bSignWithTimeStamp", "1"}}) {
            ASSERT_EQ(Tesmark({"config", "set", name, value}).exitCode, 0) << name;
        }
    }

    std::unique_ptr<TimeStampAuthority> m_authority;
    LoopbackServer m_server{
        [this](const LoopbackServer::Request& r) { return m_authority->HttpAnswer(r.body); }};
};

TEST_F(TimestampTest, AStampedPdfCarriesATimeStampThatIsVerified) {
    UseAuthority(m_server.Url("/"));
    const auto stamped = Stamp({"--timestamp", "--pin", "123456"});
    ASSERT_EQ(stamped.exitCode, 0) << stamped.error;
    const Json::Value signature = Json({"verify", m_out})["signatures"][0];
    EXPECT_EQ(signature["verdict"].asString(), "good") << signature;
    EXPECT_EQ(signature["timeStamp"]["time"].asString().size(), 19u);
    EXPECT_EQ(signature["timeStamp"]["policy"].asString(), kAuthorityPolicy);
    EXPECT_EQ(signature["timeStamp"]["hash"].asString(), "SHA256");
    const auto shown = Tesmark({"timestamp", m_out});
    EXPECT_EQ(shown.exitCode, 0) << shown.error;
    EXPECT_EQ(shown.out.rfind("good  Signature1  2", 0), 0u) << shown.out;
    EXPECT_NE(PdfSig().find("Signature is Valid"), std::string::npos);
}

TEST_F(TimestampTest, ASignatureFileCarriesOneToo) {
    UseAuthority(m_server.Url("/"));
    const std::string file = InPrefix("text.txt");
    WriteFile(file, "a text to be signed\n");
    const auto made = Tesmark({"sign", file, "--timestamp", "--pin", "123456"});
    ASSERT_EQ(made.exitCode, 0) << made.error;
    EXPECT_EQ(Tesmark({"timestamp", file + ".p7s"}).exitCode, 0);
    const Json::Value told = Json({"verify", "--detached", file + ".p7s", file});
    EXPECT_EQ(told["verdict"].asString(), "good") << told;
    EXPECT_FALSE(told["timeStamp"].isNull());
}

TEST_F(TimestampTest, AnAuthorityThatIsNotTrustedMakesTheSignatureBad) {
    UseAuthority(m_server.Url("/"));
    ASSERT_EQ(Stamp({"--timestamp", "--pin", "123456"}).exitCode, 0);
    std::filesystem::remove(InTrust("velmora-development-rsa.pem"));
    EXPECT_EQ(Tesmark({"timestamp", m_out}).exitCode, 7);
    const Json::Value row = Json({"timestamp", m_out})["timeStamps"][0];
    EXPECT_EQ(row["verdict"].asString(), "bad");
    EXPECT_EQ(row["code"].asInt(), kServiceTimeStampUntrusted);
    EXPECT_EQ(Tesmark({"verify", m_out}).exitCode, 7);
}

TEST_F(TimestampTest, WithoutTheSettingOrAnAnswerNothingIsWritten) {
    const auto unset = Stamp({"--timestamp", "--pin", "123456"});
    EXPECT_EQ(unset.exitCode, 3);
    EXPECT_NE(unset.error.find("bSignWithTimeStamp"), std::string::npos) << unset.error;
    UseAuthority(LoopbackServer::DeadUrl("/"));
    EXPECT_EQ(Stamp({"--timestamp", "--pin", "123456"}).exitCode, 1);
    EXPECT_TRUE(NothingWritten());
}

TEST_F(TimestampTest, ASealSignatureCarriesNone) {
    UseAuthority(m_server.Url("/"));
    MakeKey("sm2", "sm2");
    MakeSeal("sm2", "gb2020", "sm2");
    const auto outcome = Stamp({"--timestamp", "--cert", "sm2", "--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.error.find("carries no time stamp"), std::string::npos) << outcome.error;
    EXPECT_TRUE(NothingWritten());
}

}  // namespace
