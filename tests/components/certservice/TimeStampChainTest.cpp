#include <openssl/x509v3.h>

#include "components/certservice/StampMessage.h"
#include "components/certservice/StampTest.h"

namespace {

constexpr std::time_t kHour = 3600;
constexpr KeyKind kKinds[] = {KeyKind::kSm2, KeyKind::kRsa};

using EnumHandle = OpenSslHandle<ASN1_ENUMERATED, ASN1_ENUMERATED_free>;

// The authority's chain, judged at the time of the stamp, and its revocation, judged now.
class TimeStampChainTest : public StampTest {
protected:
    int Verdict(const StampAuthority& stamper, std::time_t time = 0) {
        return VerifyStamp(
            StampMessage(m_message, stamper.Token({.imprint = Imprint(m_message), .time = time})));
    }
    CertificateRequest Valid(std::time_t from, std::time_t to) {
        CertificateRequest request;
        request.notBefore = from;
        request.notAfter = to;
        return request;
    }
    CertificateRequest Numbered(const std::string& serial) {
        CertificateRequest request;
        request.serial = serial;
        return request;
    }
    // Puts a list in force that revokes `serial` at `when`, with a reason unless it is -1.
    void Revoke(KeyKind kind, const std::string& serial, std::time_t when, int reason) {
        const DevelopmentCa& authority = Authority(kind);
        std::string list = authority.RevocationList({{serial, when}}, m_now - kHour, m_now + kHour);
        if (reason >= 0) list = WithReason(list, authority.Key(), reason);
        ASSERT_EQ(SetRevocationList(m_context, list), 0);
    }
    // The list's first entry gets a reason, and the list an RSA signature over it.
    std::string WithReason(const std::string& list, EVP_PKEY* key, int reason) {
        const auto* cursor = Bytes(list);
        const RevocationListHandle parsed(d2i_X509_CRL(nullptr, &cursor, Size(list)));
        const EnumHandle code(ASN1_ENUMERATED_new());
        ASN1_ENUMERATED_set(code.get(), reason);
        X509_REVOKED* entry = sk_X509_REVOKED_value(X509_CRL_get_REVOKED(parsed.get()), 0);
        X509_REVOKED_add1_ext_i2d(entry, NID_crl_reason, code.get(), 0, 0);
        EXPECT_GT(X509_CRL_sign(parsed.get(), key, EVP_sha256()), 0);
        return DerOf<i2d_X509_CRL>(parsed.get());
    }

