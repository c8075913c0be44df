// By which time a verdict asks for revocation: the one that a time stamp proves, else now.

#include <openssl/pem.h>

#include <ctime>

#include "CliFixture.h"
#include "Library.h"
#include "SignatureVerdict.h"
#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/Places.h"
#include "components/certservice/ServiceCodes.h"
#include "components/crypto/Signature.h"
#include "components/seallibrary/SealCodes.h"
#include "foundation/Text.h"
#include "include/TesmarkOpt.h"
#include "support/LoopbackServer.h"
#include "tests/components/seallibrary/HandMade.h"
#include "tests/components/seallibrary/HandMadeToken.h"

namespace {

constexpr std::time_t kDay = 86'400;

std::string Utc(std::time_t time) {
    char text[20] = {};
    std::strftime(text, sizeof text, "%Y%m%d%H%M%SZ", std::gmtime(&time));
    return text;
}
// As the library takes a time.
std::string Local(std::time_t time) {
    char text[20] = {};
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", std::localtime(&time));
    return text;
}

std::string PemOf(const EVP_PKEY* key) {
    const BioHandle text(BIO_new(BIO_s_mem()));
    PEM_write_bio_PrivateKey(text.get(), key, nullptr, nullptr, 0, nullptr, nullptr);
    char* bytes = nullptr;
    const long length = BIO_get_mem_data(text.get(), &bytes);
    return {bytes, static_cast<std::size_t>(length)};
}

std::string PemOf(const std::string& certificate) {
    return "-----BEGIN CERTIFICATE-----\n" + Base64Encode(certificate) +
           "\n-----END CERTIFICATE-----\n";
}

// Signers of a trusted authority whose list is fetched; all was signed two days ago, or so it says.
class VerdictTimeTest : public CliTest {
protected:
    void Open(KeyKind kind) {
        int code = 0;
        m_kind = kind;
        m_ca = DevelopmentCa::Open(kind, CaFolderPath(), TrustFolderPath(), code);
        ASSERT_TRUE(m_ca) << code;
        m_maker = Identity("Maker", "5678");
        m_signer = Identity("Signer", "1234");
        m_authority = Identity("Authority", "9ABC", "critical,timeStamping");
        Revoke({});
    }
    TestIdentity Identity(const std::string& name, const std::string& serial,
                          const std::string& purpose = "") const {
        TestIdentity identity = MakeIdentity(m_kind);
        CertificateRequest request;
        request.commonName = name;
        request.serial = serial;
        request.notBefore = m_now - 20 * kDay;
        request.notAfter = m_now + 20 * kDay;
        request.distributionPoint = m_server.Url("/ca.crl");
        request.extendedKeyUsage = purpose;
        identity.certificate = m_ca->Issue(identity.key.get(), request);
        return identity;
    }
    void Revoke(const std::vector<RevokedCertificate>& revoked) {
        m_list = m_ca->RevocationList(revoked, m_now - kDay, m_now + kDay);
    }
    void CheckRevocation() const { m_prefix.SetNumber("bVerifyCRL", 1); }

    std::string SealSignature(bool stamped, const TestIdentity& maker) const {
        HandMadeSeal seal;
        seal.version = 5;
        seal.createDate = seal.validStart = Utc(m_now - 10 * kDay);
        seal.validEnd = Utc(m_now + 10 * kDay);
        seal.pictureType = "gif";
        seal.picture = std::string("GIF89a\1\0\1\0", 10);
        HandMadeSignature signature;
        signature.seal = Build(seal, maker, m_signer);
        signature.timeInfo = Der(0x18, Utc(m_now - 2 * kDay));
        signature.dataHash = Digest(HashAlgorithm::kSm3, "data");
        if (stamped) {
            signature.stamp = [this](std::string_view value) {
                HandMadeToken token{.stamped = value};
                token.time = Utc(m_now - 3 * kDay);
                return Der(0xA0, DerBits(Build(token, m_authority)));
            };
        }
        return Build(signature, m_signer);
    }
    SignatureVerdict JudgeSeal(bool stamped = false) const { return JudgeSeal(stamped, m_maker); }
    SignatureVerdict JudgeSeal(bool stamped, const TestIdentity& maker) const {
        const LibrarySession library;
        return JudgeSignature(SealSignature(stamped, maker), {"data", ""}, "");
    }
    static const VerdictStep& Step(const SignatureVerdict& verdict, std::string_view name) {
        static const VerdictStep kNone{"none", false, "", 0, ""};
        for (const VerdictStep& step : verdict.steps) {
            if (step.name == name) return step;
        }
        return kNone;
    }
    static std::string Failures(const SignatureVerdict& verdict) {
        std::string text;
        for (const VerdictStep& step : verdict.steps) {
            if (!step.good) text += step.name + std::string(": ") + step.reason + "\n";
        }
        return text;
    }

