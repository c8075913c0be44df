// PKCS#7 and seal signatures of data.
#include <gmock/gmock.h>

#include <climits>

#include "SigningTest.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

class P7SignTest : public SigningTest {
protected:
    OutPair m_out{512};
};

TEST_F(P7SignTest, InMode0TheServiceSignsAndThePropertyIsNotUsed) {
    Select(0);
    EXPECT_EQ(P7Sign("data", "property", m_out.buffer, &m_out.length), 0);
    EXPECT_EQ(m_out.Bytes(), "SOF_SignMessageEx by A");
    EXPECT_THAT(CallsBehindTheCheck(),
                ElementsAre("SOF_SetSignMethod(ctx, 131329)",
                            "SOF_SignMessageEx(ctx, \"A\", 1, 1, 4 \"data\", out[512])",
                            "SOF_SetSignMethod(ctx, 0)"));
    EXPECT_THAT(Log(), ElementsAre("8 [SignPlainDataEx]: begin", "8 [GetKeyType]: begin",
                                   "8 [GetKeyType]: ok"));
}

TEST_F(P7SignTest, ARsaKeyHasItsOwnMethod) {
    m_certificate.keyType = "RSA";
    Select(0);
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), 0);
    EXPECT_EQ(CallsBehindTheCheck()[0], "SOF_SetSignMethod(ctx, 65540)");
}

TEST_F(P7SignTest, TheHostsPairGoesToTheServiceAsItStands) {
    Select(0);
    int length = 99;
    EXPECT_EQ(P7Sign("data", "", nullptr, &length), 0);
    EXPECT_EQ(length, 22);
    EXPECT_EQ(CallsBehindTheCheck()[1], "SOF_SignMessageEx(ctx, \"A\", 1, 1, 4 \"data\", size?)");
    EXPECT_TRUE(Selected());
}

TEST_F(P7SignTest, AFailedPkcs7HasOneCodeForEveryCauseAndResetsTheMethod) {
    Select(0);
    fakes::On("SOF_SignMessageEx").Returns(81);
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), TESMARK_PKCS7_FAILED);
    EXPECT_THAT(Errors(), ElementsAre("[SignPlainData]SOF_SignMessage: error:81"));
    EXPECT_EQ(fakes::CallTexts().back(), "SOF_SetSignMethod(ctx, 0)");
    EXPECT_EQ(m_out.length, 512);
    EXPECT_FALSE(Selected());
}

TEST_F(P7SignTest, AFailedCheckIsLoggedAndReturnedAndTheSelectionIsGone) {
    m_certificate.validity = -3;
    Select(0);
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), TESMARK_CERT_REVOKED);
    EXPECT_THAT(Errors(), ElementsAre("[GetKeyType]call SOF_ValidateCert error:-3",
                                      "[SignPlainDataEx]GetKeyType: error:-3047"));
    EXPECT_EQ(fakes::CountCalls("SOF_SetSignMethod"), 0);
    EXPECT_FALSE(Selected());
}

TEST_F(P7SignTest, AMethodThatCannotBeSetIsTheResult) {
    Select(0);
    fakes::On("SOF_SetSignMethod").Returns(82);
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), 82);
    EXPECT_THAT(Errors(), ElementsAre("[SignPlainDataEx]SOF_SetSignMethod: error:82"));
    EXPECT_EQ(fakes::CountCalls("SOF_SignMessageEx"), 0);
}

TEST_F(P7SignTest, TheTimeStampSettingIsReadAnewOnEachCall) {
    Select(0);
    EXPECT_EQ(P7Sign("data", "", nullptr, &m_out.length), 0);
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    EXPECT_EQ(P7Sign("data", "", nullptr, &m_out.length), TESMARK_TIME_STAMP_FAILED);
}

TEST_F(P7SignTest, WithATimeStampTheSignatureIsMadeTwiceAndAFailedStampEndsTheSelection) {
    Select(0);
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    OutPair out;
    EXPECT_EQ(P7Sign("data", "", out.buffer, &out.length), TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(fakes::CallTexts("SOF_SignMessageEx"),
                ElementsAre("SOF_SignMessageEx(ctx, \"A\", 1, 1, 4 \"data\", size?)",
                            "SOF_SignMessageEx(ctx, \"A\", 1, 1, 4 \"data\", out[150])"));
    EXPECT_THAT(Errors(), ElementsAre("pVelmoraTSEngine: is null", "SignTimeStamp error -3008"));
    EXPECT_TRUE(out.Untouched());
    EXPECT_FALSE(Selected());
}

TEST_F(P7SignTest, WithATimeStampASecondSignatureMayBeUpTo128BytesLonger) {
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    const std::string first = "SOF_SignMessageEx by A";
    Select(0);
    fakes::On("SOF_SignMessageEx").GivesAt(2, first + std::string(128, 'x'));
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(Errors(), ElementsAre("pVelmoraTSEngine: is null", "SignTimeStamp error -3008"));
    Select(0);
    fakes::On("SOF_SignMessageEx").GivesAt(2, first + std::string(129, 'x'));
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), TESMARK_PKCS7_FAILED);
}

TEST_F(P7SignTest, WithATimeStampASignatureThatNoMemoryHoldsIsToldAsSuch) {
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    for (const int size : {-1, INT_MAX}) {
        Select(0);
        fakes::On("SOF_SignMessageEx").ReportsSizeAt(1, size);
        EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), TESMARK_NO_MEMORY);
        EXPECT_FALSE(Selected());
    }
}

