// Revocation lists and the times that are compared with them: whatever the bytes, reading ends, and
// what was read is what its own text reads as.

#include <openssl/err.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "components/seallibrary/RevocationTime.h"
#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealTime.h"
#include "fuzz/driver/Require.h"

namespace {

void CheckTimes(std::string_view text) {
    if (const auto time = ReadAsn1Time(text)) {
        const std::string again = GeneralizedTimeText(*time);
        if (!again.empty()) REQUIRE(ReadAsn1Time(again) == time);
    }
    const auto time = ReadHostTime(text);
    if (!time) return;
    const std::string again = IsoTimeText(*time);
    if (again >= "1900" && again < "2400") REQUIRE(ReadHostTime(again) == time);
}

// A list that was read tells its own entries, before and after, whatever form it came in.
void CheckList(std::string_view list) {
    constexpr std::time_t kEarly = -100'000'000'000;
    constexpr std::time_t kLate = 1'000'000'000'000;
    const std::string der = ReadRevocationList(list);
    const int early = CheckRevocationTime(list, "1234", kEarly);
    const int late = CheckRevocationTime(list, "1234", kLate);
    if (der.empty()) {
        REQUIRE(early == kSealRevocationListDamaged && late == kSealRevocationListDamaged);
        return;
    }
    REQUIRE(ReadRevocationList(der) == der);
    REQUIRE(CheckRevocationTime(der, "1234", kEarly) == early);
    if (early == kSealOk) REQUIRE(late == kSealRevokedBefore);
    if (early != kSealOk) REQUIRE(early == late && early != kSealRevokedBefore);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    CheckTimes(input);
    CheckList(input);
    CheckRevocationTime(input, input, 0);
    ERR_clear_error();
    return 0;
}
