// The road of one stamp with a token as the key: SoftHSM 2 behind its PKCS#11 module.

#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/Places.h"
#include "components/certservice/tokens/linux/SoftHsm.h"
#include "tools/cli/CliFixture.h"

namespace {

class TokenOnLinux : public CliTest {
protected:
    // An RSA key with a certificate of the development CA.
    TokenOnLinux() {
        SetServicePath("Pkcs11Modules", SoftHsm::ModulePath());
        m_token.MakeToken("stamp");
        int code = 0;
        const auto ca = DevelopmentCa::Open(KeyKind::kRsa, CaFolderPath(), TrustFolderPath(), code);
        const KeyHandle key = MakeRsaKey();
        CertificateRequest request;
        request.commonName = "Token Holder";
        m_token.StoreKey("stamp", key.get(), "01");
        m_token.StoreCertificate("stamp", ca->Issue(key.get(), request), "01", "holder");
    }

    SoftHsm m_token;
    std::string m_out = InPrefix("out.pdf");
};

TEST_F(TokenOnLinux, TheTokensCertificateIsListed) {
    const Json::Value certificates = Json({"list"})["certificates"];
    ASSERT_EQ(certificates.size(), 1u);
    EXPECT_TRUE(certificates[0]["certId"].asString().starts_with("P11/"));
    EXPECT_EQ(certificates[0]["commonName"].asString(), "Token Holder");
    EXPECT_TRUE(certificates[0]["problem"].isNull()) << certificates[0];
}

TEST_F(TokenOnLinux, ASealOnTheTokenStampsAPdfThatPdfsigCallsValid) {
    const auto seal =
        Tesmark({"seal", "new", "--form", "es", "--name", "Token Holder", "--pin", "123456"});
    ASSERT_EQ(seal.exitCode, 0) << seal.error;
    const auto stamp = Tesmark({"stamp", kContract, m_out, "--pin", "123456"});
    ASSERT_EQ(stamp.exitCode, 0) << stamp.error;
    const std::string verdict = RunProgram({"/usr/bin/pdfsig", "-nocert", m_out}).out;
    EXPECT_NE(verdict.find("Signature is Valid"), std::string::npos) << verdict;
    EXPECT_NE(verdict.find("Total document signed"), std::string::npos) << verdict;
}

TEST_F(TokenOnLinux, ANationalSealOnTheTokenMakesASealSignature) {
    const auto seal =
        Tesmark({"seal", "new", "--form", "gb2020", "--name", "Token Holder", "--pin", "123456"});
    ASSERT_EQ(seal.exitCode, 0) << seal.error;
    const Json::Value stamped = Json({"stamp", kContract, m_out, "--pin", "123456"});
    EXPECT_EQ(stamped["mode"].asInt(), 2) << stamped;
}

TEST_F(TokenOnLinux, AWrongPinIsToldAndNothingIsWritten) {
    ASSERT_EQ(Tesmark({"seal", "new", "--form", "es", "--name", "T", "--pin", "123456"}).exitCode,
              0);
    const auto outcome = Tesmark({"stamp", kContract, m_out, "--pin", "000000"});
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_NE(outcome.error.find("the PIN is wrong"), std::string::npos) << outcome.error;
    EXPECT_TRUE(FilesBeginningWith("out.pdf").empty());
}

TEST_F(TokenOnLinux, APulledTokenIsNoKeyAnyMore) {
    m_token.RemoveTokens();
    const auto outcome = Tesmark({"stamp", kContract, m_out, "--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 3) << outcome.error;
    EXPECT_TRUE(FilesBeginningWith("out.pdf").empty());
}

}  // namespace
