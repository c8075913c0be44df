#include "BoxTest.h"
#include "service/Messages.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kTwoSeals[] =
    "<ROOT><STATUSCODE>200</STATUSCODE><COUNT>2</COUNT>"
    "<SEALINFO><SEALNUM>7001</SEALNUM><SEALNAME>财务专用章</SEALNAME></SEALINFO>"
    "<SEALINFO><SEALNUM>7002</SEALNUM><SEALNAME>合同专用章</SEALNAME></SEALINFO></ROOT>";
constexpr char kNoMessageBox[] = "访问服务器错误，请确认地址是否正确";

// A success with these elements behind the status.
std::string Success(const std::string& rest) {
    return "<ROOT><STATUSCODE>200</STATUSCODE>" + rest + "</ROOT>";
}

std::string SealInfo(const std::string& number, const std::string& name) {
    return "<SEALINFO><SEALNUM>" + number + "</SEALNUM><SEALNAME>" + name +
           "</SEALNAME></SEALINFO>";
}

class SealListAnswerTest : public BoxTest {
protected:
    static constexpr std::uint32_t kUntouched = 77;

    // The query for the number, which begins at 0.
    int Query(const std::string& answer, std::uint32_t begin = 0) {
        m_count = begin;
        return ParseSealList(answer, {}, &m_count);
    }
    // Both calls, with room for more than the count says; "number name" of each entry, which are
    // "- -" before.
    std::vector<std::string> Read(const std::string& answer) {
        EXPECT_EQ(Query(answer), 0);
        std::vector<OnlineSealEntry> list(m_count + 3, {"-", "-", "-"});
        EXPECT_EQ(ParseSealList(answer, list, &m_count), 0);
        std::vector<std::string> entries;
        for (const auto& entry : list) {
            EXPECT_EQ(entry.reserved, "-");
            entries.push_back(entry.sealNum + " " + entry.sealName);
        }
        EXPECT_THAT(std::vector(entries.end() - 3, entries.end()), ElementsAre("- -", "- -", "- -"))
            << "beyond the count";
        entries.resize(m_count);
        return entries;
    }
    // The record of the status, whatever it is, and the one of the outcome.
    void ExpectRefused(const std::string& answer, const std::string& status,
                       const std::string& told, const std::string& box) {
        ForgetLog();
        g_boxes.clear();
        EXPECT_EQ(Query(answer, kUntouched), TESMARK_SERVICE_REFUSED) << answer;
        EXPECT_EQ(m_count, kUntouched);
        EXPECT_THAT(g_boxes, ElementsAre(Box{box}));
        EXPECT_THAT(Log(), ElementsAre("8 [ParseSealList start]", "6 [解析服务器返回状态码]",
                                       "6 [服务器返回状态码为：" + status + "]",
                                       "3 [服务器返回错误码为：" + told + "]",
                                       "8 [ParseSealList end][Time consume N ms]"));
    }
    // The records behind the status 200 up to the end.
    std::vector<std::string> RecordsOfSuccess() const {
        const std::vector<std::string> records = Log();
        EXPECT_GE(records.size(), 4u);
        if (records.size() < 4) return {};
        EXPECT_THAT(std::vector(records.begin(), records.begin() + 3),
                    ElementsAre("8 [ParseSealList start]", "6 [解析服务器返回状态码]",
                                "6 [状态码为200！]"));
        EXPECT_EQ(records.back(), "8 [ParseSealList end][Time consume N ms]");
        return {records.begin() + 3, records.end() - 1};
    }

    std::uint32_t m_count = 0;
};

TEST_F(SealListAnswerTest, TheFirstCallCountsAndTheSecondFills) {
    EXPECT_THAT(Read(kTwoSeals), ElementsAre("7001 财务专用章", "7002 合同专用章"));
    EXPECT_THAT(g_boxes, IsEmpty());
}

TEST_F(SealListAnswerTest, TheQueryLeavesItsRecords) {
    EXPECT_EQ(Query(kTwoSeals), 0);
    EXPECT_EQ(m_count, 2u);
    EXPECT_THAT(RecordsOfSuccess(), ElementsAre("6 [读取印章数目！]", "6 [印章数目大于0！]"));
}

