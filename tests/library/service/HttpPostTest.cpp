#include "service/HttpPost.h"

#include "ServiceTest.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

// What stands in the log when all went well.
const std::vector<std::string> kRecords = {"8 [HttpPost start]",
                                           "6 dwnt_context_init返回状态码: 0",
                                           "6 dwnt_config_end返回状态码: 0",
                                           "6 dwnt_http_request_create返回状态码: 0",
                                           "6 [dwnt_http_processEx返回状态码：0]",
                                           "8 [HttpPost end][Time consume N ms]"};

class HttpPostTest : public ServiceTest {
protected:
    int Post(const std::string& body) { return HttpPost(kAddress, body, m_answer); }
    int PostRaw(const std::string& body) { return HttpPostRaw(kAddress, body, m_answer); }

    std::string m_answer = "before";
};

TEST_F(HttpPostTest, AnExchangeIsOneOfEachCallInThisOrder) {
    ServiceAnswers("answer");
    EXPECT_EQ(Post("body"), 0);
    EXPECT_EQ(m_answer, "answer");
    EXPECT_THAT(
        fakes::CallTexts(),
        ElementsAre(
            "dwnt_context_init(0)",
            R"(dwnt_config_set("context", "ServerHost", ")" + std::string(kAddress) + R"("))",
            R"(dwnt_config_end("context"))", R"(dwnt_http_request_create("context"))",
            R"(dwnt_http_head_set("request", "EncryptType", "0"))",
            R"(dwnt_http_head_set("request", "RequestContent", "XML"))",
            R"(dwnt_http_handler("request", 2))", R"(dwnt_http_body_set("request", 4 "body", 1))",
            R"(dwnt_http_processEx("context", 0, "request"))",
            R"(dwnt_http_response_data_get("request"))"));
    EXPECT_THAT(Log(), ElementsAreArray(kRecords));
}

TEST_F(HttpPostTest, TheRawExchangeIsTheSameWithoutAWordInTheLog) {
    ServiceAnswers("answer");
    EXPECT_EQ(Post("body"), 0);
    const auto calls = fakes::CallTexts();
    fakes::ClearCalls();
    ForgetLog();
    EXPECT_EQ(PostRaw("body"), 0);
    EXPECT_EQ(m_answer, "answer");
    EXPECT_THAT(fakes::CallTexts(), ElementsAreArray(calls));
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(HttpPostTest, AnAddressWithoutAPathIsHandedOverAsItStands) {
    for (const char* address : {"http://192.0.2.45", "no address", ""}) {
        fakes::ClearCalls();
        EXPECT_EQ(HttpPost(address, "body", m_answer), 0);
        EXPECT_THAT(fakes::CallTexts("dwnt_config_set"),
                    ElementsAre(R"(dwnt_config_set("context", "ServerHost", ")" +
                                std::string(address) + R"("))"));
    }
}

TEST_F(HttpPostTest, ChineseTextGoesOverAsUtf8AndComesBackAsAnsi) {
    ServiceAnswers(AnsiToUtf8("答复"));
    EXPECT_EQ(Post("印章"), 0);
    EXPECT_THAT(Bodies(), ElementsAre("\xE5\x8D\xB0\xE7\xAB\xA0"));
    EXPECT_EQ(m_answer, "答复");
}

TEST_F(HttpPostTest, RawBytesGoOverAndComeBackInWhateverEncodingTheyAre) {
    const std::string bytes("印章\0\xFF", 6);
    ServiceAnswers(bytes);
    EXPECT_EQ(PostRaw(bytes), 0);
    EXPECT_THAT(Bodies(), ElementsAre(bytes));
    EXPECT_EQ(m_answer, bytes);
}

TEST_F(HttpPostTest, TextEndsAtItsFirstZeroByteButAnAnswerDoesNot) {
    ServiceAnswers(std::string("an\0swer", 7));
    EXPECT_EQ(Post(std::string("bo\0dy", 5)), 0);
    EXPECT_THAT(Bodies(), ElementsAre("bo"));
    EXPECT_EQ(m_answer, std::string("an\0swer", 7));
}

