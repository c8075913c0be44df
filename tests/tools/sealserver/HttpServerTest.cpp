// The server on the loopback address, asked by a client of its own.

#include "tools/sealserver/HttpServer.h"

#include <gmock/gmock.h>
#include <httplib.h>

#include <fstream>
#include <thread>

#include "foundation/Text.h"
#include "support/Program.h"
#include "tests/tools/sealserver/RawClient.h"
#include "tests/tools/sealserver/RunningServer.h"
#include "tests/tools/sealserver/StoreFixture.h"
#include "tools/sealserver/Password.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr char kHello[] = "<ROOT>\r\n<REQUESTTYPE>Hello</REQUESTTYPE>\r\n</ROOT>\r\n";
constexpr char kHelloAnswer[] = "<ROOT>\r\n<STATUSCODE>200</STATUSCODE>\r\n</ROOT>\r\n";

class HttpServerTest : public StoreFixture {
protected:
    std::string LogPath() const { return m_folder.Below("access.log"); }
    std::string Log() const { return ReadFileToString(LogPath()); }
    httplib::Result PostHello(httplib::Headers headers, const std::string& body = kHello) {
        headers.emplace("EncryptType", "0");
        headers.emplace("RequestContent", "XML");
        return m_client.Post(kServicePath, headers, body, "application/octet-stream");
    }

    RunningServer m_running{{}, m_store, LogPath()};
    httplib::Client m_client{m_running.Address()};
};

TEST_F(HttpServerTest, AServiceRequestIsAnsweredInUtf8) {
    const auto answer = PostHello({});
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(answer->get_header_value("Content-Type"), "text/xml; charset=utf-8");
    EXPECT_EQ(answer->body, kHelloAnswer);
    EXPECT_THAT(Log(), HasSubstr(" 127.0.0.1 POST /QelmServlet 200 47 Hello 200\n"));
}

TEST_F(HttpServerTest, TheAddressIsForPostsAlone) {
    const auto answer = m_client.Get(kServicePath);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 405);
    EXPECT_EQ(answer->get_header_value("Allow"), "POST");
    for (const auto& other : {m_client.Put("/login", "x", "text/plain"), m_client.Delete("/login"),
                              m_client.Options("/login"), m_client.Put(kServicePath)}) {
        ASSERT_TRUE(other);
        EXPECT_EQ(other->status, 405);
    }
}

TEST_F(HttpServerTest, HeaderFieldsAreNeeded) {
    const auto answer = m_client.Post(kServicePath, kHello, "text/xml");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 200);
    EXPECT_THAT(answer->body, HasSubstr("<STATUSCODE>400</STATUSCODE>"));
}

TEST_F(HttpServerTest, AnAnswerOtherThanXmlIsNeededNowhere) {
    const auto answer = PostHello({}, "no XML");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 200);
    EXPECT_THAT(answer->body, StartsWith("<ROOT>\r\n<STATUSCODE>400</STATUSCODE>\r\n<MESSAGE>"));
}