TEST_F(SealListAnswerTest, TheFillingLeavesItsRecords) {
    OnlineSealEntry list[2];
    m_count = 2;
    EXPECT_EQ(ParseSealList(kTwoSeals, list, &m_count), 0);
    EXPECT_EQ(list[1].sealNum, "7002");
    EXPECT_THAT(RecordsOfSuccess(), ElementsAre("6 [读取印章数目！]"));
}

TEST_F(SealListAnswerTest, LineEndsBetweenElementsMakeNoDifference) {
    std::string answer = kTwoSeals;
    for (std::size_t at = answer.find("><"); at != std::string::npos; at = answer.find("><", at)) {
        answer.insert(at + 1, "\r\n");
    }
    EXPECT_THAT(Read(answer), ElementsAre("7001 财务专用章", "7002 合同专用章"));
}

TEST_F(SealListAnswerTest, ElementsBetweenThoseOfTheListAreSkipped) {
    EXPECT_THAT(Read("<ROOT><A>1</A><STATUSCODE>200</STATUSCODE><MESSAGE>m</MESSAGE><COUNT>1"
                     "</COUNT><B/><SEALINFO><C/><SEALNUM>7001</SEALNUM><D>4</D><SEALNAME>name"
                     "</SEALNAME><E/></SEALINFO></ROOT>"),
                ElementsAre("7001 name"));
}

TEST_F(SealListAnswerTest, TheNameOfTheFirstElementDoesNotCount) {
    EXPECT_THAT(Read("<Answer><STATUSCODE>200</STATUSCODE><COUNT>1</COUNT>" +
                     SealInfo("7001", "name") + "</Answer>"),
                ElementsAre("7001 name"));
}

TEST_F(SealListAnswerTest, EntitiesAreResolvedAndGoOutAgainInTheNextRequest) {
    const auto entries = Read(Success("<COUNT>1</COUNT>" + SealInfo("7&amp;1", "&#21360;&lt;")));
    EXPECT_THAT(entries, ElementsAre("7&1 印<"));
    EXPECT_NE(MakeAppointedSealRequest("7&1", "", "").find("<SEALNUM>7&amp;1</SEALNUM>"),
              std::string::npos);
}

TEST_F(SealListAnswerTest, FewerSealsThanTheCountLeaveTheRestEmpty) {
    const std::string answer =
        Success("<COUNT>3</COUNT>" + SealInfo("7001", "one") + SealInfo("7002", "two"));
    EXPECT_EQ(Query(answer), 0);
    ASSERT_EQ(m_count, 3u);
    OnlineSealEntry list[3];
    EXPECT_EQ(ParseSealList(answer, list, &m_count), 0);
    EXPECT_EQ(list[1].sealName, "two");
    EXPECT_EQ(list[2].sealNum, "");
    EXPECT_EQ(list[2].sealName, "");
}

TEST_F(SealListAnswerTest, MoreSealsThanTheCountAreLeftOut) {
    EXPECT_THAT(
        Read(Success("<COUNT>1</COUNT>" + SealInfo("7001", "one") + SealInfo("7002", "two"))),
        ElementsAre("7001 one"));
}

TEST_F(SealListAnswerTest, AListShorterThanTheCountIsNotOverrun) {
    OnlineSealEntry list[3] = {{}, {}, {"-", "-", "-"}};
    m_count = 3;
    const std::string answer = Success("<COUNT>3</COUNT>" + SealInfo("7001", "one") +
                                       SealInfo("7002", "two") + SealInfo("7003", "three"));
    EXPECT_EQ(ParseSealList(answer, std::span(list).first(2), &m_count), 0);
    EXPECT_EQ(m_count, 3u);
    EXPECT_EQ(list[1].sealNum, "7002");
    EXPECT_EQ(list[2].sealNum, "-");
}

TEST_F(SealListAnswerTest, ARoomierListIsFilledUpToItsOwnCount) {
    OnlineSealEntry list[3];
    m_count = 3;
    EXPECT_EQ(ParseSealList(
                  Success("<COUNT>1</COUNT>" + SealInfo("7001", "one") + SealInfo("7002", "two")),
                  list, &m_count),
              0);
    EXPECT_EQ(m_count, 3u);
    EXPECT_EQ(list[1].sealNum, "7002");
    EXPECT_EQ(list[2].sealNum, "");
}

