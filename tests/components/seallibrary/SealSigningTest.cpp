#include "components/seallibrary/SealCodes.h"
#include "tests/components/seallibrary/HandMade.h"
#include "tests/components/seallibrary/LibraryFixture.h"

namespace {

class SealSigningTest : public LibraryFixture {
protected:
    SealSigningTest() {
        GiveKey("key", m_signer);
        m_hash = HashFor(m_signer, "data");
    }

    int Query(int* length = nullptr) {
        int unused = 0;
        return Sign("key", m_signer, m_hash, m_seal, nullptr, length ? length : &unused);
    }
    int Fetch(std::string& signature) {
        int length = Size(signature);
        auto* out = reinterpret_cast<unsigned char*>(signature.data());
        const int code = Sign("key", m_signer, m_hash, m_seal, out, &length);
        if (code == 0) signature.resize(static_cast<std::size_t>(length));
        return code;
    }
    int Signatures() const { return m_script->Count("SOF_SignData"); }
    int QueryWithHand(const HandMadeSeal& made) {
        m_seal = Build(made, m_maker, m_signer);
        return Query();
    }

    TestIdentity m_maker = MakeIdentity(KeyKind::kSm2);
    TestIdentity m_signer = MakeIdentity(KeyKind::kSm2);
    SealOrder m_order = UsualOrder(SealForm::kGb2020, m_signer);
    std::string m_seal = MakeTestSeal(m_order, m_maker);
    std::string m_hash;
};

struct FormAndKind {
    SealForm form;
    KeyKind kind;
};

class EveryFormSigning : public LibraryFixture, public testing::WithParamInterface<FormAndKind> {};

INSTANTIATE_TEST_SUITE_P(Forms, EveryFormSigning,
                         testing::Values(FormAndKind{SealForm::kGm2014, KeyKind::kSm2},
                                         FormAndKind{SealForm::kGm2014, KeyKind::kRsa},
                                         FormAndKind{SealForm::kGb2020, KeyKind::kSm2},
                                         FormAndKind{SealForm::kGb2020, KeyKind::kRsa},
                                         FormAndKind{SealForm::kGm2025, KeyKind::kSm2},
                                         FormAndKind{SealForm::kGm2025, KeyKind::kRsa}));

TEST_P(EveryFormSigning, WhatIsSignedVerifies) {
    const TestIdentity maker = MakeIdentity(GetParam().kind);
    const TestIdentity signer = MakeIdentity(GetParam().kind);
    GiveKey("key", signer);
    const std::string seal = MakeTestSeal(UsualOrder(GetParam().form, signer), maker);
    const std::string signature = SignData("key", signer, "data", seal);
    EXPECT_EQ(VerifyData(signature, "data"), kSealOk);
    EXPECT_EQ(VerifyData(signature, "Data"), kSealDigestMismatch);
}

TEST_F(SealSigningTest, QueryAndFetchAreOneSignature) {
    int length = 0;
    ASSERT_EQ(Query(&length), kSealOk);
    std::string signature(static_cast<std::size_t>(length), '\0');
    ASSERT_EQ(Fetch(signature), kSealOk);
    EXPECT_EQ(Size(signature), length);
    EXPECT_EQ(Signatures(), 1);
    EXPECT_EQ(VerifyData(signature, "data"), kSealOk);
}

TEST_F(SealSigningTest, AFetchWithoutAQuerySigns) {
    std::string signature(10'000, '\0');
    ASSERT_EQ(Fetch(signature), kSealOk);
    EXPECT_EQ(VerifyData(signature, "data"), kSealOk);
    signature.assign(10'000, '\0');
    ASSERT_EQ(Fetch(signature), kSealOk);
    EXPECT_EQ(Signatures(), 2);
}

TEST_F(SealSigningTest, TheTimeMayGoOnBetweenQueryAndFetchButNotForever) {
    std::string signature(10'000, '\0');
    ASSERT_EQ(Query(), kSealOk);
    m_time = "2026-06-15T12:05:00";
    ASSERT_EQ(Fetch(signature), kSealOk);
    EXPECT_EQ(Signatures(), 1);
    signature.assign(10'000, '\0');
    ASSERT_EQ(Query(), kSealOk);
    m_time = "2026-06-15T12:10:01";
    ASSERT_EQ(Fetch(signature), kSealOk);
    EXPECT_EQ(Signatures(), 3);
    ASSERT_EQ(Query(), kSealOk);
    m_time = "2026-06-15T12:10:00";
    signature.assign(10'000, '\0');
    ASSERT_EQ(Fetch(signature), kSealOk);
    EXPECT_EQ(Signatures(), 5);
}

TEST_F(SealSigningTest, AFetchOfAnythingElseSignsAnew) {
    std::string signature(10'000, '\0');
    ASSERT_EQ(Query(), kSealOk);
    m_hash = HashFor(m_signer, "other");
    ASSERT_EQ(Fetch(signature), kSealOk);
    EXPECT_EQ(Signatures(), 2);
    EXPECT_EQ(VerifyData(signature, "other"), kSealOk);
    ASSERT_EQ(Query(), kSealOk);
    m_property = "other";
    signature.assign(10'000, '\0');
    ASSERT_EQ(Fetch(signature), kSealOk);
    EXPECT_EQ(Signatures(), 4);
}

TEST_F(SealSigningTest, ABufferTooSmallLosesNoSignature) {
    int length = 0;
    ASSERT_EQ(Query(&length), kSealOk);
    std::string small(static_cast<std::size_t>(length) - 1, '\0');
    EXPECT_EQ(Fetch(small), kSealBufferTooSmall);
    EXPECT_EQ(small.find_first_not_of('\0'), small.npos);
    std::string signature(static_cast<std::size_t>(length), '\0');
    ASSERT_EQ(Fetch(signature), kSealOk);
    EXPECT_EQ(Signatures(), 1);
}

TEST_F(SealSigningTest, ReleaseForgetsWhatWasQueried) {
    ASSERT_EQ(Query(), kSealOk);
    EXPECT_EQ(TVK_Release(), kSealOk);
    std::string signature(10'000, '\0');
    ASSERT_EQ(Fetch(signature), kSealOk);
    EXPECT_EQ(Signatures(), 2);
}

TEST_F(SealSigningTest, TheMethodFollowsTheSignersKey) {
    ASSERT_EQ(Query(), kSealOk);
    EXPECT_EQ(m_script->Count("SOF_SetSignMethod 131329"), 1);
    const TestIdentity rsa = MakeIdentity(KeyKind::kRsa);
    GiveKey("rsa", rsa);
    m_seal = MakeTestSeal(UsualOrder(SealForm::kGb2020, rsa), m_maker);
    EXPECT_NE(SignData("rsa", rsa, "data", m_seal), "");
    EXPECT_EQ(m_script->Count("SOF_SetSignMethod 65540"), 1);
}

TEST_F(SealSigningTest, BareValuesOfAKeyAreStoredAsDer) {
    m_script->bareSignatures = true;
    std::string signature(10'000, '\0');
    ASSERT_EQ(Fetch(signature), kSealOk);
    EXPECT_EQ(VerifyData(signature, "data"), kSealOk);
    // BIT STRING of no unused bits around SEQUENCE { INTEGER, INTEGER }, the last element.
    const std::size_t bits = signature.rfind(std::string("\x00\x30", 2));
    ASSERT_NE(bits, signature.npos);
    EXPECT_EQ(signature[bits - 2], '\x03');
    EXPECT_EQ(bits + 3 + static_cast<unsigned char>(signature[bits + 2]), signature.size());
}

TEST_F(SealSigningTest, ADifferentKeyThanTheCertificatesIsNoticed) {
    m_script->signsOtherData = true;
    EXPECT_EQ(Query(), kSealServiceSignatureBad);
}

TEST_F(SealSigningTest, AnEmptyPropertyIsAllowedAndForeignTextIsNot) {
    m_property = "";
    EXPECT_EQ(Query(), kSealOk);
    m_property = "性质";
    EXPECT_EQ(Query(), kSealPropertyNotAscii);
    m_property.assign(65 * 1024, 'x');
    EXPECT_EQ(Query(), kSealTooLarge);
}

TEST_F(SealSigningTest, ASignerWhomTheSealDoesntNameIsRefusedBeforeAnyPin) {
    GiveKey("key", m_maker);
    EXPECT_EQ(Query(), kSealSignerNotListed);
    EXPECT_EQ(m_script->Count("SOF_SignData size"), 0);
}

TEST_F(SealSigningTest, ASignerNamedByDigestMaySign) {
    m_order.signerList = SignerList::kDigests;
    m_seal = MakeTestSeal(m_order, m_maker);
    EXPECT_EQ(Query(), kSealOk);
    GiveKey("key", m_maker);
    m_hash = HashFor(m_signer, "other");
    EXPECT_EQ(Query(), kSealSignerNotListed);
}

TEST_F(SealSigningTest, ASealOutOfForceIsRefused) {
    m_time = "2026-01-01T00:00:00";
    EXPECT_EQ(Query(), kSealNotYetValid);
    m_time = "2040-01-01T00:00:00";
    EXPECT_EQ(Query(), kSealExpired);
}

TEST_F(SealSigningTest, ADamagedOrForgedSealIsRefused) {
    HandMadeSeal made;
    EXPECT_EQ(QueryWithHand(made), kSealOk);
    m_seal.replace(m_seal.find("picture"), 7, "PICTURE");
    EXPECT_EQ(Query(), kSealMakerSignatureInvalid);
    m_seal.pop_back();
    EXPECT_EQ(Query(), kSealDamaged);
    m_seal.assign(9u << 20, '0');
    EXPECT_EQ(Query(), kSealTooLarge);
    m_maker.certificate[1] ^= 1;
    EXPECT_EQ(QueryWithHand(made), kSealMakerCertificateDamaged);
}

TEST_F(SealSigningTest, AnAlgorithmThatDoesntFitTheKeyIsRefused) {
    int length = 0;
    const std::string rsa = kSha256WithRsa;
    EXPECT_EQ(TVK_Sign(Bytes("key"), 3, nullptr, 0, Bytes(rsa), Size(rsa), Bytes(m_hash), 32,
                       Bytes(m_time), Size(m_time), Bytes(m_seal), Size(m_seal), nullptr, &length),
              kSealAlgorithmMismatch);
}

TEST_F(SealSigningTest, BadArgumentsAreTold) {
    int length = 0;
    EXPECT_EQ(Sign("", m_signer, m_hash, m_seal, nullptr, &length), kSealBadArgument);
    EXPECT_EQ(Sign("key", m_signer, "short", m_seal, nullptr, &length), kSealBadArgument);
    EXPECT_EQ(Sign("key", m_signer, m_hash, m_seal, nullptr, nullptr), kSealBadArgument);
    m_time = "yesterday";
    EXPECT_EQ(Query(), kSealBadArgument);
    EXPECT_TRUE(m_script->calls.empty());
}

TEST_F(SealSigningTest, ADamagedCertificateOfTheServicesIsTold) {
    m_script->keys["key"].certificate = "damaged";
    EXPECT_EQ(Query(), kSealSignerCertificateDamaged);
    m_script->keys["key"].certificate = "";
    EXPECT_EQ(Query(), kSealServiceFailed);
}

TEST_F(SealSigningTest, TheServicesOwnCodesComeThrough) {
    m_script->initializeResult = 0x0B000001;
    EXPECT_EQ(Query(), 0x0B000001);
    m_script->initializeResult = -2;
    EXPECT_EQ(Query(), kSealServiceFailed);
    m_script->initializeResult = 0;
    m_script->exportResult = 0x0B000011;
    EXPECT_EQ(Query(), 0x0B000011);
    m_script->exportResult = 0;
    m_script->setMethodResult = 0x0B000002;
    EXPECT_EQ(Query(), 0x0B000002);
    m_script->setMethodResult = 0;
    m_script->signResult = 0x0B000020;
    EXPECT_EQ(Query(), 0x0B000020);
    m_script->signResult = 0;
    EXPECT_EQ(Query(), kSealOk);
}

TEST_F(SealSigningTest, TheServiceIsBoundOnceAndEndedByRelease) {
    EXPECT_EQ(TVK_Initialize(), kSealOk);
    EXPECT_TRUE(m_script->calls.empty());
    EXPECT_EQ(Query(), kSealOk);
    m_hash = HashFor(m_signer, "other");
    EXPECT_EQ(Query(), kSealOk);
    EXPECT_EQ(m_script->Count("SOF_Initialize"), 1);
    EXPECT_EQ(TVK_Release(), kSealOk);
    EXPECT_EQ(TVK_Release(), kSealOk);
    EXPECT_EQ(m_script->Count("SOF_Finalize"), 1);
    EXPECT_EQ(Query(), kSealOk);
    EXPECT_EQ(m_script->Count("SOF_Initialize"), 2);
}

TEST_F(SealSigningTest, WithoutAServiceNothingIsSigned) {
    m_prefix.RegisterCertService("/nonexistent/service.so");
    EXPECT_EQ(Query(), kSealServiceMissing);
    m_prefix.RegisterCertService(STAND_IN_INCOMPLETE);
    EXPECT_EQ(Query(), kSealServiceIncomplete);
    m_prefix.RegisterCertService(STAND_IN_SERVICE);
    EXPECT_EQ(Query(), kSealOk);
}

TEST_F(SealSigningTest, ReleaseMayBeTheFirstCall) { EXPECT_EQ(TVK_Release(), kSealOk); }

}  // namespace
