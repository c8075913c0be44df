// Time stamps through the exports.
#include "TimeStampTest.h"

#include "foundation/StringFailure.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr char kMadeByService[] = "SOF_SignMessageEx by A";

// The calls behind the second signature, until `length` is asked for or made.
std::vector<std::string> CallsOfStamp() {
    std::vector<std::string> texts = fakes::CallTexts();
    const auto last = std::find(texts.rbegin(), texts.rend(), "SOF_SetSignMethod(ctx, 0)");
    return {last.base(), texts.end()};
}

TEST_F(TimeStampTest, ThePkcs7sValueIsStampedAndTheResponseMergedIntoThePkcs7) {
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(m_out.Bytes(), "stamped signature");
    EXPECT_THAT(
        CallsOfStamp(),
        ElementsAre("SOF_GetInfoFromSignedMessage(ctx, 22 \"SOF_SignMessageEx by A\", 3, out[512])",
                    "SOF_HashData(ctx, 4, 5 \"value\", 0 null, null, 0, out[32])",
                    "SOF_TSGenREQ(ctx, 32 \"0123456789ABCDEF0123456789abcdef\", 4, 1, 0, 0, 0, 0, "
                    "0, out[512])",
                    "SOF_TSGenPDFSignature(ctx, 7 \"swapped\", 22 \"SOF_SignMessageEx by A\", "
                    "out[512])"));
    EXPECT_TRUE(Selected());
    EXPECT_TRUE(m_engine.IsLetGo());
}

TEST_F(TimeStampTest, TheStampLeavesItsStepsInTheLog) {
    EXPECT_EQ(Sign(), 0);
    const std::vector<std::string> log = Log();
    ASSERT_EQ(log.size(), 11u);
    EXPECT_THAT(
        std::vector(log.begin() + 6, log.end()),
        ElementsAre("8 [SignTimeStamp]: begin", "8 [HashData]: begin", "8 [HashData]: ok",
                    "8 " + CopyRecord("3"), StartsWith("3 [WriteContent2File]:fopen error:")));
}

TEST_F(TimeStampTest, TheFolderOfTheCopyIsMissedByNobody) {
    EXPECT_EQ(Sign(), 0);
    EXPECT_THAT(Errors(), ElementsAre(StartsWith("[WriteContent2File]:fopen error:")));
}

TEST_F(TimeStampTest, ASizeQueryAsksTheAuthorityAndOnlyTheLastStepForASize) {
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(m_out.length, 17);
    EXPECT_EQ(fakes::CountCalls("SOF_SignMessageEx"), 2);
    const std::vector<std::string> calls = CallsOfStamp();
    ASSERT_EQ(calls.size(), 4u);
    EXPECT_EQ(calls[3],
              "SOF_TSGenPDFSignature(ctx, 7 \"swapped\", 22 \"SOF_SignMessageEx by A\", size?)");
    EXPECT_THAT(Log(), Contains("8 " + CopyRecord("3")));
    EXPECT_TRUE(m_engine.IsLetGo());
}

TEST_F(TimeStampTest, AQueryAndItsCallMakeFourSignaturesAndTwoRequests) {
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_SignMessageEx"), 4);
    EXPECT_EQ(fakes::CountCalls("SOF_TSGenREQ"), 2);
}

TEST_F(TimeStampTest, AResultOf1FromTheServiceIsASuccess) {
    fakes::On("SOF_TSGenPDFSignature").Returns(1);
    EXPECT_EQ(Sign(), 0);
    EXPECT_TRUE(Selected());
    EXPECT_TRUE(m_out.BufferUntouched());
}

TEST_F(TimeStampTest, AnyOtherResultIsLoggedAndTurnedIntoTheOneOfTimeStamps) {
    for (const int result : {2, -1, 95}) {
        Select(0);
        fakes::On("SOF_TSGenPDFSignature").Returns(result);
        EXPECT_EQ(Sign(), TESMARK_TIME_STAMP_FAILED);
        EXPECT_EQ(Errors().back(), "SignTimeStamp error " + std::to_string(result));
        EXPECT_FALSE(Selected());
    }
    EXPECT_TRUE(m_out.BufferUntouched());
    EXPECT_EQ(m_out.length, 512);
}

