// Signatures of files, which are hashed by their paths.
#include <gmock/gmock.h>

#include "SigningTest.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

constexpr char kHash[] = "0123456789ABCDEF0123456789abcdef";

class BigFileTest : public SigningTest {
protected:
    void Select(int mode) {
        SigningTest::Select(mode);
        fakes::On("SOF_HashFile").Gives(kHash);
    }
    int Sign() { return P7SignFile("/no/such file", "property", m_out.buffer, &m_out.length); }

    OutPair m_out{400};
};

TEST_F(BigFileTest, TheFileIsHashedByItsPathWithTheCertificateAndTheHashSigned) {
    Select(0);
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(m_out.Bytes(24), "SOF_SignHashMessage by A");
    EXPECT_THAT(
        fakes::CallTexts(),
        ElementsAre(
            "SOF_ExportUserCert(ctx, \"A\", size?)", "SOF_ExportUserCert(ctx, \"A\", out[8])",
            "SOF_ExportUserCert(ctx, \"A\", size?)", "SOF_ExportUserCert(ctx, \"A\", out[8])",
            "SOF_GetCertInfo(ctx, 8 \"DER of A\", 11, out[4096])",
            "SOF_GetCertInfo(ctx, 8 \"DER of A\", 12, out[4096])",
            "SOF_GetCertInfo(ctx, 8 \"DER of A\", 3, out[260])",
            "SOF_ValidateCert(ctx, 8 \"DER of A\")", "SOF_SetSignMethod(ctx, 131329)",
            "SOF_HashFile(ctx, 1, \"/no/such file\", 8 \"DER of A\", "
            "\"1234567812345678\", 16, out[32])",
            "SOF_SignHashMessage(ctx, \"A\", 0, 1, "
            "32 \"0123456789ABCDEF0123456789abcdef\", out[400])",
            "SOF_SetSignMethod(ctx, 0)"));
    EXPECT_THAT(Log(),
                ElementsAre("8 [SignBigFile]: begin", "8 [GetKeyCertEx]: begin",
                            "8 [GetKeyCertEx]: ok", "8 [GetKeyType]: begin", "8 [GetKeyType]: ok"));
}

TEST_F(BigFileTest, TheReportedLengthIs128MoreThanTheServiceReported) {
    Select(0);
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(m_out.length, 24 + 128);
    EXPECT_EQ(m_out.buffer[24], OutPair::kMark);
}

TEST_F(BigFileTest, AQueryToo) {
    Select(0);
    int length = 0;
    EXPECT_EQ(P7SignFile("/a", "", nullptr, &length), 0);
    EXPECT_EQ(length, 24 + 128);
}

TEST_F(BigFileTest, ARsaKeyHashesWithSha256AndNoUserId) {
    m_certificate.keyType = "RSA";
    Select(0);
    EXPECT_EQ(Sign(), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_SetSignMethod"),
                ElementsAre("SOF_SetSignMethod(ctx, 65540)", "SOF_SetSignMethod(ctx, 0)"));
    EXPECT_THAT(
        fakes::CallTexts("SOF_HashFile"),
        ElementsAre("SOF_HashFile(ctx, 4, \"/no/such file\", 8 \"DER of A\", null, 0, out[32])"));
    EXPECT_THAT(fakes::CallTexts("SOF_SignHashMessage")[0], HasSubstr("\"A\", 0, 4, 32"));
}

TEST_F(BigFileTest, AShorterHashIsSignedWithItsOwnLength) {
    Select(0);
    fakes::On("SOF_HashFile").Gives("twenty bytes of hash");
    EXPECT_EQ(Sign(), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_SignHashMessage")[0], HasSubstr("20 \"twenty bytes of"));
}

TEST_F(BigFileTest, ACertificateThatCannotBeHadFailsBeforeItIsChecked) {
    Select(0);
    fakes::On("SOF_ExportUserCert").ReturnsAt(2, 91);
    EXPECT_EQ(Sign(), TESMARK_CERT_EXPORT_FAILED);
    EXPECT_EQ(fakes::Calls().size(), 2u);
    EXPECT_THAT(Errors(), ElementsAre("[GetKeyCert]SOF_ExportUserCert: failed,error:91"));
    EXPECT_FALSE(Selected());
    EXPECT_EQ(m_out.length, 400);
}

TEST_F(BigFileTest, ACertificateThatNoMemoryHoldsIsToldAsSuch) {
    Select(0);
    fakes::On("SOF_ExportUserCert").ReportsSizeAt(1, -2);
    EXPECT_EQ(Sign(), TESMARK_NO_MEMORY);
}

TEST_F(BigFileTest, AFailedCheckIsReturnedWithoutARecordOfItsOwn) {
    m_certificate.validity = -1;
    Select(0);
    EXPECT_EQ(Sign(), TESMARK_NOT_TRUSTED);
    EXPECT_THAT(Errors(), ElementsAre("[GetKeyType]call SOF_ValidateCert error:-1"));
    EXPECT_EQ(fakes::CountCalls("SOF_SetSignMethod"), 0);
}

TEST_F(BigFileTest, AMethodThatCannotBeSetIsReturnedWithoutARecord) {
    Select(0);
    fakes::On("SOF_SetSignMethod").Returns(92);
    EXPECT_EQ(Sign(), 92);
    EXPECT_THAT(Errors(), IsEmpty());
    EXPECT_EQ(fakes::CountCalls("SOF_HashFile"), 0);
}

