// Each call of a closed library on the way to an online seal fails in turn.
#include "OnlineTest.h"
#include "SweptCall.h"

namespace {

enum class Left { Kept, Cleared, Done };

// One call on the way to a seal of mode 1, and what comes of its failure.
struct Step : SweptCall {
    int result;
    Left left;
    const char* lastFailure;  // empty: none is logged
};

constexpr char kSignExport[] = "SignData error -3033";
constexpr char kSignField[] = "SignData error -3010";
constexpr char kSign[] = "SignData error 77";

constexpr Step kSteps[] = {
    {"SOF_ExportUserCert", 1, TESMARK_CERT_EXPORT_FAILED, Left::Kept, kSignExport},
    {"SOF_ExportUserCert", 2, TESMARK_CERT_EXPORT_FAILED, Left::Kept, kSignExport},
    {"SOF_GetCertInfo", 1, TESMARK_CERT_FIELD_FAILED, Left::Kept, kSignField},
    {"SOF_GetCertInfo", 2, TESMARK_CERT_FIELD_FAILED, Left::Kept, kSignField},
    {"SOF_GetCertInfo", 3, TESMARK_CERT_FIELD_FAILED, Left::Kept, kSignField},
    {"SOF_ValidateCert", 1, 77, Left::Kept, kSign},
    {"SOF_SetSignMethod", 1, 77, Left::Kept, kSign},
    {"SOF_SignData", 1, 77, Left::Kept, kSign},
    {"SOF_SignData", 2, 77, Left::Kept, kSign},
    {"SOF_SetSignMethod", 2, 0, Left::Done, ""},
    {"SOF_ExportUserCert", 3, 77, Left::Cleared, ""},
    {"SOF_GetCertInfo", 4, 77, Left::Cleared, ""},
    {"SOF_GetCertInfo", 5, 77, Left::Cleared, ""},
    {"dwnt_context_init", 1, 77, Left::Cleared, "[dwnt_context_init返回状态码：77]"},
    {"dwnt_config_set", 1, 0, Left::Done, ""},
    {"dwnt_config_end", 1, 77, Left::Cleared, "[dwnt_config_end返回状态码：77]"},
    {"dwnt_http_request_create", 1, 77, Left::Cleared, "[dwnt_http_request_create返回状态码：77]"},
    {"dwnt_http_head_set", 1, 0, Left::Done, ""},
    {"dwnt_http_head_set", 2, 0, Left::Done, ""},
    {"dwnt_http_handler", 1, 0, Left::Done, ""},
    {"dwnt_http_body_set", 1, 0, Left::Done, ""},
    {"dwnt_http_processEx", 1, 77, Left::Cleared, "[dwnt_http_processEx返回状态码：77]"},
    {"dwnt_http_response_data_get", 1, TESMARK_SERVICE_REFUSED, Left::Cleared,
     "[服务器返回错误码为：]"},
    {"dwnt_context_init", 2, 77, Left::Cleared, "[dwnt_context_init返回状态码：77]"},
    {"dwnt_config_set", 2, 0, Left::Done, ""},
    {"dwnt_config_end", 2, 77, Left::Cleared, "[dwnt_config_end返回状态码：77]"},
    {"dwnt_http_request_create", 2, 77, Left::Cleared, "[dwnt_http_request_create返回状态码：77]"},
    {"dwnt_http_head_set", 3, 0, Left::Done, ""},
    {"dwnt_http_head_set", 4, 0, Left::Done, ""},
    {"dwnt_http_handler", 2, 0, Left::Done, ""},
    {"dwnt_http_body_set", 2, 0, Left::Done, ""},
    {"dwnt_http_processEx", 2, 77, Left::Cleared, "[dwnt_http_processEx返回状态码：77]"},
    {"dwnt_http_response_data_get", 2, TESMARK_SERVICE_ANSWER, Left::Cleared, ""},
    {"TVK_Verify_SESeal", 1, 77, Left::Cleared, "TVK_Verify_SESeal error 77"},
};

class OnlineSweepTest : public OnlineTest, public testing::WithParamInterface<Step> {
protected:
    OnlineSweepTest() {
        ServiceHasNationalSeal();
        m_length = 0;
        EXPECT_EQ(GetSealInfo(nullptr, &m_length), 0);
        fakes::ClearCalls();
        ForgetLog();
    }
    void Fail(const Step& step) {
        fakes::On(step.function).ReturnsAt(step.number, kFailure);
        const ShownBoxes boxes;
        m_length = 0;
        EXPECT_EQ(GetSealInfo(nullptr, &m_length), step.result);
        fakes::On(step.function).ReturnsAt(step.number, 0);
    }
};

TEST_P(OnlineSweepTest, AFailedCallLeavesWhatItsStepLeavesAndTheNextQuestionIsAnswered) {
    const Step& step = GetParam();
    Fail(step);
    const std::vector<std::string> failures = Failures();
    EXPECT_EQ(failures.empty() ? "" : failures.back(), step.lastFailure);
    EXPECT_GE(fakes::CountCalls(step.function), step.number);
    if (step.result != 0) {
        // Behind a failed signature comes the reset of its method.
        std::vector<std::string> called = fakes::CalledFunctions();
        if (step.function == std::string("SOF_SignData")) called.pop_back();
        EXPECT_EQ(fakes::CountCalls(step.function), step.number);
        EXPECT_EQ(called.back(), step.function);
    }
    fakes::ClearCalls();
    if (step.left == Left::Cleared) {
        ExpectCleared();
        EXPECT_EQ(Size(),
                  step.function == std::string("TVK_Verify_SESeal") ? "40 by 40" : "0 by 0");
    } else {
        EXPECT_EQ(SelectedCert(), "cert-1");
        EXPECT_EQ(SelectedSeal(), "national seal");
        EXPECT_EQ(GetEsealMode(), 1);
        EXPECT_EQ(Size(), "40 by 40");
        EXPECT_EQ(Fetch(16), "national picture");
    }
    fakes::ClearCalls();
    EXPECT_EQ(Picture(), "national picture");
}

INSTANTIATE_TEST_SUITE_P(EachCall, OnlineSweepTest, testing::ValuesIn(kSteps));

using OnlineSweptCallsTest = OnlineTest;

TEST_F(OnlineSweptCallsTest, EveryCallOnTheWayButForThePictureIsOneOfTheSweep) {
    ServiceHasNationalSeal();
    SetCurrentCertID("cert-1");
    ASSERT_EQ(InitKVLLib(), 0);
    fakes::ClearCalls();
    ASSERT_EQ(Query(), 0);
    for (const fakes::Call& call : fakes::Calls()) {
        if (call.function == "TVK_Get_Pic_From_Eseal_Ex") continue;
        EXPECT_TRUE(IsSwept(kSteps, call)) << call.text;
    }
}

TEST_F(OnlineSweptCallsTest, APictureThatCannotBeReadIsSuccessWithoutOne) {
    ServiceHasNationalSeal();
    for (const int number : {1, 2}) {
        fakes::ClearCalls();
        fakes::On("TVK_Get_Pic_From_Eseal_Ex") = fakes::FunctionScript();
        fakes::On("TVK_Get_Pic_From_Eseal_Ex").ReturnsAt(number, kFailure);
        ForgetLog();
        m_length = 0;
        EXPECT_EQ(GetSealInfo(nullptr, &m_length), 0);
        EXPECT_EQ(m_length, 0);
        EXPECT_EQ(GetEsealMode(), 0);
        EXPECT_EQ(Size(), number == 1 ? "0 by 0" : "40 by 40");
        EXPECT_FALSE(Called("TVK_Verify_SESeal"));
        EXPECT_EQ(SelectedSeal(), "national seal");
        EXPECT_EQ(Failures().back(), "TVK_Get_Pic_From_Eseal error:77");
        ExpectNothingCached();
    }
}

}  // namespace
