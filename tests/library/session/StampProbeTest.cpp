// The key's probe where signatures carry a time stamp.
#include "SessionTest.h"
#include "StampEngine.h"
#include "foundation/StringFailure.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class StampProbeTest : public SessionTest {
protected:
    StampProbeTest() {
        StampEngine::Register();
        m_prefix.SetNumber("bSignWithTimeStamp", 1);
        AddGbKey();
        fakes::On("SOF_HashData").Gives("hash");
        fakes::On("SOF_TSGenREQ").Gives(StampEngine::kSwapped);
    }
    // A size query that ends in `code` with nothing selected and the seal not looked at.
    void ExpectQueryFails(int code) {
        EXPECT_EQ(Query(), code);
        EXPECT_FALSE(Called("TVK_Verify_SESeal"));
        EXPECT_EQ(GetEsealMode(), 0);
        EXPECT_EQ(SelectedSeal(), "");
        EXPECT_EQ(SelectedCert(), "");
        EXPECT_TRUE(m_engine.IsLetGo());
    }
    StampEngine m_engine;
};

TEST_F(StampProbeTest, TheProbedByteIsStampedBetweenTheProbeAndTheSealsCheck) {
    ASSERT_EQ(Query(), 0);
    std::vector<std::string> names = fakes::CalledFunctions();
    const auto probe = std::find(names.begin(), names.end(), "SOF_SignData");
    EXPECT_THAT(std::vector(probe, names.end()),
                ElementsAre("SOF_SignData", "SOF_SignData", "SOF_SetSignMethod", "SOF_HashData",
                            "SOF_TSGenREQ", "SOF_TSGenPDFSignature", "TVK_Verify_SESeal"));
    EXPECT_THAT(fakes::CallTexts("SOF_HashData"),
                ElementsAre("SOF_HashData(ctx, 4, 1 \"1\", 0 null, null, 0, out[32])"));
    EXPECT_THAT(fakes::CallTexts("SOF_TSGenPDFSignature"),
                ElementsAre("SOF_TSGenPDFSignature(ctx, 7 \"swapped\", 1 \"1\", size?)"));
    EXPECT_THAT(FailuresOfStamp(), IsEmpty());
    EXPECT_TRUE(m_engine.IsLetGo());
}

TEST_F(StampProbeTest, AnyNumberButZeroSwitchesTheStampOn) {
    m_prefix.SetNumber("bSignWithTimeStamp", 2);
    ASSERT_EQ(Query(), 0);
    EXPECT_TRUE(Called("SOF_TSGenREQ"));
    fakes::ClearCalls();
    m_prefix.SetNumber("bSignWithTimeStamp", 0);
    ASSERT_EQ(Query(), 0);
    EXPECT_FALSE(Called("SOF_TSGenREQ"));
}

TEST_F(StampProbeTest, AResultOf1IsASuccess) {
    fakes::On("SOF_TSGenPDFSignature").Returns(1);
    EXPECT_EQ(Query(), 0);
}

TEST_F(StampProbeTest, TheInnerCodeIsLoggedAndTheResultTheOneOfTimeStamps) {
    fakes::On("SOF_TSGenPDFSignature").Returns(95);
    ExpectQueryFails(TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(FailuresOfStamp(), ElementsAre("SignTimeStamp error 95"));
}

TEST_F(StampProbeTest, ARequestThatCannotBeMadeEndsTheFlow) {
    fakes::On("SOF_TSGenREQ").Returns(93);
    ExpectQueryFails(TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(FailuresOfStamp(), ElementsAre("SignTimeStamp error -3008"));
}

TEST_F(StampProbeTest, ANullResponseEndsTheFlow) {
    fakes::On("SOF_TSGenREQ").Gives(StampEngine::kNull);
    ExpectQueryFails(TESMARK_TIME_STAMP_FAILED);
    EXPECT_THAT(FailuresOfStamp(),
                ElementsAre("CreateTS: return null", "SignTimeStamp error -3008"));
}

TEST_F(StampProbeTest, AHashThatFailsDoesNotEndTheFlow) {
    fakes::On("SOF_HashData").Returns(91);
    EXPECT_EQ(Query(), 0);
}

TEST_F(StampProbeTest, AFailedProbeAsksForNoStamp) {
    fakes::On("SOF_SignData").Returns(2148);
    ExpectQueryFails(2148);
    EXPECT_FALSE(Called("SOF_TSGenREQ"));
}

TEST_F(StampProbeTest, WithPictureModeZeroNoStampIsTried) {
    SetGetStampPictureMode(0);
    ASSERT_EQ(Query(), 0);
    EXPECT_FALSE(Called("SOF_TSGenREQ"));
    EXPECT_TRUE(Called("TVK_Verify_SESeal"));
}

TEST_F(StampProbeTest, AFailedCallOfTheEnginePassesThroughAndTheNextQuestionIsAnswered) {
    fakes::On("SOF_TSGenREQ").Gives(StampEngine::kFailing);
    int length = -7;
    try {
        GetSealInfo(nullptr, &length);
        ADD_FAILURE() << "no failure came through";
    } catch (const StringFailure& failure) {
        EXPECT_EQ(failure.Value(), StampEngine::kFailure);
    }
    EXPECT_EQ(length, -7);
    EXPECT_THAT(FailuresOfStamp(), IsEmpty());
    EXPECT_TRUE(m_engine.IsLetGo());
    fakes::On("SOF_TSGenREQ").Gives(StampEngine::kSwapped);
    EXPECT_EQ(Picture(), "national picture");
}

}  // namespace