TEST_F(SealListAnswerTest, ASealWithoutANameReadsAsItsNumber) {
    EXPECT_THAT(Read(Success("<COUNT>2</COUNT><SEALINFO><SEALNUM>7001</SEALNUM></SEALINFO>" +
                             SealInfo("7002", "two"))),
                ElementsAre("7001 7001", "7002 two"));
}

TEST_F(SealListAnswerTest, ASealWithoutANumberHasAnEmptyOne) {
    EXPECT_THAT(Read(Success("<COUNT>1</COUNT><SEALINFO><SEALNAME>one</SEALNAME></SEALINFO>")),
                ElementsAre(" one"));
}

TEST_F(SealListAnswerTest, ANameAheadOfItsNumberIsNotFound) {
    EXPECT_THAT(Read(Success("<COUNT>1</COUNT><SEALINFO><SEALNAME>one</SEALNAME>"
                             "<SEALNUM>7001</SEALNUM></SEALINFO>")),
                ElementsAre("7001 7001"));
}

TEST_F(SealListAnswerTest, ACountIsReadUpToItsFirstOtherCharacter) {
    const struct {
        const char* text;
        std::uint32_t count;
    } cases[] = {{"2abc", 2}, {"2.9", 2}, {"  +2", 2}, {"\t2 3", 2}, {"007", 7}, {"2个", 2}};
    for (const auto& each : cases) {
        EXPECT_EQ(Query(Success("<COUNT>" + std::string(each.text) + "</COUNT>")), 0);
        EXPECT_EQ(m_count, each.count) << each.text;
    }
}

TEST_F(SealListAnswerTest, ACountThatIsNoneOrZeroLeavesTheCallersAsItWas) {
    for (const char* text : {"0", "", "abc", "-", "x2", "000"}) {
        ForgetLog();
        EXPECT_EQ(Query(Success("<COUNT>" + std::string(text) + "</COUNT>"), kUntouched), 0);
        EXPECT_EQ(m_count, kUntouched) << text;
        EXPECT_THAT(RecordsOfSuccess(), ElementsAre("6 [读取印章数目！]", "6 [印章数目为0！]"));
    }
    EXPECT_THAT(g_boxes, IsEmpty());
}

TEST_F(SealListAnswerTest, ANegativeCountIsALargeOne) {
    EXPECT_EQ(Query(Success("<COUNT>-1</COUNT>"), kUntouched), 0);
    EXPECT_EQ(m_count, 0xFFFFFFFF);
}

TEST_F(SealListAnswerTest, ACountBeyondAllNumbersIsTheLargest) {
    EXPECT_EQ(Query(Success("<COUNT>99999999999999999999</COUNT>")), 0);
    EXPECT_EQ(m_count, 0x7FFFFFFFu);
}

TEST_F(SealListAnswerTest, WithoutACountTheAnswerCannotBeUsed) {
    for (const std::string& answer :
         {Success(""), Success(SealInfo("7001", "one")),
          std::string("<ROOT><COUNT>1</COUNT><STATUSCODE>200</STATUSCODE></ROOT>")}) {
        ForgetLog();
        EXPECT_EQ(Query(answer, kUntouched), TESMARK_SERVICE_ANSWER);
        EXPECT_EQ(m_count, kUntouched);
        EXPECT_THAT(RecordsOfSuccess(), ElementsAre("3 [找不到COUNT节点！]"));
    }
    EXPECT_THAT(g_boxes, IsEmpty());
}

TEST_F(SealListAnswerTest, WithoutAListASufficientCountIsLoggedAndASuccess) {
    EXPECT_EQ(Query(kTwoSeals, 2), 0);
    EXPECT_EQ(m_count, 2u);
    EXPECT_THAT(RecordsOfSuccess(), ElementsAre("6 [读取印章数目！]", "3 [印章数据为空！]"));
}

TEST_F(SealListAnswerTest, ATooSmallCountGetsTheNumberAndNothingIsFilled) {
    OnlineSealEntry list[1];
    m_count = 1;
    EXPECT_EQ(ParseSealList(kTwoSeals, list, &m_count), 0);
    EXPECT_EQ(m_count, 2u);
    EXPECT_EQ(list[0].sealNum, "");
}