TEST_F(P7SignTest, WithATimeStampAFailedSignatureIsItsOwnResult) {
    Select(0);
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    fakes::On("SOF_SignMessageEx").ReturnsAt(1, 83);
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), TESMARK_PKCS7_FAILED);
    EXPECT_EQ(fakes::CountCalls("SOF_SignMessageEx"), 1);
    EXPECT_THAT(Errors(), ElementsAre("[SignPlainData]SOF_SignMessage: error:83"));
}

TEST_F(P7SignTest, InMode1TheSealLibrarySignsTheHashWithTheSelectedSeal) {
    Select(1);
    EXPECT_EQ(P7Sign("data", "property", m_out.buffer, &m_out.length), 0);
    EXPECT_EQ(m_out.Bytes(), "seal signature by A");
    const auto calls = CallsBehindTheCheck();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0],
              "SOF_HashData(ctx, 1, 4 \"data\", 0 null, \"1234567812345678\", 16, out[32])");
    EXPECT_THAT(calls[1], MatchesRegex(R"(TVK_Sign\(1 "A", 8 "property", )"
                                       R"(19 "1\.2\.156\.10197\.1\.501", 32 ".*", )"
                                       R"(19 "....-..-..T..:..:..", 9 "seal file", out\[512\]\))"));
    EXPECT_THAT(Log(),
                ElementsAre("8 [SignData_GB]: begin", "8 [GetKeyType]: begin", "8 [GetKeyType]: ok",
                            "8 [HashData]: begin", "8 [HashData]: ok", "8 [SignData_GB]: ok"));
}

// As may happen while the service's own window asks for a PIN.
TEST_F(P7SignTest, ASelectionThatTheHostEndsMeanwhileStillSignsWithItsSeal) {
    const auto endSelection = [](const fakes::Call&) {
        ClearSelectKeyID();
        return fakes::Answer{};
    };
    fakes::On("SOF_ValidateCert").Does(endSelection);
    Select(1);
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), 0);
    EXPECT_THAT(fakes::CallTexts().back(), HasSubstr("9 \"seal file\""));
    Select(1);
    EXPECT_EQ(P7SignBigFile("file", nullptr, 0, m_out.buffer, &m_out.length), 0);
    EXPECT_THAT(fakes::CallTexts().back(), HasSubstr("9 \"seal file\""));
}

TEST_F(P7SignTest, TheHashThatIsSignedIsTheServices) {
    Select(1);
    fakes::On("SOF_HashData").Gives("0123456789ABCDEF0123456789abcdef");
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), 0);
    EXPECT_THAT(fakes::CallTexts().back(), HasSubstr("32 \"0123456789ABCDEF0123456789abcdef\""));
}

TEST_F(P7SignTest, AnRsaKeyHasItsOwnHashAndOidUnderASeal) {
    m_certificate.keyType = "RSA";
    Select(1);
    EXPECT_EQ(P7Sign("data", "", nullptr, &m_out.length), 0);
    EXPECT_EQ(m_out.length, 19);
    EXPECT_EQ(CallsBehindTheCheck()[0],
              "SOF_HashData(ctx, 4, 4 \"data\", 0 null, null, 0, out[32])");
    EXPECT_THAT(fakes::CallTexts().back(), HasSubstr("21 \"1.2.840.113549.1.1.11\""));
    EXPECT_EQ(fakes::CountCalls("SOF_SetSignMethod"), 0);
}

TEST_F(P7SignTest, AFailedHashSigns32ZeroBytes) {
    Select(1);
    fakes::On("SOF_HashData").Returns(84);
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), 0);
    EXPECT_EQ(fakes::Calls().back().arguments[3], std::string(32, '\0'));
}

TEST_F(P7SignTest, WithASealTheTimeStampSettingPlaysNoPart) {
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    Select(2);
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), 0);
    EXPECT_EQ(fakes::CountCalls("TVK_Sign"), 1);
    EXPECT_EQ(fakes::CountCalls("SOF_SignMessageEx"), 0);
}

TEST_F(P7SignTest, TheSealLibrarysFailureIsTheResultAndEndsTheSelectionAndTheSeal) {
    Select(1);
    fakes::On("TVK_Sign").Returns(85);
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), 85);
    EXPECT_THAT(Log(), Not(Contains("8 [SignData_GB]: ok")));
    EXPECT_FALSE(Selected());
    EXPECT_EQ(GetEsealMode(), 0);
    OutPair seal;
    EXPECT_EQ(GetSelectedSeal(nullptr, &seal.length), 0);
    EXPECT_TRUE(seal.Untouched());
}

TEST_F(P7SignTest, ACertificateThatIsGoneFailsBeforeTheSealLibraryIsAsked) {
    Select(1);
    fakes::On("SOF_ExportUserCert").Returns(86);
    EXPECT_EQ(P7Sign("data", "", m_out.buffer, &m_out.length), TESMARK_CERT_EXPORT_FAILED);
    EXPECT_EQ(fakes::CountCalls("TVK_Sign"), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_HashData"), 0);
}

TEST_F(P7SignTest, AnyOtherModeReturnsZeroAndTouchesNothing) {
    for (const int mode : {3, 4, -1}) {
        ClearSelectKeyID();
        SelectSeal("serial of A", "bm90IGEgc2VhbA==", mode);
        SetCurrentCertID("A");
        ASSERT_EQ(GetEsealMode(), mode);
        fakes::ClearCalls();
        OutPair out;
        EXPECT_EQ(P7Sign("data", "", out.buffer, &out.length), 0);
        EXPECT_TRUE(out.Untouched());
        EXPECT_THAT(fakes::Calls(), IsEmpty());
    }
}

}  // namespace
