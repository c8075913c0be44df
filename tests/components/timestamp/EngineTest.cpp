// The engine against authorities that answer, and fail, in every way.

#include "components/timestamp/Engine.h"

#include <gmock/gmock.h>

#include <fstream>
#include <future>

#include "components/timestamp/AuthorityClient.h"
#include "components/timestamp/ResponseCheck.h"
#include "components/timestamp/TimeStampFixture.h"
#include "foundation/Logger.h"
#include "foundation/Text.h"
#include "support/Program.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class EngineTest : public TimeStampTest {
protected:
    static std::string Honest(const Request& request) { return HttpReply(Stamp(request.body)); }
    // Redirects everything but /there, where the authority is.
    static LoopbackServer::Handler Redirecting(const std::string& status,
                                               const std::string& location) {
        return [=](const Request& request) {
            if (request.path == "/there") return Honest(request);
            return LoopbackServer::Page(status, "", "Location: " + location + "\r\n");
        };
    }
    static LoopbackServer::Handler AskingForPassword(const std::string& expected) {
        return [=](const Request& request) {
            const bool known = request.head.find(expected) != std::string::npos;
            return known ? Honest(request)
                         : LoopbackServer::Page("401 Unauthorized", "",
                                                "WWW-Authenticate: Basic realm=\"tsa\"\r\n");
        };
    }
    std::string Written(const std::string& name, const std::string& content) const {
        std::ofstream(m_prefix.Below(name), std::ios::binary) << content;
        return m_prefix.Below(name);
    }
};

TEST_F(EngineTest, AResponseThatFitsComesBackInBase64) {
    const LoopbackServer server(Honest);
    const EngineOutcome outcome = Ask(server);
    ASSERT_TRUE(outcome.response.has_value());
    EXPECT_EQ(CheckResponse(m_request, Base64Decode(*outcome.response)).fault, "");
    ASSERT_EQ(outcome.records.size(), 1u);
    EXPECT_EQ(outcome.records[0].level, kLogInfo);
    EXPECT_THAT(outcome.records[0].text, StartsWith(server.Url("/tsa: granted, serial number ")));
}

TEST_F(EngineTest, OpensslVerifiesTheToken) {
    const LoopbackServer server(Honest);
    const EngineOutcome outcome = Ask(server);
    ASSERT_TRUE(outcome.response.has_value());
    const ProgramOutcome verified =
        RunProgram({"/usr/bin/openssl", "ts", "-verify", "-queryfile", Written("query", m_request),
                    "-in", Written("response", Base64Decode(*outcome.response)), "-CAfile",
                    Written("ca.pem", AuthorityCa())});
    EXPECT_EQ(verified.exitCode, 0) << verified.error;
    EXPECT_THAT(verified.out, HasSubstr("Verification: OK"));
}

TEST_F(EngineTest, TheRequestIsPostedAsItIsWithItsType) {
    std::string body;
    const LoopbackServer server([&](const Request& request) {
        body = request.body;
        return Honest(request);
    });
    ASSERT_TRUE(Ask(server).response.has_value());
    EXPECT_EQ(body, m_request);
    ASSERT_EQ(server.Requests().size(), 1u);
    EXPECT_THAT(server.Requests()[0], StartsWith("POST /tsa HTTP/1.1\r\n"));
    EXPECT_THAT(server.Requests()[0],
                HasSubstr("\r\nContent-Type: application/timestamp-query\r\n"));
}

