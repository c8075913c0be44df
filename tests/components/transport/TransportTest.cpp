// The transport's file as the library calls it.

#include "platform/closed/Transport.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

#include "components/http/SealServiceSettings.h"
#include "components/transport/HandleTable.h"
#include "components/transport/TransportCodes.h"
#include "foundation/Registry.h"
#include "support/LoopbackServer.h"
#include "support/NoProxy.h"
#include "support/TemporaryPrefix.h"

namespace {

using testing::HasSubstr;
using Request = LoopbackServer::Request;

class TransportTest : public testing::Test {
protected:
    TransportTest() {
        EXPECT_EQ(dwnt_context_init(0, &m_context), kTransportOk);
        EXPECT_EQ(dwnt_http_request_create(m_context, &m_request), kTransportOk);
    }

    static int SetServer(void* context, const std::string& address) {
        const int set = dwnt_config_set(context, "ServerHost", address.c_str());
        const int end = dwnt_config_end(context);
        return set != kTransportOk ? set : end;
    }
    static int SetBody(void* request, const std::string& body) {
        return dwnt_http_body_set(request, reinterpret_cast<const unsigned char*>(body.data()),
                                  static_cast<int>(body.size()), 1);
    }
    static int GetAnswer(void* request, std::string& answer) {
        unsigned char* data = nullptr;
        int length = 0;
        const int code = dwnt_http_response_data_get(request, &data, &length);
        answer.assign(reinterpret_cast<const char*>(data), static_cast<std::size_t>(length));
        return code;
    }
    // A whole exchange, with handles of its own.
    static int Exchange(const std::string& address, const std::string& body, std::string& answer) {
        void* context = nullptr;
        void* request = nullptr;
        EXPECT_EQ(dwnt_context_init(0, &context), kTransportOk);
        if (const int code = SetServer(context, address)) return code;
        EXPECT_EQ(dwnt_http_request_create(context, &request), kTransportOk);
        EXPECT_EQ(dwnt_http_head_set(request, "EncryptType", "0"), kTransportOk);
        EXPECT_EQ(dwnt_http_head_set(request, "RequestContent", "XML"), kTransportOk);
        EXPECT_EQ(dwnt_http_handler(request, 2), kTransportOk);
        EXPECT_EQ(SetBody(request, body), kTransportOk);
        if (const int code = dwnt_http_processEx(context, 0, request)) return code;
        return GetAnswer(request, answer);
    }
    static std::string Echo(const Request& request) {
        return LoopbackServer::Page("200 OK", request.body);
    }
    static void SetNumber(const char* name, unsigned int number) {
        const CRegistry key(platform::CreateRegistryKey(
            platform::RegistryRootKey(platform::RegistryRoot::LocalMachine),
            kSealServiceSettingsKey));
        ASSERT_TRUE(platform::SetRegistryNumber(key.key, name, number));
    }

    TemporaryPrefix m_prefix;
    NoProxy m_noProxy;
    void* m_context = nullptr;
    void* m_request = nullptr;
};

TEST_F(TransportTest, AnExchangeSendsBothHeadersAndGivesTheAnswer) {
    const LoopbackServer server(Echo);
    std::string answer;
    EXPECT_EQ(Exchange(server.Url("/QelmServlet"), std::string("<\0>", 3), answer), kTransportOk);
    EXPECT_EQ(answer, std::string("<\0>", 3));
    ASSERT_EQ(server.Requests().size(), 1u);
    EXPECT_THAT(server.Requests()[0], HasSubstr("\r\nEncryptType: 0\r\n"));
    EXPECT_THAT(server.Requests()[0], HasSubstr("\r\nRequestContent: XML\r\n"));
    EXPECT_THAT(server.Requests()[0], HasSubstr("\r\nContent-Type: text/xml\r\n"));
}

TEST_F(TransportTest, AnEmptyAnswerIsNotNull) {
    const LoopbackServer server(Echo);
    ASSERT_EQ(SetServer(m_context, server.Url("/")), kTransportOk);
    ASSERT_EQ(dwnt_http_processEx(m_context, 0, m_request), kTransportOk);
    unsigned char* data = nullptr;
    int length = -1;
    EXPECT_EQ(dwnt_http_response_data_get(m_request, &data, &length), kTransportOk);
    EXPECT_NE(data, nullptr);
    EXPECT_EQ(length, 0);
}

TEST_F(TransportTest, AnAnswerCanBeReadAgainUntilItsReaderBeginsAnew) {
    const LoopbackServer server(
        [](const Request&) { return LoopbackServer::Page("200 OK", "<a/>"); });
    ASSERT_EQ(SetServer(m_context, server.Url("/")), kTransportOk);
    ASSERT_EQ(dwnt_http_processEx(m_context, 0, m_request), kTransportOk);
    std::string answer;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(GetAnswer(m_request, answer), kTransportOk);
        EXPECT_EQ(answer, "<a/>");
    }
    void* next = nullptr;
    ASSERT_EQ(dwnt_context_init(0, &next), kTransportOk);
    EXPECT_EQ(GetAnswer(m_request, answer), kTransportStaleHandle);
    EXPECT_EQ(dwnt_config_end(m_context), kTransportStaleHandle);
}

