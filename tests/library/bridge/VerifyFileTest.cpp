// Signatures over a file: the service's way by the signer's certificate and a hash, the seal
// library's way where the service can't read the signature or refuses it.
#include <gmock/gmock.h>

#include "ExportCalls.h"
#include "fakes/LibraryTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kHash[] = "0123456789ABCDEF0123456789abcdef";
constexpr char kSealCall[] = "TVK_Verify_SES_Sign_BigFile(9 \"signature\", \"/a/file\")";

class VerifyFileTest : public LibraryTest {
protected:
    VerifyFileTest() : m_signer(fakes::AddCertificate("label", "A")) {
        InitKVLLib();
        fakes::ClearCalls();
        ForgetLog();
        fakes::On("SOF_GetInfoFromSignedMessage").Gives(m_signer.Der());
        fakes::On("SOF_HashFile").Gives(kHash);
    }

    static int Verify() { return P7VerifyBigFile("/a/file", AsBytes("signature"), 9); }

    fakes::Certificate& m_signer;
};

TEST_F(VerifyFileTest, AnSm2SignatureIsCheckedOverSm3WithTheSignersCertificate) {
    EXPECT_EQ(Verify(), 0);
    EXPECT_THAT(
        fakes::CallTexts(),
        ElementsAre("SOF_GetInfoFromSignedMessage(ctx, 9 \"signature\", 2, size?)",
                    "SOF_GetInfoFromSignedMessage(ctx, 9 \"signature\", 2, out[8])",
                    "SOF_GetCertInfo(ctx, 8 \"DER of A\", 3, out[260])",
                    "SOF_HashFile(ctx, 1, \"/a/file\", 8 \"DER of A\", \"1234567812345678\", 16, "
                    "out[32])",
                    "SOF_VerifySignedHashMessage(ctx, 9 \"signature\", 32 \"" + std::string(kHash) +
                        "\")"));
    EXPECT_THAT(Log(), ElementsAre("8 [VerifyBigFile]: begin"));
}

TEST_F(VerifyFileTest, AnyOtherKeyTypeIsCheckedOverSha1WithoutAUserId) {
    fakes::On("SOF_HashFile").Gives("twenty bytes of hash");
    for (const char* keyType : {"RSA", "sm2", "SM2 ", ""}) {
        fakes::ClearCalls();
        m_signer.keyType = keyType;
        EXPECT_EQ(Verify(), 0);
        EXPECT_THAT(fakes::CallTexts("SOF_HashFile"),
                    ElementsAre("SOF_HashFile(ctx, 2, \"/a/file\", 8 \"DER of A\", null, 0, "
                                "out[32])"));
        EXPECT_THAT(fakes::CallTexts("SOF_VerifySignedHashMessage"),
                    ElementsAre("SOF_VerifySignedHashMessage(ctx, 9 \"signature\", 20 \"twenty "
                                "bytes of hash\")"));
    }
}

// Signed over SHA-256, number 4; checked over SHA-1, number 2.
TEST_F(VerifyFileTest, AnRsaSignatureOfP7SignBigFileIsRefusedByBoth) {
    m_signer.keyType = "RSA";
    SetCurrentCertID("A");
    fakes::On("SOF_HashFile") = fakes::FunctionScript();
    fakes::On("SOF_HashFile").Does([](const fakes::Call& call) {
        fakes::Answer answer;
        answer.output = "hash number " + call.arguments[0];
        return answer;
    });
    OutPair out(512);
    ASSERT_EQ(P7SignFile("/a/file", "", out.buffer, &out.length), 0);
    const std::string signedHash = fakes::Calls()[fakes::Calls().size() - 2].arguments[3];
    ASSERT_EQ(signedHash, "hash number 4");
    fakes::On("SOF_VerifySignedHashMessage").Does([&](const fakes::Call& call) {
        fakes::Answer answer;
        answer.result = call.arguments[1] == signedHash ? 0 : 95;
        return answer;
    });
    fakes::On("TVK_Verify_SES_Sign_BigFile").Returns(96);
    ForgetLog();
    EXPECT_EQ(Verify(), TESMARK_FILE_NOT_VERIFIED);
    EXPECT_EQ(TESMARK_FILE_NOT_VERIFIED, -3032);
    EXPECT_THAT(Errors(), ElementsAre("[VerifyBigFile]SOF_VerifySignedHashMessage: error:95",
                                      "[VerifyBigFile]TVK_Verify_SES_Sign_BigFile: error:96"));
}

TEST_F(VerifyFileTest, TheSealLibraryHasTheLastWordOnAHashThatTheServiceRefuses) {
    fakes::On("SOF_VerifySignedHashMessage").Returns(95);
    EXPECT_EQ(Verify(), 0);
    EXPECT_EQ(fakes::CallTexts().back(), kSealCall);
    EXPECT_THAT(Log(), ElementsAre("8 [VerifyBigFile]: begin",
                                   "3 [VerifyBigFile]SOF_VerifySignedHashMessage: error:95"));
}

