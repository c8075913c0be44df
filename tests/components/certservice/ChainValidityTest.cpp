// What SOF_ValidateCert says of a certificate below an authority that is out of its own validity.

#include <openssl/x509.h>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceTest.h"
#include "components/crypto/Signature.h"

namespace {

constexpr std::time_t kDay = 86'400;
constexpr int kUntrusted = -1;
constexpr int kExpired = -2;
constexpr int kNotYetValid = -5;
constexpr KeyKind kKinds[] = {KeyKind::kSm2, KeyKind::kRsa};

struct Days {
    int from;
    int to;
};

// All times are days from now.
class ChainValidityTest : public ServiceTest {
protected:
    CertificateRequest Within(Days days, const std::string& serial = {}) const {
        CertificateRequest request;
        request.commonName = "Intermediate";
        request.serial = serial;
        request.notBefore = m_now + days.from * kDay;
        request.notAfter = m_now + days.to * kDay;
        return request;
    }
    // Below a root that is valid for a hundred days on both sides.
    void OpenIntermediate(KeyKind kind, Days days) {
        m_root = DevelopmentCa::Make(kind, Within({-100, 100}));
        m_intermediate = m_root->MakeSubordinate(kind, Within(days, "5555"));
        WriteFile(Path("trust/root.pem"), m_root->CertificatePem());
        WriteFile(Path("trust/intermediate.pem"), m_intermediate->CertificatePem());
    }
    // The certificate of an intermediate with an RSA key, with other dates.
    std::string Renewed(Days days) const {
        const CertificateHandle copy = ParseCertificate(m_intermediate->Certificate());
        X509_time_adj_ex(X509_getm_notBefore(copy.get()), days.from, 0, nullptr);
        X509_time_adj_ex(X509_getm_notAfter(copy.get()), days.to, 0, nullptr);
        EXPECT_GT(X509_sign(copy.get(), m_root->Key(), EVP_sha256()), 0);
        return PemOf(copy.get());
    }
    int VerdictBelow(const DevelopmentCa& authority, Days days) {
        CertificateRequest request = Within(days, "1234");
        request.commonName = "Signer";
        return Validate(m_context, authority.Issue(m_key.get(), request));
    }
    int Verdict(Days days) { return VerdictBelow(*m_intermediate, days); }

    std::time_t m_now = std::time(nullptr);
    KeyHandle m_key{GenerateKey(KeyKind::kSm2, 0)};
    std::unique_ptr<DevelopmentCa> m_root;
    std::unique_ptr<DevelopmentCa> m_intermediate;
    void* m_context = Open();
};

TEST_F(ChainValidityTest, ACertificateThatOutlivesItsExpiredAuthorityIsUntrusted) {
    for (const KeyKind kind : kKinds) {
        OpenIntermediate(kind, {-50, -20});
        EXPECT_EQ(Verdict({-10, 90}), kUntrusted) << "issued after the authority's end";
        EXPECT_EQ(Verdict({-30, 90}), kUntrusted);
        EXPECT_EQ(Verdict({-10, -5}), kUntrusted);
        EXPECT_EQ(Verdict({-30, -19}), kUntrusted);
    }
}

TEST_F(ChainValidityTest, ACertificateThatEndedBeforeOrWithItsAuthorityHasMerelyExpired) {
    for (const KeyKind kind : kKinds) {
        OpenIntermediate(kind, {-50, -20});
        EXPECT_EQ(Verdict({-40, -30}), kExpired);
        EXPECT_EQ(Verdict({-50, -20}), kExpired);
        EXPECT_EQ(Verdict({-60, -30}), kExpired) << "the authority was renewed";
    }
}

TEST_F(ChainValidityTest, AnAuthorityInForceCoversWhatHasExpiredAndWhatItWillOutlive) {
    OpenIntermediate(KeyKind::kSm2, {-50, 20});
    EXPECT_EQ(Verdict({-10, 10}), 0);
    EXPECT_EQ(Verdict({-10, 90}), 0);
    EXPECT_EQ(Verdict({-60, 10}), 0);
    EXPECT_EQ(Verdict({-60, -55}), kExpired);
    EXPECT_EQ(Verdict({-40, -1}), kExpired);
    EXPECT_EQ(Verdict({10, 90}), kNotYetValid);
}

TEST_F(ChainValidityTest, ACertificateThatBeganBeforeItsAuthorityWhichIsYetToBeginIsUntrusted) {
    OpenIntermediate(KeyKind::kSm2, {10, 50});
    EXPECT_EQ(Verdict({-10, 40}), kUntrusted);
    EXPECT_EQ(Verdict({-10, -5}), kUntrusted);
    EXPECT_EQ(Verdict({20, 60}), kUntrusted);
    EXPECT_EQ(Verdict({10, 50}), kNotYetValid);
    EXPECT_EQ(Verdict({20, 40}), kNotYetValid);
}

TEST_F(ChainValidityTest, AnExpiredRootIsNoMoreThanAnyOtherAuthority) {
    const auto root = DevelopmentCa::Make(KeyKind::kSm2, Within({-50, -20}));
    Trust(*root, "expired.pem");
    EXPECT_EQ(VerdictBelow(*root, {-10, 90}), kUntrusted);
    EXPECT_EQ(VerdictBelow(*root, {-40, -30}), kExpired);
    const auto middle = root->MakeSubordinate(KeyKind::kSm2, Within({-40, 90}, "5555"));
    Trust(*middle, "middle.pem");
    EXPECT_EQ(VerdictBelow(*middle, {-30, 80}), kUntrusted);
    EXPECT_EQ(VerdictBelow(*middle, {-30, -25}), kExpired);
}

TEST_F(ChainValidityTest, AnAuthoritysRenewedCertificateCoversWhatTheOldOneNoLongerDoes) {
    OpenIntermediate(KeyKind::kRsa, {-50, -20});
    EXPECT_EQ(Verdict({-30, 90}), kUntrusted);
    WriteFile(Path("trust/renewed.pem"), Renewed({-25, 60}));
    EXPECT_EQ(Verdict({-30, 90}), 0);
    EXPECT_EQ(Verdict({-40, -30}), kExpired);
    WriteFile(Path("trust/renewed.pem"), Renewed({-25, -5}) + "\n");
    EXPECT_EQ(Verdict({-30, 90}), kUntrusted);
    EXPECT_EQ(Verdict({-30, -10}), kExpired) << "of two that have expired the later counts";
    EXPECT_EQ(Verdict({-40, -30}), kExpired);
}

// The seal library forgives a revocation later than the signing.
TEST_F(ChainValidityTest, ARevocationDoesntHideThatTheAuthorityHadExpired) {
    OpenIntermediate(KeyKind::kSm2, {-50, -20});
    const auto list = [this](const DevelopmentCa& issuer, const std::string& serial) {
        return issuer.RevocationList({{serial, m_now - kDay}}, m_now - kDay, m_now + kDay);
    };
    ASSERT_EQ(SetRevocationList(m_context, list(*m_intermediate, "1234")), 0);
    EXPECT_EQ(Verdict({-10, 90}), kUntrusted);
    EXPECT_EQ(Verdict({-40, -30}), -3);
    ASSERT_EQ(SetRevocationList(m_context, list(*m_root, "5555")), 0);
    EXPECT_EQ(Verdict({-10, 90}), kUntrusted);
    EXPECT_EQ(Verdict({-40, -30}), -6);
}

}  // namespace