TEST_F(TransportTest, ARequestIsSentOnce) {
    const LoopbackServer server(Echo);
    ASSERT_EQ(SetServer(m_context, server.Url("/")), kTransportOk);
    ASSERT_EQ(SetBody(m_request, "<a/>"), kTransportOk);
    EXPECT_EQ(dwnt_http_processEx(m_context, 0, m_request), kTransportOk);
    EXPECT_EQ(dwnt_http_processEx(m_context, 0, m_request), kTransportAlreadySent);
    EXPECT_EQ(SetBody(m_request, "<b/>"), kTransportAlreadySent);
    EXPECT_EQ(server.Requests().size(), 1u);
}

TEST_F(TransportTest, AContextSendsSeveralRequests) {
    const LoopbackServer server(Echo);
    void* second = nullptr;
    ASSERT_EQ(dwnt_http_request_create(m_context, &second), kTransportOk);
    ASSERT_EQ(SetServer(m_context, server.Url("/")), kTransportOk);
    ASSERT_EQ(SetBody(m_request, "<1/>"), kTransportOk);
    ASSERT_EQ(SetBody(second, "<2/>"), kTransportOk);
    ASSERT_EQ(dwnt_http_processEx(m_context, 0, second), kTransportOk);
    ASSERT_EQ(dwnt_http_processEx(m_context, 0, m_request), kTransportOk);
    std::string answer;
    EXPECT_EQ(GetAnswer(m_request, answer), kTransportOk);
    EXPECT_EQ(answer, "<1/>");
    EXPECT_EQ(GetAnswer(second, answer), kTransportOk);
    EXPECT_EQ(answer, "<2/>");
}

TEST_F(TransportTest, AFailedExchangeHasNoResponse) {
    ASSERT_EQ(SetServer(m_context, LoopbackServer::DeadUrl("/")), kTransportOk);
    unsigned char* data = reinterpret_cast<unsigned char*>(&m_context);
    int length = 3;
    EXPECT_EQ(dwnt_http_response_data_get(m_request, &data, &length), kTransportNoResponse);
    EXPECT_EQ(dwnt_http_processEx(m_context, 0, m_request), kTransportNoConnection);
    EXPECT_EQ(dwnt_http_response_data_get(m_request, &data, &length), kTransportNoResponse);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(length, 0);
}

TEST_F(TransportTest, AConfigurationNeedsAnAddressOfHttp) {
    EXPECT_EQ(dwnt_config_end(m_context), kTransportNoServer);
    EXPECT_EQ(SetServer(m_context, ""), kTransportNoServer);
    EXPECT_EQ(SetServer(m_context, "ftp://127.0.0.1/"), kTransportBadAddress);
    EXPECT_EQ(dwnt_http_processEx(m_context, 0, m_request), kTransportBadAddress);
    EXPECT_EQ(SetServer(m_context, "http://127.0.0.1/"), kTransportOk);
}

TEST_F(TransportTest, AFailedStepOfTheConfigurationFailsItsEnd) {
    EXPECT_EQ(dwnt_config_set(m_context, "Proxy", "x"), kTransportUnknownName);
    EXPECT_EQ(dwnt_config_set(m_context, nullptr, "x"), kTransportBadArgument);
    EXPECT_EQ(dwnt_config_set(m_context, "ServerHost", "http://127.0.0.1/"), kTransportOk);
    EXPECT_EQ(dwnt_config_end(m_context), kTransportUnknownName);
    EXPECT_EQ(dwnt_http_processEx(m_context, 0, m_request), kTransportUnknownName);
}

