#include "components/seallibrary/SealVerdict.h"

#include <gtest/gtest.h>

#include "components/crypto/Signature.h"
#include "components/seallibrary/DataDigest.h"
#include "components/seallibrary/SealSignature.h"
#include "tests/components/seallibrary/HandMade.h"
#include "tests/components/seallibrary/VerdictFixture.h"

namespace {

class SealVerdictTest : public testing::Test {
protected:
    SealVerdictTest() {
        m_made.createDate = "20260601000000Z";
        m_seal = Build(m_made, m_maker, m_signer);
    }

    SealVerdict JudgeTheSeal(std::time_t now = kTestNow) { return JudgeSeal(m_seal, now, m_judge); }
    void Remake() { m_seal = Build(m_made, m_maker, m_signer); }

    TestIdentity m_maker = MakeIdentity(KeyKind::kSm2, {.name = "Maker", .serial = 0x5678});
    TestIdentity m_signer = MakeIdentity(KeyKind::kSm2, {.name = "Signer"});
    HandMadeSeal m_made;
    std::string m_seal;
    FakeJudge m_judge;
};

TEST_F(SealVerdictTest, ASealInForceOfATrustedMakerIsGood) {
    EXPECT_EQ(JudgeTheSeal(), SealVerdict{});
}

TEST_F(SealVerdictTest, ADamagedSealFailsAtItsStructure) {
    m_seal.pop_back();
    EXPECT_EQ(JudgeTheSeal(), Failure(kSealDamaged, SealStep::kStructure));
}

TEST_F(SealVerdictTest, AChangedPictureFailsAtTheMakersSignature) {
    m_seal.replace(m_seal.find("picture"), 7, "PICTURE");
    EXPECT_EQ(JudgeTheSeal(), Failure(kSealMakerSignatureInvalid, SealStep::kMakerSignature));
}

TEST_F(SealVerdictTest, AnAlgorithmThatDoesntFitTheMakersKeyFailsAtTheMakersSignature) {
    for (const bool form2014 : {false, true}) {
        m_made.form2014 = form2014;
        m_made.algorithm = kRsaOid;
        Remake();
        EXPECT_EQ(JudgeTheSeal(), Failure(kSealMakerSignatureInvalid, SealStep::kMakerSignature));
    }
}

TEST_F(SealVerdictTest, ADamagedMakersCertificateHasACodeOfItsOwn) {
    m_maker.certificate[1] ^= 1;
    Remake();
    EXPECT_EQ(JudgeTheSeal(), Failure(kSealMakerCertificateDamaged, SealStep::kMakerSignature));
}

TEST_F(SealVerdictTest, AMakerWhomNobodyTrustsIsRefused) {
    m_judge.m_results[m_maker.certificate] = -1;
    EXPECT_EQ(JudgeTheSeal(), Failure(kSealMakerNotTrusted, SealStep::kMakerCertificate));
}

TEST_F(SealVerdictTest, AMakersCertificateForEncryptionIsRefused) {
    for (const char* usage : {"keyEncipherment,dataEncipherment", "keyCertSign"}) {
        m_maker = MakeIdentity(KeyKind::kSm2, {.name = "Maker", .keyUsage = usage});
        Remake();
        EXPECT_EQ(JudgeTheSeal(), Failure(kSealMakerNotTrusted, SealStep::kMakerCertificate));
    }
    for (const char* usage : {"digitalSignature", "critical,nonRepudiation,keyEncipherment"}) {
        m_maker = MakeIdentity(KeyKind::kSm2, {.name = "Maker", .keyUsage = usage});
        Remake();
        EXPECT_EQ(JudgeTheSeal(), SealVerdict{});
    }
}

TEST_F(SealVerdictTest, AMakersCertificateForServersIsRefused) {
    for (const auto& [purposes, code] :
         {std::pair<const char*, int>("critical,serverAuth", kSealMakerNotTrusted),
          {"critical,1.3.6.1.5.5.7.3.36", kSealOk},
          {"serverAuth", kSealOk}}) {
        m_maker = MakeIdentity(KeyKind::kSm2, {.name = "Maker", .extendedKeyUsage = purposes});
        Remake();
        EXPECT_EQ(JudgeTheSeal().code, code) << purposes;
    }
}

TEST_F(SealVerdictTest, ARevokedMakerIsRefused) {
    for (const int revoked : {-3, -6}) {
        m_judge.m_results[m_maker.certificate] = revoked;
        EXPECT_EQ(JudgeTheSeal(), Failure(kSealMakerRevoked, SealStep::kMakerCertificate));
    }
}

TEST_F(SealVerdictTest, AMakerThatHasExpiredSinceTheSealWasMadeIsNoFault) {
    for (const int expired : {-2, -5}) {
        m_judge.m_results[m_maker.certificate] = expired;
        EXPECT_EQ(JudgeTheSeal(), SealVerdict{});
    }
}

TEST_F(SealVerdictTest, AMakerThatHadExpiredWhenTheSealWasMadeIsRefused) {
    m_made.createDate = "20200101000000Z";
    Remake();
    m_judge.m_results[m_maker.certificate] = -2;
    EXPECT_EQ(JudgeTheSeal(), Failure(kSealMakerExpired, SealStep::kMakerCertificate));
}

TEST_F(SealVerdictTest, AnyOtherResultOfTheJudgeComesThrough) {
    for (const int result : {-4, kSealServiceMissing + 0, 0x0B000001}) {
        m_judge.m_results[m_maker.certificate] = result;
        EXPECT_EQ(JudgeTheSeal(), Failure(result, SealStep::kMakerCertificate));
    }
}

TEST_F(SealVerdictTest, ASealIsInForceFromItsFirstToItsLastSecond) {
    m_made.validStart = "20260615120000Z";
    m_made.validEnd = "20260616120000Z";
    Remake();
    EXPECT_EQ(JudgeTheSeal(kTestNow - 1), Failure(kSealNotYetValid, SealStep::kSealValidity));
    EXPECT_EQ(JudgeTheSeal(kTestNow), SealVerdict{});
    EXPECT_EQ(JudgeTheSeal(kTestNow + kTestDay), SealVerdict{});
    EXPECT_EQ(JudgeTheSeal(kTestNow + kTestDay + 1),
              Failure(kSealExpired, SealStep::kSealValidity));
}

TEST_F(SealVerdictTest, APictureThatCantBeShownFailsAtThePicture) {
    const auto failure = Failure(kSealPictureUnusable, SealStep::kSealPicture);
    const auto judge = [this](const char* type, std::string_view bytes) {
        m_made.pictureType = type;
        m_made.picture = bytes;
        Remake();
        return JudgeTheSeal();
    };
    EXPECT_EQ(judge("ofd", ""), failure);
    EXPECT_EQ(judge("PNG", "no picture of that kind"), failure);
    EXPECT_EQ(judge("jpeg", "nor of this"), failure);
    EXPECT_EQ(judge("gif", "GIF89a"), failure);
    EXPECT_EQ(judge("gif", std::string_view("GIF89a\0\0\1\0", 10)), failure);
    EXPECT_EQ(judge("gif", std::string_view("GIF89a\1\0\1\0", 10)), SealVerdict{});
    EXPECT_EQ(judge("png", std::string_view("GIF89a\1\0\1\0", 10)), SealVerdict{});
    EXPECT_EQ(judge("ofd", "PK"), SealVerdict{});
}

TEST_F(SealVerdictTest, ASealWithoutASizeFailsAtThePicture) {
    const std::string none("\x02\x01\x00", 3);
    const std::string some = m_made.width;
    for (const bool wide : {false, true}) {
        m_made.width = wide ? some : none;
        m_made.height = wide ? none : some;
        Remake();
        EXPECT_EQ(JudgeTheSeal(), Failure(kSealPictureUnusable, SealStep::kSealPicture));
    }
}

class SignatureVerdictTest : public SealVerdictTest {
protected:
    SignatureVerdictTest() {
        m_signature.seal = m_seal;
        m_signature.dataHash = Digest(HashAlgorithm::kSm3, m_data);
    }

