#include "components/seallibrary/SealTimeStamp.h"

#include <gtest/gtest.h>

#include "components/crypto/Signature.h"
#include "components/seallibrary/DataDigest.h"
#include "components/seallibrary/SealSignature.h"
#include "tests/components/seallibrary/HandMade.h"
#include "tests/components/seallibrary/HandMadeToken.h"
#include "tests/components/seallibrary/VerdictFixture.h"

namespace {

// A seal and a seal signature of version 5, each with a time stamp over its signature; the
// authority's key is the parameter.
class SealTimeStampTest : public testing::TestWithParam<KeyKind> {
protected:
    SealTimeStampTest() {
        m_made.version = 5;
        m_signature.dataHash = Digest(HashAlgorithm::kSm3, "data");
    }

    // The element of a time stamp over the value that it is given.
    BehindValue Stamp(const HandMadeToken& token) const {
        return [this, token](std::string_view value) {
            HandMadeToken made = token;
            if (made.stamped.empty()) made.stamped = value;
            return Der(0xA0, DerBits(Build(made, m_authority)));
        };
    }
    SealVerdict JudgeTheSeal() {
        return JudgeSeal(Build(m_made, m_maker, m_signer), kTestNow, m_judge);
    }
    SealVerdict Judge() {
        m_signature.seal = Build(m_made, m_maker, m_signer);
        return JudgeSealSignature(Build(m_signature, m_signer), DigestOfData("data"), m_list,
                                  m_judge);
    }
    // Both, stamped alike, end in `code`.
    void ExpectBoth(int code, const HandMadeToken& token = {}) {
        m_made.stamp = Stamp(token);
        EXPECT_EQ(JudgeTheSeal(), Failure(code, code ? SealStep::kSealTimeStamp : SealStep::kNone));
        m_made.stamp = nullptr;
        m_signature.stamp = Stamp(token);
        EXPECT_EQ(Judge(), Failure(code, code ? SealStep::kTimeStamp : SealStep::kNone));
    }

