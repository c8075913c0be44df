#include <array>

#include "components/crypto/Signature.h"
#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealInfo.h"
#include "tests/components/seallibrary/HandMade.h"
#include "tests/components/seallibrary/LibraryFixture.h"

namespace {

// The calls that read a seal and need no certificate service.
class SealInfoTest : public LibraryFixture {
protected:
    using Texts = std::array<std::string, kSealInfoFields>;
    using Lengths = std::array<int, kSealInfoFields>;

    // Every field with its own length. `texts` gives the buffers; an empty one asks for the size.
    int GetInfo(Texts& texts, Lengths& lengths) {
        std::array<unsigned char*, kSealInfoFields> out = {};
        for (std::size_t i = 0; i < kSealInfoFields; ++i)
            if (!texts[i].empty()) out[i] = reinterpret_cast<unsigned char*>(texts[i].data());
        return TVK_GetSealInfo(Bytes(m_seal), Size(m_seal), out[0], &lengths[0], out[1],
                               &lengths[1], out[2], &lengths[2], out[3], &lengths[3], out[4],
                               &lengths[4], out[5], &lengths[5], out[6], &lengths[6], out[7],
                               &lengths[7], out[8], &lengths[8], out[9], &lengths[9], out[10],
                               &lengths[10]);
    }

    // As the selection flows call: the first and the fifth field, the others share one length.
    int GetTwo(unsigned char* first, int* firstLen, unsigned char* fifth, int* fifthLen) {
        int scratch = 0;
        return TVK_GetSealInfo(Bytes(m_seal), Size(m_seal), first, firstLen, nullptr, &scratch,
                               nullptr, &scratch, nullptr, &scratch, fifth, fifthLen, nullptr,
                               &scratch, nullptr, &scratch, nullptr, &scratch, nullptr, &scratch,
                               nullptr, &scratch, nullptr, &scratch);
    }

    TestIdentity m_maker = MakeIdentity(KeyKind::kSm2);
    TestIdentity m_signer = MakeIdentity(KeyKind::kSm2);
    SealOrder m_order = UsualOrder(SealForm::kGb2020, m_signer);
    std::string m_seal = MakeTestSeal(m_order, m_maker);
};

TEST_F(SealInfoTest, ElevenFieldsTellTheSeal) {
    Texts texts;
    Lengths lengths = {};
    ASSERT_EQ(GetInfo(texts, lengths), kSealOk);
    for (std::size_t i = 0; i < kSealInfoFields; ++i)
        texts[i].assign(static_cast<std::size_t>(lengths[i]), '?');
    ASSERT_EQ(GetInfo(texts, lengths), kSealOk);
    EXPECT_EQ(texts[0], "50010001234");
    EXPECT_EQ(texts[1], "4");
    EXPECT_EQ(texts[2], "VELMORA");
    EXPECT_EQ(texts[3], "1");
    EXPECT_EQ(texts[4].size(), 64u);
    EXPECT_EQ(texts[5], "测试章");
    EXPECT_EQ(texts[6], "2026-06-05T12:00:00Z");
    EXPECT_EQ(texts[7], "2026-06-05T12:00:00Z");
    EXPECT_EQ(texts[8], "2034-09-01T12:00:00Z");
    EXPECT_EQ(texts[9], "GIF");
    EXPECT_EQ(texts[10], "GB/T 38540-2020");
}

TEST_F(SealInfoTest, TheFifthFieldIsTheSealsHash) {
    int firstLen = 0;
    int fifthLen = 0;
    ASSERT_EQ(GetTwo(nullptr, &firstLen, nullptr, &fifthLen), kSealOk);
    std::string first(static_cast<std::size_t>(firstLen) + 1, '\0');
    std::string fifth(static_cast<std::size_t>(fifthLen) + 1, '\0');
    ASSERT_EQ(GetTwo(reinterpret_cast<unsigned char*>(first.data()), &firstLen,
                     reinterpret_cast<unsigned char*>(fifth.data()), &fifthLen),
              kSealOk);
    EXPECT_STREQ(first.c_str(), "50010001234");
    std::string expected;
    for (const unsigned char byte : Digest(HashAlgorithm::kSm3, m_seal)) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", byte);
        expected += digits;
    }
    EXPECT_EQ(fifth.c_str(), expected);
}

