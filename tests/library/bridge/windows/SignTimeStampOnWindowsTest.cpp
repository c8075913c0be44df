#include "SignTimeStampTest.h"
#include "foundation/StringFailure.h"
#include "platform/RegistryStore.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <objbase.h>

using testing::ElementsAre;

namespace {

// On a thread that has not entered COM before the test.
class SignTimeStampOnWindows : public SignTimeStampTest {
protected:
    SignTimeStampOnWindows() { StampEngine::LeaveCom(); }
};

class StampWithoutEngineOnWindows : public SignTimeStampOnWindows {
protected:
    void SetUp() override {}
};

TEST_F(SignTimeStampOnWindows, AfterAStampTheThreadHasLeftCom) {
    EXPECT_EQ(Stamp(), 0);
    EXPECT_EQ(StampEngine::LeaveCom(), 0);
}

TEST_F(SignTimeStampOnWindows, AStampThatTheServiceRefusesLeavesComToo) {
    fakes::On("SOF_TSGenPDFSignature").Returns(94);
    EXPECT_EQ(Stamp(), 94);
    EXPECT_EQ(StampEngine::LeaveCom(), 0);
}

TEST_F(SignTimeStampOnWindows, AHostThatHasEnteredComKeepsItAndTheEngineIsLetGo) {
    ASSERT_EQ(CoInitialize(nullptr), S_OK);
    EXPECT_EQ(Stamp(), 0);
    EXPECT_TRUE(m_engine.IsLetGo());
    EXPECT_EQ(StampEngine::LeaveCom(), 1);
}

TEST_F(StampWithoutEngineOnWindows, AnEngineThatIsNotThereLeavesTheCountRaised) {
    EXPECT_EQ(Stamp(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_EQ(StampEngine::LeaveCom(), 1);
}

TEST_F(SignTimeStampOnWindows, EveryEarlyReturnLeavesTheCountRaised) {
    for (const char* const step : {"SOF_GetInfoFromSignedMessage", "SOF_TSGenREQ"}) {
        fakes::On(step).Returns(92);
        EXPECT_EQ(Stamp(), TESMARK_TIME_STAMP_FAILED);
        EXPECT_TRUE(m_engine.IsLetGo());
        EXPECT_EQ(StampEngine::LeaveCom(), 1) << step;
        fakes::On(step).Returns(0);
    }
    fakes::On("SOF_TSGenREQ").Gives(StampEngine::kNull);
    EXPECT_EQ(Stamp(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_TRUE(m_engine.IsLetGo());
    EXPECT_EQ(StampEngine::LeaveCom(), 1);
}

TEST_F(SignTimeStampOnWindows, EachFailureRaisesTheCountOnceMore) {
    fakes::On("SOF_TSGenREQ").Returns(93);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(Stamp(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_EQ(StampEngine::LeaveCom(), 3);
}

TEST_F(SignTimeStampOnWindows, AFailedCallOfTheEngineLeavesTheCountRaised) {
    fakes::On("SOF_TSGenREQ").Gives(StampEngine::kFailing);
    EXPECT_THROW(Stamp(), StringFailure);
    EXPECT_TRUE(m_engine.IsLetGo());
    EXPECT_EQ(StampEngine::LeaveCom(), 1);
}

TEST_F(SignTimeStampOnWindows, AMultiThreadedHostKeepsItsApartmentThroughAFailure) {
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    fakes::On("SOF_TSGenREQ").Returns(93);
    EXPECT_EQ(Stamp(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_EQ(StampEngine::LeaveCom(), 1);
}

// The failed entry isn't looked at, so what is taken back in the end is the host's own.
TEST_F(SignTimeStampOnWindows, AStampTakesAMultiThreadedHostOutOfItsApartment) {
    const platform::RegistryKey engine = platform::CreateRegistryKey(
        platform::RegistryRootKey(platform::RegistryRoot::ClassesRoot),
        "CLSID\\{2D8C4E07-91BA-4F36-A4D2-7C16E05B3F9A}\\InprocServer32");
    platform::SetRegistryPath(engine, "ThreadingModel", "Both");
    platform::CloseRegistryKey(engine);
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    EXPECT_EQ(Stamp(), 0);
    EXPECT_EQ(StampEngine::LeaveCom(), 0);
}

TEST_F(SignTimeStampOnWindows, AFailedOpenIsLoggedWithTheSystemsNumber) {
    g_copyPath = m_prefix.Below("none/req.dat");
    EXPECT_EQ(Stamp(), 0);
    EXPECT_THAT(Errors(), ElementsAre("[WriteContent2File]:fopen error:" +
                                      std::to_string(ERROR_PATH_NOT_FOUND)));
}

}  // namespace
