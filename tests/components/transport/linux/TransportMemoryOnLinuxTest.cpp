// What this process's memory does while exchange after exchange leaves its handles.

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "platform/closed/Transport.h"
#include "support/LoopbackServer.h"
#include "support/NoProxy.h"
#include "support/TemporaryPrefix.h"

// AddressSanitizer keeps freed memory for a while, which would look like growth.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
    return "quarantine_size_mb=1:thread_local_quarantine_size_kb=64";
}

namespace {

constexpr int kAnswerSize = 16 << 10;

long ResidentBytes() {
    long whole = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

class TransportMemoryOnLinux : public testing::Test {
protected:
    // As the library does it; the handles are nobody's afterwards.
    static int Exchange(const std::string& address, int& length) {
        void* context = nullptr;
        void* request = nullptr;
        unsigned char* data = nullptr;
        const unsigned char body[] = "<Request/>";
        if (const int code = dwnt_context_init(0, &context)) return code;
        dwnt_config_set(context, "ServerHost", address.c_str());
        if (const int code = dwnt_config_end(context)) return code;
        if (const int code = dwnt_http_request_create(context, &request)) return code;
        dwnt_http_head_set(request, "EncryptType", "0");
        dwnt_http_head_set(request, "RequestContent", "XML");
        dwnt_http_handler(request, 2);
        dwnt_http_body_set(request, body, sizeof body - 1, 1);
        if (const int code = dwnt_http_processEx(context, 0, request)) return code;
        return dwnt_http_response_data_get(request, &data, &length);
    }

    TemporaryPrefix m_prefix;
    NoProxy m_noProxy;
};

// Kept, the answers would be 32 MiB.
TEST_F(TransportMemoryOnLinux, TwoThousandAnswersLeaveNoMoreBehindThanTwoHundred) {
    const LoopbackServer server([](const LoopbackServer::Request&) {
        return LoopbackServer::Page("200 OK", std::string(kAnswerSize, 'x'));
    });
    const std::string address = server.Url("/QelmServlet");
    const auto exchange = [&](int times) {
        for (int i = 0; i < times; ++i) {
            int length = 0;
            ASSERT_EQ(Exchange(address, length), 0);
            ASSERT_EQ(length, kAnswerSize);
        }
    };
    exchange(200);
    const long before = ResidentBytes();
    exchange(2'000);
    EXPECT_LT(ResidentBytes() - before, 8 << 20);
}

// Nothing is sent, so that the handles alone are tried.
TEST_F(TransportMemoryOnLinux, AHundredThousandRefusedAddressesLeaveNoMoreThanAThousand) {
    int length = 0;
    const std::string address = "ftp://" + std::string(1'000, 'x') + "/";
    const auto exchange = [&](int times) {
        for (int i = 0; i < times; ++i) ASSERT_NE(Exchange(address, length), 0);
    };
    exchange(1'000);
    const long before = ResidentBytes();
    exchange(100'000);
    EXPECT_LT(ResidentBytes() - before, 4 << 20);
}

}  // namespace