    std::time_t m_now = std::time(nullptr);
    std::string m_message = Message();
};

TEST_F(TimeStampChainTest, AnAuthorityOutsideTheTrustFolderIsUntrusted) {
    for (const KeyKind kind : kKinds) {
        const auto stranger = DevelopmentCa::Make(kind, {.commonName = "Stranger"});
        EXPECT_EQ(Verdict(StampAuthority(*stranger, kind)), kServiceTimeStampUntrusted);
        Trust(*stranger, "stranger.pem");
        EXPECT_EQ(Verdict(StampAuthority(*stranger, kind)), 0);
    }
}

TEST_F(TimeStampChainTest, ACertificateInTheTokenIsNoAnchor) {
    const auto stranger = DevelopmentCa::Make(KeyKind::kRsa, {.commonName = "Stranger"});
    TokenPlan plan{.imprint = Imprint(m_message)};
    plan.otherCertificates = {stranger->Certificate()};
    const std::string token = StampAuthority(*stranger, KeyKind::kRsa).Token(plan);
    EXPECT_EQ(VerifyStamp(StampMessage(m_message, token)), kServiceTimeStampUntrusted);
}

TEST_F(TimeStampChainTest, AChangedCertificateIsUnboundAndSoIsOneThatTheIssuerNeverSigned) {
    std::string token = Stamper(KeyKind::kRsa).Token({.imprint = Imprint(m_message)});
    const size_t name = token.rfind("Time Stamps");
    ASSERT_NE(name, std::string::npos);
    token[name] = 'L';
    EXPECT_EQ(VerifyStamp(StampMessage(m_message, token)), kServiceTimeStampCertificateUnbound);
}

TEST_F(TimeStampChainTest, ACertificateThatHasExpiredSinceStillVouchesForItsTimeStamps) {
    for (const KeyKind kind : kKinds) {
        const StampAuthority stamper = Stamper(kind, Valid(m_now - 30 * 60, m_now - 10 * 60));
        EXPECT_EQ(Verdict(stamper, m_now - 20 * 60), 0);
        EXPECT_EQ(Verdict(stamper, m_now - 5 * 60), kServiceTimeStampExpired);
        EXPECT_EQ(Verdict(stamper, m_now - 40 * 60), kServiceTimeStampNotYetValid);
    }
}

TEST_F(TimeStampChainTest, ARevokedAuthorityOrOneAboveItSpoilsTheStamp) {
    for (const KeyKind kind : kKinds) {
        const StampAuthority stamper = Stamper(kind, Numbered("4321"));
        EXPECT_EQ(Verdict(stamper), 0) << "no list yet";
        Revoke(kind, "4321", m_now - kHour, -1);
        EXPECT_EQ(Verdict(stamper), kServiceTimeStampRevoked);
        Revoke(kind, "4322", m_now - kHour, -1);
        EXPECT_EQ(Verdict(stamper), 0);
        const auto intermediate = Authority(kind).MakeSubordinate(kind, Numbered("4322"));
        TokenPlan plan{.imprint = Imprint(m_message)};
        plan.otherCertificates = {intermediate->Certificate()};
        const std::string token = StampAuthority(*intermediate, kind).Token(plan);
        EXPECT_EQ(VerifyStamp(StampMessage(m_message, token)), kServiceTimeStampIssuerRevoked);
    }
}

TEST_F(TimeStampChainTest, AStampOutlivesALaterRevocationThatLeftTheKeySafe) {
    const StampAuthority stamper = Stamper(KeyKind::kRsa, Numbered("4321"));
    const std::time_t stamped = m_now - 20 * 60;
    for (const int reason : {CRL_REASON_UNSPECIFIED, CRL_REASON_AFFILIATION_CHANGED,
                             CRL_REASON_SUPERSEDED, CRL_REASON_CESSATION_OF_OPERATION}) {
        Revoke(KeyKind::kRsa, "4321", stamped + 60, reason);
        EXPECT_EQ(Verdict(stamper, stamped), 0) << reason;
        Revoke(KeyKind::kRsa, "4321", stamped - 60, reason);
        EXPECT_EQ(Verdict(stamper, stamped), kServiceTimeStampRevoked) << reason;
        EXPECT_EQ(Validate(m_context, stamper.Certificate()), -3) << "now it is revoked";
    }
    for (const int reason : {-1, CRL_REASON_KEY_COMPROMISE, CRL_REASON_CA_COMPROMISE,
                             CRL_REASON_CERTIFICATE_HOLD, CRL_REASON_PRIVILEGE_WITHDRAWN}) {
        Revoke(KeyKind::kRsa, "4321", stamped + 60, reason);
        EXPECT_EQ(Verdict(stamper, stamped), kServiceTimeStampRevoked) << reason;
    }
}

TEST_F(TimeStampChainTest, ARevokedAuthoritysLateStampIsRevokedAndNotMerelyExpired) {
    CertificateRequest request = Valid(m_now - 30 * 60, m_now - 10 * 60);
    request.serial = "4321";
    const StampAuthority stamper = Stamper(KeyKind::kSm2, request);
    EXPECT_EQ(Verdict(stamper, m_now - 5 * 60), kServiceTimeStampExpired);
    Revoke(KeyKind::kSm2, "4321", m_now - 20 * 60, -1);
    EXPECT_EQ(Verdict(stamper, m_now - 5 * 60), kServiceTimeStampRevoked);
}

TEST_F(TimeStampChainTest, AListThatCantBeReliedOnLeavesTheRevocationUndecided) {
    const StampAuthority stamper = Stamper(KeyKind::kSm2, Numbered("4321"));
    ASSERT_EQ(SetRevocationList(
                  m_context,
                  Authority(KeyKind::kSm2).RevocationList({}, m_now - 2 * kHour, m_now - kHour)),
              0);
    EXPECT_EQ(Verdict(stamper), kServiceTimeStampRevocationUndecided);
    Authority(KeyKind::kRsa);
    ASSERT_EQ(SetRevocationList(
                  m_context,
                  Authority(KeyKind::kRsa).RevocationList({}, m_now - 2 * kHour, m_now - kHour)),
              0);
    EXPECT_EQ(Verdict(stamper), 0) << "another issuer's says nothing";
}

}  // namespace
