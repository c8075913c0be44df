// Time stamps, in a response and in a signed message: whatever comes in is read or refused, a token
// that is put into a message comes out of it again, and what it tells agrees with itself.

#include <openssl/err.h>
#include <openssl/objects.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignedMessage.h"
#include "components/certservice/StampMessage.h"
#include "components/certservice/TimeStampRequest.h"
#include "components/certservice/TimeStampToken.h"
#include "fuzz/driver/Require.h"

namespace {

constexpr int kCertificateField = 5;
constexpr int kTokenField = 8;
constexpr int kLastField = 11;

void JudgeToken(std::string_view bytes) {
    const auto token = TimeStampToken::Parse(bytes);
    if (!token) return;
    std::string value;
    for (int field = 1; field <= kLastField; ++field) {
        const int code = token->Field(field, value);
        REQUIRE(code == kServiceOk || code == kServiceTimeStampCertificateMissing ||
                code == kServiceCertificateDamaged);
        if (field == kCertificateField && code == kServiceOk) REQUIRE(ParseCertificate(value));
        if (field == kTokenField) REQUIRE(value == bytes);
    }
    REQUIRE(token->Field(kLastField + 1, value) == kServiceNoSuchField);
    REQUIRE(token->CheckImprint("not what any seed stamps") != kServiceOk);
    token->CheckSignature();
}

// `token` may be anything, the message too.
void Stamp(std::string_view message, std::string_view token) {
    const std::string stamped = StampMessage(message, token);
    const auto before = SignedMessage::Parse(message);
    if (!before) return;
    REQUIRE(!stamped.empty());
    const auto after = SignedMessage::Parse(stamped);
    REQUIRE(after);
    const auto values = after->UnsignedAttribute(NID_id_smime_aa_timeStampToken);
    REQUIRE(values.size() == 1 && values.front() == token);
    std::string one;
    std::string other;
    before->Field(3, one);
    after->Field(3, other);
    REQUIRE(one == other);
    REQUIRE(before->VerifyData({}) == after->VerifyData({}));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    std::string token;
    if (TokenOfResponse(input, token) == kServiceOk) JudgeToken(token);
    JudgeToken(input);
    if (const auto message = SignedMessage::Parse(input)) {
        for (const auto& value : message->UnsignedAttribute(NID_id_smime_aa_timeStampToken)) {
            JudgeToken(value);
        }
    }
    Stamp(input, std::string_view("\x30\x00", 2));
    ERR_clear_error();
    return 0;
}