    std::time_t m_now = std::time(nullptr);
    KeyKind m_kind = KeyKind::kSm2;
    std::string m_list;
    LoopbackServer m_server{
        [this](const LoopbackServer::Request&) { return LoopbackServer::Page("200 OK", m_list); }};
    std::unique_ptr<DevelopmentCa> m_ca;
    TestIdentity m_maker;
    TestIdentity m_signer;
    TestIdentity m_authority;
};

TEST_F(VerdictTimeTest, ASealSignatureOfASignerWhoIsNotRevokedIsGoodAndTellsItsMaker) {
    Open(KeyKind::kSm2);
    CheckRevocation();
    const SignatureVerdict verdict = JudgeSeal();
    EXPECT_EQ(Failures(verdict), "");
    EXPECT_TRUE(verdict.revocationChecked);
    EXPECT_EQ(verdict.signingTime, Local(m_now - 2 * kDay));
    EXPECT_FALSE(verdict.timeStamp);
    ASSERT_TRUE(verdict.seal);
    EXPECT_NE(verdict.seal->maker.find("CN=Maker"), std::string::npos) << verdict.seal->maker;
    EXPECT_FALSE(verdict.seal->madeBySigner);
}

TEST_F(VerdictTimeTest, WithoutTheSettingRevocationIsNotCheckedAndToldAsSuch) {
    Open(KeyKind::kSm2);
    Revoke({{"1234", m_now - 9 * kDay}});
    const SignatureVerdict verdict = JudgeSeal();
    EXPECT_EQ(Failures(verdict), "");
    EXPECT_FALSE(verdict.revocationChecked);
}

TEST_F(VerdictTimeTest, AListThatCannotBeHadIsNoCheck) {
    Open(KeyKind::kSm2);
    CheckRevocation();
    m_list.clear();
    const SignatureVerdict verdict = JudgeSeal();
    EXPECT_EQ(Step(verdict, "certificate").code, TESMARK_CRL_FAILED) << Failures(verdict);
    EXPECT_FALSE(verdict.revocationChecked);
}

TEST_F(VerdictTimeTest, ASealOfTheSignersOwnMakingIsToldAsSuch) {
    Open(KeyKind::kSm2);
    const SignatureVerdict verdict = JudgeSeal(false, m_signer);
    EXPECT_EQ(Failures(verdict), "");
    ASSERT_TRUE(verdict.seal);
    EXPECT_TRUE(verdict.seal->madeBySigner);
}

TEST_F(VerdictTimeTest, AClaimedTimeBeforeTheRevocationSavesNoSealSignature) {
    Open(KeyKind::kSm2);
    CheckRevocation();
    Revoke({{"1234", m_now - kDay}});
    const SignatureVerdict verdict = JudgeSeal();
    EXPECT_TRUE(Step(verdict, "signature").good) << "the seal library takes what is claimed";
    EXPECT_EQ(Step(verdict, "certificate").code, TESMARK_CERT_REVOKED) << Failures(verdict);
    EXPECT_TRUE(Step(verdict, "signing time").good);
}

TEST_F(VerdictTimeTest, AStampedTimeBeforeTheRevocationSavesASealSignature) {
    Open(KeyKind::kSm2);
    CheckRevocation();
    Revoke({{"1234", m_now - kDay}});
    const SignatureVerdict verdict = JudgeSeal(true);
    EXPECT_EQ(Failures(verdict), "");
    ASSERT_TRUE(verdict.timeStamp);
    EXPECT_EQ(verdict.timeStamp->time, Local(m_now - 3 * kDay));
    EXPECT_NE(verdict.timeStamp->authority.find("CN=Authority"), std::string::npos);
    EXPECT_TRUE(Step(verdict, "time stamp").good);
}

TEST_F(VerdictTimeTest, AStampedTimeBehindTheRevocationSavesNone) {
    Open(KeyKind::kSm2);
    CheckRevocation();
    Revoke({{"1234", m_now - 4 * kDay}});
    const SignatureVerdict verdict = JudgeSeal(true);
    EXPECT_EQ(Step(verdict, "signature").code, kSealSignerRevoked) << Failures(verdict);
    EXPECT_EQ(Step(verdict, "certificate").code, TESMARK_CERT_REVOKED);
}

TEST_F(VerdictTimeTest, ARevokedMakerOnTheSameListMakesASealSignatureBadUnlessItIsOlder) {
    Open(KeyKind::kSm2);
    CheckRevocation();
    Revoke({{"5678", m_now - kDay}});
    EXPECT_EQ(Step(JudgeSeal(), "signature").code, kSealMakerRevoked);
    EXPECT_EQ(Failures(JudgeSeal(true)), "") << "the time stamp proves that the seal was there";
}

TEST_F(VerdictTimeTest, ARevokedAuthorityOnTheSameListMakesASealSignatureBad) {
    Open(KeyKind::kSm2);
    CheckRevocation();
    Revoke({{"9ABC", m_now - kDay}});
    EXPECT_EQ(Failures(JudgeSeal()), "");
    EXPECT_EQ(Step(JudgeSeal(true), "signature").code, kSealTimeStampRevoked);
}

TEST_F(VerdictTimeTest, AStampOfAStrangerIsAStepThatFails) {
    Open(KeyKind::kSm2);
    m_authority = MakeAuthority(KeyKind::kSm2);
    const SignatureVerdict verdict = JudgeSeal(true);
    EXPECT_EQ(Step(verdict, "time stamp").failed, "time stamp") << Failures(verdict);
    EXPECT_FALSE(Step(verdict, "signature").good);
}

// Under an authority that ended yesterday, a day after the signing.
class ExpiredAuthorityTest : public VerdictTimeTest {
protected:
    void OpenExpired() {
        Open(KeyKind::kSm2);
        CertificateRequest request;
        request.commonName = "Expired";
        request.notBefore = m_now - 20 * kDay;
        request.notAfter = m_now - kDay;
        m_expired = m_ca->MakeSubordinate(m_kind, request);
        ASSERT_TRUE(m_expired);
        WriteFile(TrustFolderPath() + "/expired.pem", m_expired->CertificatePem());
    }
    void IssueAnew(TestIdentity& identity, int lastDay, const std::string& purpose = "") const {
        CertificateRequest request;
        request.commonName = "Anew";
        request.notBefore = m_now - 15 * kDay;
        request.notAfter = m_now + lastDay * kDay;
        request.extendedKeyUsage = purpose;
        identity.certificate = m_expired->Issue(identity.key.get(), request);
    }

