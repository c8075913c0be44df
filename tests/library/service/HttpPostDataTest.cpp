#include "ServiceTest.h"
#include "foundation/StringFailure.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class HttpPostDataTest : public ServiceTest {
protected:
    int Post(const std::string& body, unsigned char* out) {
        return HttpPostData(kAddress, reinterpret_cast<const unsigned char*>(body.data()),
                            static_cast<int>(body.size()), out, &m_length);
    }
    // What stands in the buffer of 16 bytes, which begins as question marks.
    std::string Buffer() const { return std::string(std::begin(m_out), std::end(m_out)); }

    unsigned char m_out[16] = {'?', '?', '?', '?', '?', '?', '?', '?',
                               '?', '?', '?', '?', '?', '?', '?', '?'};
    int m_length = -7;
};

TEST_F(HttpPostDataTest, TheAnswerIsCopiedWithoutAZeroByteBehindIt) {
    ServiceAnswers("answer");
    EXPECT_EQ(Post("body", m_out), 0);
    EXPECT_EQ(m_length, 6);
    EXPECT_EQ(Buffer(), "answer??????????");
    EXPECT_THAT(fakes::CalledFunctions(), ElementsAreArray(kExchange));
    EXPECT_THAT(fakes::CallTexts("dwnt_config_set"),
                ElementsAre(R"(dwnt_config_set("context", "ServerHost", ")" +
                            std::string(kAddress) + R"("))"));
}

TEST_F(HttpPostDataTest, TheCapacityIsNotLookedAt) {
    ServiceAnswers("answer");
    m_length = 1;
    EXPECT_EQ(Post("body", m_out), 0);
    EXPECT_EQ(m_length, 6);
    EXPECT_EQ(Buffer(), "answer??????????");
}

TEST_F(HttpPostDataTest, WithoutABufferTheServiceIsAskedAllTheSameAndTheResultIsAFailure) {
    ServiceAnswers("answer");
    EXPECT_EQ(Post("body", nullptr), TESMARK_FAILED);
    EXPECT_EQ(m_length, -7);
    EXPECT_THAT(fakes::CalledFunctions(), ElementsAreArray(kExchange));
    EXPECT_THAT(Bodies(), ElementsAre("body"));
    fakes::On("dwnt_http_processEx").Returns(5);
    EXPECT_EQ(Post("body", nullptr), TESMARK_FAILED);
    EXPECT_EQ(m_length, -7);
}

TEST_F(HttpPostDataTest, ZeroBytesAreSentAndComeBack) {
    const std::string bytes("a\0b\0", 4);
    ServiceAnswers(bytes);
    EXPECT_EQ(Post(bytes, m_out), 0);
    EXPECT_THAT(Bodies(), ElementsAre(bytes));
    EXPECT_EQ(m_length, 4);
    EXPECT_EQ(Buffer().substr(0, 5), bytes + "?");
}

TEST_F(HttpPostDataTest, BytesAreInWhateverEncodingTheHostHasUsed) {
    ServiceAnswers("\xE5\x8D\xB0");
    EXPECT_EQ(Post("印", m_out), 0);
    EXPECT_THAT(Bodies(), ElementsAre("\xD3\xA1"));
    EXPECT_EQ(Buffer().substr(0, 3), "\xE5\x8D\xB0");
}

TEST_F(HttpPostDataTest, AFailedExchangeGivesTheTransportsStatusAndAnEmptyAnswer) {
    ServiceAnswers("answer");
    for (const std::string& function : kChecked) {
        fakes::ClearCalls();
        fakes::On(function).Returns(0x0E000006);
        m_length = 16;
        EXPECT_EQ(Post("body", m_out), 0x0E000006) << function;
        EXPECT_EQ(m_length, 0) << function;
        EXPECT_EQ(Buffer(), "????????????????") << function;
        EXPECT_THAT(fakes::CalledFunctions(), ElementsAreArray(ExchangeUpTo(function)));
        fakes::On(function).Returns(0);
    }
}

TEST_F(HttpPostDataTest, AnEmptyBodyCanBeANullPointer) {
    EXPECT_EQ(HttpPostData(kAddress, nullptr, 0, m_out, &m_length), 0);
    EXPECT_THAT(Bodies(), ElementsAre(""));
    EXPECT_EQ(m_length, 0);
}

TEST_F(HttpPostDataTest, ANullAddressIsAnEmptyOne) {
    EXPECT_EQ(HttpPostData(nullptr, nullptr, 0, m_out, &m_length), 0);
    EXPECT_THAT(fakes::CallTexts("dwnt_config_set"),
                ElementsAre(R"(dwnt_config_set("context", "ServerHost", ""))"));
}

TEST_F(HttpPostDataTest, AnImpossibleBodyIsTheStringTypesFailureBeforeAnyCall) {
    const unsigned char byte = 'x';
    EXPECT_THROW(HttpPostData(kAddress, nullptr, 1, m_out, &m_length), StringFailure);
    EXPECT_THROW(HttpPostData(kAddress, &byte, -1, m_out, &m_length), StringFailure);
    EXPECT_THAT(fakes::CalledFunctions(), IsEmpty());
    EXPECT_EQ(m_length, -7);
}

TEST_F(HttpPostDataTest, NeitherTheCertificateServiceNorTheLogIsTouched) {
    EXPECT_EQ(Post("body", m_out), 0);
    fakes::On("dwnt_http_processEx").Returns(5);
    EXPECT_EQ(Post("body", m_out), 5);
    EXPECT_THAT(Log(), IsEmpty());
    for (const std::string& function : fakes::CalledFunctions()) {
        EXPECT_TRUE(function.starts_with("dwnt_")) << function;
    }
}

}  // namespace
