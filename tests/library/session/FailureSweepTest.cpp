#include "FlowTest.h"
#include "SweptCall.h"

namespace {

constexpr int kFailure = 77;

// One call on the way to a seal of type 2 whose status is asked for, and what comes of its failure.
struct Step : SweptCall {
    int result;
    const char* lastFailure;  // empty: none is logged
};

constexpr char kNoSeal[] = "user cancel dlg -3004";

constexpr Step kSteps[] = {
    {"TVK_SetConfig", 1, 0, ""},
    {"GetDeviceCountEx", 1, TESMARK_DEVICE_COUNT_FAILED, "GetCertAndPic error:-3023"},
    {"SOF_GetUserList", 1, TESMARK_CERT_LIST_FAILED, "GetCertAndPic error:-3026"},
    {"SOF_GetUserList", 2, TESMARK_CERT_LIST_FAILED, "GetCertAndPic error:-3026"},
    {"GetDeviceInfo", 1, TESMARK_CERT_LIST_FAILED, "GetCertAndPic error:-3026"},
    {"EnumFilesInDevice", 1, TESMARK_CANCELLED, kNoSeal},
    {"EnumFilesInDevice", 2, TESMARK_CANCELLED, kNoSeal},
    {"SOF_ReadFile", 1, TESMARK_CANCELLED, kNoSeal},
    {"SOF_ReadFile", 2, TESMARK_CANCELLED, kNoSeal},
    {"TVK_Get_Pic_From_Eseal_Ex", 1, TESMARK_CANCELLED, kNoSeal},
    {"TVK_Get_Pic_From_Eseal_Ex", 2, TESMARK_CANCELLED, kNoSeal},
    {"TVK_Get_SealName_From_Eseal", 2, TESMARK_CANCELLED, kNoSeal},
    {"TVK_Get_Pic_From_Eseal_Ex", 3, TESMARK_CANCELLED, kNoSeal},
    {"TVK_Get_Pic_From_Eseal_Ex", 4, TESMARK_CANCELLED, kNoSeal},
    {"TVK_Get_SealName_From_Eseal", 4, TESMARK_CANCELLED, kNoSeal},
    {"SOF_ExportUserCert", 1, TESMARK_CERT_EXPORT_FAILED, "[SignData]GetKeyType: error:-3033"},
    {"SOF_ExportUserCert", 2, TESMARK_CERT_EXPORT_FAILED, "[SignData]GetKeyType: error:-3033"},
    {"SOF_GetCertInfo", 1, TESMARK_CERT_FIELD_FAILED, "[SignData]GetKeyType: error:-3010"},
    {"SOF_GetCertInfo", 2, TESMARK_CERT_FIELD_FAILED, "[SignData]GetKeyType: error:-3010"},
    {"SOF_GetCertInfo", 3, TESMARK_CERT_FIELD_FAILED, "[SignData]GetKeyType: error:-3010"},
    {"SOF_ValidateCert", 1, kFailure, "[SignData]GetKeyType: error:77"},
    {"SOF_SetSignMethod", 1, kFailure, "[SignData]SOF_SetSignMethod: error:77"},
    {"SOF_SignData", 1, kFailure, "[SignData]SOF_SignData: error:77"},
    {"SOF_SignData", 2, kFailure, "[SignData]SOF_SignData: error:77"},
    {"TVK_Verify_SESeal", 1, kFailure, "TVK_Verify_SESeal error 77"},
    {"TVK_GetSealInfo", 1, kFailure, "TVK_Request_Eseal_Status error 77"},
    {"TVK_GetSealInfo", 2, kFailure, "TVK_Request_Eseal_Status error 77"},
    {"TVK_Request_Eseal_Status", 1, kFailure, "TVK_Request_Eseal_Status error 77"},
};

class FailureSweepTest : public FlowTest, public testing::WithParamInterface<Step> {
protected:
    FailureSweepTest() {
        m_prefix.SetNumber("ReqEsealStatus", 1);
        AddGbKey();
        TreeEndsWith(DialogEnd::Closed);
    }
};

TEST_P(FailureSweepTest, AFailedCallSelectsNothingAndTheNextQuestionIsAnswered) {
    const Step& step = GetParam();
    fakes::On(step.function).ReturnsAt(step.number, kFailure);
    EXPECT_EQ(Query(), step.result);
    EXPECT_EQ(m_length, step.result == 0 ? 16 : -7);
    const std::vector<std::string> failures = Failures();
    EXPECT_EQ(failures.empty() ? "" : failures.back(), step.lastFailure);
    EXPECT_GE(fakes::CountCalls(step.function), step.number);
    if (step.result != 0) {
        EXPECT_TRUE(g_selectedSeal.Empty());
        EXPECT_TRUE(g_currentCertId.Empty());
    }
    fakes::ClearCalls();
    fakes::On(step.function) = fakes::FunctionScript();
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(g_sealInfoCache.View(), "national picture");
}

INSTANTIATE_TEST_SUITE_P(EachCall, FailureSweepTest, testing::ValuesIn(kSteps));

using SweptCallsTest = FlowTest;

TEST_F(SweptCallsTest, EveryCallOnTheWayIsOneOfTheSweep) {
    m_prefix.SetNumber("ReqEsealStatus", 1);
    AddGbKey();
    ASSERT_EQ(EnsureServiceReady(), 0);
    fakes::ClearCalls();
    ASSERT_EQ(Query(), 0);
    for (const fakes::Call& call : fakes::Calls()) {
        const bool swept = IsSwept(kSteps, call);
        // The reset of the method and the size query of a name don't count, whatever they say.
        const bool ignored = call.text == "SOF_SetSignMethod(ctx, 0)" ||
                             (call.function == "TVK_Get_SealName_From_Eseal" && call.query);
        EXPECT_TRUE(swept || ignored) << call.text;
    }
}

}  // namespace
