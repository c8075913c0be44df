// Seal signatures: whatever the bytes, reading and judging one ends, and none verifies for data
// that it wasn't made over.

#include "components/seallibrary/SealSignature.h"

#include <cstdint>

#include "components/seallibrary/DataDigest.h"
#include "components/seallibrary/SealCodes.h"
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
    TrustingJudge judge;
    SealSignature signature;
    const int code = ReadSealSignature(der, signature);
    const SealVerdict ofData = JudgeSealSignature(der, DigestOfData("data"), {}, judge);
    const SealVerdict ofOther = JudgeSealSignature(der, DigestOfData("other"), {}, judge);
    REQUIRE(ofOther.code != kSealOk);
    if (code != kSealOk) {
        REQUIRE(ofData.failed == SealStep::kStructure && ofData.code == code);
        return 0;
    }
    REQUIRE(signature.signedPart.size() <= size + 16);
    REQUIRE(signature.sealDer.size() < size);
    Seal seal;
    REQUIRE(ReadSeal(signature.sealDer, seal) == kSealOk);
    REQUIRE(seal.form == signature.seal.form);
    return 0;
}