    std::unique_ptr<DevelopmentCa> m_expired;
};

TEST_F(ExpiredAuthorityTest, ASignatureOfASignerWhoEndedWithTheAuthorityStaysGood) {
    OpenExpired();
    IssueAnew(m_signer, -1);
    IssueAnew(m_maker, -1);
    IssueAnew(m_authority, -1, "critical,timeStamping");
    for (const bool stamped : {false, true}) {
        const SignatureVerdict verdict = JudgeSeal(stamped);
        EXPECT_EQ(Failures(verdict), "");
        EXPECT_EQ(Step(verdict, "certificate").code, TESMARK_CERT_EXPIRED);
        EXPECT_NE(Step(verdict, "certificate").reason.find("has expired since"), std::string::npos);
    }
}

TEST_F(ExpiredAuthorityTest, ASignerWhoOutlivesTheAuthorityIsNotTrusted) {
    OpenExpired();
    for (const int lastDay : {0, 20}) {
        IssueAnew(m_signer, lastDay);
        for (const bool stamped : {false, true}) {
            const SignatureVerdict verdict = JudgeSeal(stamped);
            EXPECT_EQ(Step(verdict, "signature").code, kSealSignerNotTrusted) << Failures(verdict);
            EXPECT_EQ(Step(verdict, "certificate").code, TESMARK_NOT_TRUSTED);
            EXPECT_EQ(Step(verdict, "certificate").failed, "chain");
        }
    }
}

TEST_F(ExpiredAuthorityTest, AMakerOrStamperThatOutlivesTheAuthorityIsNotTrusted) {
    OpenExpired();
    IssueAnew(m_authority, 20, "critical,timeStamping");
    EXPECT_EQ(Step(JudgeSeal(true), "signature").code, kSealTimeStampNotTrusted);
    EXPECT_EQ(Failures(JudgeSeal()), "");
    IssueAnew(m_maker, 20);
    EXPECT_EQ(Step(JudgeSeal(), "signature").code, kSealMakerNotTrusted);
}

class MessageVerdictTest : public VerdictTimeTest {
protected:
    // A detached PKCS#7 of the signer, or one with the data in it.
    std::string Sign(bool attached = false, bool withCertificate = true) {
        Open(KeyKind::kRsa);
        WriteFile(m_file, "data");
        WriteFile(InPrefix("key.pem"), PemOf(m_signer.key.get()));
        WriteFile(InPrefix("cert.pem"), PemOf(m_signer.certificate));
        std::vector<std::string> arguments = {"/usr/bin/openssl",
                                              "cms",
                                              "-sign",
                                              "-binary",
                                              "-in",
                                              m_file,
                                              "-signer",
                                              InPrefix("cert.pem"),
                                              "-inkey",
                                              InPrefix("key.pem"),
                                              "-outform",
                                              "DER",
                                              "-out",
                                              m_file + ".p7s"};
        if (attached) arguments.push_back("-nodetach");
        if (!withCertificate) arguments.push_back("-nocerts");
        const auto made = RunProgram(arguments);
        EXPECT_EQ(made.exitCode, 0) << made.error;
        return FileContent(m_file + ".p7s");
    }