TEST_F(BigFileTest, AFailedHashIsReturnedAndTheMethodStaysSet) {
    Select(0);
    fakes::On("SOF_HashFile").Returns(93);
    EXPECT_EQ(Sign(), 93);
    EXPECT_EQ(fakes::CalledFunctions().back(), "SOF_HashFile");
    EXPECT_EQ(m_out.length, 400);
    EXPECT_FALSE(Selected());
}

TEST_F(BigFileTest, AFailedSignatureResetsTheMethodAndReportsNoLength) {
    Select(0);
    fakes::On("SOF_SignHashMessage").Returns(94);
    EXPECT_EQ(Sign(), 94);
    EXPECT_EQ(fakes::CallTexts().back(), "SOF_SetSignMethod(ctx, 0)");
    EXPECT_EQ(m_out.length, 400);
    EXPECT_FALSE(Selected());
}

TEST_F(BigFileTest, ABigFileNeverGetsATimeStamp) {
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    Select(0);
    EXPECT_EQ(Sign(), 0);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(BigFileTest, UnderASealTheFileIsHashedWithoutTheCertificate) {
    Select(1);
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(m_out.Bytes(), "seal signature by A");
    const auto calls = fakes::CallTexts();
    ASSERT_EQ(calls.size(), 9u);
    EXPECT_EQ(calls[6], "SOF_SetSignMethod(ctx, 131329)");
    EXPECT_EQ(calls[7],
              "SOF_HashFile(ctx, 1, \"/no/such file\", 0 null, \"1234567812345678\", 16, out[32])");
    EXPECT_THAT(calls[8],
                MatchesRegex(R"(TVK_Sign\(1 "A", 8 "property", 19 "1\.2\.156\.10197\.1\.501", )"
                             R"(32 "0123456789ABCDEF0123456789abcdef", 19 "....-..-..T..:..:..", )"
                             R"(9 "seal file", out\[400\]\))"));
    EXPECT_THAT(Log(), ElementsAre("8 [SignBigFile_GB]: begin", "8 [GetKeyType]: begin",
                                   "8 [GetKeyType]: ok", "8 [SignData_GB]: ok"));
}

TEST_F(BigFileTest, UnderASealTheMethodStaysSet) {
    m_certificate.keyType = "RSA";
    Select(2);
    EXPECT_EQ(Sign(), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_SetSignMethod"),
                ElementsAre("SOF_SetSignMethod(ctx, 65540)"));
    EXPECT_EQ(fakes::CallTexts("SOF_HashFile")[0],
              "SOF_HashFile(ctx, 4, \"/no/such file\", 0 null, null, 0, out[32])");
    EXPECT_THAT(fakes::CallTexts().back(), HasSubstr("21 \"1.2.840.113549.1.1.11\""));
}

TEST_F(BigFileTest, UnderASealAHashLengthOf32IsStatedWhateverTheHash) {
    Select(1);
    fakes::On("SOF_HashFile").Gives("twenty bytes of hash");
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(fakes::Calls().back().arguments[3], "twenty bytes of hash" + std::string(12, '\0'));
}

TEST_F(BigFileTest, UnderASealEachFailureIsTheResultAndEndsTheSelection) {
    const struct {
        const char* function;
        std::vector<std::string> errors;
    } cases[] = {{"SOF_SetSignMethod", {"[SignPlainDataEx]SOF_SetSignMethod: error:95"}},
                 {"SOF_HashFile", {}},
                 {"TVK_Sign", {}}};
    for (const auto& [function, errors] : cases) {
        Select(1);
        fakes::On(function).Returns(95);
        EXPECT_EQ(Sign(), 95) << function;
        EXPECT_EQ(Errors(), errors);
        EXPECT_EQ(fakes::CalledFunctions().back(), function);
        EXPECT_FALSE(Selected());
        fakes::On(function).Returns(0);
    }
}

TEST_F(BigFileTest, AFailedCheckUnderASealIsReturned) {
    Select(1);
    m_certificate.validity = -2;
    EXPECT_EQ(Sign(), TESMARK_CERT_EXPIRED);
    EXPECT_EQ(fakes::CountCalls("SOF_HashFile"), 0);
}

TEST_F(BigFileTest, AnyOtherModeReturnsZeroAndTouchesNothing) {
    SelectSeal("serial of A", "bm90IGEgc2VhbA==", 3);
    SetCurrentCertID("A");
    ASSERT_EQ(GetEsealMode(), 3);
    fakes::ClearCalls();
    OutPair out;
    EXPECT_EQ(P7SignFile("/a", "", out.buffer, &out.length), 0);
    EXPECT_TRUE(out.Untouched());
    EXPECT_THAT(fakes::Calls(), IsEmpty());
}

TEST_F(BigFileTest, ALengthThatNoHashHasIsCutToItsRoom) {
    Select(0);
    fakes::On("SOF_HashFile").ReportsSize(4000);
    EXPECT_EQ(Sign(), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_SignHashMessage"),
                ElementsAre("SOF_SignHashMessage(ctx, \"A\", 0, 1, "
                            "32 \"0123456789ABCDEF0123456789abcdef\", out[400])"));
}

}  // namespace