TEST_F(EngineTest, WhatIsNoRequestIsSentToNobody) {
    const LoopbackServer server(Honest);
    m_settings.urls = {server.Url("/tsa")};
    for (const std::string& text :
         {std::string(), std::string("rubbish"), Base64Encode(m_request + '\0'),
          Base64Encode(m_request.substr(0, 20)), std::string(100'000, 'A')}) {
        const EngineOutcome outcome = AskAuthorities(m_settings, text);
        EXPECT_FALSE(outcome.response.has_value());
        ASSERT_EQ(outcome.records.size(), 1u);
        EXPECT_EQ(outcome.records[0].text, "the text is no time-stamp request in Base64");
    }
    EXPECT_TRUE(server.Requests().empty());
}

TEST_F(EngineTest, WithoutAnAddressTheRecordNamesTheSetting) {
    const EngineOutcome outcome = Ask(std::vector<std::string>{});
    EXPECT_FALSE(outcome.response.has_value());
    ASSERT_EQ(outcome.records.size(), 1u);
    EXPECT_EQ(outcome.records[0].level, kLogError);
    EXPECT_THAT(outcome.records[0].text, HasSubstr("software\\Velmora\\timestamp has no Url"));
}

TEST_F(EngineTest, ASilentPortAndForeignSchemesAreTold) {
    for (const auto& [url, fault] : std::vector<std::pair<std::string, std::string>>{
             {LoopbackServer::DeadUrl("/"), "(libcurl error 7)"},
             {"ftp://127.0.0.1/", "(libcurl error 1)"},
             {"file:///etc/passwd", "(libcurl error 1)"},
             {"http://", " (libcurl error 3)"}}) {
        const EngineOutcome outcome = Ask({url});
        EXPECT_FALSE(outcome.response.has_value());
        ASSERT_EQ(outcome.records.size(), 1u);
        EXPECT_EQ(outcome.records[0].level, kLogError);
        EXPECT_THAT(outcome.records[0].text, HasSubstr(fault));
    }
}

TEST_F(EngineTest, AnHttpErrorIsToldByItsNumber) {
    EXPECT_EQ(FaultOf(LoopbackServer::Page("404 Not Found", "no")), "HTTP status 404");
    EXPECT_EQ(FaultOf(LoopbackServer::Page("500 Internal Server Error", "")), "HTTP status 500");
    EXPECT_EQ(FaultOf(LoopbackServer::Page("204 No Content", "")), "HTTP status 204");
}

TEST_F(EngineTest, AnAnswerOfAnotherTypeIsRefused) {
    const std::string right = Stamp(m_request);
    EXPECT_EQ(FaultOf(LoopbackServer::Page("200 OK", right, "Content-Type: text/html\r\n")),
              "the answer is text/html, not application/timestamp-reply");
    EXPECT_EQ(FaultOf(LoopbackServer::Page("200 OK", right)), "the answer's type isn't told");
}

TEST_F(EngineTest, TheTypesCaseAndParametersDoNotMatter) {
    const LoopbackServer server([&](const Request& request) {
        return LoopbackServer::Page("200 OK", Stamp(request.body),
                                    "CONTENT-TYPE: Application/Timestamp-Reply; x=y\r\n");
    });
    EXPECT_TRUE(Ask(server).response.has_value());
}

TEST_F(EngineTest, RubbishIsNoResponse) {
    for (const std::string& body : {std::string(), std::string("rubbish"), Stamp(m_request) + "x",
                                    Stamp(m_request).substr(0, 200)}) {
        EXPECT_EQ(FaultOf(HttpReply(body)), "the answer is no time-stamp response");
    }
}

TEST_F(EngineTest, ARefusalIsToldWithItsReasons) {
    EXPECT_THAT(FaultOf(HttpReply(Stamp(MakeRequest({.hash = "SHA1"})))),
                StartsWith("refused by rejection: badAlg"));
    EXPECT_THAT(FaultOf(HttpReply(Stamp("rubbish"))),
                StartsWith("refused by rejection: badDataFormat, \""));
    EXPECT_THAT(FaultOf(HttpReply(Stamp(MakeRequest({.policy = "1.2.3.4.5"})))),
                StartsWith("refused by rejection: unacceptedPolicy"));
}

TEST_F(EngineTest, ATokenForSomethingElseIsRefused) {
    EXPECT_EQ(FaultOf(HttpReply(Stamp(MakeRequest({.imprint = 'b'})))),
              "the token is for another message imprint");
    EXPECT_EQ(FaultOf(HttpReply(Stamp(MakeRequest({.hash = "SM3"})))),
              "the token is for another message imprint");
    EXPECT_EQ(FaultOf(HttpReply(Stamp(MakeRequest({.nonce = 4712})))),
              "the token has another nonce");
    EXPECT_EQ(FaultOf(HttpReply(Stamp(MakeRequest({.nonce = 0})))), "the token has no nonce");
}

TEST_F(EngineTest, AnAnswerWithoutAnEndIsCutOff) {
    EXPECT_EQ(FaultOf(HttpReply(std::string(kLargestResponse + 1, 'x'))),
              "the answer has more than 1048576 bytes");
}

TEST_F(EngineTest, AnAnswerOfTheLargestSizeIsReadWhole) {
    EXPECT_EQ(FaultOf(HttpReply(std::string(kLargestResponse, 'x'))),
              "the answer is no time-stamp response");
}

TEST_F(EngineTest, AServerThatNeverAnswersIsGivenUpInTime) {
    std::promise<void> end;
    const std::shared_future<void> ended = end.get_future().share();
    const LoopbackServer server([ended](const Request&) {
        ended.wait();
        return std::string();
    });
    m_settings.timeoutMs = 100;
    const EngineOutcome outcome = Ask(server);
    end.set_value();
    EXPECT_FALSE(outcome.response.has_value());
    ASSERT_EQ(outcome.records.size(), 1u);
    EXPECT_THAT(outcome.records[0].text, HasSubstr("(libcurl error 28)"));
}

TEST_F(EngineTest, ARedirectIsFollowedWithTheRequest) {
    for (const char* const status : {"301 Moved Permanently", "302 Found", "303 See Other",
                                     "307 Temporary Redirect", "308 Permanent Redirect"}) {
        const LoopbackServer server(Redirecting(status, "/there"));
        EXPECT_TRUE(Ask(server).response.has_value()) << status;
        ASSERT_EQ(server.Requests().size(), 2u);
        EXPECT_THAT(server.Requests()[1], StartsWith("POST /there "));
    }
}

TEST_F(EngineTest, ARedirectWithoutAnEndAndOneToAnotherSchemeAreRefused) {
    EXPECT_THAT(FaultOf(Redirecting("302 Found", "/again")), HasSubstr("(libcurl error 47)"));
    EXPECT_THAT(FaultOf(Redirecting("302 Found", "ftp://127.0.0.1/")),
                HasSubstr("(libcurl error 1)"));
    EXPECT_THAT(FaultOf(Redirecting("302 Found", "dict://127.0.0.1/")),
                HasSubstr("(libcurl error 1)"));
}

TEST_F(EngineTest, ARedirectNeverLeavesEncryption) {
    const LoopbackServer plain(Honest);
    const LoopbackServer server(Redirecting("302 Found", plain.Url("/there")),
                                LoopbackServer::Scheme::Https);
    m_settings.caFile = Written("server.pem", server.Certificate());
    const EngineOutcome outcome = Ask(server);
    EXPECT_FALSE(outcome.response.has_value());
    EXPECT_TRUE(plain.Requests().empty());
    ASSERT_EQ(outcome.records.size(), 1u);
    EXPECT_THAT(outcome.records[0].text, HasSubstr("(libcurl error 1)"));
}

TEST_F(EngineTest, AServersCertificateThatNobodyTrustsIsRefused) {
    const LoopbackServer server(Honest, LoopbackServer::Scheme::Https);
    const EngineOutcome outcome = Ask(server);
    EXPECT_FALSE(outcome.response.has_value());
    EXPECT_TRUE(server.Requests().empty());
    ASSERT_EQ(outcome.records.size(), 1u);
    EXPECT_THAT(outcome.records[0].text, HasSubstr("(libcurl error 60)"));
}

TEST_F(EngineTest, AServersCertificateOfTheCaFileIsAccepted) {
    const LoopbackServer server(Honest, LoopbackServer::Scheme::Https);
    m_settings.caFile = Written("server.pem", server.Certificate());
    EXPECT_TRUE(Ask(server).response.has_value());
}

TEST_F(EngineTest, AServersCertificateForAnotherHostIsRefused) {
    const LoopbackServer server(Honest, LoopbackServer::Scheme::Https);
    m_settings.caFile = Written("server.pem", server.Certificate());
    std::string url = server.Url("/tsa");
    url.replace(url.find("127.0.0.1"), 9, "localhost");
    const EngineOutcome outcome = Ask({url});
    EXPECT_FALSE(outcome.response.has_value());
    ASSERT_EQ(outcome.records.size(), 1u);
    EXPECT_THAT(outcome.records[0].text, HasSubstr("(libcurl error 60)"));
}

TEST_F(EngineTest, ACaFileThatIsNotThereIsAFailure) {
    const LoopbackServer server(Honest, LoopbackServer::Scheme::Https);
    m_settings.caFile = m_prefix.Below("none.pem");
    const EngineOutcome outcome = Ask(server);
    EXPECT_FALSE(outcome.response.has_value());
    ASSERT_EQ(outcome.records.size(), 1u);
    EXPECT_THAT(outcome.records[0].text, HasSubstr("(libcurl error 77)"));
}

TEST_F(EngineTest, UserAndPasswordAreGivenOnDemandAlone) {
    const LoopbackServer open(Honest);
    m_settings.user = "stamp:er";
    m_settings.password = "p w";
    ASSERT_TRUE(Ask(open).response.has_value());
    EXPECT_EQ(open.Requests()[0].find("Authorization"), std::string::npos);
}

TEST_F(EngineTest, AnAuthorityThatAsksForAPasswordGetsTheSettings) {
    m_settings.user = "stamper";
    m_settings.password = "secret";
    const LoopbackServer server(
        AskingForPassword("\r\nAuthorization: Basic " + Base64Encode("stamper:secret") + "\r\n"));
    EXPECT_TRUE(Ask(server).response.has_value());
}

TEST_F(EngineTest, ARefusedPasswordIsToldWithoutThePassword) {
    EXPECT_EQ(FaultOf(AskingForPassword("never")), "HTTP status 401");
    m_settings.user = "stamper";
    m_settings.password = "secret";
    EXPECT_EQ(FaultOf(AskingForPassword("never")), "HTTP status 401");
}

TEST_F(EngineTest, APasswordIsNotGivenToAnotherHostByARedirect) {
    m_settings.user = "stamper";
    m_settings.password = "secret";
    const LoopbackServer other(AskingForPassword("never"));
    EXPECT_EQ(FaultOf(Redirecting("302 Found", other.Url("/tsa"))), "HTTP status 401");
    for (const std::string& request : other.Requests()) {
        EXPECT_EQ(request.find("Authorization"), std::string::npos) << request;
    }
}

TEST_F(EngineTest, WhatAnAddressHidesIsNotTold) {
    std::string url = LoopbackServer::DeadUrl("/tsa?key=secret#secret");
    url.insert(url.find("//") + 2, "stamper:secret@");
    const EngineOutcome outcome = Ask({url});
    ASSERT_EQ(outcome.records.size(), 1u);
    EXPECT_THAT(outcome.records[0].text, StartsWith("http://127.0.0.1:"));
    EXPECT_THAT(outcome.records[0].text, HasSubstr("/tsa: "));
    EXPECT_EQ(outcome.records[0].text.find("secret"), std::string::npos);
}

TEST_F(EngineTest, TheProxyOfTheSettingsComesBetween) {
    const LoopbackServer proxy(Honest);
    m_settings.proxy = proxy.Url("");
    EXPECT_TRUE(Ask({"http://tsa.invalid/tsa"}).response.has_value());
    ASSERT_EQ(proxy.Requests().size(), 1u);
    EXPECT_THAT(proxy.Requests()[0], StartsWith("POST http://tsa.invalid/tsa HTTP/1.1\r\n"));
}

TEST_F(EngineTest, WithoutOneTheProxyOfTheEnvironmentDoes) {
    const LoopbackServer proxy(Honest);
    SetVariable("http_proxy", proxy.Url(""));
    EXPECT_TRUE(Ask({"http://tsa.invalid/tsa"}).response.has_value());
    EXPECT_EQ(proxy.Requests().size(), 1u);
}

TEST_F(EngineTest, AuthoritiesAreAskedInTheirOrderUntilOneStamps) {
    const LoopbackServer broken([](const Request&) { return HttpReply("rubbish"); });
    const LoopbackServer honest(Honest);
    const LoopbackServer last(Honest);
    const std::string dead = LoopbackServer::DeadUrl("/1");
    const EngineOutcome outcome = Ask({dead, broken.Url("/2"), honest.Url("/3"), last.Url("/4")});
    EXPECT_TRUE(outcome.response.has_value());
    ASSERT_EQ(outcome.records.size(), 3u);
    EXPECT_THAT(outcome.records[0].text, StartsWith(dead + ": "));
    EXPECT_EQ(outcome.records[1].text, broken.Url("/2: the answer is no time-stamp response"));
    EXPECT_THAT(outcome.records[2].text, StartsWith(honest.Url("/3: granted, ")));
    EXPECT_TRUE(last.Requests().empty());
}

TEST_F(EngineTest, AServersTextStaysInOneShortRecord) {
    const std::string type = "a\x01" + std::string(3000, 'b');
    const std::string fault =
        FaultOf(LoopbackServer::Page("200 OK", "", "Content-Type: " + type + "\r\n"));
    EXPECT_THAT(fault, StartsWith("the answer is a b"));
    EXPECT_LT(fault.size(), 600u);
}

}  // namespace
