// `tesmark verify --detached`: signatures in files of their own.

#include "CliFixture.h"
#include "components/certservice/ServiceCodes.h"

namespace {

class VerifyDetachedTest : public CliTest {
protected:
    VerifyDetachedTest() { WriteFile(m_file, "a text to be signed\n"); }

    void Sign(const std::string& algorithm) const {
        MakeKey("key", algorithm);
        ASSERT_EQ(Tesmark({"sign", m_file, "--pin", "123456"}).exitCode, 0);
    }
    std::vector<std::string> Arguments() const {
        return {"verify", "--detached", m_file + ".p7s", m_file};
    }

    std::string m_file = InPrefix("text.txt");
};

TEST_F(VerifyDetachedTest, SignaturesOfBothAlgorithmsAreGoodUntilTheDataChange) {
    for (const char* algorithm : {"rsa2048", "sm2"}) {
        MakeKey(algorithm, algorithm);
        WriteFile(m_file, "a text to be signed\n");
        ASSERT_EQ(Tesmark({"sign", m_file, "--cert", algorithm, "--pin", "123456"}).exitCode, 0);
        const Json::Value good = Json(Arguments());
        EXPECT_EQ(good["verdict"].asString(), "good") << good;
        EXPECT_EQ(good["signer"]["name"].asString(), algorithm);
        EXPECT_EQ(Tesmark(Arguments()).exitCode, 0);
        WriteFile(m_file, "a text that was changed\n");
        EXPECT_EQ(Tesmark(Arguments()).exitCode, 7);
        const Json::Value bad = Json(Arguments());
        EXPECT_EQ(bad["steps"][0]["name"].asString(), "signature");
        EXPECT_FALSE(bad["steps"][0]["good"].asBool()) << bad;
        EXPECT_NE(bad["steps"][0]["reason"].asString(), "");
    }
}

TEST_F(VerifyDetachedTest, ALargeFileOfAnSm2SignerIsReadByItsPath) {
    WriteFile(m_file, std::string(65 * 1024 * 1024, 'x'));
    Sign("sm2");
    EXPECT_EQ(Tesmark(Arguments()).exitCode, 0);
    WriteFile(m_file, std::string(65 * 1024 * 1024, 'y'));
    const Json::Value bad = Json(Arguments());
    EXPECT_EQ(bad["verdict"].asString(), "bad");
    EXPECT_EQ(bad["steps"][0]["code"].asInt(), kServiceSignatureInvalid) << bad;
}

TEST_F(VerifyDetachedTest, WhatIsNoSignatureIsBad) {
    Sign("rsa2048");
    WriteFile(m_file + ".p7s", "no signature");
    EXPECT_EQ(Tesmark(Arguments()).exitCode, 7);
    EXPECT_EQ(Json(Arguments())["kind"].asString(), "unknown form");
}

TEST_F(VerifyDetachedTest, FilesThatAreMissingAreTold) {
    Sign("rsa2048");
    EXPECT_EQ(Tesmark({"verify", "--detached", m_file + ".none", m_file}).exitCode, 4);
    EXPECT_EQ(Tesmark({"verify", "--detached", m_file + ".p7s", m_file + ".none"}).exitCode, 4);
}

TEST_F(VerifyDetachedTest, TheTimeStampOfASignatureFileIsLookedFor) {
    Sign("rsa2048");
    EXPECT_EQ(Tesmark({"timestamp", m_file + ".p7s"}).exitCode, 7);
    EXPECT_EQ(Json({"timestamp", m_file + ".p7s"})["timeStamps"][0]["verdict"].asString(), "none");
    EXPECT_EQ(Tesmark({"timestamp", m_file + ".none"}).exitCode, 4);
}

}  // namespace
