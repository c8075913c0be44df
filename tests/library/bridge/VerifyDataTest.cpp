// Signatures over data: PKCS#1 by the service alone, PKCS#7 with the seal library behind it.
#include <gmock/gmock.h>

#include "ExportCalls.h"
#include "fakes/LibraryTest.h"
#include "foundation/StringFailure.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kRefused[] = "[VerifyPlainData]SOF_VerifySignedMessage: error:91";

class VerifyDataTest : public LibraryTest {
protected:
    VerifyDataTest() {
        InitKVLLib();
        fakes::ClearCalls();
        ForgetLog();
    }

    static int VerifyP1() {
        return P1VerifySignData(AsBytes("cert"), 4, AsBytes("data"), 4, AsBytes("signature"), 9);
    }
    static int VerifyP7() { return P7VerifyData(AsBytes("data"), 4, AsBytes("signature"), 9); }
};

TEST_F(VerifyDataTest, AP1SignatureIsTheServicesAffair) {
    EXPECT_EQ(VerifyP1(), 0);
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_VerifySignedData(ctx, 4 \"cert\", 4 \"data\", 9 \"signature\")"));
    EXPECT_THAT(Log(), ElementsAre("8 [VerifySignData]: begin"));
}

TEST_F(VerifyDataTest, AP1SignatureThatTheServiceRefusesHasNoOtherJudge) {
    for (const int result : {90, -1, -3015}) {
        fakes::ClearCalls();
        ForgetLog();
        fakes::On("SOF_VerifySignedData").Returns(result);
        EXPECT_EQ(VerifyP1(), result);
        EXPECT_EQ(fakes::Calls().size(), 1u);
        EXPECT_THAT(Log(), ElementsAre("8 [VerifySignData]: begin",
                                       "3 [VerifySignData]SOF_VerifySignedData: error:" +
                                           std::to_string(result)));
    }
}

TEST_F(VerifyDataTest, AP7SignatureThatTheServiceAcceptsNeverReachesTheSealLibrary) {
    m_prefix.SetNumber("bVerifyCRL", 1);
    UnInitKVLLib();
    InitKVLLib();
    fakes::ClearCalls();
    ForgetLog();
    EXPECT_EQ(VerifyP7(), 0);
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_VerifySignedMessage(ctx, 9 \"signature\", 4 \"data\")"));
    EXPECT_THAT(Log(), ElementsAre("8 [VerifyPlainDataEx]: begin", "8 [VerifyPlainDataEx]: ok"));
}

TEST_F(VerifyDataTest, ASealSignatureIsVerifiedByTheSealLibraryAfterTheServiceFailed) {
    fakes::On("SOF_VerifySignedMessage").Returns(91);
    EXPECT_EQ(VerifyP7(), 0);
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_VerifySignedMessage(ctx, 9 \"signature\", 4 \"data\")",
                            "TVK_Verify_SES_Sign(9 \"signature\", 8 \"ZGF0YQ==\")"));
    EXPECT_THAT(Log(), ElementsAre("8 [VerifyPlainDataEx]: begin", std::string("3 ") + kRefused,
                                   "8 [VerifyPlainDataEx]: ok"));
}

TEST_F(VerifyDataTest, ASignatureThatBothRefuseHasTheSealLibrarysResult) {
    for (const int result : {92, -1, 4637}) {
        ForgetLog();
        fakes::On("SOF_VerifySignedMessage").Returns(91);
        fakes::On("TVK_Verify_SES_Sign").Returns(result);
        EXPECT_EQ(VerifyP7(), result);
        EXPECT_THAT(Log(), ElementsAre("8 [VerifyPlainDataEx]: begin", std::string("3 ") + kRefused,
                                       "3 [VerifyPlainData]TVK_Verify_SES_Sign: error:" +
                                           std::to_string(result)));
    }
}

TEST_F(VerifyDataTest, NoDataIsAnEmptyTextForTheSealLibrary) {
    fakes::On("SOF_VerifySignedMessage").Returns(91);
    EXPECT_EQ(P7VerifyData(nullptr, 0, AsBytes("signature"), 9), 0);
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_VerifySignedMessage(ctx, 9 \"signature\", 0 null)",
                            "TVK_Verify_SES_Sign(9 \"signature\", 0 \"\")"));
}

TEST_F(VerifyDataTest, ZeroBytesInDataAndSignatureCount) {
    const std::string data("\0a\0", 3);
    const std::string signature("\0s", 2);
    fakes::On("SOF_VerifySignedMessage").Returns(91);
    EXPECT_EQ(P7VerifyData(AsBytes(data), AsLength(data), AsBytes(signature), AsLength(signature)),
              0);
    EXPECT_THAT(fakes::CallTexts("TVK_Verify_SES_Sign"),
                ElementsAre("TVK_Verify_SES_Sign(2 \"\\x00s\", 4 \"AGEA\")"));
}

TEST_F(VerifyDataTest, VerifyingNeitherReadsNorClearsTheSelection) {
    SetCurrentCertID("nobody");
    fakes::On("SOF_VerifySignedData").Returns(90);
    fakes::On("SOF_VerifySignedMessage").Returns(91);
    fakes::On("TVK_Verify_SES_Sign").Returns(92);
    EXPECT_EQ(VerifyP1(), 90);
    EXPECT_EQ(VerifyP7(), 92);
    int length = 0;
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(length, 6);
}

TEST_F(VerifyDataTest, EachExportStartsTheServiceByItself) {
    for (const auto& verify : {&VerifyDataTest::VerifyP1, &VerifyDataTest::VerifyP7}) {
        UnInitKVLLib();
        fakes::ClearCalls();
        EXPECT_EQ(verify(), 0);
        EXPECT_EQ(fakes::CalledFunctions()[0], "SOF_Initialize");
    }
}

TEST_F(VerifyDataTest, AServiceThatCannotBeStartedIsToldAndNothingIsVerified) {
    UnInitKVLLib();
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    fakes::ClearCalls();
    EXPECT_EQ(VerifyP1(), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(VerifyP7(), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(P7VerifyBigFile("/a", AsBytes("s"), 1), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(VerifySignCert(AsBytes("c"), 1, "time"), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(VerifySignTime(AsBytes("c"), 1, "time"), TESMARK_SERVICE_NOT_FOUND);
    OutPair out;
    EXPECT_EQ(ParseP7FieldData(AsBytes("s"), 1, 2, out.buffer, &out.length),
              TESMARK_SERVICE_NOT_FOUND);
    EXPECT_TRUE(out.Untouched());
    EXPECT_THAT(fakes::Calls(), IsEmpty());
}

TEST_F(VerifyDataTest, ANegativeLengthThatNobodyAcceptsRaisesTheFailure) {
    fakes::On("SOF_VerifySignedMessage").Returns(91);
    try {
        P7VerifyData(AsBytes("data"), -1, AsBytes("signature"), 9);
        ADD_FAILURE() << "no failure";
    } catch (const StringFailure& failure) {
        EXPECT_EQ(failure.Value(), StringFailure::kInvalidArgument);
    }
    EXPECT_EQ(fakes::CountCalls("TVK_Verify_SES_Sign"), 0);
}

}  // namespace