TEST_F(HttpServerTest, TooLargeABodyIsRefused) {
    const auto large = PostHello({}, std::string(100'000, ' '));
    ASSERT_TRUE(large);
    EXPECT_THAT(large->body, HasSubstr("<STATUSCODE>413</STATUSCODE>"));
    const auto huge = PostHello({}, std::string(kMaxBodyBytes + 1, ' '));
    ASSERT_TRUE(huge);
    EXPECT_EQ(huge->status, 413);
    EXPECT_EQ(PostHello({})->body, kHelloAnswer);
}

TEST_F(HttpServerTest, AFormThatCannotBeTakenInIsAnsweredByAPageThatSaysWhy) {
    const auto tooLarge =
        m_client.Post("/certificates/1/seals", std::string(kMaxBodyBytes + 1, ' '), "text/plain");
    ASSERT_TRUE(tooLarge);
    EXPECT_EQ(tooLarge->status, 413);
    EXPECT_EQ(tooLarge->get_header_value("Content-Type"), "text/html; charset=utf-8");
    EXPECT_EQ(tooLarge->get_header_value("Cache-Control"), "no-store");
    EXPECT_THAT(tooLarge->body, HasSubstr("role=\"alert\">This is too large: a file may have 8 "));
    EXPECT_THAT(Log(), HasSubstr(" POST /certificates/1/seals 413 "));
    const auto broken =
        m_client.Post("/certificates", "no parts", "multipart/form-data; boundary=b");
    ASSERT_TRUE(broken);
    EXPECT_EQ(broken->status, 400);
    EXPECT_THAT(broken->body, HasSubstr("role=\"alert\">The form can&#39;t be read."));
    const auto clients = PostHello({}, std::string(kMaxBodyBytes + 1, ' '));
    ASSERT_TRUE(clients);
    EXPECT_EQ(clients->status, 413);
    EXPECT_EQ(clients->body, "");
}

TEST_F(HttpServerTest, WhatIsNoFormIsNotRefusedAsOne) {
    for (const char* const line : {"BREW /login HTTP/1.1", "/login", "GET /login HTTP/9.9"}) {
        RawClient client(m_running.Address());
        client.Send(std::string(line) + "\r\nHost: localhost\r\n\r\n");
        const std::string answer = client.Receive();
        EXPECT_THAT(answer, StartsWith("HTTP/1.1 400 ")) << line;
        EXPECT_TRUE(answer.ends_with("\r\n\r\n")) << answer;
    }
}

TEST_F(HttpServerTest, ABodyWithoutItsLengthOrCompressedIsRefused) {
    EXPECT_EQ(PostHello({{"Content-Encoding", "gzip"}})->status, 415);
    const auto chunked = m_client.Post(
        kServicePath, httplib::Headers{},
        [](std::size_t, httplib::DataSink& sink) {
            sink.write(kHello, sizeof kHello - 1);
            sink.done();
            return true;
        },
        "text/xml");
    // What it still sends when the connection ends may cost it the answer.
    if (chunked) {
        EXPECT_EQ(chunked->status, 411);
    }
    EXPECT_THAT(Log(), HasSubstr(" POST /QelmServlet 411 "));
}

TEST_F(HttpServerTest, ATargetMayHave1024BytesAndNoMore) {
    EXPECT_EQ(m_client.Get("/" + std::string(1023, 'x'))->status, 303);
    for (const std::size_t length : {1024u, 8'000u, 9'000u}) {
        const std::string target = "/" + std::string(length, 'x');
        for (const auto& answer : {m_client.Get(target), m_client.Head(target),
                                   m_client.Post(target, "x", "text/plain")}) {
            ASSERT_TRUE(answer) << length;
            EXPECT_EQ(answer->status, 414);
        }
    }
    EXPECT_THAT(Log(), HasSubstr(" GET /xxxx"));
    EXPECT_EQ(PostHello({})->body, kHelloAnswer);
}

TEST_F(HttpServerTest, NoPartIsGivenWhateverTheMethod) {
    std::string many = "bytes=0-0";
    while (many.size() < 8'000) many += ",0-0";
    for (const std::string& range : {std::string("bytes=0-0"), many, "bytes=" + many}) {
        const httplib::Headers headers = {{"Range", range}};
        for (const auto& answer :
             {m_client.Get("/style.css", headers), m_client.Head("/style.css", headers),
              m_client.Post("/login", headers, "x", "text/plain"),
              m_client.Options("/login", headers), PostHello(headers)}) {
            ASSERT_TRUE(answer);
            EXPECT_EQ(answer->status, 416);
            EXPECT_EQ(answer->body, "");
        }
    }
    EXPECT_THAT(Log(), HasSubstr(" GET /style.css 416 0\n"));
    EXPECT_EQ(PostHello({})->body, kHelloAnswer);
}

TEST_F(HttpServerTest, OtherNamesOfThisHostAreRefused) {
    const auto evil = PostHello({{"Host", "evil.example:80"}});
    ASSERT_TRUE(evil);
    EXPECT_EQ(evil->status, 403);
    EXPECT_EQ(PostHello({{"Host", "localhost:1"}})->status, 200);
    EXPECT_EQ(PostHello({{"Host", "LocalHost:1"}})->status, 200);
    EXPECT_EQ(PostHello({{"Host", "[::1]:1"}})->status, 200);
    EXPECT_EQ(PostHello({{"Host", ""}})->status, 403);
    HttpSettings named;
    named.names = {"seals.EXAMPLE"};
    const RunningServer running(named, m_store, "");
    httplib::Client client(running.Address());
    EXPECT_EQ(client.Get("/login", {{"Host", "seals.example"}})->status, 200);
    EXPECT_EQ(client.Get("/login", {{"Host", "Seals.Example"}})->status, 200);
    EXPECT_EQ(client.Get("/login", {{"Host", "evil.example"}})->status, 403);
}

TEST_F(HttpServerTest, FormsOfAnotherSiteAreRefusedAndCountAsNoAttempt) {
    m_store.SetSetting("password", HashPassword("correct horse"));
    const std::string host = m_running.Address().substr(std::string("http://").size());
    const auto login = [&](const httplib::Headers& headers, const std::string& password) {
        const auto answer =
            m_client.Post("/login", headers, httplib::Params{{"password", password}});
        return answer ? answer->status : 0;
    };
    for (const httplib::Headers& elsewhere : std::initializer_list<httplib::Headers>{
             {{"Sec-Fetch-Site", "cross-site"}, {"Origin", "http://" + host}},
             {{"Sec-Fetch-Site", "same-site"}},
             {{"Origin", "http://evil.example"}},
             {{"Origin", "http://" + host + "0"}},
             {{"Origin", "http://127.0.0.1"}},
             {{"Origin", "null"}}})
        EXPECT_EQ(login(elsewhere, "wrong"), 403);
    EXPECT_EQ(Log().find("login failed"), std::string::npos);
    EXPECT_EQ(
        login({{"Sec-Fetch-Site", "same-origin"}, {"Origin", "https://" + host}}, "correct horse"),
        303);
    EXPECT_EQ(login({{"Sec-Fetch-Site", "none"}}, "correct horse"), 303);
    EXPECT_EQ(
        PostHello({{"Origin", "http://evil.example"}, {"Sec-Fetch-Site", "cross-site"}})->body,
        kHelloAnswer);
    EXPECT_EQ(m_client.Get("/login", {{"Sec-Fetch-Site", "cross-site"}})->status, 200);
}

TEST_F(HttpServerTest, PagesComeWithAPolicy) {
    const auto answer = m_client.Get("/login");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 200);
    EXPECT_THAT(answer->get_header_value("Content-Security-Policy"),
                StartsWith("default-src 'none'; "));
    EXPECT_EQ(answer->get_header_value("X-Content-Type-Options"), "nosniff");
    EXPECT_EQ(answer->get_header_value("Cache-Control"), "no-store");
    EXPECT_EQ(m_client.Head("/login")->status, 200);
}

TEST_F(HttpServerTest, AFormWithAFileGoesThrough) {
    m_store.SetSetting("password", HashPassword("correct horse"));
    const auto login = m_client.Post("/login", httplib::Params{{"password", "correct horse"}});
    ASSERT_TRUE(login);
    ASSERT_EQ(login->status, 303);
    const std::string cookie = login->get_header_value("Set-Cookie");
    const httplib::Headers headers = {{"Cookie", "other=1; " + cookie.substr(0, cookie.find(';'))}};
    const auto page = m_client.Get("/certificates", headers);
    ASSERT_TRUE(page);
    const std::string field = "name=\"token\" value=\"";
    const std::string token = page->body.substr(page->body.find(field) + field.size(), 64);
    const auto added = m_client.Post(
        "/certificates", headers,
        httplib::MultipartFormDataItems{{"token", token, "", ""},
                                        {"file", Signer().certificate, "a.cer", "application/x"},
                                        {"serial", "", "", ""},
                                        {"name", "", "", ""}});
    ASSERT_TRUE(added);
    EXPECT_EQ(added->get_header_value("Location"), "/certificates/1?done=added");
    EXPECT_TRUE(m_store.FindCertificate(kSignerSerial, kSignerName));
    EXPECT_THAT(Log(), HasSubstr(" POST /login 303 0 login\n"));
    EXPECT_THAT(Log(), HasSubstr(" POST /certificates 303 0 certificate added\n"));
    EXPECT_EQ(Log().find("horse"), std::string::npos);
    EXPECT_EQ(Log().find(token), std::string::npos);
}

TEST_F(HttpServerTest, AFailureOfTheDatabaseTellsNothing) {
    m_store.SetSetting("password", HashPassword("correct horse"));
    Database(Path()).Execute("DROP TABLE settings");
    const auto failed = m_client.Post("/login", httplib::Params{{"password", "x"}});
    ASSERT_TRUE(failed);
    EXPECT_EQ(failed->status, 500);
    EXPECT_EQ(failed->body, "The server failed.\n");
}

TEST_F(HttpServerTest, ManyClientsAreAnsweredAtATime) {
    std::vector<std::thread> clients;
    std::atomic<int> answered = 0;
    for (int i = 0; i < 8; ++i) {
        clients.emplace_back([&] {
            httplib::Client client(m_running.Address());
            for (int j = 0; j < 10; ++j) {
                const auto answer = client.Post(
                    kServicePath, {{"EncryptType", "0"}, {"RequestContent", "XML"}},
                    "<ROOT><REQUESTTYPE>GetSealList</REQUESTTYPE><SN>1</SN><DN/></ROOT>", "");
                if (answer && answer->body.find("<COUNT>0</COUNT>") != std::string::npos)
                    ++answered;
            }
        });
    }
    for (std::thread& client : clients) client.join();
    EXPECT_EQ(answered, 80);
}

TEST_F(HttpServerTest, APortInUseAndAnAddressOfOthersAreTold) {
    const std::string address = m_running.Address();
    HttpSettings same;
    same.port = std::stoi(address.substr(address.rfind(':') + 1));
    EXPECT_THROW(RunningServer(same, m_store, ""), std::runtime_error);
    HttpSettings foreign;
    foreign.address = "192.0.2.1";
    EXPECT_THROW(RunningServer(foreign, m_store, ""), std::runtime_error);
}

TEST_F(HttpServerTest, OneThatServesNoMoreIsStoppedAlready) {
    const std::string path = m_folder.Below("second.log");
    AccessLog log(path);
    SealService service(m_store);
    AdminSite site(
        m_store, [] { return std::time_t{0}; }, false);
    HttpServer server({}, service, site, log);
    std::thread serving([&server] { server.Serve(); });
    server.Stop();
    serving.join();
    server.Stop();
    // Another program may have the port by now.
    httplib::Client(server.Url("")).Get("/login");
    EXPECT_EQ(ReadFileToString(path), "");
}

// Its own certificate is the only one that its client trusts. Built by MinGW the client knows no
// alternative name that is an address, and looks at the common name.
class TlsServerTest : public StoreFixture {
protected:
    TlsServerTest() {
        const ProgramOutcome made =
            RunProgram({"/usr/bin/openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes",
                        "-days", "2", "-subj", "/CN=127.0.0.1", "-addext",
                        "subjectAltName=IP:127.0.0.1", "-keyout", Key(), "-out", Certificate()});
        EXPECT_EQ(made.exitCode, 0) << made.error;
    }
    std::string Certificate() const { return m_folder.Below("server.pem"); }
    std::string Key() const { return m_folder.Below("server.key"); }
};

TEST_F(TlsServerTest, WithACertificateItIsHttps) {
    const RunningServer running({"127.0.0.1", 0, Certificate(), Key(), {}}, m_store, "");
    EXPECT_THAT(running.Address(), StartsWith("https://127.0.0.1:"));
    httplib::Client client(running.Address());
    client.set_ca_cert_path(Certificate().c_str());
    const auto answer =
        client.Post(kServicePath, {{"EncryptType", "0"}, {"RequestContent", "XML"}}, kHello, "");
    ASSERT_TRUE(answer) << to_string(answer.error());
    EXPECT_EQ(answer->body, kHelloAnswer);
}

TEST_F(TlsServerTest, AnUnfitCertificateIsTold) {
    std::ofstream(m_folder.Below("bad.pem"), std::ios::binary) << "text";
    EXPECT_THROW(RunningServer({"127.0.0.1", 0, m_folder.Below("bad.pem"), Key(), {}}, m_store, ""),
                 std::runtime_error);
    EXPECT_THROW(
        RunningServer({"127.0.0.1", 0, Certificate(), m_folder.Below("none"), {}}, m_store, ""),
        std::runtime_error);
}

TEST(LoopbackAddressTest, IsToldByItsText) {
    for (const char* const ours : {"127.0.0.1", "127.1.2.3", "::1", "localhost"})
        EXPECT_TRUE(IsLoopback(ours)) << ours;
    for (const char* const other :
         {"0.0.0.0", "::", "192.0.2.1", "127.0.0.1.example", "", "128.0.0.1"})
        EXPECT_FALSE(IsLoopback(other)) << other;
}

}  // namespace