    TestIdentity m_authority = MakeAuthority(GetParam(), {.serial = 0x9ABC});
    TestIdentity m_maker = MakeIdentity(KeyKind::kSm2, {.name = "Maker", .serial = 0x5678});
    TestIdentity m_signer = MakeIdentity(KeyKind::kSm2, {.name = "Signer"});
    HandMadeSeal m_made;
    HandMadeSignature m_signature;
    std::string m_list;
    FakeJudge m_judge;
};

INSTANTIATE_TEST_SUITE_P(Keys, SealTimeStampTest, testing::Values(KeyKind::kSm2, KeyKind::kRsa));

TEST_P(SealTimeStampTest, AGoodTimeStampTellsItsTime) {
    ExpectBoth(kSealOk);
    const SealVerdict verdict = Judge();
    EXPECT_EQ(verdict.signedAt, kTestNow);
    EXPECT_EQ(verdict.stampedAt, kTestNow + 60);
    m_signature.stamp = nullptr;
    EXPECT_EQ(Judge().stampedAt, 0);
}

TEST_P(SealTimeStampTest, ATimeStampOfNationalFormIsJudgedAsWell) {
    ExpectBoth(kSealOk, {.nationalOids = true});
}

TEST_P(SealTimeStampTest, ATimeStampOverAnotherSignatureIsForeign) {
    ExpectBoth(kSealTimeStampForeign, {.stamped = "another"});
}

TEST_P(SealTimeStampTest, AForgedTimeStampIsInvalid) {
    ExpectBoth(kSealTimeStampInvalid, {.signsOtherData = true});
}

TEST_P(SealTimeStampTest, ATimeStampOverASha1ProvesNothing) {
    ExpectBoth(kSealTimeStampInvalid, {.sha1Imprint = true});
}

TEST_P(SealTimeStampTest, WhatIsNoTokenIsDamaged) {
    ExpectBoth(kSealTimeStampDamaged, {.isTstInfo = false});
    ExpectBoth(kSealTimeStampDamaged, {.withCertificate = false});
    m_made.behindSignature = Der(0xA0, DerBits(""));
    EXPECT_EQ(JudgeTheSeal(), Failure(kSealTimeStampDamaged, SealStep::kSealTimeStamp));
}

TEST_P(SealTimeStampTest, ACertificateThatIsNotNamedOrForOtherThingsIsUnfit) {
    ExpectBoth(kSealTimeStampAuthorityUnfit, {.withNamedCertificate = false});
    m_authority = MakeIdentity(GetParam());
    ExpectBoth(kSealTimeStampAuthorityUnfit);
}

TEST_P(SealTimeStampTest, TheAuthoritysCertificateIsJudgedLikeAnyOther) {
    for (const auto& [answer, code] : {std::pair<int, int>{-1, kSealTimeStampNotTrusted},
                                       {-3, kSealTimeStampRevoked},
                                       {-6, kSealTimeStampRevoked},
                                       {-2, kSealOk},
                                       {-5, kSealOk},
                                       {0x0B000051, 0x0B000051}}) {
        m_judge.m_results[m_authority.certificate] = answer;
        ExpectBoth(code);
    }
}

TEST_P(SealTimeStampTest, AnAuthorityMustHaveBeenValidAtTheTokensTime) {
    m_authority = MakeAuthority(GetParam(), {.notAfter = kTestNow + 59});
    m_judge.m_results[m_authority.certificate] = -2;
    ExpectBoth(kSealTimeStampAuthorityExpired);
}

TEST_P(SealTimeStampTest, TheStampsTimeTakesThePlaceOfTheSignersOwn) {
    m_judge.m_results[m_signer.certificate] = -3;
    m_list = MakeRevocationList(m_maker, 0x1234ABCD, kTestNow + 30);
    EXPECT_EQ(Judge(), SealVerdict{});
    m_signature.stamp = Stamp({});
    EXPECT_EQ(Judge(), Failure(kSealSignerRevoked, SealStep::kSignerValidity));
    m_list = MakeRevocationList(m_maker, 0x1234ABCD, kTestNow + 61);
    EXPECT_EQ(Judge(), SealVerdict{});
    m_signature.stamp = Stamp({.time = "20370101000000Z"});
    m_authority =
        MakeAuthority(GetParam(), {.serial = 0x9ABC, .notAfter = kTestNow + 9000 * kTestDay});
    EXPECT_EQ(Judge(), Failure(kSealExpired, SealStep::kSealValidity));
}

TEST_P(SealTimeStampTest, AnAuthorityThatTheListNamesIsRevokedWheneverThatWas) {
    m_signature.stamp = Stamp({});
    m_list = MakeRevocationList(m_maker, 0x9ABC, kTestNow + 9 * kTestDay);
    EXPECT_EQ(Judge(), Failure(kSealTimeStampRevoked, SealStep::kTimeStamp));
    EXPECT_EQ(Judge().stampedAt, 0);
    m_made.stamp = Stamp({});
    m_signature.stamp = nullptr;
    EXPECT_EQ(Judge(), Failure(kSealTimeStampRevoked, SealStep::kSealTimeStamp));
    m_list = MakeRevocationList(m_maker, 0x9999, kTestNow);
    EXPECT_EQ(Judge(), SealVerdict{});
    m_authority = MakeAuthority(GetParam(), {.issuer = "Other CA", .serial = 0x9999});
    EXPECT_EQ(Judge(), SealVerdict{}) << "another issuer's";
}

TEST_P(SealTimeStampTest, AProvenTimeLetsALaterRevocationOfTheMakerPass) {
    m_judge.m_results[m_maker.certificate] = -3;
    m_list = MakeRevocationList(m_maker, 0x5678, kTestNow + 61);
    EXPECT_EQ(Judge(), Failure(kSealMakerRevoked, SealStep::kMakerCertificate));
    m_signature.stamp = Stamp({});
    EXPECT_EQ(Judge(), SealVerdict{});
    m_list = MakeRevocationList(m_maker, 0x5678, kTestNow + 60);
    EXPECT_EQ(Judge(), Failure(kSealMakerRevoked, SealStep::kMakerCertificate));
}

TEST_P(SealTimeStampTest, AForgedSignatureIsNamedBeforeItsTimeStamp) {
    m_signature.stamp = Stamp({.signsOtherData = true});
    m_signature.algorithm = kRsaOid;
    EXPECT_EQ(Judge(), Failure(kSealSignatureInvalid, SealStep::kSignatureValue));
}

}  // namespace