TEST_F(TimeStampTest, ABufferThatIsTooSmallHearsTheSizeAndEndsTheSelection) {
    m_out.length = 16;
    EXPECT_EQ(Sign(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_EQ(m_out.length, 17);
    EXPECT_TRUE(m_out.BufferUntouched());
    EXPECT_FALSE(Selected());
}

TEST_F(TimeStampTest, ASignatureOf10BytesOrLessIsStampedOverItsOwnHash) {
    fakes::On("SOF_SignMessageEx").Gives("ten bytes!");
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(CallsOfStamp()[0],
              "SOF_HashData(ctx, 4, 10 \"ten bytes!\", 0 null, null, 0, out[32])");
    EXPECT_EQ(fakes::CountCalls("SOF_GetInfoFromSignedMessage"), 0);
}

TEST_F(TimeStampTest, ASignatureOf11BytesMustHaveAValue) {
    fakes::On("SOF_SignMessageEx").Gives("11 bytes it");
    fakes::On("SOF_GetInfoFromSignedMessage").Returns(96);
    EXPECT_EQ(Sign(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(CallsOfStamp(), ElementsAre("SOF_GetInfoFromSignedMessage(ctx, 11 \"11 bytes it\", "
                                            "3, out[512])"));
    EXPECT_THAT(Log(), Contains("8 SOF_GetInfoFromSignedMessage error:96"));
}

TEST_F(TimeStampTest, AFailedCallOfTheEnginePassesThroughTheExportAndLeavesTheSelection) {
    fakes::On("SOF_TSGenREQ").Gives(StampEngine::kFailing);
    try {
        Sign();
        ADD_FAILURE() << "no failure came through";
    } catch (const StringFailure& failure) {
        EXPECT_EQ(failure.Value(), StampEngine::kFailure);
    }
    EXPECT_EQ(fakes::CountCalls("SOF_TSGenPDFSignature"), 0);
    EXPECT_THAT(Errors(), ElementsAre(StartsWith("[WriteContent2File]:fopen error:")));
    EXPECT_TRUE(m_out.BufferUntouched());
    EXPECT_EQ(m_out.length, 512);
    EXPECT_TRUE(Selected());
    EXPECT_TRUE(m_engine.IsLetGo());
}

TEST_F(TimeStampTest, ANullResponseIsNoStamp) {
    fakes::On("SOF_TSGenREQ").Gives(StampEngine::kNull);
    EXPECT_EQ(Sign(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(Errors(), ElementsAre(StartsWith("[WriteContent2File]:fopen error:"),
                                      "CreateTS: return null", "SignTimeStamp error -3008"));
    EXPECT_EQ(fakes::CountCalls("SOF_TSGenPDFSignature"), 0);
    EXPECT_TRUE(m_out.BufferUntouched());
    EXPECT_FALSE(Selected());
}

TEST_F(TimeStampTest, WithASealNobodyIsAskedForAStamp) {
    ClearSelectKeyID();
    Select(2);
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(m_out.Bytes(), "seal signature by A");
    EXPECT_EQ(fakes::CountCalls("SOF_TSGenREQ"), 0);
}

TEST_F(TimeStampTest, AVerificationIsTheServicesWithItsResultAsItIs) {
    for (const int result : {0, 1, -7, 97}) {
        fakes::ClearCalls();
        ForgetLog();
        fakes::On("SOF_TSVerifyPDFSignature").Returns(result);
        EXPECT_EQ(VerifyPDFTimeStamp(AsBytes(kMadeByService), 6), result);
        EXPECT_THAT(fakes::CallTexts(), ElementsAre("SOF_TSVerifyPDFSignature(ctx, 6 \"SOF_Si\")"));
        EXPECT_THAT(Log(), ElementsAre("8 [VerifyTimeStamp]: begin"));
    }
    EXPECT_TRUE(Selected());
}

TEST_F(TimeStampTest, AFieldOfAStampComesThroughThePairAsTheServiceReadsIt) {
    fakes::On("SOF_TSGetPDFSignatureInfo").Gives("20261121160000");
    int length = 99;
    EXPECT_EQ(GetTimeStampInfo(AsBytes(kMadeByService), 6, 1, nullptr, &length), 0);
    EXPECT_EQ(length, 14);
    EXPECT_EQ(GetTimeStampInfo(AsBytes(kMadeByService), 6, -5, m_out.buffer, &length), 0);
    EXPECT_EQ(m_out.Bytes(14), "20261121160000");
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_TSGetPDFSignatureInfo(ctx, 6 \"SOF_Si\", 1, size?)",
                            "SOF_TSGetPDFSignatureInfo(ctx, 6 \"SOF_Si\", -5, out[14])"));
    EXPECT_THAT(Log(), ElementsAre("8 [GetFieldDataFromTSSignatureInfo]: begin",
                                   "8 [GetFieldDataFromTSSignatureInfo]: begin"));
}

TEST_F(TimeStampTest, AFailedFieldIsTheServicesResultWithThePairUntouched) {
    fakes::On("SOF_TSGetPDFSignatureInfo").Returns(98);
    OutPair out;
    EXPECT_EQ(GetTimeStampInfo(AsBytes(kMadeByService), 6, 1, out.buffer, &out.length), 98);
    EXPECT_TRUE(out.Untouched());
    EXPECT_TRUE(Selected());
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(TimeStampTest, BothQuestionsStartTheServiceByThemselves) {
    UnInitKVLLib();
    EXPECT_EQ(VerifyPDFTimeStamp(AsBytes(kMadeByService), 6), 0);
    UnInitKVLLib();
    EXPECT_EQ(GetTimeStampInfo(AsBytes(kMadeByService), 6, 1, nullptr, &m_out.length), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_Initialize"), 2);
}

TEST_F(TimeStampTest, AServiceThatIsNotThereIsTheResultOfBothQuestions) {
    UnInitKVLLib();
    m_prefix.RegisterCertService(fakes::ServicePath(fakes::Service::NoLibrary));
    OutPair out;
    EXPECT_EQ(VerifyPDFTimeStamp(AsBytes(kMadeByService), 6), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(GetTimeStampInfo(AsBytes(kMadeByService), 6, 1, out.buffer, &out.length),
              TESMARK_SERVICE_NOT_FOUND);
    EXPECT_TRUE(out.Untouched());
    EXPECT_TRUE(Selected());
}

}  // namespace