TEST_F(SealListAnswerTest, AnotherStatusShowsTheMessageOfTheService) {
    ExpectRefused("<ROOT><STATUSCODE>404</STATUSCODE><MESSAGE>没有该证书</MESSAGE></ROOT>", "404",
                  "没有该证书", "没有该证书");
    ExpectRefused("<ROOT><STATUSCODE/><MESSAGE>text</MESSAGE></ROOT>", "", "text", "text");
}

TEST_F(SealListAnswerTest, WithoutAMessageTheUserSeesTheStatus) {
    ExpectRefused("<ROOT><STATUSCODE>404</STATUSCODE></ROOT>", "404", "404", "404");
}

TEST_F(SealListAnswerTest, AMessageAheadOfTheStatusIsNotFoundAndTheUserSeesTheStatus) {
    ExpectRefused("<ROOT><MESSAGE>text</MESSAGE><STATUSCODE>404</STATUSCODE></ROOT>", "404", "404",
                  "404");
}

TEST_F(SealListAnswerTest, WithNeitherTheUserSeesATextOfTheLibrarys) {
    ExpectRefused("<ROOT><STATUSCODE>404</STATUSCODE><MESSAGE/></ROOT>", "404", "", kNoMessageBox);
    for (const char* answer : {"", "no document", "<ROOT/>", "<ROOT></ROOT>", "<ROOT", "200"}) {
        ExpectRefused(answer, "", "", kNoMessageBox);
    }
}

TEST_F(SealListAnswerTest, OnlyTheWholeTextOf200IsASuccess) {
    for (const char* status : {" 200", "200 ", "0200", "2000", "20", "OK"}) {
        const std::string answer =
            "<ROOT><STATUSCODE>" + std::string(status) + "</STATUSCODE><COUNT>1</COUNT></ROOT>";
        ExpectRefused(answer, status, status, status);
    }
}

TEST_F(SealListAnswerTest, AStatusBelowAnotherElementIsNotFound) {
    ExpectRefused("<A><ROOT><STATUSCODE>200</STATUSCODE><COUNT>1</COUNT></ROOT></A>", "", "",
                  kNoMessageBox);
}

class AppointedSealAnswerTest : public BoxTest {
protected:
    int Parse(const std::string& answer) {
        m_seal = "before";
        return ParseAppointedSeal(answer, m_seal);
    }

    std::string m_seal;
};

TEST_F(AppointedSealAnswerTest, TheTextOfTheSealIsGivenWithoutAWord) {
    EXPECT_EQ(Parse(Success("<SEAL>QUJD</SEAL>")), 0);
    EXPECT_EQ(m_seal, "QUJD");
    EXPECT_EQ(Parse("<Answer><STATUSCODE>200</STATUSCODE><A/><SEAL>QUJD\r\nQUJD</SEAL></Answer>"),
              0);
    EXPECT_EQ(m_seal, "QUJD\r\nQUJD");
    EXPECT_EQ(Parse(Success("<SEAL/>")), 0);
    EXPECT_EQ(m_seal, "");
    EXPECT_THAT(Log(), IsEmpty());
    EXPECT_THAT(g_boxes, IsEmpty());
}

TEST_F(AppointedSealAnswerTest, TheNameOfTheFirstElementDoesNotCount) {
    EXPECT_EQ(Parse("<Answer><STATUSCODE>200</STATUSCODE><SEAL>QUJD</SEAL></Answer>"), 0);
    EXPECT_EQ(m_seal, "QUJD");
}

TEST_F(AppointedSealAnswerTest, WithoutASealItsTextIsTheStatus) {
    EXPECT_EQ(Parse(Success("")), 0);
    EXPECT_EQ(m_seal, "200");
    EXPECT_EQ(Parse("<ROOT><SEAL>QUJD</SEAL><STATUSCODE>200</STATUSCODE></ROOT>"), 0);
    EXPECT_EQ(m_seal, "200");
}

TEST_F(AppointedSealAnswerTest, OnlyTheWholeTextOf200IsASuccess) {
    for (const char* status : {" 200", "200 ", "0200", "2000", "20"}) {
        EXPECT_EQ(Parse("<ROOT><STATUSCODE>" + std::string(status) +
                        "</STATUSCODE><SEAL>QUJD</SEAL></ROOT>"),
                  TESMARK_SERVICE_ANSWER)
            << status;
        EXPECT_EQ(m_seal, "before");
    }
}

