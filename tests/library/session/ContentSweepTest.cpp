// Each call of a closed library on the way to a drawn picture fails in turn.
#include "DrawingTest.h"
#include "SweptCall.h"

using testing::IsEmpty;

namespace {

constexpr char kDrawing[] = "the drawing";
constexpr int kDrawingFailure = -7;

// One call on the way to a picture where signatures carry a time stamp, and what comes of its
// failure.
struct Step : SweptCall {
    int result;
    const char* lastFailure;  // empty: none is logged
};

constexpr char kExport[] = "[SignData]GetKeyType: error:-3033";
constexpr char kField[] = "[SignData]GetKeyType: error:-3010";

constexpr Step kSteps[] = {
    {"SOF_ExportUserCert", 1, TESMARK_CERT_EXPORT_FAILED, kExport},
    {"SOF_ExportUserCert", 2, TESMARK_CERT_EXPORT_FAILED, kExport},
    {"SOF_GetCertInfo", 1, TESMARK_CERT_FIELD_FAILED, kField},
    {"SOF_GetCertInfo", 2, TESMARK_CERT_FIELD_FAILED, kField},
    {"SOF_GetCertInfo", 3, TESMARK_CERT_FIELD_FAILED, kField},
    {"SOF_ValidateCert", 1, 77, "[SignData]GetKeyType: error:77"},
    {"SOF_SetSignMethod", 1, 77, "[SignData]SOF_SetSignMethod: error:77"},
    {"SOF_SignData", 1, 77, "[SignData]SOF_SignData: error:77"},
    {"SOF_SignData", 2, 77, "[SignData]SOF_SignData: error:77"},
    {"SOF_SetSignMethod", 2, 0, ""},
    {"SOF_HashData", 1, 0, ""},
    {"SOF_TSGenREQ", 1, TESMARK_TIME_STAMP_FAILED, "SignTimeStamp error -3008"},
    {"SOF_TSGenPDFSignature", 1, TESMARK_TIME_STAMP_FAILED, "SignTimeStamp error 77"},
    {kDrawing, 1, TESMARK_DRAWING_FAILED, ""},
};

// The two exports draw by methods of their own.
constexpr const char* kMethods[] = {"GetPersonalEsealByContentWithXML", "GetPicByContent"};

class ContentSweepTest : public DrawingTest {
protected:
    ContentSweepTest() {
        StampEngine::Register();
        m_prefix.SetNumber("bSignWithTimeStamp", 1);
        fakes::On("SOF_HashData").Gives("hash");
        fakes::On("SOF_TSGenREQ").Gives(StampEngine::kSwapped);
        SetCurrentCertID("cert-1");
        EXPECT_EQ(InitKVLLib(), 0);
        fakes::ClearCalls();
        ForgetLog();
    }
    // By the export that draws with this method.
    int Draw(const std::string& method, unsigned char* out = nullptr) {
        if (method == kMethods[1]) return GetPicByContentInfo(1, "one", "two", out, &m_length);
        return GetContentPicture(out, &m_length, "text", 0, 1, nullptr, 0, 0, 3, 24, 0, 1);
    }
    static bool IsSelected() {
        int length = 0;
        GetSelectedCertId(nullptr, &length);
        return length != 0;
    }

    int m_length = -7;
};

class ContentFailureSweepTest : public ContentSweepTest, public testing::WithParamInterface<Step> {
protected:
    static std::string Function(const std::string& method) {
        const std::string function = GetParam().function;
        return function == kDrawing ? method : function;
    }
    static int Failure() {
        return std::string(GetParam().function) == kDrawing ? kDrawingFailure : 77;
    }
};

TEST_P(ContentFailureSweepTest, AFailedCallEndsTheSelectionWithItsPictureAndTheNextOneDraws) {
    const Step& step = GetParam();
    for (const std::string method : kMethods) {
        SCOPED_TRACE(method);
        SetCurrentCertID("cert-1");
        ASSERT_EQ(Draw(method), 0);
        fakes::ClearCalls();
        ForgetLog();
        const fakes::FunctionScript script = fakes::On(Function(method));
        fakes::On(Function(method)).ReturnsAt(step.number, Failure());
        m_length = -7;
        EXPECT_EQ(Draw(method), step.result);
        const bool isDrawing = std::string(step.function) == kDrawing;
        EXPECT_EQ(m_length, step.result == 0 ? 9 : isDrawing ? 0 : -7);
        const std::vector<std::string> failures = FailuresOfStamp();
        EXPECT_EQ(failures.empty() ? "" : failures.back(), step.lastFailure);
        EXPECT_EQ(fakes::CountCalls(method), step.result == 0 || isDrawing ? 1 : 0);
        EXPECT_GE(fakes::CountCalls(Function(method)), step.number);
        EXPECT_EQ(IsSelected(), step.result == 0);
        EXPECT_FALSE(DrawingControl::IsHeld());
        EXPECT_TRUE(m_stampEngine.IsLetGo());
        if (step.result != 0) {
            unsigned char byte = 0xAA;
            m_length = 1;
            EXPECT_EQ(Draw(method, &byte), 0);
            EXPECT_EQ(byte, 0xAA) << "of the picture before";
        }
        fakes::On(Function(method)) = script;
        SetCurrentCertID("cert-1");
        EXPECT_EQ(Draw(method), 0);
        EXPECT_EQ(m_length, 9);
    }
}

INSTANTIATE_TEST_SUITE_P(EachCall, ContentFailureSweepTest, testing::ValuesIn(kSteps));

TEST_F(ContentSweepTest, EveryCallOnTheWayIsOneOfTheSweep) {
    for (const std::string method : kMethods) {
        fakes::ClearCalls();
        ASSERT_EQ(Draw(method), 0);
        for (const fakes::Call& call : fakes::Calls()) {
            const std::string function = call.function == method ? kDrawing : call.function;
            EXPECT_TRUE(IsSwept(kSteps, function, call.number)) << call.text;
        }
    }
}

TEST_F(ContentSweepTest, AFailedCallOfTheTimeStampEnginePassesThroughAndLeavesWhatThereIs) {
    for (const std::string method : kMethods) {
        SCOPED_TRACE(method);
        fakes::On("SOF_TSGenREQ").Gives(StampEngine::kFailing);
        fakes::ClearCalls();
        m_length = -7;
        EXPECT_EQ(StringFailureOf([&] { Draw(method); }), StampEngine::kFailure);
        EXPECT_EQ(m_length, -7);
        EXPECT_TRUE(IsSelected());
        EXPECT_THAT(Drawings(), IsEmpty());
        EXPECT_TRUE(m_stampEngine.IsLetGo());
        fakes::On("SOF_TSGenREQ").Gives(StampEngine::kSwapped);
        EXPECT_EQ(Draw(method), 0);
    }
}

}  // namespace
