// Signed messages: whatever comes in is read or refused, a message that no key has signed never
// verifies, and what it tells agrees with itself.

#include <openssl/err.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignedMessage.h"
#include "fuzz/driver/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto message = SignedMessage::Parse(input);
    if (message) {
        std::string value;
        REQUIRE(message->Field(1, value) == kServiceOk);
        REQUIRE(message->Field(3, value) == kServiceOk);
        if (message->Field(2, value) == kServiceOk) REQUIRE(ParseCertificate(value));
        REQUIRE(message->Field(0, value) == kServiceNoSuchField);
        REQUIRE(message->VerifyData("not what any seed signs") != kServiceOk);
        message->VerifyData({});
        REQUIRE(message->VerifyDigest(std::string(32, 'x')) != kServiceOk);
    }
    ERR_clear_error();
    return 0;
}
