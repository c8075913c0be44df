// Time-stamp tokens: whatever the bytes, reading and verifying one ends, and none verifies for
// other bytes than those that it was made over.

#include <openssl/err.h>

#include <cstdint>
#include <string_view>

#include "components/crypto/Signature.h"
#include "components/timestamptoken/TimeStampToken.h"
#include "fuzz/driver/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CTimeStampToken token;
    const bool read = token.Read({reinterpret_cast<const char*>(data), size});
    const auto verify = [&](std::string_view bytes) {
        return token.Verify([bytes](HashAlgorithm hash) { return Digest(hash, bytes); });
    };
    const TimeStampStep ofStamped = verify("stamped");
    const TimeStampStep ofOthers = verify("others");
    REQUIRE(ofOthers == TimeStampStep::kStructure || ofOthers == TimeStampStep::kImprint);
    if (!read) {
        REQUIRE(ofStamped == TimeStampStep::kStructure && token.Certificate().empty());
        return 0;
    }
    REQUIRE(token.Certificate().size() < size && token.Imprint().size() < size);
    if (ofStamped != TimeStampStep::kStructure && ofStamped != TimeStampStep::kImprint)
        REQUIRE(token.Imprint() == Digest(token.ImprintHash(), "stamped"));
    ERR_clear_error();
    return 0;
}
