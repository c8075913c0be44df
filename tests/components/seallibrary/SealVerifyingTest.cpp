#include <cstdio>
#include <fstream>
#include <thread>

#include "components/crypto/Signature.h"
#include "components/seallibrary/SealCodes.h"
#include "foundation/Text.h"
#include "tests/components/seallibrary/HandMade.h"
#include "tests/components/seallibrary/LibraryFixture.h"

namespace {

class SealVerifyingTest : public LibraryFixture {
protected:
    SealVerifyingTest() {
        GiveKey("key", m_signer);
        m_seal = MakeTestSeal(UsualOrder(SealForm::kGb2020, m_signer), m_maker);
        m_signature = SignData("key", m_signer, "data", m_seal);
        m_script->calls.clear();
    }

    int VerifySeal(const std::string& seal) { return TVK_Verify_SESeal(Bytes(seal), Size(seal)); }
    int Verify() { return VerifyData(m_signature, "data"); }
    int VerifyFile(const std::string& path) {
        return TVK_Verify_SES_Sign_BigFile(Bytes(m_signature), Size(m_signature), path.c_str());
    }
    std::string WriteFile(const std::string& content) {
        const std::string path = m_prefix.Below("file");
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }
    static int SetList(const std::string& list) {
        return TVK_SetConfigEx(3, Bytes(list), Size(list));
    }
    static int CheckTime(const std::string& list, const char* serial, const std::string& time) {
        return TVK_Check_CRL_Time(Bytes(list), Size(list), Bytes(serial), Size(serial), Bytes(time),
                                  Size(time));
    }

