#include <tuple>

#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealVerdict.h"
#include "tests/components/seallibrary/LibraryFixture.h"

namespace {

struct FormAndKind {
    SealForm form;
    KeyKind kind;
};

// A bare seal's maker is guarded by the trust in its certificate alone.
class OneMaker : public CertificateJudge {
public:
    explicit OneMaker(const std::string& certificate) : m_certificate(certificate) {}
    int Validate(const std::string& certificate) override {
        return certificate == m_certificate ? 0 : -1;
    }
    int ValidateWithList(const std::string&, const std::string&) override { return -1; }

private:
    std::string m_certificate;
};

constexpr int kShards = 4;

// Each form in four parts, so that none takes long under a sanitizer.
class SingleBitTest : public LibraryFixture,
                      public testing::WithParamInterface<std::tuple<FormAndKind, int>> {
protected:
    // Calls `isRefused` with each of this part's changes in `bytes`, which are whole again at the
    // end.
    template <typename IsRefused>
    void ForEachBit(std::string& bytes, IsRefused isRefused) {
        for (std::size_t bit = Shard(); bit < bytes.size() * 8; bit += kShards) {
            char& byte = bytes[bit / 8];
            byte = static_cast<char>(byte ^ (1 << (bit % 8)));
            ASSERT_TRUE(isRefused()) << bit;
            byte = static_cast<char>(byte ^ (1 << (bit % 8)));
        }
    }
    static std::size_t Shard() { return static_cast<std::size_t>(std::get<1>(GetParam())); }
    static SealForm Form() { return std::get<0>(GetParam()).form; }
    static KeyKind Kind() { return std::get<0>(GetParam()).kind; }

    TestIdentity m_maker = MakeIdentity(Kind());
    TestIdentity m_signer = MakeIdentity(Kind());
    std::string m_seal = MakeTestSeal(UsualOrder(Form(), m_signer), m_maker);
};

INSTANTIATE_TEST_SUITE_P(
    Forms, SingleBitTest,
    testing::Combine(testing::Values(FormAndKind{SealForm::kGm2014, KeyKind::kSm2},
                                     FormAndKind{SealForm::kGb2020, KeyKind::kSm2},
                                     FormAndKind{SealForm::kGm2025, KeyKind::kSm2},
                                     FormAndKind{SealForm::kGb2020, KeyKind::kRsa}),
                     testing::Range(0, kShards)));

// The service stands for everybody: what is refused is refused by the seal library itself.
TEST_P(SingleBitTest, EveryChangeOfOneBitOfASealSignatureIsRefused) {
    GiveKey("key", m_signer);
    std::string signature = SignData("key", m_signer, "data", m_seal);
    ASSERT_EQ(VerifyData(signature, "data"), kSealOk);
    ForEachBit(signature, [&] { return VerifyData(signature, "data") != kSealOk; });
    EXPECT_EQ(VerifyData(signature, "data"), kSealOk);
}

TEST_P(SingleBitTest, EveryChangeOfOneBitOfASealIsRefused) {
    OneMaker judge(m_maker.certificate);
    ASSERT_EQ(JudgeSeal(m_seal, kTestNow, judge).code, kSealOk);
    ForEachBit(m_seal, [&] { return JudgeSeal(m_seal, kTestNow, judge).code != kSealOk; });
    EXPECT_EQ(JudgeSeal(m_seal, kTestNow, judge).code, kSealOk);
}

}  // namespace
