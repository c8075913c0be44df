// `tesmark sign` and `tesmark hash`, judged by openssl.

#include <filesystem>

#include "CliFixture.h"

namespace {

class SignTest : public CliTest {
protected:
    SignTest() { WriteFile(m_file, "a text to be signed\n"); }

    ProgramOutcome Verify(const std::string& signature) const {
        return RunProgram({"/usr/bin/openssl", "cms", "-verify", "-binary", "-inform", "DER", "-in",
                           signature, "-content", m_file, "-noverify", "-out", "/dev/null"});
    }

    std::string m_file = InPrefix("text.txt");
};

TEST_F(SignTest, OpensslAcceptsTheDetachedSignatureOfAnRsaKey) {
    MakeKey("rsa", "rsa2048");
    const auto outcome = Tesmark({"sign", m_file, "--pin", "123456"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    const auto verdict = Verify(m_file + ".p7s");
    EXPECT_EQ(verdict.exitCode, 0) << verdict.error;
    WriteFile(m_file, "a text that was changed\n");
    EXPECT_NE(Verify(m_file + ".p7s").exitCode, 0);
}

TEST_F(SignTest, OpensslAcceptsTheSignatureMadeFromTheFilesHash) {
    MakeKey("rsa", "rsa2048");
    const std::string signature = InPrefix("big.p7s");
    const auto outcome = Tesmark({"sign", m_file, "--big", "-o", signature, "--pin", "123456"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    const auto verdict = Verify(signature);
    EXPECT_EQ(verdict.exitCode, 0) << verdict.error;
}

TEST_F(SignTest, TheCertificatesChainLeadsToTheTrustedDevelopmentCa) {
    MakeKey("rsa", "rsa2048");
    ASSERT_EQ(Tesmark({"sign", m_file, "--pin", "123456"}).exitCode, 0);
    const auto verdict = RunProgram({"/usr/bin/openssl", "cms", "-verify", "-binary", "-inform",
                                     "DER", "-in", m_file + ".p7s", "-content", m_file, "-CAfile",
                                     InTrust("velmora-development-rsa.pem"), "-purpose", "any",
                                     "-out", "/dev/null"});
    EXPECT_EQ(verdict.exitCode, 0) << verdict.error;
}

TEST_F(SignTest, ARawSignatureIsTheBareValue) {
    MakeKey("rsa", "rsa3072");
    ASSERT_EQ(Tesmark({"sign", m_file, "--raw", "--pin", "123456"}).exitCode, 0);
    EXPECT_EQ(FileContent(m_file + ".sig").size(), 384u);
}

TEST_F(SignTest, WhatIsReadIsNeverReplacedWhateverItsName) {
    MakeKey("rsa", "rsa2048");
    const std::string pin = InPrefix("pin.txt");
    WriteFile(pin, "123456\n");
    const std::string link = InPrefix("link.txt");
    std::filesystem::create_hard_link(m_file, link);
    for (const std::string& output : {m_file, InPrefix("./text.txt"), link, pin}) {
        for (const char* form : {"--raw", "--big"}) {
            const auto outcome = Tesmark({"sign", m_file, "-o", output, form, "--pin-file", pin});
            EXPECT_EQ(outcome.exitCode, 4) << output;
            EXPECT_NE(outcome.error.find("must be another file than the input"), std::string::npos)
                << outcome.error;
        }
    }
    std::filesystem::create_hard_link(m_file, m_file + ".p7s");
    EXPECT_EQ(Tesmark({"sign", m_file, "--pin-file", pin}).exitCode, 4);
    EXPECT_EQ(FileContent(m_file), "a text to be signed\n");
    EXPECT_EQ(FileContent(link), "a text to be signed\n");
    EXPECT_EQ(FileContent(pin), "123456\n");
}

TEST_F(SignTest, ASignatureOnStandardOutputStandsAlone) {
    MakeKey("rsa", "rsa2048");
    const auto outcome = Tesmark({"sign", m_file, "-o", "-", "--pin", "123456"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    WriteFile(InPrefix("piped.p7s"), outcome.out);
    EXPECT_EQ(Verify(InPrefix("piped.p7s")).exitCode, 0);
}

TEST_F(SignTest, AnSm2KeySignsToo) {
    MakeKey("sm2", "sm2");
    const Json::Value made = Json({"sign", m_file, "--pin", "123456"});
    EXPECT_EQ(made["algorithm"].asString(), "SM2");
    EXPECT_GT(FileContent(m_file + ".p7s").size(), 300u);
}

TEST_F(SignTest, OneOfSeveralCertificatesIsNamed) {
    MakeKey("rsa", "rsa2048");
    MakeKey("sm2", "sm2");
    EXPECT_EQ(Tesmark({"sign", m_file, "--pin", "123456", "--cert", "rsa"}).exitCode, 0);
    EXPECT_EQ(Tesmark({"sign", m_file, "--pin", "123456", "--cert", "DevKeys/sm2"}).exitCode, 0);
}

TEST_F(SignTest, AnOutputThatCannotBeWrittenIsTold) {
    MakeKey("rsa", "rsa2048");
    const auto outcome = Tesmark({"sign", m_file, "-o", InPrefix("no/such"), "--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.error.find("can't be written"), std::string::npos) << outcome.error;
}

TEST_F(SignTest, AMissingInputIsToldBeforeAnyPin) {
    const auto outcome = Tesmark({"sign", InPrefix("absent")});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.error.find("absent"), std::string::npos) << outcome.error;
}

// Where there is no log the library says on stdout what belongs into it.
TEST_F(SignTest, WithoutALogStandardOutputIsStillTheCommandsOwn) {
    MakeKey("rsa", "rsa2048");
    const std::string log = m_prefix.LogFolder() + "Fenmoor.log";
    std::filesystem::remove(log);
    std::filesystem::create_directories(log);
    const auto outcome = Tesmark({"sign", m_file, "-o", "-", "--pin", "123456"});
    const Json::Value examined = Json({"doctor"});
    std::filesystem::remove(log);
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_NE(outcome.error.find("KVLInitialize"), std::string::npos) << outcome.error;
    WriteFile(m_file + ".p7s", outcome.out);
    const auto verdict = Verify(m_file + ".p7s");
    EXPECT_EQ(verdict.exitCode, 0) << verdict.error;
    EXPECT_EQ(outcome.out.find("KVL"), std::string::npos);
    EXPECT_TRUE(examined.isObject());
}

TEST_F(SignTest, AWrongPinIsToldWithTheTriesThatAreLeft) {
    MakeKey("rsa", "rsa2048");
    const auto outcome = Tesmark({"sign", m_file, "--pin", "000000"});
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_NE(outcome.error.find("  5 tries left\n"), std::string::npos) << outcome.error;
    const auto seal = Tesmark({"seal", "new", "--name", "a", "--pin", "000000"});
    EXPECT_EQ(seal.exitCode, 6);
    EXPECT_NE(seal.error.find("  4 tries left\n"), std::string::npos) << seal.error;
}

TEST_F(SignTest, AFolderInThePinFilesPlaceIsToldAsOne) {
    MakeKey("rsa", "rsa2048");
    const auto outcome = Tesmark({"sign", m_file, "--pin-file", m_prefix.Path()});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.error.find("The PIN file is a folder: " + m_prefix.Path()), std::string::npos)
        << outcome.error;
}

TEST_F(SignTest, APinComesFromStandardInput) {
    MakeKey("rsa", "rsa2048");
    const auto outcome = Tesmark({"sign", m_file, "--pin-file", "-"}, "123456\n");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.error;
}

class HashTest : public CliTest {
protected:
    HashTest() { WriteFile(m_file, "abc"); }
    std::string Of(const std::string& algorithm) const {
        return Json({"hash", m_file, "--algorithm", algorithm})["hash"].asString();
    }
    std::string m_file = InPrefix("abc.txt");
};

// GB/T 32905, example 1; FIPS 180.
TEST_F(HashTest, TheHashesOfTheStandardsExample) {
    EXPECT_EQ(Of("sm3"), "66c7f0f462eeedd9d1f2d46bdc10e4e24167c4875cf2f7a2297da02b8f4ba8e0");
    EXPECT_EQ(Of("sha256"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(Of("sha1"), "a9993e364706816aba3e25717850c26c9cd0d89d");
}

TEST_F(HashTest, StandardInputIsHashedLikeAFile) {
    const auto outcome = Tesmark({"hash", "-"}, "abc");
    EXPECT_EQ(outcome.out, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad  -\n")
        << outcome.error;
}

TEST_F(HashTest, AnSm2CertificatesHashDiffersFromThePlainOne) {
    MakeKey("sm2", "sm2");
    const Json::Value made = Json({"hash", m_file, "--cert", "sm2"});
    EXPECT_EQ(made["algorithm"].asString(), "SM3");
    EXPECT_EQ(made["hash"].asString().size(), 64u);
    EXPECT_NE(made["hash"].asString(), Of("sm3"));
}

TEST_F(HashTest, AnRsaCertificatesHashIsThePlainOne) {
    MakeKey("rsa", "rsa2048");
    EXPECT_EQ(Json({"hash", m_file, "--cert", "rsa"})["hash"].asString(), Of("sha256"));
}

// It was the plain hash, as if the certificate had a part in it.
TEST_F(HashTest, AnAlgorithmThatTheCertificateDoesNotSignWithIsAUsageError) {
    MakeKey("sm2", "sm2");
    MakeKey("rsa", "rsa2048");
    const auto with = [this](const char* cert, const char* algorithm) {
        return Tesmark({"hash", m_file, "--cert", cert, "--algorithm", algorithm});
    };
    for (const auto& [cert, algorithm] : std::vector<std::pair<const char*, const char*>>{
             {"sm2", "sha1"}, {"sm2", "sha256"}, {"rsa", "sha1"}, {"rsa", "sm3"}}) {
        const auto outcome = with(cert, algorithm);
        EXPECT_EQ(outcome.exitCode, 2) << cert << algorithm;
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.error.find(std::string("--algorithm ") + algorithm), std::string::npos)
            << outcome.error;
    }
    EXPECT_EQ(with("sm2", "sm3").exitCode, 0);
    EXPECT_EQ(with("rsa", "sha256").exitCode, 0);
}

TEST_F(HashTest, AnUnknownAlgorithmIsAUsageError) {
    EXPECT_EQ(Tesmark({"hash", m_file, "--algorithm", "md5"}).exitCode, 2);
}

TEST_F(HashTest, AFileThatIsNotThereIsTold) {
    EXPECT_EQ(Tesmark({"hash", InPrefix("absent")}).exitCode, 4);
}

}  // namespace
