#include "components/transport/HttpRequest.h"

#include <gmock/gmock.h>

#include "components/transport/TransportCodes.h"

namespace {

using testing::ElementsAre;

TEST(HttpRequestTest, AHeaderSetTwiceHasItsLastValue) {
    HttpRequest request;
    EXPECT_EQ(SetHeader(request, "Content-Type", "text/xml"), kTransportOk);
    EXPECT_EQ(SetHeader(request, "Accept", "*/*"), kTransportOk);
    EXPECT_EQ(SetHeader(request, "content-type", "text/plain"), kTransportOk);
    EXPECT_THAT(HeaderLines(request), ElementsAre("Content-Type: text/plain", "Accept: */*"));
}

TEST(HttpRequestTest, AHeaderCantCarryAnotherOne) {
    HttpRequest request;
    EXPECT_EQ(SetHeader(request, "A", "x\r\nB: y"), kTransportBadArgument);
    EXPECT_EQ(SetHeader(request, "A", std::string_view("x\0y", 3)), kTransportBadArgument);
    EXPECT_EQ(SetHeader(request, "A\n", "x"), kTransportBadArgument);
    EXPECT_EQ(SetHeader(request, "A: x", "y"), kTransportBadArgument);
    EXPECT_EQ(SetHeader(request, "A;", "y"), kTransportBadArgument);
    EXPECT_EQ(SetHeader(request, "", "y"), kTransportBadArgument);
    EXPECT_TRUE(request.headers.empty());
}

TEST(HttpRequestTest, AHeaderCantContradictTheBody) {
    HttpRequest request;
    EXPECT_EQ(SetHeader(request, "content-LENGTH", "1"), kTransportBadArgument);
    EXPECT_EQ(SetHeader(request, "Transfer-Encoding", "chunked"), kTransportBadArgument);
    EXPECT_TRUE(request.headers.empty());
}

TEST(HttpRequestTest, WithoutAnotherTypeTheContentIsXml) {
    HttpRequest request;
    ASSERT_EQ(SetHeader(request, "EncryptType", "0"), kTransportOk);
    EXPECT_THAT(HeaderLines(request), ElementsAre("EncryptType: 0", "Content-Type: text/xml"));
}

TEST(HttpRequestTest, AnEmptyValueIsAHeaderToo) {
    HttpRequest request;
    ASSERT_EQ(SetHeader(request, "RequestContent", ""), kTransportOk);
    EXPECT_THAT(HeaderLines(request), ElementsAre("RequestContent;", "Content-Type: text/xml"));
}

}  // namespace
