#include "BoxTest.h"
#include "service/Messages.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

using TestConnectionTest = BoxTest;

TEST_F(TestConnectionTest, TheServiceAtTheAddressIsGreetedAndItsAnswerTold) {
    ServiceAnswers("<ROOT><STATUSCODE>200</STATUSCODE></ROOT>");
    EXPECT_EQ(TestConnection(kAddress), 0);
    EXPECT_THAT(fakes::CalledFunctions(), ElementsAreArray(kExchange));
    EXPECT_THAT(fakes::CallTexts("dwnt_config_set"),
                ElementsAre(R"(dwnt_config_set("context", "ServerHost", ")" +
                            std::string(kAddress) + R"("))"));
    EXPECT_THAT(Bodies(), ElementsAre("<ROOT>\r\n<REQUESTTYPE>Hello</REQUESTTYPE>\r\n</ROOT>\r\n"));
    EXPECT_THAT(g_boxes, ElementsAre(Box{"连接服务器成功！"}));
}

TEST_F(TestConnectionTest, TheMessageOfTheServiceIsShownInTheUsersCodePage) {
    ServiceAnswers(
        AnsiToUtf8("<ROOT><STATUSCODE>500</STATUSCODE><MESSAGE>服务停用</MESSAGE></ROOT>"));
    EXPECT_EQ(TestConnection(kAddress), TESMARK_SERVICE_ANSWER);
    EXPECT_THAT(g_boxes, ElementsAre(Box{"服务停用"}));
}

TEST_F(TestConnectionTest, AnEmptyAnswerIsAFailure) {
    EXPECT_EQ(TestConnection(kAddress), TESMARK_SERVICE_ANSWER);
    EXPECT_THAT(g_boxes, ElementsAre(Box{"连接服务器失败！"}));
}

TEST_F(TestConnectionTest, AFailedExchangeIsToldWithAnotherIconAndAnotherMark) {
    for (const std::string& function : kChecked) {
        g_boxes.clear();
        fakes::On(function).Returns(0x0E000006);
        EXPECT_EQ(TestConnection(kAddress), 0x0E000006) << function;
        EXPECT_THAT(g_boxes, ElementsAre(Box{"连接服务器失败!", platform::kMessageBoxInformation}));
        fakes::On(function).Returns(0);
    }
}

}  // namespace
