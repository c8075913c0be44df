// Downloads into a file.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "fakes/LibraryTest.h"
#include "fakes/OpenHandles.h"
#include "include/Util/httpUntil.h"
#include "support/LoopbackServer.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr int kCouldNotConnect = 7;
constexpr int kUnsupportedProtocol = 1;
constexpr int kWriteError = 23;

class DownloadTest : public LibraryTest {
protected:
    int Download(const std::string& url) { return CHttpUntil().DownloadFile(url, m_path); }
    // Nothing if there is no such file.
    std::optional<std::string> Content() const {
        std::ifstream file(m_path, std::ios::binary);
        if (!file) return std::nullopt;
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
    void Write(const std::string& content) const {
        std::ofstream(m_path, std::ios::binary) << content;
    }

    std::string m_path = m_prefix.Path() + "/target";
};

std::string List(const std::string&) { return LoopbackServer::Page("200 OK", "a list"); }

TEST_F(DownloadTest, TheBodyLandsInTheFileAsItCame) {
    const std::string body("bytes \0 and \r\n lines", 20);
    const LoopbackServer server(
        [&](const std::string&) { return LoopbackServer::Page("200 OK", body); });
    EXPECT_EQ(Download(server.Url("/ca1.crl")), 0);
    EXPECT_EQ(Content(), body);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(DownloadTest, OneRequestIsMadeThatBearsNoUserAgent) {
    const LoopbackServer server(List);
    EXPECT_EQ(Download(server.Url("/ca1.crl?x=1")), 0);
    EXPECT_THAT(server.Requests(), ElementsAre(AllOf(StartsWith("GET /ca1.crl?x=1 HTTP/1.1\r\n"),
                                                     Not(HasSubstr("User-Agent")))));
}

TEST_F(DownloadTest, AServerThatGoesOnBeyond64MiBIsCutOff) {
    constexpr std::size_t kLargest = 64 * 1024 * 1024;
    const LoopbackServer server([](const std::string& request) {
        const std::size_t more = request.find("/more") != std::string::npos ? 1 : 0;
        return LoopbackServer::Page("200 OK", std::string(kLargest + more, 'x'));
    });
    EXPECT_EQ(Download(server.Url("/as-many")), 0);
    EXPECT_EQ(std::filesystem::file_size(m_path), kLargest);
    EXPECT_EQ(Download(server.Url("/more")), kWriteError);
    EXPECT_LE(std::filesystem::file_size(m_path), kLargest);
}

TEST_F(DownloadTest, ASecondDownloadReplacesTheFirst) {
    const LoopbackServer server(List);
    Write("what stood there was longer");
    EXPECT_EQ(Download(server.Url("/ca1.crl")), 0);
    EXPECT_EQ(Content(), "a list");
}

TEST_F(DownloadTest, TheServers404PageIsTheFilesContentAndTheResultIsZero) {
    const LoopbackServer server(
        [](const std::string&) { return LoopbackServer::Page("404 Not Found", "no such list"); });
    EXPECT_EQ(Download(server.Url("/ca1.crl")), 0);
    EXPECT_EQ(Content(), "no such list");
}

TEST_F(DownloadTest, ARedirectIsFollowed) {
    const LoopbackServer server([](const std::string& path) {
        return path == "/list"
                   ? LoopbackServer::Page("200 OK", "moved list")
                   : LoopbackServer::Page("302 Found", "elsewhere", "Location: /list\r\n");
    });
    EXPECT_EQ(Download(server.Url("/ca1.crl")), 0);
    EXPECT_EQ(Content(), "moved list");
}

TEST_F(DownloadTest, ARedirectToHttpsWithAnUntrustedCertificateSucceeds) {
    const LoopbackServer secure(List, LoopbackServer::Scheme::Https);
    const LoopbackServer plain([&](const std::string&) {
        return LoopbackServer::Page("301 Moved Permanently", "",
                                    "Location: " + secure.Url("/list") + "\r\n");
    });
    EXPECT_EQ(Download(plain.Url("/ca1.crl")), 0);
    EXPECT_EQ(Content(), "a list");
}

TEST_F(DownloadTest, AnUnreachableHostGivesTheCodeForItAndAnEmptyFile) {
    Write("the old list");
    EXPECT_EQ(Download(LoopbackServer::DeadUrl("/ca1.crl")), kCouldNotConnect);
    EXPECT_EQ(Content(), "");
    EXPECT_THAT(Log(), ElementsAre("3 curl_easy_perform failed, 7"));
}

TEST_F(DownloadTest, ABodyThatEndsTooEarlyLeavesWhatHadArrived) {
    const LoopbackServer server([](const std::string&) {
        return std::string("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf a list");
    });
    EXPECT_NE(Download(server.Url("/ca1.crl")), 0);
    EXPECT_EQ(Content(), "half a list");
}

TEST_F(DownloadTest, AnAddressThatCurlDoesNotKnowFailsInTheTransfer) {
    EXPECT_EQ(Download("gopher2://192.0.2.7/ca1.crl"), kUnsupportedProtocol);
    EXPECT_EQ(Content(), "");
}

TEST_F(DownloadTest, APathInAFolderThatIsNotThereGivesZeroAndNoFileAndAsksNobody) {
    const LoopbackServer server(List);
    m_path = m_prefix.Path() + "/nowhere/target";
    EXPECT_EQ(Download(server.Url("/ca1.crl")), 0);
    EXPECT_EQ(Content(), std::nullopt);
    EXPECT_THAT(server.Requests(), IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(DownloadTest, NoDescriptorStaysOpenBehindAFailure) {
    const std::string url = LoopbackServer::DeadUrl("/ca1.crl");
    EXPECT_EQ(Download(url), kCouldNotConnect);
    const int before = CountOpenHandles();
    ASSERT_GT(before, 0);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(Download(url), kCouldNotConnect);
    EXPECT_EQ(CountOpenHandles(), before);
}

}  // namespace
