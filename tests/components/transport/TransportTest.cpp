#include "platform/closed/Transport.h"

#include <gtest/gtest.h>

#include "components/transport/TransportCodes.h"

namespace {

class TransportTest : public testing::Test {
protected:
    TransportTest() {
        EXPECT_EQ(dwnt_context_init(0, &m_context), kTransportOk);
        EXPECT_EQ(dwnt_http_request_create(m_context, &m_request), kTransportOk);
    }

    void* m_context = nullptr;
    void* m_request = nullptr;
};

TEST_F(TransportTest, ARequestIsPutTogetherStepByStepAndCantBeSentYet) {
    const unsigned char body[] = {'<', 0, '>'};
    EXPECT_EQ(dwnt_config_set(m_context, "ServerHost", "http://127.0.0.1/"), kTransportOk);
    EXPECT_EQ(dwnt_config_end(m_context), kTransportOk);
    EXPECT_EQ(dwnt_http_head_set(m_request, "Content-Type", "text/xml"), kTransportOk);
    EXPECT_EQ(dwnt_http_handler(m_request, 2), kTransportOk);
    EXPECT_EQ(dwnt_http_body_set(m_request, body, sizeof body, 1), kTransportOk);
    EXPECT_EQ(dwnt_http_processEx(m_context, 0, m_request), kTransportNotAvailable);
    unsigned char* data = const_cast<unsigned char*>(body);
    int length = 3;
    EXPECT_EQ(dwnt_http_response_data_get(m_request, &data, &length), kTransportNoResponse);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(length, 0);
}

TEST_F(TransportTest, AConfigurationNeedsAnAddress) {
    EXPECT_EQ(dwnt_config_end(m_context), kTransportNoServer);
    EXPECT_EQ(dwnt_config_set(m_context, "ServerHost", ""), kTransportOk);
    EXPECT_EQ(dwnt_config_end(m_context), kTransportNoServer);
    EXPECT_EQ(dwnt_config_set(m_context, "Proxy", "x"), kTransportUnknownName);
}

TEST_F(TransportTest, OtherMethodsAreNotSupported) {
    EXPECT_EQ(dwnt_http_handler(m_request, 1), kTransportNotSupported);
}

TEST_F(TransportTest, ABodyHasALimit) {
    const unsigned char byte = 'x';
    EXPECT_EQ(dwnt_http_body_set(m_request, &byte, (64 << 20) + 1, 1), kTransportTooLarge);
    EXPECT_EQ(dwnt_http_body_set(m_request, nullptr, 0, 1), kTransportOk);
}

TEST_F(TransportTest, ARequestOfAnotherContextIsRefused) {
    void* other = nullptr;
    ASSERT_EQ(dwnt_context_init(0, &other), kTransportOk);
    EXPECT_EQ(dwnt_http_processEx(other, 0, m_request), kTransportBadArgument);
}

TEST_F(TransportTest, NullPointersAreTold) {
    unsigned char* data = nullptr;
    int length = 0;
    EXPECT_EQ(dwnt_context_init(0, nullptr), kTransportBadArgument);
    EXPECT_EQ(dwnt_config_set(nullptr, "ServerHost", "x"), kTransportBadArgument);
    EXPECT_EQ(dwnt_config_set(m_context, nullptr, "x"), kTransportBadArgument);
    EXPECT_EQ(dwnt_config_end(nullptr), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_request_create(m_context, nullptr), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_head_set(m_request, "A", nullptr), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_handler(nullptr, 2), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_body_set(m_request, nullptr, 1, 1), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_body_set(m_request, nullptr, -1, 1), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_processEx(m_context, 0, nullptr), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_response_data_get(m_request, &data, nullptr), kTransportBadArgument);
    EXPECT_EQ(dwnt_http_response_data_get(nullptr, &data, &length), kTransportBadArgument);
}

}  // namespace
