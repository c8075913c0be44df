#include "fakes/Script.h"

#include <gmock/gmock.h>

#include "fakes/World.h"
#include "platform/closed/SealLibrary.h"

using testing::ElementsAre;

namespace {

const auto* const kSeal = reinterpret_cast<const unsigned char*>("a seal");
constexpr int kSealLen = 6;

class ScriptTest : public testing::Test {
protected:
    ScriptTest() { fakes::Reset(); }
    ~ScriptTest() override { fakes::Reset(); }

    int AskName(unsigned char* out, int* outLen) {
        return TVK_Get_SealName_From_Eseal(kSeal, kSealLen, out, outLen);
    }

    unsigned char m_name[8] = {};
    int m_length = 0;
};

TEST_F(ScriptTest, ACallIsRecordedWithItsArgumentsAndTheCapacityStated) {
    fakes::AddNationalSeal("a seal", "name", "picture");
    ASSERT_EQ(AskName(nullptr, &m_length), 0);
    m_length = 8;
    ASSERT_EQ(AskName(m_name, &m_length), 0);
    EXPECT_EQ(m_length, 4);
    EXPECT_STREQ(reinterpret_cast<char*>(m_name), "name");
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("TVK_Get_SealName_From_Eseal(6 \"a seal\", size?)",
                            "TVK_Get_SealName_From_Eseal(6 \"a seal\", out[8])"));
}

TEST_F(ScriptTest, ASealThatNobodyAddedIsRefusedAndLeavesTheOutputAlone) {
    m_length = 77;
    EXPECT_EQ(AskName(nullptr, &m_length), fakes::kUnknownSeal);
    EXPECT_EQ(m_length, 77);
}

TEST_F(ScriptTest, ABufferThatIsTooSmallGetsNothing) {
    fakes::AddNationalSeal("a seal", "name", "picture");
    m_length = 3;
    EXPECT_EQ(AskName(m_name, &m_length), fakes::kBufferTooSmall);
    EXPECT_EQ(m_name[0], 0);
}

TEST_F(ScriptTest, OneCallCanFailAmongOthersThatDoNot) {
    fakes::AddNationalSeal("a seal", "name", "picture");
    fakes::On("TVK_Get_SealName_From_Eseal").ReturnsAt(2, 5);
    EXPECT_EQ(AskName(nullptr, &m_length), 0);
    EXPECT_EQ(AskName(m_name, &m_length), 5);
    EXPECT_EQ(AskName(nullptr, &m_length), 0);
    fakes::ClearCalls();
    EXPECT_EQ(AskName(nullptr, &m_length), 0);
    EXPECT_EQ(AskName(nullptr, &m_length), 5);
}

TEST_F(ScriptTest, AScriptedOutputTakesThePlaceOfTheWorlds) {
    fakes::On("TVK_Get_SealName_From_Eseal").Gives("other").ReportsSizeAt(1, 1000);
    EXPECT_EQ(AskName(nullptr, &m_length), 0);
    EXPECT_EQ(m_length, 1000);
    m_length = 8;
    EXPECT_EQ(AskName(m_name, &m_length), 0);
    EXPECT_EQ(m_length, 5);
}

TEST_F(ScriptTest, AHandlerAnswersFromTheCall) {
    fakes::On("TVK_Verify_SESeal").Does([](const fakes::Call& call) {
        fakes::Answer answer;
        answer.result = call.number * 10;
        return answer;
    });
    EXPECT_EQ(TVK_Verify_SESeal(kSeal, kSealLen), 10);
    EXPECT_EQ(TVK_Verify_SESeal(nullptr, 0), 20);
    EXPECT_THAT(fakes::CallTexts("TVK_Verify_SESeal"),
                ElementsAre("TVK_Verify_SESeal(6 \"a seal\")", "TVK_Verify_SESeal(0 null)"));
}

}  // namespace