    TestIdentity m_maker = MakeIdentity(KeyKind::kSm2, {.name = "Maker", .serial = 0x5678});
    TestIdentity m_signer = MakeIdentity(KeyKind::kSm2, {.name = "Signer"});
    std::string m_seal;
    std::string m_signature;
};

// These run at the clock's time, so the seals are in force for decades or have long ceased to be.
TEST_F(SealVerifyingTest, ASealIsJudgedByTheMomentOfTheCall) {
    HandMadeSeal made;
    made.createDate = made.validStart = "20000101000000Z";
    made.validEnd = "20991231235959Z";
    EXPECT_EQ(VerifySeal(Build(made, m_maker, m_signer)), kSealOk);
    made.validEnd = "20010101000000Z";
    EXPECT_EQ(VerifySeal(Build(made, m_maker, m_signer)), kSealExpired);
    made.validStart = made.validEnd = "20991231235959Z";
    EXPECT_EQ(VerifySeal(Build(made, m_maker, m_signer)), kSealNotYetValid);
}

TEST_F(SealVerifyingTest, TheCertificateServiceIsAskedAboutTheMaker) {
    HandMadeSeal made;
    made.validStart = "20000101000000Z";
    made.validEnd = "20991231235959Z";
    const std::string seal = Build(made, m_maker, m_signer);
    m_script->validations[m_maker.certificate] = -1;
    EXPECT_EQ(VerifySeal(seal), kSealMakerNotTrusted);
    m_script->validations[m_maker.certificate] = -6;
    EXPECT_EQ(VerifySeal(seal), kSealMakerRevoked);
    m_prefix.RegisterCertService("/nonexistent/service.so");
    TVK_Release();
    EXPECT_EQ(VerifySeal(seal), kSealServiceMissing);
}

TEST_F(SealVerifyingTest, DataAreTakenAsBase64) {
    EXPECT_EQ(Verify(), kSealOk);
    EXPECT_EQ(VerifyData(m_signature, ""), kSealDigestMismatch);
    EXPECT_EQ(m_script->Count("SOF_ValidateCert"), 2);
}

TEST_F(SealVerifyingTest, BadArgumentsAreTold) {
    int length = 0;
    EXPECT_EQ(TVK_Verify_SES_Sign(nullptr, 1, nullptr, 0), kSealBadArgument);
    EXPECT_EQ(TVK_Verify_SES_Sign(nullptr, 0, nullptr, 0), kSealSignatureDamaged);
    EXPECT_EQ(TVK_Verify_SES_Sign_BigFile(Bytes(m_signature), Size(m_signature), nullptr),
              kSealBadArgument);
    EXPECT_EQ(TVK_Get_Sign_Cert_From_SIG(Bytes("x"), -1, nullptr, &length), kSealBadArgument);
    EXPECT_EQ(CheckTime("", "1", "yesterday"), kSealBadArgument);
}

TEST_F(SealVerifyingTest, AFileIsHashedWhereverItsPiecesEnd) {
    for (const std::size_t size : {0u, 1u, 262'143u, 262'144u, 262'145u, 600'000u}) {
        const std::string content(size, 'x');
        m_signature = SignData("key", m_signer, content, m_seal);
        const std::string path = WriteFile(content);
        EXPECT_EQ(VerifyFile(path), kSealOk) << size;
        WriteFile(content + "y");
        EXPECT_EQ(VerifyFile(path), kSealDigestMismatch) << size;
    }
}

TEST_F(SealVerifyingTest, AnRsaSignatureOfAFileIsOverItsSha256) {
    const TestIdentity rsa = MakeIdentity(KeyKind::kRsa);
    GiveKey("rsa", rsa);
    const std::string content(300'000, 'r');
    m_seal = MakeTestSeal(UsualOrder(SealForm::kGm2014, rsa), m_maker);
    m_signature = SignData("rsa", rsa, content, m_seal);
    EXPECT_EQ(VerifyFile(WriteFile(content)), kSealOk);
    EXPECT_EQ(VerifyFile(WriteFile("other")), kSealDigestMismatch);
}

TEST_F(SealVerifyingTest, AFileThatCantBeReadIsTold) {
    EXPECT_EQ(VerifyFile(m_prefix.Below("absent")), kSealFileUnreadable);
    EXPECT_EQ(VerifyFile(m_prefix.Path()), kSealFileUnreadable);
}

TEST_F(SealVerifyingTest, TheSignersCertificateComesAsBase64) {
    const std::string text = Base64Encode(m_signature);
    int length = 0;
    ASSERT_EQ(TVK_Get_Sign_Cert_From_SIG(Bytes(text), Size(text), nullptr, &length), kSealOk);
    std::string out(static_cast<std::size_t>(length) + 1, '\0');
    auto* bytes = reinterpret_cast<unsigned char*>(out.data());
    ASSERT_EQ(TVK_Get_Sign_Cert_From_SIG(Bytes(text), Size(text), bytes, &length), kSealOk);
    EXPECT_STREQ(out.c_str(), Base64Encode(m_signer.certificate).c_str());
    --length;
    EXPECT_EQ(TVK_Get_Sign_Cert_From_SIG(Bytes(text), Size(text), bytes, &length),
              kSealBufferTooSmall);
    EXPECT_EQ(TVK_Get_Sign_Cert_From_SIG(Bytes("AAAA"), 4, nullptr, &length),
              kSealSignatureDamaged);
}

TEST_F(SealVerifyingTest, AListGoesToTheServiceInAContextOfItsOwn) {
    const std::string list = MakeRevocationList(m_maker, 0x1234ABCD, kTestNow + 30 * kTestDay);
    ASSERT_EQ(SetList(list), kSealOk);
    m_script->validations[m_signer.certificate] = -3;
    EXPECT_EQ(Verify(), kSealOk);
    const std::vector<std::string> one = {"SOF_Initialize", "SetUserConfig 5 " + Base64Encode(list),
                                          "SOF_ValidateCert", "SOF_Finalize"};
    std::vector<std::string> expected = one;  // about the maker, then about the signer
    expected.insert(expected.end(), one.begin(), one.end());
    EXPECT_EQ(m_script->calls, expected);
}

TEST_F(SealVerifyingTest, AListCountsForTheNextVerificationAlone) {
    const std::string list = MakeRevocationList(m_maker, 0x1234ABCD, kTestNow - kTestDay);
    ASSERT_EQ(SetList(list), kSealOk);
    EXPECT_EQ(Verify(), kSealSignerRevoked);
    EXPECT_EQ(Verify(), kSealOk);
    ASSERT_EQ(SetList(list), kSealOk);
    EXPECT_EQ(VerifyFile(WriteFile("data")), kSealSignerRevoked);
    EXPECT_EQ(VerifyFile(WriteFile("data")), kSealOk);
    ASSERT_EQ(SetList(list), kSealOk);
    EXPECT_EQ(TVK_Verify_SES_Sign(nullptr, 1, nullptr, 0), kSealBadArgument);
    EXPECT_EQ(Verify(), kSealOk);
}

TEST_F(SealVerifyingTest, AnEmptyListOrReleaseTakesAListBack) {
    const std::string list = MakeRevocationList(m_maker, 0x1234ABCD, kTestNow - kTestDay);
    ASSERT_EQ(SetList(list), kSealOk);
    ASSERT_EQ(SetList(""), kSealOk);
    EXPECT_EQ(Verify(), kSealOk);
    ASSERT_EQ(SetList(list), kSealOk);
    TVK_Release();
    EXPECT_EQ(Verify(), kSealOk);
}

TEST_F(SealVerifyingTest, AListWaitsForTheThreadThatHandedItIn) {
    ASSERT_EQ(SetList(MakeRevocationList(m_maker, 0x1234ABCD, kTestNow - kTestDay)), kSealOk);
    int ofOther = -1;
    std::thread([&] { ofOther = Verify(); }).join();
    EXPECT_EQ(ofOther, kSealOk);
    EXPECT_EQ(Verify(), kSealSignerRevoked);
}

TEST_F(SealVerifyingTest, AListThatTheServiceRefusesFailsTheCheck) {
    ASSERT_EQ(SetList(MakeRevocationList(m_maker, 1, kTestNow)), kSealOk);
    m_script->userConfigResult = 0x0B000051;
    EXPECT_EQ(Verify(), 0x0B000051);
    m_script->userConfigResult = -2;
    ASSERT_EQ(SetList(MakeRevocationList(m_maker, 1, kTestNow)), kSealOk);
    EXPECT_EQ(Verify(), kSealServiceFailed);
}

TEST_F(SealVerifyingTest, ADamagedListIsRefusedAndNoneIsKept) {
    ASSERT_EQ(SetList(MakeRevocationList(m_maker, 0x1234ABCD, kTestNow - kTestDay)), kSealOk);
    EXPECT_EQ(SetList("damaged"), kSealRevocationListDamaged);
    EXPECT_EQ(Verify(), kSealOk);
    EXPECT_EQ(TVK_SetConfigEx(4, nullptr, 0), kSealNotSupported);
    EXPECT_EQ(TVK_SetConfigEx(3, nullptr, 1), kSealBadArgument);
}

TEST_F(SealVerifyingTest, ATimeIsComparedWithTheRevocation) {
    const std::string list = MakeRevocationList(m_maker, 0x77, kTestNow);
    EXPECT_EQ(CheckTime(list, "77", "2026-06-13 12:00:00"), kSealOk);
    EXPECT_EQ(CheckTime(list, "77", "D:20260617120000+08'00'"), kSealRevokedBefore);
    EXPECT_EQ(CheckTime(list, "77", "2026年06月13日12时00分00秒"), kSealOk);
    EXPECT_EQ(CheckTime(list, "78", "2026-06-13 12:00:00"), kSealSerialNotListed);
    EXPECT_EQ(CheckTime("damaged", "77", "2026-06-13 12:00:00"), kSealRevocationListDamaged);
}

TEST_F(SealVerifyingTest, ATimeMayBeAnAsn1OneAndEndWithAZeroByte) {
    const std::string list = MakeRevocationList(m_maker, 0x77, kTestNow);
    EXPECT_EQ(CheckTime(list, "77", "20260615115959Z"), kSealOk);
    EXPECT_EQ(CheckTime(list, "77", "20260615120000Z"), kSealRevokedBefore);
    EXPECT_EQ(CheckTime(list, "77", "260615115959Z"), kSealOk);
    EXPECT_EQ(CheckTime(list, "77", std::string("20260615195959+0800\0", 20)), kSealOk);
    EXPECT_EQ(CheckTime(list, "77", ""), kSealBadArgument);
}

}  // namespace
