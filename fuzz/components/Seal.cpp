// Seals: whatever the bytes, reading and judging one ends, and what was read makes sense.

#include <cstdint>
#include <string_view>

#include "components/seallibrary/Seal.h"
#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealInfo.h"
#include "components/seallibrary/SealLimits.h"
#include "components/seallibrary/SealVerdict.h"
#include "fuzz/driver/Require.h"

namespace {

class TrustingJudge : public CertificateJudge {
public:
    int Validate(const std::string&) override { return 0; }
    int ValidateWithList(const std::string&, const std::string&) override { return 0; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view der(reinterpret_cast<const char*>(data), size);
    Seal seal;
    TrustingJudge judge;
    const SealVerdict verdict = JudgeSeal(der, 1'781'524'800, judge);
    if (ReadSeal(der, seal) != kSealOk) {
        REQUIRE(verdict.failed == SealStep::kStructure);
        return 0;
    }
    REQUIRE(verdict.failed != SealStep::kStructure);
    REQUIRE(seal.signedPart.size() <= size + 16);
    REQUIRE(seal.signerCertificates.empty() != seal.signerDigests.empty());
    REQUIRE(seal.signerCertificates.size() + seal.signerDigests.size() <= kMaxSigners);
    REQUIRE(seal.picture.size() < size);
    for (const std::string& certificate : seal.signerCertificates)
        REQUIRE(NamesSigner(seal, certificate));
    REQUIRE(SealInfo(seal, der)[4].size() == 64);
    return 0;
}