    std::string m_file = InPrefix("data");
};

TEST_F(MessageVerdictTest, AClaimedTimeBeforeTheRevocationSavesNoMessage) {
    const std::string message = Sign();
    CheckRevocation();
    const LibrarySession library;
    Revoke({{"1234", m_now - kDay}});
    const SignatureVerdict verdict = JudgeSignature(message, {"data", ""}, Local(m_now - 2 * kDay));
    EXPECT_EQ(Step(verdict, "certificate").code, TESMARK_CERT_REVOKED) << Failures(verdict);
    EXPECT_EQ(Step(verdict, "certificate").failed, "revocation");
    EXPECT_TRUE(Step(verdict, "signing time").good);
    EXPECT_TRUE(verdict.revocationChecked);
}

TEST_F(MessageVerdictTest, AClaimedTimeOutsideTheCertificatesValidityIsWrong) {
    const std::string message = Sign();
    const LibrarySession library;
    const SignatureVerdict verdict =
        JudgeSignature(message, {"data", ""}, Local(m_now - 30 * kDay));
    EXPECT_TRUE(Step(verdict, "certificate").good) << Failures(verdict);
    EXPECT_EQ(Step(verdict, "signing time").code, TESMARK_TIME_OUTSIDE_VALIDITY);
}

TEST_F(MessageVerdictTest, AMessageWithoutItsSignersCertificateHasABadStepForIt) {
    const std::string message = Sign(false, false);
    const LibrarySession library;
    const SignatureVerdict verdict = JudgeSignature(message, {"data", ""}, "");
    EXPECT_EQ(Step(verdict, "certificate").code, kServiceSignerMissing) << Failures(verdict);
    EXPECT_FALSE(verdict.Good());
}

TEST_F(MessageVerdictTest, AnEmptyFileIsNotWhatAMessageHolds) {
    Sign(true);
    const std::string message = m_file + ".p7s";
    EXPECT_EQ(Tesmark({"verify", "--detached", message}).exitCode, 0);
    EXPECT_EQ(Tesmark({"verify", "--detached", message, m_file}).exitCode, 0);
    WriteFile(m_file, "");
    const Json::Value told = Json({"verify", "--detached", message, m_file});
    EXPECT_EQ(told["verdict"].asString(), "bad") << told;
    EXPECT_EQ(told["steps"][0]["failed"].asString(), "digest");
    EXPECT_EQ(told["steps"][0]["code"].asInt(), kServiceDigestMismatch);
    EXPECT_EQ(Tesmark({"verify", "--detached", message, "-"}, "").exitCode, 7);
    EXPECT_EQ(Tesmark({"verify", "--detached", message, "-"}, "data").exitCode, 0);
}

TEST_F(MessageVerdictTest, ADetachedSignatureOfAnEmptyFileIsGood) {
    Sign();
    WriteFile(m_file, "");
    EXPECT_EQ(Tesmark({"verify", "--detached", m_file + ".p7s", m_file}).exitCode, 7);
    const auto made = RunProgram({"/usr/bin/openssl", "cms", "-sign", "-binary", "-in", m_file,
                                  "-signer", InPrefix("cert.pem"), "-inkey", InPrefix("key.pem"),
                                  "-outform", "DER", "-out", m_file + ".p7s"});
    ASSERT_EQ(made.exitCode, 0) << made.error;
    EXPECT_EQ(Tesmark({"verify", "--detached", m_file + ".p7s", m_file}).exitCode, 0);
}

}  // namespace
