#include "components/transport/HttpRequest.h"

#include <gtest/gtest.h>

#include "components/transport/TransportCodes.h"

namespace {

TEST(HttpRequestTest, AHeaderSetTwiceHasItsLastValue) {
    HttpRequest request;
    EXPECT_EQ(SetHeader(request, "Content-Type", "text/xml"), kTransportOk);
    EXPECT_EQ(SetHeader(request, "Accept", "*/*"), kTransportOk);
    EXPECT_EQ(SetHeader(request, "content-type", "text/plain"), kTransportOk);
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"Content-Type", "text/plain"}, {"Accept", "*/*"}};
    EXPECT_EQ(request.headers, expected);
}

TEST(HttpRequestTest, AHeaderCantCarryAnotherOne) {
    HttpRequest request;
    EXPECT_EQ(SetHeader(request, "A", "x\r\nB: y"), kTransportBadArgument);
    EXPECT_EQ(SetHeader(request, "A\n", "x"), kTransportBadArgument);
    EXPECT_EQ(SetHeader(request, "A: x", "y"), kTransportBadArgument);
    EXPECT_EQ(SetHeader(request, "", "y"), kTransportBadArgument);
    EXPECT_TRUE(request.headers.empty());
}

TEST(HttpRequestTest, AContextKnowsItsOwnRequests) {
    CTransportContext context;
    CTransportContext other;
    HttpRequest* const request = context.CreateRequest();
    EXPECT_TRUE(context.Owns(request));
    EXPECT_FALSE(other.Owns(request));
}

}  // namespace
