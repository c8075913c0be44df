#include "SignTimeStampTest.h"

#include "foundation/StringFailure.h"
#include "foundation/Text.h"
#include "platform/Files.h"
#include "platform/TimeStampRequest.h"

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::StartsWith;

std::string g_copyPath;

// Stands in for the constant: the program is linked with this one in place of the library's.
const char* platform::TimeStampRequestPath() { return g_copyPath.c_str(); }

namespace {

TEST_F(SignTimeStampTest, TheStampedSignatureComesWithItsLength) {
    EXPECT_EQ(Stamp(), 0);
    EXPECT_EQ(m_out.Bytes(), "stamped");
    EXPECT_THAT(fakes::CalledFunctions(), ElementsAreArray(AllSteps()));
    EXPECT_THAT(Log(),
                ElementsAre("8 [SignTimeStamp]: begin", "8 [HashData]: begin", "8 [HashData]: ok",
                            "8 [WriteContent2File]:filename," + g_copyPath + ";outputlen,3",
                            "8 [WriteContent2File]: ok"));
    EXPECT_TRUE(m_engine.IsLetGo());
}

TEST_F(SignTimeStampTest, DataOf10BytesOrLessIsHashedAsItIs) {
    for (const char* const data : {"", "1", "ten bytes!"}) {
        fakes::ClearCalls();
        EXPECT_EQ(Stamp(data), 0);
        ASSERT_EQ(fakes::Calls().size(), 3u);
        EXPECT_EQ(fakes::Calls()[0].arguments[1], data);
        EXPECT_EQ(fakes::Calls()[2].arguments[1], data);
    }
    EXPECT_EQ(fakes::CountCalls("SOF_GetInfoFromSignedMessage"), 0);
}

TEST_F(SignTimeStampTest, ANegativeLengthIsPlainDataToo) {
    const unsigned char data = '1';
    EXPECT_EQ(m_appOpt.SignTimeStamp(&data, -1, m_out.buffer, &m_out.length), 0);
    EXPECT_EQ(fakes::CallTexts()[0], "SOF_HashData(ctx, 4, -1 \"\", 0 null, null, 0, out[32])");
}

TEST_F(SignTimeStampTest, From11BytesOnTheSignaturesValueIsHashed) {
    EXPECT_EQ(Stamp("11 bytes it"), 0);
    EXPECT_THAT(fakes::CallTexts(), Contains("SOF_GetInfoFromSignedMessage(ctx, 11 \"11 bytes it\","
                                             " 3, out[512])"));
    EXPECT_THAT(fakes::CallTexts(),
                Contains("SOF_HashData(ctx, 4, 5 \"value\", 0 null, null, 0, out[32])"));
}

TEST_F(StampWithoutEngineTest, AnEngineThatIsNotRegisteredIsNoStamp) {
    EXPECT_EQ(Stamp(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(Log(), ElementsAre("8 [SignTimeStamp]: begin", "3 pVelmoraTSEngine: is null"));
    EXPECT_THAT(fakes::Calls(), IsEmpty());
    EXPECT_TRUE(m_out.BufferUntouched());
    EXPECT_EQ(m_out.length, 512);
}

TEST_F(StampWithoutEngineTest, AnEngineWhoseLibraryIsNoneIsNoStamp) {
    StampEngine::RegisterAt(fakes::ServicePath(fakes::Service::NoLibrary));
    EXPECT_EQ(Stamp(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(Errors(), ElementsAre("pVelmoraTSEngine: is null"));
}

TEST_F(StampWithoutEngineTest, ALibraryThatIsNoTimeStampEngineIsNoStamp) {
    StampEngine::RegisterAt(fakes::ServicePath());
    EXPECT_EQ(Stamp(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(Errors(), ElementsAre("pVelmoraTSEngine: is null"));
}

TEST_F(SignTimeStampTest, AHashThatFailsIsNotLookedAtAndZeroBytesAreStamped) {
    fakes::On("SOF_HashData").Returns(91);
    EXPECT_EQ(Stamp(), 0);
    EXPECT_EQ(fakes::Calls()[2].arguments[0], std::string(64, '\0'));
    EXPECT_EQ(Stamp("1"), 0);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(SignTimeStampTest, ASignatureWithoutAValueIsNoStamp) {
    fakes::On("SOF_GetInfoFromSignedMessage").Returns(92);
    EXPECT_EQ(Stamp(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(fakes::CalledFunctions(), ElementsAre("SOF_GetInfoFromSignedMessage"));
    EXPECT_THAT(Log(),
                ElementsAre("8 [SignTimeStamp]: begin", "8 SOF_GetInfoFromSignedMessage error:92"));
    EXPECT_TRUE(m_out.BufferUntouched());
    EXPECT_EQ(m_out.length, 512);
    EXPECT_TRUE(m_engine.IsLetGo());
}

TEST_F(SignTimeStampTest, ARequestThatCannotBeMadeIsNoStampAndLeavesNoCopy) {
    fakes::On("SOF_TSGenREQ").Returns(93);
    EXPECT_EQ(Stamp(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_EQ(fakes::CalledFunctions().back(), "SOF_TSGenREQ");
    EXPECT_THAT(Log(), ElementsAre("8 [SignTimeStamp]: begin", "8 [HashData]: begin",
                                   "8 [HashData]: ok", "8 SOF_TSGenREQ error:93"));
    EXPECT_FALSE(platform::PathExists(g_copyPath.c_str()));
    EXPECT_EQ(m_out.length, 512);
    EXPECT_TRUE(m_engine.IsLetGo());
}

TEST_F(SignTimeStampTest, ANullResponseIsNoStamp) {
    fakes::On("SOF_TSGenREQ").Gives(StampEngine::kNull);
    EXPECT_EQ(Stamp(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(Errors(), ElementsAre("CreateTS: return null"));
    EXPECT_EQ(fakes::CalledFunctions().back(), "SOF_TSGenREQ");
    EXPECT_EQ(ReadFileToString(g_copyPath), StampEngine::kNull);
    EXPECT_TRUE(m_out.BufferUntouched());
    EXPECT_EQ(m_out.length, 512);
    EXPECT_TRUE(m_engine.IsLetGo());
}

TEST_F(SignTimeStampTest, AFailedCallOfTheEngineIsThrownWithItsStatusAndTheEngineLetGo) {
    fakes::On("SOF_TSGenREQ").Gives(StampEngine::kFailing);
    try {
        Stamp();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const StringFailure& failure) {
        EXPECT_EQ(failure.Value(), StampEngine::kFailure);
    }
    EXPECT_EQ(fakes::CalledFunctions().back(), "SOF_TSGenREQ");
    EXPECT_THAT(Errors(), IsEmpty());
    EXPECT_EQ(m_out.length, 512);
    EXPECT_TRUE(m_engine.IsLetGo());
}

TEST_F(SignTimeStampTest, AnEmptyResponseGoesToTheServiceAsItIs) {
    fakes::On("SOF_TSGenREQ").Gives("");
    EXPECT_EQ(Stamp(), 0);
    EXPECT_THAT(fakes::CallTexts().back(), StartsWith("SOF_TSGenPDFSignature(ctx, 0 \"\", 16 "));
}

TEST_F(SignTimeStampTest, AResultOf1IsASuccessAndAnyOtherTheServicesOwn) {
    for (const int result : {1, 2, -1, 94}) {
        fakes::On("SOF_TSGenPDFSignature").Returns(result);
        EXPECT_EQ(Stamp(), result == 1 ? 0 : result);
        EXPECT_TRUE(m_engine.IsLetGo());
    }
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(SignTimeStampTest, TheLengthIsTheServicesAfterAFailureToo) {
    m_out.length = 6;
    EXPECT_EQ(Stamp(), fakes::kBufferTooSmall);
    EXPECT_EQ(m_out.length, 7);
    EXPECT_TRUE(m_out.BufferUntouched());
}

TEST_F(SignTimeStampTest, ANullBufferAsksTheAuthorityAndThenForTheSizeAlone) {
    EXPECT_EQ(m_appOpt.SignTimeStamp(AsBytes(kSigned), 16, nullptr, &m_out.length), 0);
    EXPECT_EQ(m_out.length, 7);
    EXPECT_THAT(fakes::CalledFunctions(), ElementsAreArray(AllSteps()));
    EXPECT_EQ(fakes::CallTexts().back(),
              "SOF_TSGenPDFSignature(ctx, 7 \"swapped\", 16 \"a signed message\", size?)");
    EXPECT_EQ(ReadFileToString(g_copyPath), StampEngine::kSwapped);
}

// Each length that the service tells, whatever its buffer holds, and what is taken of it.
struct ToldLength {
    int told;
    std::size_t taken;
};

TEST_F(SignTimeStampTest, AValueIsHashedNoLongerThanItsRoom) {
    for (const auto& [told, taken] : {ToldLength{512, 512}, {513, 512}, {1 << 30, 512}, {-1, 0}}) {
        fakes::ClearCalls();
        fakes::On("SOF_GetInfoFromSignedMessage").ReportsSize(told);
        EXPECT_EQ(Stamp(), 0);
        EXPECT_EQ(fakes::Calls()[1].arguments[1].size(), taken) << told;
    }
}

TEST_F(SignTimeStampTest, AHashIsStampedNoLongerThanItsRoom) {
    for (const auto& [told, taken] : {ToldLength{64, 64}, {65, 64}, {1 << 30, 64}, {-1, 0}}) {
        fakes::ClearCalls();
        fakes::On("SOF_HashData").ReportsSize(told);
        EXPECT_EQ(Stamp(), 0);
        EXPECT_EQ(fakes::Calls()[2].arguments[0].size(), taken) << told;
    }
}

TEST_F(SignTimeStampTest, ARequestIsSentAndCopiedNoLongerThanItsRoom) {
    for (const auto& [told, taken] : {ToldLength{512, 512}, {513, 512}, {1 << 30, 512}, {-1, 0}}) {
        fakes::ClearCalls();
        fakes::On("SOF_TSGenREQ").Gives("request").ReportsSize(told);
        EXPECT_EQ(Stamp(), 0);
        EXPECT_EQ(fakes::Calls()[3].arguments[0].size(), taken) << told;
        EXPECT_EQ(ReadFileToString(g_copyPath).size(), taken) << told;
    }
}

TEST_F(SignTimeStampTest, ARequestThatFillsItsRoomComesThroughWhole) {
    std::string request;
    for (int i = 0; i < 512; ++i) request += static_cast<char>(i * 7);
    fakes::On("SOF_TSGenREQ").Gives(request);
    EXPECT_EQ(Stamp(), 0);
    EXPECT_EQ(fakes::Calls().back().arguments[0], request);
    EXPECT_EQ(ReadFileToString(g_copyPath), request);
}

TEST_F(SignTimeStampTest, AFolderThatIsNotThereLosesTheCopyAndNotTheStamp) {
    g_copyPath = m_prefix.Below("none/req.dat");
    EXPECT_EQ(Stamp(), 0);
    EXPECT_EQ(m_out.Bytes(), "stamped");
    EXPECT_THAT(Errors(), ElementsAre(StartsWith("[WriteContent2File]:fopen error:")));
}

TEST_F(SignTimeStampTest, AServiceThatIsUpIsNotAskedForTwice) {
    EXPECT_EQ(Stamp(), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_Initialize"), 0);
}

// --- the questions, where the service is down ---

TEST_F(SignTimeStampTest, WithoutAServiceBothQuestionsHaveTheCodeOfTheGate) {
    KVLUnInitialize(m_appOpt);
    fakes::On("SOF_Initialize").Returns(1);
    OutPair out;
    EXPECT_EQ(m_appOpt.VerifyTimeStamp(AsBytes(kSigned), 16), TESMARK_SERVICE_FAILED);
    EXPECT_EQ(
        m_appOpt.GetFieldDataFromTSSignatureInfo(AsBytes(kSigned), 16, 1, out.buffer, &out.length),
        TESMARK_SERVICE_FAILED);
    EXPECT_TRUE(out.Untouched());
    EXPECT_THAT(Log(), Contains("8 [VerifyTimeStamp]: begin"));
    EXPECT_THAT(Log(), Contains("8 [GetFieldDataFromTSSignatureInfo]: begin"));
}

}  // namespace
