// A seal's status, asked of services by script.

#include <gmock/gmock.h>

#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealStatus.h"
#include "foundation/Text.h"
#include "support/LoopbackServer.h"
#include "support/NoProxy.h"
#include "tests/components/seallibrary/LibraryFixture.h"

namespace {

using testing::HasSubstr;

class SealStatusTest : public LibraryFixture {
protected:
    static int SetAddress(const std::string& address, int reqStatus = 1) {
        return TVK_SetConfig(reqStatus, address.c_str(), Size(address), 0);
    }
    static int Request(const std::string& number = "1101", const std::string& hash = "AB") {
        return TVK_Request_Eseal_Status(Bytes(number), Size(number), Bytes(hash), Size(hash), 0, 0);
    }
    // What a service that says this is understood as.
    static int CodeFor(const std::string& page) {
        const LoopbackServer server([&](const std::string&) { return page; });
        SetAddress(server.Url("/QelmServlet"));
        return Request();
    }
    static int CodeForBody(const std::string& body) {
        return CodeFor(LoopbackServer::Page("200 OK", body));
    }
    static std::string Told(const std::string& word) {
        return "<ROOT>\r\n<STATUSCODE>200</STATUSCODE>\r\n<SEALSTATUS>" + word +
               "</SEALSTATUS>\r\n</ROOT>\r\n";
    }

