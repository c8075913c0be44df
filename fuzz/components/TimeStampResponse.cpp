// Responses of time-stamp authorities, checked against a request; and anything as a request.

#include <cstdint>
#include <string>
#include <string_view>

#include "components/timestamp/ResponseCheck.h"
#include "fuzz/driver/Require.h"

namespace {

// SHA-256 with 32 times "a", the nonce 4711, certificates wanted: what the seeds answer.
std::string Request() {
    constexpr unsigned char kBegin[] = {0x30, 0x3D, 0x02, 0x01, 0x01, 0x30, 0x31, 0x30,
                                        0x0D, 0x06, 0x09, 0x60, 0x86, 0x48, 0x01, 0x65,
                                        0x03, 0x04, 0x02, 0x01, 0x05, 0x00, 0x04, 0x20};
    constexpr unsigned char kEnd[] = {0x02, 0x02, 0x12, 0x67, 0x01, 0x01, 0xFF};
    return std::string(std::begin(kBegin), std::end(kBegin)) + std::string(32, 'a') +
           std::string(std::begin(kEnd), std::end(kEnd));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string request = Request();
    REQUIRE(IsTimeStampRequest(request));
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const ResponseVerdict verdict = CheckResponse(request, input);
    REQUIRE(verdict.fault.empty() != verdict.summary.empty());
    REQUIRE(CheckResponse(request, input).fault == verdict.fault);
    if (!IsTimeStampRequest(input)) REQUIRE(!CheckResponse(input, input).fault.empty());
    return 0;
}