TEST_F(SealInfoTest, AFieldThatDoesntFitIsToldAndNothingIsCopied) {
    Texts texts;
    texts[0] = "????";
    texts[3] = "?";
    Lengths lengths = {4, 0, 0, 1};
    EXPECT_EQ(GetInfo(texts, lengths), kSealBufferTooSmall);
    EXPECT_EQ(lengths[0], 11);
    EXPECT_EQ(texts[0], "????");
    EXPECT_EQ(texts[3], "?");
}

TEST_F(SealInfoTest, ABufferWithoutALengthIsABadArgument) {
    unsigned char byte = 0;
    int length = 0;
    EXPECT_EQ(GetTwo(&byte, nullptr, nullptr, &length), kSealBadArgument);
    EXPECT_EQ(GetTwo(nullptr, nullptr, nullptr, &length), kSealOk);
}

TEST_F(SealInfoTest, ThePictureComesWithItsSizeInMillimetres) {
    int length = 0;
    int width = -1;
    int height = -1;
    ASSERT_EQ(
        TVK_Get_Pic_From_Eseal_Ex(Bytes(m_seal), Size(m_seal), nullptr, &length, &width, &height),
        kSealOk);
    EXPECT_EQ(width, 42);
    EXPECT_EQ(height, 40);
    std::string picture(static_cast<std::size_t>(length), '\0');
    auto* out = reinterpret_cast<unsigned char*>(picture.data());
    ASSERT_EQ(TVK_Get_Pic_From_Eseal_Ex(Bytes(m_seal), Size(m_seal), out, &length, &width, &height),
              kSealOk);
    EXPECT_EQ(picture, m_order.picture);
    length = Size(picture) - 1;
    EXPECT_EQ(TVK_Get_Pic_From_Eseal_Ex(Bytes(m_seal), Size(m_seal), out, &length, &width, &height),
              kSealBufferTooSmall);
    EXPECT_EQ(length, Size(picture));
}

TEST_F(SealInfoTest, TheNameComesInUtf8) {
    int length = 0;
    ASSERT_EQ(TVK_Get_SealName_From_Eseal(Bytes(m_seal), Size(m_seal), nullptr, &length), kSealOk);
    std::string name(static_cast<std::size_t>(length), '\0');
    auto* out = reinterpret_cast<unsigned char*>(name.data());
    ASSERT_EQ(TVK_Get_SealName_From_Eseal(Bytes(m_seal), Size(m_seal), out, &length), kSealOk);
    EXPECT_EQ(name, m_order.name);
}

TEST_F(SealInfoTest, AnEmptyNameIsAnEmptyText) {
    HandMadeSeal made;
    made.name = "";
    m_seal = Build(made, m_maker, m_signer);
    int length = -1;
    unsigned char out[1];
    ASSERT_EQ(TVK_Get_SealName_From_Eseal(Bytes(m_seal), Size(m_seal), nullptr, &length), kSealOk);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(TVK_Get_SealName_From_Eseal(Bytes(m_seal), Size(m_seal), out, &length), kSealOk);
}

TEST_F(SealInfoTest, WhatIsNoSealIsRefusedByEveryReader) {
    int length = 0;
    int width = 0;
    m_seal = "GIF89a";
    EXPECT_EQ(TVK_Get_SealName_From_Eseal(Bytes(m_seal), Size(m_seal), nullptr, &length),
              kSealDamaged);
    EXPECT_EQ(
        TVK_Get_Pic_From_Eseal_Ex(Bytes(m_seal), Size(m_seal), nullptr, &length, &width, &width),
        kSealDamaged);
    EXPECT_EQ(GetTwo(nullptr, &length, nullptr, &length), kSealDamaged);
    EXPECT_EQ(TVK_Verify_SESeal(Bytes(m_seal), Size(m_seal)), kSealDamaged);
    EXPECT_EQ(TVK_Verify_SESeal(nullptr, 0), kSealBadArgument);
    EXPECT_EQ(TVK_Verify_SESeal(Bytes(m_seal), -1), kSealBadArgument);
    EXPECT_EQ(TVK_Get_SealName_From_Eseal(nullptr, 5, nullptr, &length), kSealBadArgument);
}

TEST_F(SealInfoTest, ReadingASealNeedsNoCertificateService) {
    m_prefix.RegisterCertService("/nonexistent/service.so");
    int length = 0;
    EXPECT_EQ(TVK_Get_SealName_From_Eseal(Bytes(m_seal), Size(m_seal), nullptr, &length), kSealOk);
    EXPECT_TRUE(m_script->calls.empty());
}

}  // namespace