    const NoProxy m_noProxy;
};

TEST_F(SealStatusTest, WithoutAnAddressThereIsNoService) {
    EXPECT_EQ(Request(), kSealNoStatusService);
    EXPECT_EQ(SetAddress(""), kSealOk);
    EXPECT_EQ(Request(), kSealNoStatusService);
}

TEST_F(SealStatusTest, TheRequestIsInTheServicesForm) {
    std::string head;
    std::string body;
    const LoopbackServer server(
        LoopbackServer::Handler([&](const LoopbackServer::Request& request) {
            head = request.head;
            body = request.body;
            return LoopbackServer::Page("200 OK", Told("valid"));
        }));
    SetAddress(server.Url("/QelmServlet"));
    EXPECT_EQ(Request("印&1", std::string(64, 'F')), kSealOk);
    EXPECT_EQ(head.find("POST /QelmServlet HTTP/1.1\r\n"), 0u);
    EXPECT_THAT(head, HasSubstr("\r\nEncryptType: 0\r\n"));
    EXPECT_THAT(head, HasSubstr("\r\nRequestContent: XML\r\n"));
    EXPECT_EQ(body, "<ROOT>\r\n<REQUESTTYPE>GetSealStatus</REQUESTTYPE>\r\n<SEALNUM>" +
                        AnsiToUtf8("印") + "&amp;1</SEALNUM>\r\n<SEALHASH>" + std::string(64, 'F') +
                        "</SEALHASH>\r\n</ROOT>\r\n");
}

TEST_F(SealStatusTest, EachWordHasItsCode) {
    EXPECT_EQ(CodeForBody(Told("valid")), kSealOk);
    EXPECT_EQ(CodeForBody(Told("suspended")), kSealStatusSuspended);
    EXPECT_EQ(CodeForBody(Told("unknown")), kSealStatusUnknown);
    EXPECT_EQ(CodeForBody(Told("replaced")), kSealStatusReplaced);
}

TEST_F(SealStatusTest, OnlyTheWordItselfMakesASealUsable) {
    for (const std::string& body :
         {Told(""), Told("Valid"), Told(" valid"), Told("valid "), Told("invalid"), Told("1"),
          std::string(), std::string("valid"), std::string("<ROOT/>"),
          std::string("<ROOT><SEALSTATUS>valid</SEALSTATUS></ROOT>"),
          std::string("<ROOT><SEALSTATUS>valid</SEALSTATUS><STATUSCODE>200</STATUSCODE></ROOT>"),
          std::string("<ROOT><STATUSCODE>0200</STATUSCODE><SEALSTATUS>valid</SEALSTATUS></ROOT>"),
          std::string("<ROOT><STATUSCODE>400</STATUSCODE><SEALSTATUS>valid</SEALSTATUS></ROOT>"),
          std::string("<OTHER><STATUSCODE>200</STATUSCODE><SEALSTATUS>valid</SEALSTATUS></OTHER>"),
          std::string("<ROOT><STATUSCODE>200</STATUSCODE><SEALSTATUS>valid</SEALSTATUS>"),
          Told("valid") + std::string(70'000, ' ')}) {
        EXPECT_EQ(CodeForBody(body), kSealStatusBadAnswer) << body.substr(0, 200);
    }
}

TEST_F(SealStatusTest, AServersTextStaysOneShortPartOfARecord) {
    const LoopbackServer server([](const std::string&) {
        return LoopbackServer::Page("200 OK", "<ROOT><STATUSCODE>500&#10;[forged]&#13;" +
                                                  std::string(60'000, 'x') +
                                                  "</STATUSCODE></ROOT>");
    });
    std::string fault;
    EXPECT_EQ(AskSealStatus(server.Url("/QelmServlet"), "1101", "AB", fault), kSealStatusBadAnswer);
    EXPECT_EQ(fault.find_first_of("\r\n"), fault.npos);
    EXPECT_THAT(fault, HasSubstr("the status 500 [forged] xxx"));
    EXPECT_LE(fault.size(), 600u);
}

TEST_F(SealStatusTest, OtherHttpStatusesTellNothing) {
    for (const char* const status :
         {"204 No Content", "302 Found", "403 Forbidden", "500 Internal Server Error"}) {
        EXPECT_EQ(CodeFor(LoopbackServer::Page(status, Told("valid"), "Location: /other\r\n")),
                  kSealStatusBadAnswer)
            << status;
    }
    EXPECT_EQ(CodeFor(LoopbackServer::Page("200 OK", Told("valid"), "Content-Encoding: gzip\r\n")),
              kSealStatusBadAnswer);
}

TEST_F(SealStatusTest, AServiceThatIsNotThereIsUnreachable) {
    SetAddress(LoopbackServer::DeadUrl("/QelmServlet"));
    EXPECT_EQ(Request(), kSealStatusUnreachable);
    EXPECT_EQ(CodeFor(""), kSealStatusUnreachable);
}

TEST_F(SealStatusTest, AServiceThatNobodyTrustsIsUnreachable) {
    const LoopbackServer server(
        [](const std::string&) { return LoopbackServer::Page("200 OK", Told("valid")); },
        LoopbackServer::Scheme::Https);
    SetAddress(server.Url("/QelmServlet"));
    EXPECT_EQ(Request(), kSealStatusUnreachable);
}

TEST_F(SealStatusTest, AnAddressHasToBeOneOfHttp) {
    for (const char* const bad :
         {"ftp://127.0.0.1/", "127.0.0.1", "http://", "file:///etc/passwd"}) {
        SetAddress(bad);
        EXPECT_EQ(Request(), kSealStatusBadAddress) << bad;
    }
}

TEST_F(SealStatusTest, BadArgumentsAreTold) {
    SetAddress(LoopbackServer::DeadUrl("/"));
    EXPECT_EQ(TVK_Request_Eseal_Status(nullptr, 1, Bytes("5"), 1, 0, 0), kSealBadArgument);
    EXPECT_EQ(TVK_Request_Eseal_Status(Bytes("1"), 1, Bytes("5"), -1, 0, 0), kSealBadArgument);
    EXPECT_EQ(Request("", "5"), kSealBadArgument);
    EXPECT_EQ(Request("1", ""), kSealBadArgument);
    EXPECT_EQ(Request(std::string(kMaxStatusField + 1, '1'), "5"), kSealTooLarge);
    EXPECT_EQ(Request("1", std::string(kMaxStatusField + 1, '1')), kSealTooLarge);
    EXPECT_EQ(TVK_SetConfig(1, nullptr, 1, 0), kSealBadArgument);
    EXPECT_EQ(TVK_SetConfig(1, "x", -1, 0), kSealBadArgument);
}

TEST_F(SealStatusTest, TheAddressEndsWithItsText) {
    const LoopbackServer server(
        [](const std::string&) { return LoopbackServer::Page("200 OK", Told("valid")); });
    SetAddress(server.Url("/") + std::string(3, '\0'), 0);
    EXPECT_EQ(Request(), kSealOk);
    TVK_Release();
    EXPECT_EQ(Request(), kSealNoStatusService);
}

TEST_F(SealStatusTest, SigningWithATimeStampIsNotSupported) {
    EXPECT_EQ(TVK_SetConfig(0, "", 0, 1), kSealNotSupported);
}

}  // namespace