TEST_F(HttpPostTest, AnAnswerWithoutABodyIsAnEmptyOneAndASuccess) {
    ServiceAnswers("");
    EXPECT_EQ(Post("body"), 0);
    EXPECT_EQ(m_answer, "");
    m_answer = "before";
    EXPECT_EQ(PostRaw("body"), 0);
    EXPECT_EQ(m_answer, "");
}

TEST_F(HttpPostTest, AnEmptyBodyIsSentToo) {
    EXPECT_EQ(Post(""), 0);
    EXPECT_EQ(PostRaw(""), 0);
    EXPECT_THAT(Bodies(), ElementsAre("", ""));
    EXPECT_EQ(fakes::CountCalls("dwnt_http_processEx"), 2);
}

TEST_F(HttpPostTest, AFailingStepEndsTheExchangeWithItsStatusAndTwoRecords) {
    for (std::size_t step = 0; step < kChecked.size(); ++step) {
        const std::string& function = kChecked[step];
        fakes::ClearCalls();
        ForgetLog();
        fakes::On(function).Returns(5);
        EXPECT_EQ(Post("body"), 5) << function;
        EXPECT_EQ(m_answer, "before") << function;
        EXPECT_THAT(fakes::CalledFunctions(), ElementsAreArray(ExchangeUpTo(function)));
        std::vector<std::string> records(kRecords.begin(), kRecords.begin() + 2 + step);
        records.back().replace(records.back().rfind('0'), 1, "5");
        records.push_back("3 [" + function + "返回状态码：5]");
        records.push_back(kRecords.back());
        EXPECT_THAT(Log(), ElementsAreArray(records));
        fakes::On(function).Returns(0);
    }
}

TEST_F(HttpPostTest, AStatusIsLoggedWithItsSign) {
    fakes::On("dwnt_context_init").Returns(-7);
    EXPECT_EQ(Post("body"), -7);
    EXPECT_THAT(Errors(), ElementsAre("[dwnt_context_init返回状态码：-7]"));
}

TEST_F(HttpPostTest, AFailingRawStepEndsTheExchangeWithItsStatusAlone) {
    for (const std::string& function : kChecked) {
        fakes::ClearCalls();
        ForgetLog();
        fakes::On(function).Returns(5);
        EXPECT_EQ(PostRaw("body"), 5) << function;
        EXPECT_EQ(m_answer, "before") << function;
        EXPECT_THAT(fakes::CalledFunctions(), ElementsAreArray(ExchangeUpTo(function)));
        EXPECT_THAT(Log(), IsEmpty());
        fakes::On(function).Returns(0);
    }
}

TEST_F(HttpPostTest, OtherFailuresAreNotSeen) {
    for (const std::string& function : kUnchecked) {
        fakes::Reset();
        ForgetLog();
        ServiceAnswers("answer");
        fakes::On(function).Returns(5);
        m_answer = "before";
        EXPECT_EQ(Post("body"), 0) << function;
        EXPECT_EQ(m_answer, function == "dwnt_http_response_data_get" ? "" : "answer");
        EXPECT_THAT(fakes::CalledFunctions(), ElementsAreArray(kExchange));
        EXPECT_THAT(Log(), ElementsAreArray(kRecords));
        EXPECT_EQ(PostRaw("body"), 0) << function;
    }
}

TEST_F(HttpPostTest, ALengthBelowNothingIsNoAnswer) {
    ServiceAnswers("answer");
    fakes::On("dwnt_http_response_data_get").ReportsSize(-1);
    EXPECT_EQ(Post("body"), 0);
    EXPECT_EQ(m_answer, "");
}

TEST_F(HttpPostTest, AFailedExchangeIsNotRepeated) {
    fakes::On("dwnt_http_processEx").ReturnsAt(1, 5);
    EXPECT_EQ(Post("body"), 5);
    EXPECT_EQ(fakes::CountCalls("dwnt_http_processEx"), 1);
    EXPECT_EQ(Post("body"), 0);
    EXPECT_EQ(fakes::CountCalls("dwnt_context_init"), 2);
}

}  // namespace
