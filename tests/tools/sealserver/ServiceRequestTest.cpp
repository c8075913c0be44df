// What clients may ask, and every damage that a request can have.

#include "tools/sealserver/ServiceRequest.h"

#include <gtest/gtest.h>

namespace {

class ServiceRequestTest : public testing::Test {
protected:
    bool Read(const std::string& body) { return ReadServiceRequest(body, m_request, m_fault); }
    // The status with which the body is refused; 0 if it isn't.
    int Refusal(const std::string& body) { return Read(body) ? 0 : m_fault.status; }

    ServiceRequest m_request;
    RequestFault m_fault;
};

std::string Root(const std::string& inside) { return "<ROOT>\r\n" + inside + "</ROOT>\r\n"; }

std::string Appointed(const std::string& inside) {
    return Root("<REQUESTTYPE>GetAppointedSeal</REQUESTTYPE>\r\n" + inside);
}

TEST_F(ServiceRequestTest, TheFourRequestsAreRead) {
    ASSERT_TRUE(Read(Root("<REQUESTTYPE>Hello</REQUESTTYPE>\r\n")));
    EXPECT_EQ(m_request.kind, RequestKind::kHello);
    ASSERT_TRUE(
        Read("<ROOT>\r\n<REQUESTTYPE>GetSealList</REQUESTTYPE>\r\n<SN>1B2C3D</SN>\r\n"
             "<DN>TestCA</DN>\r\n</ROOT>\r\n"));
    EXPECT_EQ(m_request.kind, RequestKind::kSealList);
    EXPECT_EQ(m_request.serial, "1B2C3D");
    EXPECT_EQ(m_request.name, "TestCA");
    ASSERT_TRUE(Read(Appointed("<SN>1</SN>\r\n<DN>O=财务</DN>\r\n<SEALNUM>7001</SEALNUM>\r\n")));
    EXPECT_EQ(m_request.kind, RequestKind::kAppointedSeal);
    EXPECT_EQ(m_request.name, "O=财务");
    EXPECT_EQ(m_request.sealNumber, "7001");
    ASSERT_TRUE(
        Read(Root("<REQUESTTYPE>GetSealStatus</REQUESTTYPE><SEALNUM>7</SEALNUM>"
                  "<SEALHASH>AB</SEALHASH>")));
    EXPECT_EQ(m_request.kind, RequestKind::kSealStatus);
    EXPECT_EQ(m_request.sealNumber, "7");
    EXPECT_EQ(m_request.sealHash, "AB");
}

TEST_F(ServiceRequestTest, OrderAndForeignElementsDontMatter) {
    ASSERT_TRUE(
        Read("<?xml version=\"1.0\"?><ROOT><DN>d</DN><!-- x --><OTHER>o</OTHER>"
             "<REQUESTTYPE>GetSealList</REQUESTTYPE><SN> 1 </SN></ROOT>"));
    EXPECT_EQ(m_request.serial, "1");
    EXPECT_EQ(m_request.name, "d");
    EXPECT_EQ(Refusal(Root("<REQUESTTYPE>Hello</REQUESTTYPE><OTHER><IN/></OTHER>")), 400);
}

TEST_F(ServiceRequestTest, EntitiesAndSectionsAreResolved) {
    ASSERT_TRUE(
        Read(Appointed("<SN>1</SN><DN>O=A&amp;B &lt;&#x5370;&gt;<![CDATA[&]]></DN>"
                       "<SEALNUM>&quot;7&apos;</SEALNUM>")));
    EXPECT_EQ(m_request.name, "O=A&B <印>&");
    EXPECT_EQ(m_request.sealNumber, "\"7'");
}

TEST_F(ServiceRequestTest, AnEmptySealNumberIsAChoiceThatWasNotMade) {
    for (const char* const empty : {"<SEALNUM/>", "<SEALNUM></SEALNUM>", "<SEALNUM> </SEALNUM>"}) {
        EXPECT_EQ(Refusal(Appointed(std::string("<SN>1</SN><DN>d</DN>") + empty)), 400);
        EXPECT_EQ(m_fault.message, "没有选择印章：印章编号为空");
    }
}

TEST_F(ServiceRequestTest, WhatARequestNeedsHasToBeThere) {
    EXPECT_EQ(Refusal(Appointed("<DN>d</DN><SEALNUM>7</SEALNUM>")), 400);
    EXPECT_EQ(m_fault.message, "请求缺少SN");
    EXPECT_EQ(Refusal(Appointed("<SN/><DN>d</DN><SEALNUM>7</SEALNUM>")), 400);
    EXPECT_EQ(Refusal(Appointed("<SN>1</SN><SEALNUM>7</SEALNUM>")), 400);
    EXPECT_EQ(m_fault.message, "请求缺少DN");
    EXPECT_EQ(Refusal(Appointed("<SN>1</SN><DN>d</DN>")), 400);
    EXPECT_EQ(m_fault.message, "请求缺少SEALNUM");
    EXPECT_EQ(Refusal(Root("<REQUESTTYPE>GetSealStatus</REQUESTTYPE><SEALNUM>7</SEALNUM>")), 400);
    EXPECT_EQ(m_fault.message, "请求缺少SEALHASH");
    EXPECT_EQ(Refusal(Root("<SN>1</SN>")), 501);
    EXPECT_EQ(Refusal(Root("<REQUESTTYPE>hello</REQUESTTYPE>")), 501);
}

TEST_F(ServiceRequestTest, ACertificateMayHaveAnEmptyName) {
    ASSERT_TRUE(Read(Appointed("<SN>1</SN><DN/><SEALNUM>7</SEALNUM>")));
    EXPECT_EQ(m_request.name, "");
}

TEST_F(ServiceRequestTest, WhatIsNoDocumentIsRefused) {
    const std::string good = Root("<REQUESTTYPE>Hello</REQUESTTYPE>");
    EXPECT_EQ(Refusal(good), 0);
    for (const std::string& bad :
         {std::string(), std::string(" "), std::string("Hello"), good.substr(0, good.size() - 4),
          good.substr(3), good + std::string("\0", 1), "<A>" + good + "</A>",
          std::string("<ROOT><REQUESTTYPE>Hello</SN></ROOT>"), std::string("\xFF\xFE<\0R\0", 6)}) {
        EXPECT_EQ(Refusal(bad), 400) << bad;
        EXPECT_NE(m_fault.message, "");
    }
}

TEST_F(ServiceRequestTest, ADocumentTypeIsRefusedWithItsEntities) {
    EXPECT_EQ(Refusal("<!DOCTYPE ROOT [<!ENTITY e SYSTEM \"file:///etc/passwd\">]>" +
                      Root("<REQUESTTYPE>Hello</REQUESTTYPE>")),
              400);
    ASSERT_TRUE(Read(Appointed("<SN>1</SN><DN>&e;</DN><SEALNUM>7</SEALNUM>")));
    EXPECT_EQ(m_request.name, "&e;");
}

TEST_F(ServiceRequestTest, AnElementThatStandsTwiceIsRefused) {
    EXPECT_EQ(Refusal(Appointed("<SN>1</SN><SN>2</SN><DN>d</DN><SEALNUM>7</SEALNUM>")), 400);
}

TEST_F(ServiceRequestTest, TextsAreUtf8WithoutControlCharacters) {
    for (const char* const bad : {"\xD3\xA1\xD5\xC2", "a&#10;b", "a&#0;b", "a&#x00;b", "&#xD800;",
                                  "a\tb", "\xC0\xAF", "a<SN>b</SN>"}) {
        EXPECT_EQ(
            Refusal(Appointed("<SN>1</SN><SEALNUM>7</SEALNUM><DN>" + std::string(bad) + "</DN>")),
            400)
            << bad;
    }
}

TEST_F(ServiceRequestTest, AReferenceIsToACharacterThatThereIs) {
    const auto refused = [&](const std::string& reference) {
        return Refusal(Appointed("<SN>1</SN><SEALNUM>7</SEALNUM><DN>a" + reference + "b</DN>"));
    };
    for (const char* const good : {"&#x10FFFD;", "&#x0000000010fffd;", "&#1114109;"}) {
        EXPECT_EQ(refused(good), 0) << good;
        EXPECT_EQ(m_request.name,
                  "a\xF4\x8F\xBF\xBD"
                  "b");
    }
    // Zero, and by the bits that are left A and U+50000.
    for (const char* const bad :
         {"&#4294967296;", "&#x100000000;", "&#00004294967296;", "&#4294967361;", "&#x100000041;",
          "&#x450000;", "&#x110000;", "&#1114112;", "&#18446744073709551616;", "&#;", "&#x;"})
        EXPECT_EQ(refused(bad), 400) << bad;
    EXPECT_EQ(refused("<![CDATA[&#b]]>"), 0);
}

TEST_F(ServiceRequestTest, TooMuchIsRefused) {
    const std::string longest(kMaxRequestText, 'x');
    EXPECT_EQ(Refusal(Appointed("<SN>1</SN><SEALNUM>7</SEALNUM><DN>" + longest + "</DN>")), 0);
    EXPECT_EQ(Refusal(Appointed("<SN>1</SN><SEALNUM>7</SEALNUM><DN>" + longest + "x</DN>")), 400);
    std::string body = Root("<REQUESTTYPE>Hello</REQUESTTYPE>");
    body += std::string(kMaxRequestBytes - body.size(), ' ');
    EXPECT_EQ(Refusal(body), 0);
    EXPECT_EQ(Refusal(body + ' '), 413);
}

// One level for each three bytes of the largest body.
TEST_F(ServiceRequestTest, DeepNestingEnds) {
    std::string deep;
    for (std::size_t i = 0; i < kMaxRequestBytes / 3; ++i) deep += "<a>";
    EXPECT_EQ(Refusal(deep), 400);
}

}  // namespace
