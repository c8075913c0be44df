// The exchange of a host and the mark on a picture, through the library and the open components.

#include <gmock/gmock.h>

#include "components/transport/TransportCodes.h"
#include "library/bridge/ExportCalls.h"
#include "road/RoadTest.h"
#include "support/LoopbackServer.h"
#include "support/NoProxy.h"

namespace {

using testing::HasSubstr;

class ServiceRoadTest : public testing::Test {
protected:
    static std::string Echo(const LoopbackServer::Request& request) {
        return LoopbackServer::Page("200 OK", request.body);
    }
    static int Post(const std::string& url, const std::string& body, unsigned char* out,
                    int* outLen) {
        return HttpPostData(url.c_str(), AsBytes(body), AsLength(body), out, outLen);
    }

    TemporaryPrefix m_prefix;
    NoProxy m_noProxy;
};

TEST_F(ServiceRoadTest, AHostsBodyGoesToTheServiceAndItsAnswerComesBack) {
    const LoopbackServer server(Echo);
    const std::string body("<\0\xFF>", 4);
    unsigned char out[4] = {};
    int length = 0;
    EXPECT_EQ(Post(server.Url("/QelmServlet"), body, out, &length), 0);
    ASSERT_EQ(length, 4);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(out), 4), body);
    ASSERT_EQ(server.Requests().size(), 1u);
    EXPECT_THAT(server.Requests()[0], HasSubstr("\r\nEncryptType: 0\r\n"));
    EXPECT_THAT(server.Requests()[0], HasSubstr("\r\nRequestContent: XML\r\n"));
}

TEST_F(ServiceRoadTest, WithoutABufferTheServiceIsAskedAllTheSame) {
    const LoopbackServer server(Echo);
    int length = 0;
    EXPECT_EQ(Post(server.Url("/QelmServlet"), "<a/>", nullptr, &length), -1);
    EXPECT_EQ(server.Requests().size(), 1u);
}

TEST_F(ServiceRoadTest, ATransportsCodeReachesTheHost) {
    unsigned char out[1] = {};
    int length = 4711;
    EXPECT_EQ(Post(LoopbackServer::DeadUrl("/"), "<a/>", out, &length), kTransportNoConnection);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(Post("ftp://127.0.0.1/", "<a/>", out, &length), kTransportBadAddress);
}

// One red pixel, which is on a stripe.
TEST_F(ServiceRoadTest, AMarkedPictureComesInTwoSteps) {
    constexpr char kGif[] =
        "GIF89a\x01\x00\x01\x00\x80\x00\x00\xFF\x00\x00\x00\x00\x00"
        "\x2C\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02\x44\x01\x00\x3B";
    const std::string picture(kGif, sizeof kGif - 1);
    const Handed marked = InTwoSteps([&](unsigned char* out, int* outLen) {
        return SetWatermarkOnEseal(AsBytes(picture), AsLength(picture), out, outLen);
    });
    ASSERT_EQ(marked.code, 0);
    EXPECT_EQ(marked.bytes.substr(0, 4), "GIF8");
    EXPECT_THAT(marked.bytes, HasSubstr("\xFF\x7F\x7F"));
}

TEST_F(ServiceRoadTest, WhatCannotBeMarkedIsANegativeResult) {
    const std::string rubbish = "%PDF-1.7";
    int length = 4711;
    EXPECT_LT(SetWatermarkOnEseal(AsBytes(rubbish), AsLength(rubbish), nullptr, &length), 0);
    EXPECT_EQ(length, 4711);
}

}  // namespace
