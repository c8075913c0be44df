// Clients that are slow, endless or many.

#include <gmock/gmock.h>
#include <httplib.h>

#include <deque>
#include <thread>

#include "foundation/Text.h"
#include "support/Program.h"
#include "tests/tools/sealserver/RawClient.h"
#include "tests/tools/sealserver/RunningServer.h"
#include "tests/tools/sealserver/StoreFixture.h"
#include "tools/sealserver/RequestHead.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

// Never, as far as a test is concerned.
constexpr int kNeverMs = 600'000;
constexpr int kSoonMs = 50;

class ConnectionsTest : public StoreFixture {
protected:
    // Everything takes as long as it likes, unless a test says otherwise.
    ConnectionsTest() { m_settings.limits.connection = {kNeverMs, kNeverMs, kNeverMs, kNeverMs}; }

    RunningServer& Start() {
        m_running = std::make_unique<RunningServer>(m_settings, m_store, LogPath());
        return *m_running;
    }
    RawClient Connected() { return RawClient(m_running->Address()); }
    std::string AnswerTo(const std::string& request) {
        RawClient client = Connected();
        client.Send(request);
        return client.Receive();
    }
    std::string LogPath() const { return m_folder.Below("access.log"); }
    std::string Log() const { return ReadFileToString(LogPath()); }

    HttpSettings m_settings;
    std::unique_ptr<RunningServer> m_running;
};

TEST_F(ConnectionsTest, OneThatStaysSilentIsClosedWithoutAWord) {
    m_settings.limits.connection.silence = kSoonMs;
    Start();
    EXPECT_EQ(Connected().Receive(), "");
    EXPECT_EQ(Log(), "");
}

TEST_F(ConnectionsTest, AHeadHasToBeThereInTime) {
    m_settings.limits.connection.head = kSoonMs;
    Start();
    EXPECT_THAT(AnswerTo("GET /login HTTP/1.1\r\nHost: loc"), StartsWith("HTTP/1.1 408 "));
    EXPECT_THAT(Log(), HasSubstr(" 127.0.0.1 GET /login 408 0\n"));
}

TEST_F(ConnectionsTest, ABodyHasToBeThereInTime) {
    m_settings.limits.connection.whole = kSoonMs;
    Start();
    EXPECT_EQ(
        AnswerTo("POST /login HTTP/1.1\r\nHost: localhost\r\nContent-Length: 20\r\n\r\npassword"),
        "");
}

TEST_F(ConnectionsTest, AHandshakeHasToBeThereInTime) {
    const ProgramOutcome made = RunProgram(
        {"/usr/bin/openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
         "/CN=127.0.0.1", "-keyout", m_folder.Below("key"), "-out", m_folder.Below("certificate")});
    ASSERT_EQ(made.exitCode, 0) << made.error;
    m_settings.certificate = m_folder.Below("certificate");
    m_settings.key = m_folder.Below("key");
    m_settings.limits.connection.head = kSoonMs;
    Start();
    EXPECT_EQ(Connected().Receive(), "");
}

TEST_F(ConnectionsTest, AHeadWithoutAnEndIsRefused) {
    Start();
    EXPECT_THAT(AnswerTo(std::string(kMaxHeadBytes + 1, 'a')), StartsWith("HTTP/1.1 414 "));
    EXPECT_THAT(AnswerTo("GET /" + std::string(kMaxHeadBytes, 'a')), StartsWith("HTTP/1.1 414 "));
    std::string lines = "GET / HTTP/1.1\r\n";
    for (std::size_t i = 0; i < kMostHeadLines; ++i) lines += "a: b\r\n";
    EXPECT_THAT(AnswerTo(lines + "\r\n"), StartsWith("HTTP/1.1 431 "));
    EXPECT_THAT(Log(), HasSubstr(" 127.0.0.1 - - 414 0\n"));
    EXPECT_THAT(Log(), HasSubstr(" 127.0.0.1 GET / 431 0\n"));
}

TEST_F(ConnectionsTest, SlowOnesDoNotKeepOthersWaiting) {
    Start();
    std::deque<RawClient> slow;
    for (int i = 0; i < 16; ++i) slow.emplace_back(m_running->Address()).Send("GET ");
    httplib::Client client(m_running->Address());
    client.set_read_timeout(2);
    const auto answer = client.Get("/login");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 200);
}

TEST_F(ConnectionsTest, OneThatHasSentNothingKeepsNoServerFromItsEnd) {
    Start();
    RawClient silent = Connected();
    // Its turn comes behind the silent one's.
    EXPECT_THAT(AnswerTo("GET /login HTTP/1.1\r\nHost: localhost\r\n\r\n"),
                StartsWith("HTTP/1.1 200 "));
    std::thread end([this] { m_running.reset(); });
    EXPECT_EQ(silent.Receive(), "");
    { const RawClient gone(std::move(silent)); }
    end.join();
}

TEST_F(ConnectionsTest, OneTooManyIsClosedAtOnce) {
    m_settings.limits.threads = 1;
    m_settings.limits.waiting = 1;
    m_settings.limits.connection.lingering = 0;
    Start();
    RawClient served = Connected();
    served.Send(
        "POST /login HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1\r\n"
        "Expect: 100-continue\r\n\r\n");
    ASSERT_THAT(served.Receive("\r\n\r\n"), StartsWith("HTTP/1.1 100 "));
    RawClient waiting = Connected();
    EXPECT_EQ(Connected().Receive(), "");
    served.Send("x");
    EXPECT_THAT(served.Receive(), StartsWith("HTTP/1.1 403 "));
    waiting.Send("GET /login HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_THAT(waiting.Receive(), StartsWith("HTTP/1.1 200 "));
}

TEST_F(ConnectionsTest, AnAnswerReachesWhoIsStillSending) {
    Start();
    const std::string answer =
        AnswerTo("POST /login HTTP/1.1\r\nHost: elsewhere\r\nContent-Length: 4000000\r\n\r\n" +
                 std::string(4'000'000, 'x'));
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 403 "));
    EXPECT_THAT(answer, HasSubstr("This host is known by another name."));
}

// A line of it goes through an expression that recurses for each character, for blanks the deepest.
TEST_F(ConnectionsTest, TheLongestHeadOfAPartIsSurvived) {
    Start();
    for (const std::size_t length : {1'000u, 4'000u, 6'000u, 8'000u, 12'000u}) {
        const std::string body = "--b\r\na: b\r\nContent-Disposition: form-data; name=\"n\";" +
                                 std::string(length, ' ') + "filename=\"f\"\r\n\r\nx\r\n--b--\r\n";
        const std::string answer = AnswerTo(
            "POST /login HTTP/1.1\r\nHost: localhost\r\nContent-Type: multipart/form-data; "
            "boundary=b\r\nContent-Length: " +
            std::to_string(body.size()) + "\r\n\r\n" + body);
        EXPECT_THAT(answer, StartsWith("HTTP/1.1 4")) << length;
    }
    EXPECT_THAT(AnswerTo("GET /login HTTP/1.1\r\nHost: localhost\r\n\r\n"),
                StartsWith("HTTP/1.1 200 "));
}

}  // namespace