    SealVerdict Judge() { return JudgeDer(Build(m_signature, m_signer)); }
    SealVerdict JudgeDer(const std::string& der) {
        return JudgeSealSignature(der, DigestOfData(m_data), m_list, m_judge);
    }
    void UseForm2014() {
        m_made.form2014 = m_signature.form2014 = true;
        Remake();
        m_signature.seal = m_seal;
        m_signature.timeInfo = DerBits("20260615120000Z");
    }

    std::string m_data = "the signed document";
    HandMadeSignature m_signature;
    std::string m_list;
};

TEST_F(SignatureVerdictTest, ASignersCertificateForEncryptionIsRefused) {
    m_signer = MakeIdentity(KeyKind::kSm2, {.name = "Signer", .keyUsage = "keyEncipherment"});
    Remake();
    m_signature.seal = m_seal;
    EXPECT_EQ(Judge(), Failure(kSealSignerNotTrusted, SealStep::kSignerValidity));
}

TEST_F(SignatureVerdictTest, AGoodSignatureTellsItsTime) {
    EXPECT_EQ(Judge(), SealVerdict{});
    EXPECT_EQ(Judge().signedAt, kTestNow);
    UseForm2014();
    EXPECT_EQ(Judge(), SealVerdict{});
    EXPECT_EQ(Judge().signedAt, kTestNow);
}

TEST_F(SignatureVerdictTest, BareValuesCountAsASignature) {
    m_signature.bareSignature = true;
    EXPECT_EQ(Judge(), SealVerdict{});
    UseForm2014();
    EXPECT_EQ(Judge(), SealVerdict{});
}

TEST_F(SignatureVerdictTest, DamageFailsAtTheStructure) {
    const std::string der = Build(m_signature, m_signer);
    const auto failure = Failure(kSealSignatureDamaged, SealStep::kStructure);
    EXPECT_EQ(JudgeDer(""), failure);
    EXPECT_EQ(JudgeDer(der.substr(0, der.size() - 1)), failure);
    EXPECT_EQ(JudgeDer(der + "x"), failure);
    m_signature.unusedBits = 1;
    EXPECT_EQ(Judge(), failure);
}

TEST_F(SignatureVerdictTest, AVersionIsOneOf1To5) {
    for (const bool form2014 : {false, true}) {
        if (form2014) UseForm2014();
        for (const char* version : {"\x01", "\x02", "\x03", "\x04", "\x05"}) {
            m_signature.version = version;
            EXPECT_EQ(Judge(), SealVerdict{});
        }
        for (const std::string& version : {std::string(1, '\0'), std::string("\x06"),
                                           std::string("\xFF"), std::string("\x01\x04")}) {
            m_signature.version = version;
            EXPECT_EQ(Judge(), Failure(kSealSignatureDamaged, SealStep::kStructure));
        }
    }
}

TEST_F(SignatureVerdictTest, ZeroBytesBehindTheSignatureAreAllowed) {
    EXPECT_EQ(JudgeDer(Build(m_signature, m_signer) + std::string(500, '\0')), SealVerdict{});
}

TEST_F(SignatureVerdictTest, ASealOfTheOtherShapeInsideIsRefused) {
    m_made.form2014 = true;
    Remake();
    m_signature.seal = m_seal;
    EXPECT_EQ(Judge(), Failure(kSealSignatureDamaged, SealStep::kStructure));
}

TEST_F(SignatureVerdictTest, ADamagedSignersCertificateHasACodeOfItsOwn) {
    m_signer.certificate[1] ^= 1;
    EXPECT_EQ(Judge(), Failure(kSealSignerCertificateDamaged, SealStep::kStructure));
}

TEST_F(SignatureVerdictTest, TimeInfoOf2014MayBeTextOrDerOrATokenAndNothingElse) {
    UseForm2014();
    // A time-stamp token as far as its TSTInfo: content type, [0], OCTET STRING.
    const std::string tstInfo =
        Der(0x30, Der(0x02, "\x01") + Der(0x06, "\x2A\x03") +
                      Der(0x30, Der(0x30, Der(0x06, "\x2A\x03")) + Der(0x04, "x")) +
                      Der(0x02, "\x01") + Der(0x18, "20260615120000Z"));
    const std::string token = Der(0x30, Der(0x06, "\x2A\x86\x48\x86\xF7\x0D\x01\x09\x10\x01\x04") +
                                            Der(0xA0, Der(0x04, tstInfo)));
    for (const std::string& content : {std::string("260615120000Z"), Der(0x18, "20260615120000Z"),
                                       Der(0x17, "260615120000Z"), token}) {
        m_signature.timeInfo = DerBits(content);
        EXPECT_EQ(Judge(), SealVerdict{});
        EXPECT_EQ(Judge().signedAt, kTestNow);
    }
    for (const std::string& content :
         {std::string(), std::string("yesterday"), token.substr(0, 50)}) {
        m_signature.timeInfo = DerBits(content);
        EXPECT_EQ(Judge(), Failure(kSealTimeUnreadable, SealStep::kStructure));
    }
}

TEST_F(SignatureVerdictTest, OtherDataFailAtTheDigest) {
    m_data += "!";
    EXPECT_EQ(Judge(), Failure(kSealDigestMismatch, SealStep::kDigest));
}

TEST_F(SignatureVerdictTest, AnotherKeysSignatureFailsAtTheSignatureValue) {
    const TestIdentity other = MakeIdentity(KeyKind::kSm2);
    m_signer.key.reset(EVP_PKEY_dup(other.key.get()));
    EXPECT_EQ(Judge(), Failure(kSealSignatureInvalid, SealStep::kSignatureValue));
}

TEST_F(SignatureVerdictTest, AnAlgorithmThatDoesntFitTheSignersKeyFailsAtTheSignatureValue) {
    m_signature.algorithm = kRsaOid;
    EXPECT_EQ(Judge(), Failure(kSealSignatureInvalid, SealStep::kSignatureValue));
    UseForm2014();
    EXPECT_EQ(Judge(), Failure(kSealSignatureInvalid, SealStep::kSignatureValue));
}

TEST_F(SignatureVerdictTest, ASignerWhomTheSealDoesntNameIsRefused) {
    const TestIdentity stranger = MakeIdentity(KeyKind::kSm2);
    EXPECT_EQ(JudgeDer(Build(m_signature, stranger)),
              Failure(kSealSignerNotListed, SealStep::kSignerInSeal));
}

TEST_F(SignatureVerdictTest, AForgedSealFailsAtTheMakersSignature) {
    m_signature.seal.replace(m_signature.seal.find("picture"), 7, "PICTURE");
    EXPECT_EQ(Judge(), Failure(kSealMakerSignatureInvalid, SealStep::kMakerSignature));
}

TEST_F(SignatureVerdictTest, ASealOfAMakerWhomNobodyTrustsIsRefused) {
    m_judge.m_results[m_maker.certificate] = -1;
    EXPECT_EQ(Judge(), Failure(kSealMakerNotTrusted, SealStep::kMakerCertificate));
}

TEST_F(SignatureVerdictTest, TheSealMustHaveBeenInForceAtTheTimeOfSigning) {
    m_signature.timeInfo = Der(0x18, "20260531235959Z");
    EXPECT_EQ(Judge(), Failure(kSealNotYetValid, SealStep::kSealValidity));
    m_signature.timeInfo = Der(0x18, "20370101000000Z");
    EXPECT_EQ(Judge(), Failure(kSealExpired, SealStep::kSealValidity));
}

TEST_F(SignatureVerdictTest, ASignerWhomNobodyTrustsIsRefused) {
    m_judge.m_results[m_signer.certificate] = -1;
    EXPECT_EQ(Judge(), Failure(kSealSignerNotTrusted, SealStep::kSignerValidity));
}

TEST_F(SignatureVerdictTest, ASignerThatHasExpiredSinceIsNoFault) {
    m_judge.m_results[m_signer.certificate] = -2;
    EXPECT_EQ(Judge(), SealVerdict{});
}

TEST_F(SignatureVerdictTest, ASignerThatHadExpiredAtTheTimeOfSigningIsRefused) {
    m_signer = MakeIdentity(KeyKind::kSm2, {.notAfter = kTestNow - 1});
    Remake();
    m_signature.seal = m_seal;
    for (const int result : {-2, 0}) {
        m_judge.m_results[m_signer.certificate] = result;
        EXPECT_EQ(Judge(), Failure(kSealSignerExpired, SealStep::kSignerValidity));
    }
}

TEST_F(SignatureVerdictTest, ARevokedSignerWithoutAListIsRefused) {
    m_judge.m_results[m_signer.certificate] = -3;
    EXPECT_EQ(Judge(), Failure(kSealSignerRevoked, SealStep::kSignerValidity));
}

TEST_F(SignatureVerdictTest, AListForgivesARevocationAfterTheSigning) {
    m_judge.m_results[m_signer.certificate] = -3;
    m_list = MakeRevocationList(m_maker, 0x1234ABCD, kTestNow + 1);
    EXPECT_EQ(Judge(), SealVerdict{});
    EXPECT_EQ(m_judge.m_lists, (std::vector<std::string>{m_list, m_list}));
    m_list = MakeRevocationList(m_maker, 0x1234ABCD, kTestNow);
    EXPECT_EQ(Judge(), Failure(kSealSignerRevoked, SealStep::kSignerValidity));
}

TEST_F(SignatureVerdictTest, ARevokedSignerWhomTheListDoesntNameIsRefused) {
    m_judge.m_results[m_signer.certificate] = -6;
    m_list = MakeRevocationList(m_maker, 1, kTestNow);
    EXPECT_EQ(Judge(), Failure(kSealSignerRevoked, SealStep::kSignerValidity));
}

TEST_F(SignatureVerdictTest, AListCountsForASignerThatIsOnlyCalledExpired) {
    m_judge.m_results[m_signer.certificate] = -2;
    m_list = MakeRevocationList(m_maker, 0x1234ABCD, kTestNow - 1);
    EXPECT_EQ(Judge(), Failure(kSealSignerRevoked, SealStep::kSignerValidity));
}

TEST_F(SignatureVerdictTest, AListOfAnotherIssuerProvesNothingAndIsRefused) {
    m_signer = MakeIdentity(KeyKind::kSm2, {.issuer = "Other CA"});
    Remake();
    m_signature.seal = m_seal;
    EXPECT_EQ(Judge(), SealVerdict{});
    m_list = MakeRevocationList(m_maker, 0x1234ABCD, kTestNow - 1);
    EXPECT_EQ(Judge(), Failure(kSealRevocationListForeign, SealStep::kSignerValidity));
    EXPECT_EQ(m_judge.m_lists.size(), 1u) << "the maker's, of whose issuer it is";
}

TEST_F(SignatureVerdictTest, AMakerWhomTheListNamesIsRefusedWheneverTheSealSaysToBeMade) {
    for (const std::time_t revoked : {kTestNow - 90 * kTestDay, kTestNow + 90 * kTestDay}) {
        m_list = MakeRevocationList(m_maker, 0x5678, revoked);
        for (const int answer : {0, -2, -3}) {
            m_judge.m_results[m_maker.certificate] = answer;
            EXPECT_EQ(Judge(), Failure(kSealMakerRevoked, SealStep::kMakerCertificate)) << answer;
        }
    }
    m_list = MakeRevocationList(m_maker, 0x9999, kTestNow);
    m_judge.m_results[m_maker.certificate] = 0;
    EXPECT_EQ(Judge(), SealVerdict{});
}

TEST_F(SignatureVerdictTest, AListOfAnotherIssuerThanTheMakersPlaysNoPartForIt) {
    m_maker =
        MakeIdentity(KeyKind::kSm2, {.name = "Maker", .issuer = "Other CA", .serial = 0x5678});
    Remake();
    m_signature.seal = m_seal;
    m_list = MakeRevocationList(m_maker, 0x5678, kTestNow);
    EXPECT_EQ(Judge(), SealVerdict{});
    EXPECT_EQ(m_judge.m_lists.size(), 1u) << "the signer's alone";
}

TEST_F(SignatureVerdictTest, AListThatDoesntCoverTheMakerPlaysNoPartForItButCountsForTheSigner) {
    m_list = MakeRevocationList(m_maker, 0x9999, kTestNow);
    m_judge.m_withList[m_maker.certificate] = -4;
    EXPECT_EQ(Judge(), SealVerdict{});
    m_judge.m_results[m_maker.certificate] = -1;
    EXPECT_EQ(Judge(), Failure(kSealMakerNotTrusted, SealStep::kMakerCertificate));
    m_judge.m_results.clear();
    m_judge.m_withList = {{m_signer.certificate, -4}};
    EXPECT_EQ(Judge(), Failure(-4, SealStep::kSignerValidity));
}

TEST_F(SignatureVerdictTest, AnyOtherResultAboutTheSignerComesThrough) {
    m_judge.m_results[m_signer.certificate] = 0x0B000051;
    EXPECT_EQ(Judge(), Failure(0x0B000051, SealStep::kSignerValidity));
}

TEST(SealStepTest, EveryStepHasAText) {
    for (int step = 0; step <= static_cast<int>(SealStep::kSignerValidity); ++step)
        EXPECT_STRNE(StepText(static_cast<SealStep>(step)), "");
}

}  // namespace