TEST_F(AppointedSealAnswerTest, AnotherStatusIsAFailureAboutWhichNobodyIsTold) {
    for (const char* answer :
         {"<ROOT><STATUSCODE>404</STATUSCODE><MESSAGE>text</MESSAGE><SEAL>QUJD</SEAL></ROOT>", "",
          "no document", "<ROOT><SEAL>QUJD</SEAL></ROOT>"}) {
        EXPECT_EQ(Parse(answer), TESMARK_SERVICE_ANSWER) << answer;
        EXPECT_EQ(m_seal, "before");
    }
    EXPECT_THAT(Log(), IsEmpty());
    EXPECT_THAT(g_boxes, IsEmpty());
}

TEST_F(AppointedSealAnswerTest, ASealOfMebibytesIsReadWhole) {
    const std::string seal(4 << 20, 'Q');
    EXPECT_EQ(Parse(Success("<SEAL>" + seal + "</SEAL>")), 0);
    EXPECT_TRUE(m_seal == seal);
}

class HelloAnswerTest : public BoxTest {
protected:
    void ExpectAnswer(const std::string& answer, int result, const std::string& box) {
        g_boxes.clear();
        EXPECT_EQ(ParseHelloAnswer(answer), result) << answer;
        EXPECT_THAT(g_boxes, ElementsAre(Box{box})) << answer;
        EXPECT_THAT(Log(), IsEmpty());
    }
};

TEST_F(HelloAnswerTest, ASuccessIsToldWhateverElseStandsThere) {
    for (const char* rest : {"", "<MESSAGE>text</MESSAGE>", "<A><B/></A>", "<unclosed>"}) {
        ExpectAnswer(Success(rest), 0, "连接服务器成功！");
    }
}

TEST_F(HelloAnswerTest, AnotherStatusShowsTheMessageOrElseTheStatus) {
    ExpectAnswer("<ROOT><STATUSCODE>500</STATUSCODE><MESSAGE>服务停用</MESSAGE></ROOT>",
                 TESMARK_SERVICE_ANSWER, "服务停用");
    ExpectAnswer("<ROOT><STATUSCODE>500</STATUSCODE></ROOT>", TESMARK_SERVICE_ANSWER, "500");
}

TEST_F(HelloAnswerTest, AMessageAheadOfTheStatusIsNotFoundAndTheUserSeesTheStatus) {
    ExpectAnswer("<ROOT><MESSAGE>text</MESSAGE><STATUSCODE>500</STATUSCODE></ROOT>",
                 TESMARK_SERVICE_ANSWER, "500");
}

TEST_F(HelloAnswerTest, OnlyTheWholeTextOf200IsASuccess) {
    ExpectAnswer("<ROOT><STATUSCODE> 200</STATUSCODE></ROOT>", TESMARK_SERVICE_ANSWER, " 200");
    ExpectAnswer("<ROOT><STATUSCODE>0200</STATUSCODE></ROOT>", TESMARK_SERVICE_ANSWER, "0200");
}

TEST_F(HelloAnswerTest, AnEmptyMessageIsShownAsItIs) {
    ExpectAnswer("<ROOT><STATUSCODE>500</STATUSCODE><MESSAGE/></ROOT>", TESMARK_SERVICE_ANSWER, "");
}

TEST_F(HelloAnswerTest, AnEmptyStatusIsAFailureWhateverTheMessageSays) {
    for (const char* answer : {"<ROOT><STATUSCODE/><MESSAGE>text</MESSAGE></ROOT>",
                               "<ROOT><MESSAGE>text</MESSAGE></ROOT>", "", "no document",
                               "<html><body>It works</body></html>"}) {
        ExpectAnswer(answer, TESMARK_SERVICE_ANSWER, "连接服务器失败！");
    }
}

TEST_F(HelloAnswerTest, ARootOfAnotherNameReadsAsAnEmptyStatus) {
    ExpectAnswer("<Root><STATUSCODE>200</STATUSCODE></Root>", TESMARK_SERVICE_ANSWER,
                 "连接服务器失败！");
    ExpectAnswer("<A><ROOT><STATUSCODE>200</STATUSCODE></ROOT></A>", TESMARK_SERVICE_ANSWER,
                 "连接服务器失败！");
}

}  // namespace