TEST_F(TransportTest, ARequestWithAFailedStepIsNotSent) {
    const LoopbackServer server(Echo);
    void* requests[3] = {};
    for (void*& request : requests)
        ASSERT_EQ(dwnt_http_request_create(m_context, &request), kTransportOk);
    ASSERT_EQ(SetServer(m_context, server.Url("/")), kTransportOk);
    EXPECT_EQ(dwnt_http_handler(requests[0], 1), kTransportNotSupported);
    EXPECT_EQ(dwnt_http_processEx(m_context, 0, requests[0]), kTransportNotSupported);
    EXPECT_EQ(dwnt_http_head_set(requests[1], "A", nullptr), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_processEx(m_context, 0, requests[1]), kTransportBadArgument);
    const unsigned char byte = 'x';
    EXPECT_EQ(dwnt_http_body_set(requests[2], &byte, (64 << 20) + 1, 1), kTransportTooLarge);
    EXPECT_EQ(dwnt_http_body_set(requests[2], &byte, 1, 1), kTransportOk);
    EXPECT_EQ(dwnt_http_processEx(m_context, 0, requests[2]), kTransportTooLarge);
    EXPECT_TRUE(server.Requests().empty());
}

TEST_F(TransportTest, ARequestOfAnotherContextIsRefused) {
    void* other = nullptr;
    ASSERT_EQ(dwnt_context_init(0, &other), kTransportOk);
    EXPECT_EQ(dwnt_http_processEx(other, 0, m_request), kTransportBadArgument);
}

TEST_F(TransportTest, WrongHandlesGiveACode) {
    int local = 0;
    for (void* const handle :
         {static_cast<void*>(nullptr), static_cast<void*>(&local), reinterpret_cast<void*>(-1)}) {
        void* request = nullptr;
        unsigned char* data = nullptr;
        int length = 0;
        EXPECT_EQ(dwnt_config_set(handle, "ServerHost", "x"), kTransportStaleHandle);
        EXPECT_EQ(dwnt_config_end(handle), kTransportStaleHandle);
        EXPECT_EQ(dwnt_http_request_create(handle, &request), kTransportStaleHandle);
        EXPECT_EQ(dwnt_http_head_set(handle, "A", "b"), kTransportStaleHandle);
        EXPECT_EQ(dwnt_http_handler(handle, 2), kTransportStaleHandle);
        EXPECT_EQ(dwnt_http_body_set(handle, nullptr, 0, 1), kTransportStaleHandle);
        EXPECT_EQ(dwnt_http_processEx(m_context, 0, handle), kTransportStaleHandle);
        EXPECT_EQ(dwnt_http_processEx(handle, 0, m_request), kTransportStaleHandle);
        EXPECT_EQ(dwnt_http_response_data_get(handle, &data, &length), kTransportStaleHandle);
    }
}

TEST_F(TransportTest, NullPointersAreTold) {
    unsigned char* data = nullptr;
    int length = 0;
    EXPECT_EQ(dwnt_context_init(0, nullptr), kTransportBadArgument);
    EXPECT_EQ(dwnt_config_set(m_context, "ServerHost", nullptr), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_request_create(m_context, nullptr), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_head_set(m_request, nullptr, "b"), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_body_set(m_request, nullptr, 1, 1), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_body_set(m_request, nullptr, -1, 1), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_response_data_get(m_request, nullptr, &length), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_response_data_get(m_request, &data, nullptr), kTransportBadArgument);
}

TEST_F(TransportTest, AContextThatManyNewerOnesHavePushedOutGivesACode) {
    void* context = nullptr;
    for (std::size_t i = 0; i < kMostContexts; ++i)
        ASSERT_EQ(dwnt_context_init(0, &context), kTransportOk);
    EXPECT_EQ(dwnt_config_end(m_context), kTransportStaleHandle);
    EXPECT_EQ(dwnt_http_processEx(m_context, 0, m_request), kTransportStaleHandle);
    EXPECT_EQ(dwnt_config_end(context), kTransportNoServer);
}