TEST_F(VerifyFileTest, WhatIsNoPkcs7GoesToTheSealLibraryAloneAndItsSuccessIsLoggedAsAnError) {
    fakes::On("SOF_GetInfoFromSignedMessage").Returns(93);
    EXPECT_EQ(Verify(), 0);
    EXPECT_THAT(
        fakes::CallTexts(),
        ElementsAre("SOF_GetInfoFromSignedMessage(ctx, 9 \"signature\", 2, size?)", kSealCall));
    EXPECT_THAT(Log(),
                ElementsAre("8 [VerifyBigFile]: begin",
                            "3 [GetInfoFromSignedData]SOF_GetInfoFromSignedMessage: error:93",
                            "3 [VerifyBigFile]TVK_Verify_SES_Sign_BigFile ok"));
}

TEST_F(VerifyFileTest, WhatIsNoPkcs7AndNoSealSignatureHasACodeOfItsOwn) {
    fakes::On("SOF_GetInfoFromSignedMessage").Returns(93);
    fakes::On("TVK_Verify_SES_Sign_BigFile").Returns(96);
    EXPECT_EQ(Verify(), TESMARK_SIGNED_MESSAGE_FAILED);
    EXPECT_THAT(Errors(),
                ElementsAre("[GetInfoFromSignedData]SOF_GetInfoFromSignedMessage: error:93",
                            "[VerifyBigFile]TVK_Verify_SES_Sign_BigFile: error:96"));
}

TEST_F(VerifyFileTest, ASignerThatCannotBeFetchedIsNotSoughtByTheSealLibrary) {
    fakes::On("SOF_GetInfoFromSignedMessage").ReturnsAt(2, 94);
    EXPECT_EQ(Verify(), TESMARK_SIGNED_MESSAGE_FAILED);
    EXPECT_EQ(fakes::Calls().size(), 2u);
    EXPECT_THAT(Errors(),
                ElementsAre("[GetInfoFromSignedData]SOF_GetInfoFromSignedMessage: error:94"));
}

TEST_F(VerifyFileTest, ASignerThatNoMemoryHoldsIsToldAsSuch) {
    fakes::On("SOF_GetInfoFromSignedMessage").ReportsSize(-2);
    EXPECT_EQ(Verify(), TESMARK_CERT_INFO_NO_MEMORY);
    EXPECT_EQ(fakes::Calls().size(), 1u);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(VerifyFileTest, ASignerWhoseKeyTypeCannotBeReadEndsTheCheck) {
    fakes::On("SOF_GetCertInfo").Returns(41);
    EXPECT_EQ(Verify(), TESMARK_CERT_FIELD_FAILED);
    EXPECT_EQ(fakes::Calls().size(), 3u);
    EXPECT_THAT(Errors(), ElementsAre("[GetKeyType]SOF_GetCertInfo: failed,error:41"));
}

TEST_F(VerifyFileTest, AFileThatCannotBeHashedHasTheServicesResult) {
    for (const int result : {102, -5}) {
        fakes::ClearCalls();
        fakes::On("SOF_HashFile").Returns(result);
        EXPECT_EQ(Verify(), result);
        EXPECT_EQ(fakes::Calls().size(), 4u);
    }
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(VerifyFileTest, NoRevocationListIsAskedForEvenWithTheSetting) {
    m_prefix.SetNumber("bVerifyCRL", 1);
    UnInitKVLLib();
    EXPECT_EQ(Verify(), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_GetCertInfoByOid"), 0);
    EXPECT_EQ(fakes::CountCalls("TVK_SetConfigEx"), 0);
}

TEST_F(VerifyFileTest, TheSelectionOutlivesARefusal) {
    SetCurrentCertID("nobody");
    fakes::On("SOF_GetInfoFromSignedMessage").Returns(93);
    fakes::On("TVK_Verify_SES_Sign_BigFile").Returns(96);
    EXPECT_NE(Verify(), 0);
    int length = 0;
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(length, 6);
}

TEST_F(VerifyFileTest, ALengthThatNoHashHasIsCutToItsRoom) {
    for (const auto& [told, passed] : {std::pair{4000, "32 \"" + std::string(kHash) + "\""},
                                       std::pair{-5, std::string("0 \"\"")}}) {
        fakes::ClearCalls();
        fakes::On("SOF_HashFile").ReportsSize(told);
        EXPECT_EQ(Verify(), 0);
        EXPECT_EQ(fakes::CallTexts().back(),
                  "SOF_VerifySignedHashMessage(ctx, 9 \"signature\", " + passed + ")");
    }
}

TEST_F(VerifyFileTest, StartsTheServiceByItself) {
    UnInitKVLLib();
    fakes::ClearCalls();
    EXPECT_EQ(Verify(), 0);
    EXPECT_EQ(fakes::CalledFunctions()[0], "SOF_Initialize");
}

}  // namespace
