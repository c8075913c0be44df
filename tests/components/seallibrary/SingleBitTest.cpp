#include "components/seallibrary/DataDigest.h"
#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealVerdict.h"
#include "tests/components/seallibrary/LibraryFixture.h"

namespace {

// Trusts everybody, so that what is refused is refused by the seal library itself.
class TrustingJudge : public CertificateJudge {
public:
    int Validate(const std::string&) override { return 0; }
    int ValidateWithList(const std::string&, const std::string&) override { return 0; }
};

struct FormAndKind {
    SealForm form;
    KeyKind kind;
};

class SingleBitTest : public LibraryFixture, public testing::WithParamInterface<FormAndKind> {};

INSTANTIATE_TEST_SUITE_P(Forms, SingleBitTest,
                         testing::Values(FormAndKind{SealForm::kGm2014, KeyKind::kSm2},
                                         FormAndKind{SealForm::kGb2020, KeyKind::kSm2},
                                         FormAndKind{SealForm::kGb2020, KeyKind::kRsa}));

TEST_P(SingleBitTest, EveryChangeOfOneBitOfASealSignatureIsRefused) {
    const TestIdentity maker = MakeIdentity(GetParam().kind);
    const TestIdentity signer = MakeIdentity(GetParam().kind);
    GiveKey("key", signer);
    const std::string seal = MakeTestSeal(UsualOrder(GetParam().form, signer), maker);
    std::string signature = SignData("key", signer, "data", seal);
    TrustingJudge judge;
    const DataDigest digest = DigestOfData("data");
    ASSERT_EQ(JudgeSealSignature(signature, digest, {}, judge).code, kSealOk);
    for (std::size_t bit = 0; bit < signature.size() * 8; ++bit) {
        char& byte = signature[bit / 8];
        byte = static_cast<char>(byte ^ (1 << (bit % 8)));
        ASSERT_NE(JudgeSealSignature(signature, digest, {}, judge).code, kSealOk) << bit;
        byte = static_cast<char>(byte ^ (1 << (bit % 8)));
    }
}

TEST_P(SingleBitTest, EveryChangeOfOneBitOfASealIsRefused) {
    const TestIdentity maker = MakeIdentity(GetParam().kind);
    const TestIdentity signer = MakeIdentity(GetParam().kind);
    std::string seal = MakeTestSeal(UsualOrder(GetParam().form, signer), maker);
    // Outside the seal it is the trust in the maker's certificate that guards the certificate.
    class OneMaker : public TrustingJudge {
    public:
        explicit OneMaker(const std::string& certificate) : m_certificate(certificate) {}
        int Validate(const std::string& certificate) override {
            return certificate == m_certificate ? 0 : -1;
        }

    private:
        std::string m_certificate;
    } judge(maker.certificate);
    ASSERT_EQ(JudgeSeal(seal, kTestNow, judge).code, kSealOk);
    for (std::size_t bit = 0; bit < seal.size() * 8; ++bit) {
        char& byte = seal[bit / 8];
        byte = static_cast<char>(byte ^ (1 << (bit % 8)));
        ASSERT_NE(JudgeSeal(seal, kTestNow, judge).code, kSealOk) << bit;
        byte = static_cast<char>(byte ^ (1 << (bit % 8)));
    }
}

}  // namespace