TEST_F(TransportTest, TheTimeOutOfTheStoreEndsAnExchange) {
    LoopbackServer server([](const Request&) { return std::string(); });
    server.EndConnections(LoopbackServer::Ending::ByPeer);
    SetNumber("Timeout", 1);
    std::string answer;
    EXPECT_EQ(Exchange(server.Url("/"), "<a/>", answer), kTransportTimeout);
}

TEST_F(TransportTest, TheSizeOfTheStoreLimitsAnAnswer) {
    const LoopbackServer server([](const Request&) {
        return LoopbackServer::Page("200 OK", std::string((1 << 20) + 1, 'x'));
    });
    std::string answer;
    EXPECT_EQ(Exchange(server.Url("/"), "", answer), kTransportOk);
    EXPECT_EQ(answer.size(), (1u << 20) + 1);
    SetNumber("LargestAnswer", 1);
    EXPECT_EQ(Exchange(server.Url("/"), "", answer), kTransportAnswerTooLarge);
}

TEST_F(TransportTest, AnAnswerThatWasSlowOutlivesTheContextsThatWereBegunMeanwhile) {
    const auto beginOthers = [](std::size_t count) {
        void* context = nullptr;
        for (std::size_t i = 0; i < count; ++i) dwnt_context_init(0, &context);
    };
    const LoopbackServer server([&](const Request&) {
        beginOthers(kMostContexts - 1);
        return LoopbackServer::Page("200 OK", "<slow/>");
    });
    ASSERT_EQ(SetServer(m_context, server.Url("/")), kTransportOk);
    ASSERT_EQ(dwnt_http_processEx(m_context, 0, m_request), kTransportOk);
    std::thread(beginOthers, kMostContexts / 2).join();
    unsigned char* data = nullptr;
    int length = 0;
    ASSERT_EQ(dwnt_http_response_data_get(m_request, &data, &length), kTransportOk);
    std::thread(beginOthers, kMostContexts - 1).join();
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(data), static_cast<std::size_t>(length)),
              "<slow/>");
}

// Both servers wait until both requests are there.
TEST_F(TransportTest, TwoExchangesRunAtATime) {
    std::atomic<int> arrived = 0;
    std::promise<void> bothCame;
    const std::shared_future<void> both = bothCame.get_future().share();
    const auto answer = [&](const Request& request) {
        if (++arrived == 2) bothCame.set_value();
        both.wait();
        return Echo(request);
    };
    const LoopbackServer first(answer);
    const LoopbackServer second(answer);
    const auto exchange = [](const LoopbackServer& server, const char* body) {
        return std::async(std::launch::async, [&server, body] {
            std::string answer;
            EXPECT_EQ(Exchange(server.Url("/"), body, answer), kTransportOk);
            return answer;
        });
    };
    auto one = exchange(first, "<1/>");
    auto two = exchange(second, "<2/>");
    EXPECT_EQ(one.get(), "<1/>");
    EXPECT_EQ(two.get(), "<2/>");
}

TEST_F(TransportTest, ManyThreadsGetTheirOwnAnswers) {
    const LoopbackServer server(Echo);
    std::vector<std::future<int>> threads;
    for (int i = 0; i < 8; ++i)
        threads.push_back(std::async(std::launch::async, [&server, i] {
            const std::string body(static_cast<std::size_t>(1'000 * (i + 1)),
                                   static_cast<char>('a' + i));
            int right = 0;
            for (int j = 0; j < 20; ++j) {
                std::string answer;
                right += Exchange(server.Url("/"), body, answer) == kTransportOk && answer == body;
            }
            return right;
        }));
    for (auto& thread : threads) EXPECT_EQ(thread.get(), 20);
}

TEST_F(TransportTest, AnAnswerOfAnotherThreadsStandsWhileOneBeginsAnew) {
    const LoopbackServer server(Echo);
    ASSERT_EQ(SetServer(m_context, server.Url("/")), kTransportOk);
    ASSERT_EQ(SetBody(m_request, "<mine/>"), kTransportOk);
    ASSERT_EQ(dwnt_http_processEx(m_context, 0, m_request), kTransportOk);
    unsigned char* data = nullptr;
    int length = 0;
    ASSERT_EQ(dwnt_http_response_data_get(m_request, &data, &length), kTransportOk);
    std::thread([&server] {
        std::string answer;
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(Exchange(server.Url("/"), "<other/>", answer), kTransportOk);
    }).join();
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(data), static_cast<std::size_t>(length)),
              "<mine/>");
}

}  // namespace
