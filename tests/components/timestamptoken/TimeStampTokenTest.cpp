#include "components/timestamptoken/TimeStampToken.h"

#include <gtest/gtest.h>

#include <fstream>

#include "components/crypto/Signature.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"
#include "tests/components/timestamptoken/HandMadeToken.h"

namespace {

ImprintDigest Of(std::string_view bytes) {
    return [bytes](HashAlgorithm hash) { return Digest(hash, bytes); };
}

class TimeStampTokenTest : public testing::TestWithParam<KeyKind> {
protected:
    TimeStampStep Judge(const std::string& der) {
        return m_token.Read(der) ? m_token.Verify(Of("stamped")) : TimeStampStep::kStructure;
    }
    TimeStampStep JudgeMade() { return Judge(Build(m_made, m_authority)); }

    TestIdentity m_authority = MakeAuthority(GetParam());
    HandMadeToken m_made{.stamped = "stamped"};
    CTimeStampToken m_token;
};

INSTANTIATE_TEST_SUITE_P(Keys, TimeStampTokenTest, testing::Values(KeyKind::kSm2, KeyKind::kRsa));

TEST_P(TimeStampTokenTest, AGoodTokenTellsWhoStampedAndWhen) {
    for (const bool national : {false, true}) {
        m_made.nationalOids = national;
        ASSERT_EQ(JudgeMade(), TimeStampStep::kNone);
        EXPECT_EQ(m_token.Time(), kTestNow + 60);
        EXPECT_EQ(m_token.Certificate(), m_authority.certificate);
        EXPECT_EQ(m_token.SerialNumber(), "4D2E");
        EXPECT_EQ(m_token.Policy(), "1.2.3.4");
        EXPECT_EQ(m_token.Imprint(), Digest(m_token.ImprintHash(), "stamped"));
    }
}

TEST_P(TimeStampTokenTest, AFractionOfASecondIsLeftOut) {
    m_made.time = "20260615120100.75Z";
    ASSERT_EQ(JudgeMade(), TimeStampStep::kNone);
    EXPECT_EQ(m_token.Time(), kTestNow + 60);
}

TEST_P(TimeStampTokenTest, ATokenOverOtherBytesFailsAtTheImprint) {
    m_made.stamped = "others";
    EXPECT_EQ(JudgeMade(), TimeStampStep::kImprint);
}

TEST_P(TimeStampTokenTest, AHashThatCantBeHadFailsAtTheImprint) {
    ASSERT_TRUE(m_token.Read(Build(m_made, m_authority)));
    EXPECT_EQ(m_token.Verify([](HashAlgorithm) { return std::string(); }), TimeStampStep::kImprint);
}

TEST_P(TimeStampTokenTest, WhatAnotherKeyOrOtherAttributesMadeFailsAtTheSignature) {
    m_made.signsOtherData = true;
    EXPECT_EQ(JudgeMade(), TimeStampStep::kSignature);
    m_made.signsOtherData = false;
    m_authority.key = MakeAuthority(GetParam()).key;
    EXPECT_EQ(JudgeMade(), TimeStampStep::kSignature);
}

TEST_P(TimeStampTokenTest, TheCertificateMustBeNamedInEitherVersion) {
    for (const bool second : {false, true}) {
        m_made.named2 = second;
        m_made.namedCertificate.clear();
        EXPECT_EQ(JudgeMade(), TimeStampStep::kNone);
        m_made.namedCertificate = MakeAuthority(GetParam()).certificate;
        EXPECT_EQ(JudgeMade(), TimeStampStep::kNamedCertificate);
    }
    m_made.withNamedCertificate = false;
    EXPECT_EQ(JudgeMade(), TimeStampStep::kNamedCertificate);
}

TEST_P(TimeStampTokenTest, TheCertificateMustBeForTimeStampsAloneAndCritically) {
    for (const char* usage : {"timeStamping", "critical,timeStamping,clientAuth", "clientAuth"}) {
        m_authority = MakeAuthority(GetParam(), {.extendedKeyUsage = usage});
        EXPECT_EQ(JudgeMade(), TimeStampStep::kPurpose) << usage;
    }
    m_authority = MakeIdentity(GetParam());
    EXPECT_EQ(JudgeMade(), TimeStampStep::kPurpose);
}

TEST_P(TimeStampTokenTest, WhatIsNoTokenFailsAtTheStructure) {
    const std::string good = Build(m_made, m_authority);
    for (const std::string& der :
         {std::string(), std::string("no token"), good + '\0', good.substr(0, good.size() - 1)})
        EXPECT_EQ(Judge(der), TimeStampStep::kStructure);
    EXPECT_EQ(m_token.Verify(Of("stamped")), TimeStampStep::kStructure);
    m_made.time = "yesterday";
    EXPECT_EQ(JudgeMade(), TimeStampStep::kStructure);
}

TEST_P(TimeStampTokenTest, AMessageOverSomethingElseThanATimeIsNoToken) {
    m_made.isTstInfo = false;
    EXPECT_EQ(JudgeMade(), TimeStampStep::kStructure);
}

TEST_P(TimeStampTokenTest, ATokenWithoutItsCertificateIsReadAndNotVerified) {
    m_made.withCertificate = false;
    ASSERT_TRUE(m_token.Read(Build(m_made, m_authority)));
    EXPECT_EQ(m_token.Time(), kTestNow + 60);
    EXPECT_EQ(m_token.Certificate(), "");
    EXPECT_EQ(m_token.Verify(Of("stamped")), TimeStampStep::kStructure);
}

// A token of the openssl program: an RSA authority, SHA-256, its CA's certificate beside its own.
class OpenSslTokenTest : public testing::Test {
protected:
    std::string Path(const char* name) const { return m_folder.Below(name); }
    void Write(const char* name, std::string_view text) {
        std::ofstream(Path(name), std::ios::binary) << text;
    }
    std::string Token(const std::string& data) {
        Write("data", data);
        Write("serial", "01\n");
        // The serial number's file by its bare name: the program takes a "\" of a path for an
        // escape.
        Write("settings",
              "[tsa]\ndefault_tsa=me\n[me]\nserial=serial\ndigests=sha256\n"
              "default_policy=1.2.3.4.1\nsigner_digest=sha256\n"
              "accuracy=secs:1\ness_cert_id_alg=sha256\n");
        WriteAuthority();
        Run({"ts", "-query", "-data", Path("data"), "-sha256", "-cert", "-out", Path("query")});
        Run({"ts", "-reply", "-config", Path("settings"), "-queryfile", Path("query"), "-signer",
             Path("tsa.pem"), "-inkey", Path("tsa.key"), "-token_out", "-out", Path("token")});
        std::ifstream file(Path("token"), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
    void WriteAuthority() {
        const TestIdentity authority = MakeAuthority(KeyKind::kRsa);
        Write("tsa.der", authority.certificate);
        Write("tsa.key.der", DerOf<i2d_PrivateKey>(authority.key.get()));
        Run({"x509", "-inform", "DER", "-in", Path("tsa.der"), "-out", Path("tsa.pem")});
        Run({"rsa", "-inform", "DER", "-in", Path("tsa.key.der"), "-out", Path("tsa.key")});
    }
    void Run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "/usr/bin/openssl");
        EXPECT_EQ(RunProgram(arguments, {.folder = m_folder.Path()}).exitCode, 0) << arguments[1];
    }

    TemporaryFolder m_folder;
};

TEST_F(OpenSslTokenTest, ATokenOfTheOpenSslProgramIsGood) {
    const std::string der = Token("stamped");
    CTimeStampToken token;
    ASSERT_TRUE(token.Read(der));
    EXPECT_EQ(token.Verify(Of("stamped")), TimeStampStep::kNone);
    EXPECT_EQ(token.Verify(Of("others")), TimeStampStep::kImprint);
    EXPECT_EQ(token.Policy(), "1.2.3.4.1");
}

TEST(TimeStampStepTest, EveryStepHasAText) {
    for (int step = 0; step <= static_cast<int>(TimeStampStep::kPurpose); ++step)
        EXPECT_STRNE(StepText(static_cast<TimeStampStep>(step)), "");
}

}  // namespace
