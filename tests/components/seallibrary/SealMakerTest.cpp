#include "components/seallibrary/SealMaker.h"

#include <gtest/gtest.h>

#include "components/crypto/Signature.h"
#include "components/seallibrary/Seal.h"
#include "components/seallibrary/SealCodes.h"
#include "tests/components/seallibrary/TestPki.h"

namespace {

class SealMakerTest : public testing::Test {
protected:
    std::string Complaint(const SealOrder& order) {
        std::string error;
        EXPECT_EQ(MakeSeal(order, m_maker.certificate, SignerOf(m_maker), error), "");
        return error;
    }

    TestIdentity m_maker = MakeIdentity(KeyKind::kSm2);
    TestIdentity m_signer = MakeIdentity(KeyKind::kSm2);
    SealOrder m_order = UsualOrder(SealForm::kGb2020, m_signer);
};

class EveryForm : public SealMakerTest, public testing::WithParamInterface<SealForm> {};

TEST_P(EveryForm, WhatWasOrderedIsReadBack) {
    const SealOrder order = UsualOrder(GetParam(), m_signer);
    Seal seal;
    ASSERT_EQ(ReadSeal(MakeTestSeal(order, m_maker), seal), kSealOk);
    EXPECT_EQ(seal.form, order.form);
    EXPECT_EQ(seal.esId, order.esId);
    EXPECT_EQ(seal.vendorId, order.vendorId);
    EXPECT_EQ(seal.name, order.name);
    EXPECT_EQ(seal.type, order.type);
    EXPECT_EQ(seal.signerCertificates, order.signerCertificates);
    EXPECT_TRUE(seal.signerDigests.empty());
    EXPECT_EQ(seal.picture, order.picture);
    EXPECT_EQ(seal.pictureType, order.pictureType);
    EXPECT_EQ(seal.widthMm, order.widthMm);
    EXPECT_EQ(seal.heightMm, order.heightMm);
    EXPECT_EQ(seal.created, order.created);
    EXPECT_EQ(seal.validFrom, order.validFrom);
    EXPECT_EQ(seal.validTo, order.validTo);
    EXPECT_EQ(seal.makerCertificate, m_maker.certificate);
    EXPECT_EQ(seal.algorithm, kSm2WithSm3);
    EXPECT_TRUE(
        VerifyData(m_maker.key.get(), HashAlgorithm::kSm3, seal.signedPart, seal.signature));
}

TEST_P(EveryForm, AnRsaMakerIsNamedByTheRsaAlgorithm) {
    const TestIdentity maker = MakeIdentity(KeyKind::kRsa);
    Seal seal;
    ASSERT_EQ(ReadSeal(MakeTestSeal(UsualOrder(GetParam(), m_signer), maker), seal), kSealOk);
    EXPECT_EQ(seal.algorithm, kSha256WithRsa);
    EXPECT_TRUE(
        VerifyData(maker.key.get(), HashAlgorithm::kSha256, seal.signedPart, seal.signature));
}

INSTANTIATE_TEST_SUITE_P(Forms, EveryForm,
                         testing::Values(SealForm::kGm2014, SealForm::kGb2020, SealForm::kGm2025));

TEST_F(SealMakerTest, SignersByDigestAreNamedByTheHashOfTheirKindOfKey) {
    const TestIdentity rsa = MakeIdentity(KeyKind::kRsa);
    m_order.signerList = SignerList::kDigests;
    m_order.signerCertificates.push_back(rsa.certificate);
    Seal seal;
    ASSERT_EQ(ReadSeal(MakeTestSeal(m_order, m_maker), seal), kSealOk);
    EXPECT_TRUE(seal.signerCertificates.empty());
    ASSERT_EQ(seal.signerDigests.size(), 2u);
    EXPECT_EQ(seal.signerDigests[0], Digest(HashAlgorithm::kSm3, m_signer.certificate));
    EXPECT_EQ(seal.signerDigests[1], Digest(HashAlgorithm::kSha256, rsa.certificate));
    EXPECT_TRUE(NamesSigner(seal, m_signer.certificate));
    EXPECT_TRUE(NamesSigner(seal, rsa.certificate));
    EXPECT_FALSE(NamesSigner(seal, m_maker.certificate));
}

TEST_F(SealMakerTest, ASealOf2014TellsItsDatesInUtcTime) {
    m_order.form = SealForm::kGm2014;
    const std::string seal = MakeTestSeal(m_order, m_maker);
    EXPECT_NE(seal.find("\x17\x0D"
                        "260605120000Z"),
              seal.npos);
    m_order.form = SealForm::kGb2020;
    const std::string later = MakeTestSeal(m_order, m_maker);
    EXPECT_NE(later.find("\x18\x0F"
                         "20260605120000Z"),
              later.npos);
}

TEST_F(SealMakerTest, AValidityBeyond2049IsNothingForASealOf2014) {
    m_order.validTo = 2524608000;
    EXPECT_NE(MakeTestSeal(m_order, m_maker), "");
    m_order.form = SealForm::kGm2014;
    EXPECT_EQ(Complaint(m_order), "A date lies outside the years that the form can tell.");
}

TEST_F(SealMakerTest, ASealOf2014CantNameSignersByDigest) {
    m_order.form = SealForm::kGm2014;
    m_order.signerList = SignerList::kDigests;
    EXPECT_NE(Complaint(m_order), "");
}

TEST_F(SealMakerTest, EveryPartThatIsMissingOrUnfitIsComplainedAbout) {
    const auto complains = [this](auto change) {
        SealOrder order = UsualOrder(SealForm::kGb2020, m_signer);
        change(order);
        return Complaint(order) != "";
    };
    EXPECT_TRUE(complains([](SealOrder& order) { order.esId.clear(); }));
    EXPECT_TRUE(complains([](SealOrder& order) { order.esId = "\xC3\xA9"; }));
    EXPECT_TRUE(complains([](SealOrder& order) { order.vendorId.clear(); }));
    EXPECT_TRUE(complains([](SealOrder& order) { order.pictureType = "\xC3\xA9"; }));
    EXPECT_TRUE(complains([](SealOrder& order) { order.name.clear(); }));
    EXPECT_TRUE(complains([](SealOrder& order) { order.type = 0; }));
    EXPECT_TRUE(complains([](SealOrder& order) { order.picture.clear(); }));
    EXPECT_TRUE(complains([](SealOrder& order) { order.picture.assign(5u << 20, 'x'); }));
    EXPECT_TRUE(complains([](SealOrder& order) { order.widthMm = 0; }));
    EXPECT_TRUE(complains([](SealOrder& order) { order.heightMm = 10'001; }));
    EXPECT_TRUE(complains([](SealOrder& order) { order.signerCertificates.clear(); }));
    EXPECT_TRUE(complains([](SealOrder& order) { order.signerCertificates = {"no certificate"}; }));
    EXPECT_TRUE(complains([](SealOrder& order) { order.validTo = order.validFrom - 1; }));
}

TEST_F(SealMakerTest, ASignatureOfAnotherKeyThanTheCertificatesIsNotGivenOut) {
    std::string error;
    EXPECT_EQ(MakeSeal(m_order, m_maker.certificate, SignerOf(m_signer), error), "");
    EXPECT_EQ(error, "The signature doesn't fit the seal maker's certificate.");
}

TEST_F(SealMakerTest, ASignerThatFailsAndADamagedMakersCertificateAreTold) {
    std::string error;
    const auto fail = [](std::string_view) { return std::string(); };
    EXPECT_EQ(MakeSeal(m_order, m_maker.certificate, fail, error), "");
    EXPECT_EQ(error, "The seal couldn't be signed.");
    EXPECT_EQ(MakeSeal(m_order, "damaged", SignerOf(m_maker), error), "");
    EXPECT_EQ(error, "The seal maker's certificate can't be read.");
}

}  // namespace
