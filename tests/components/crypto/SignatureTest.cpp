#include "components/crypto/Signature.h"

#include <gtest/gtest.h>
#include <openssl/core_names.h>
#include <openssl/ec.h>
#include <openssl/param_build.h>

#include "components/crypto/Handles.h"

namespace {

std::string Hex(std::string_view bytes) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const unsigned char byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::string FromHex(std::string_view text) {
    std::string bytes;
    for (size_t i = 0; i + 1 < text.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(std::string(text.substr(i, 2)), nullptr, 16));
    }
    return bytes;
}

KeyHandle PublicKeyFrom(const std::string& point) {
    const OpenSslHandle<OSSL_PARAM_BLD, OSSL_PARAM_BLD_free> builder(OSSL_PARAM_BLD_new());
    OSSL_PARAM_BLD_push_utf8_string(builder.get(), OSSL_PKEY_PARAM_GROUP_NAME, "SM2", 0);
    OSSL_PARAM_BLD_push_octet_string(builder.get(), OSSL_PKEY_PARAM_PUB_KEY, point.data(),
                                     point.size());
    const OpenSslHandle<OSSL_PARAM, OSSL_PARAM_free> parameters(
        OSSL_PARAM_BLD_to_param(builder.get()));
    const KeyContextHandle context(EVP_PKEY_CTX_new_from_name(nullptr, "SM2", nullptr));
    EVP_PKEY* key = nullptr;
    EVP_PKEY_fromdata_init(context.get());
    EVP_PKEY_fromdata(context.get(), &key, EVP_PKEY_PUBLIC_KEY, parameters.get());
    return KeyHandle(key);
}

// Another hand than ours: OpenSSL's own SM2 with the id set on the context.
bool OpenSslVerifies(EVP_PKEY* key, const std::string& data, const std::string& signature) {
    const DigestContextHandle digest(EVP_MD_CTX_new());
    const KeyContextHandle context(EVP_PKEY_CTX_new(key, nullptr));
    EVP_PKEY_CTX_set1_id(context.get(), kSm2DefaultId, 16);
    EVP_MD_CTX_set_pkey_ctx(digest.get(), context.get());
    EVP_DigestVerifyInit(digest.get(), nullptr, EVP_sm3(), nullptr, key);
    return EVP_DigestVerify(digest.get(), reinterpret_cast<const unsigned char*>(signature.data()),
                            signature.size(), reinterpret_cast<const unsigned char*>(data.data()),
                            data.size()) == 1;
}

std::string BareFromDer(const std::string& der) {
    const auto* cursor = reinterpret_cast<const unsigned char*>(der.data());
    const OpenSslHandle<ECDSA_SIG, ECDSA_SIG_free> signature(
        d2i_ECDSA_SIG(nullptr, &cursor, static_cast<long>(der.size())));
    unsigned char bare[64];
    BN_bn2binpad(ECDSA_SIG_get0_r(signature.get()), bare, 32);
    BN_bn2binpad(ECDSA_SIG_get0_s(signature.get()), bare + 32, 32);
    return std::string(reinterpret_cast<char*>(bare), sizeof bare);
}

class SignatureTest : public testing::Test {
protected:
    KeyHandle m_sm2{GenerateKey(KeyKind::kSm2, 0)};
    KeyHandle m_rsa{GenerateKey(KeyKind::kRsa, 2048)};
};

TEST(DigestTest, TheHashesAreThoseOfTheStandards) {
    EXPECT_EQ(Hex(Digest(HashAlgorithm::kSm3, "abc")),
              "66C7F0F462EEEDD9D1F2D46BDC10E4E24167C4875CF2F7A2297DA02B8F4BA8E0");
    EXPECT_EQ(Hex(Digest(HashAlgorithm::kSha1, "abc")), "A9993E364706816ABA3E25717850C26C9CD0D89D");
    EXPECT_EQ(Hex(Digest(HashAlgorithm::kSha256, "abc")),
              "BA7816BF8F01CFEA414140DE5DAE2223B00361A396177A9CB410FF61F20015AD");
    EXPECT_EQ(Digest(HashAlgorithm::kSha384, "abc").size(), 48u);
    EXPECT_EQ(Digest(HashAlgorithm::kSha512, "abc").size(), 64u);
}

TEST(DigestTest, AnUnknownNumberHasNoHash) {
    EXPECT_EQ(Digest(static_cast<HashAlgorithm>(3), "abc"), "");
    EXPECT_EQ(DigestSize(static_cast<HashAlgorithm>(3)), 0u);
}

// GB/T 32918.5, appendix A.2.
TEST(DigestTest, ZaAndTheDigestAreThoseOfTheStandardsExample) {
    const KeyHandle key =
        PublicKeyFrom(FromHex("0409F9DF311E5421A150DD7D161E4BC5C672179FAD1833FC076BB08FF356F35020"
                              "CCEA490CE26775A52DC6EA718CC1AA600AED05FBF35E084A6632F6072DA9AD13"));
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(Hex(Sm2Za(key.get())),
              "B2E14C5C79C6DF5B85F4FE7ED8DB7A262B9DA7E07CCB0EA9F4747B8CCDA8A4F3");
    EXPECT_EQ(Hex(Sm2Digest(key.get(), "message digest")),
              "F0B43E94BA45ACCAACE692ED534382EB17E6AB5A19CE7B31F4486FDFC0D28640");
    EXPECT_TRUE(
        VerifyDigest(key.get(), HashAlgorithm::kSm3, Sm2Digest(key.get(), "message digest"),
                     FromHex("F5A03B0648D2C4630EEAC513E1BB81A15944DA3827D5B74143AC7EACEEE720B3"
                             "B1B6AA29DF212FD8763182BC0D421CA1BB9038FD1F7F42D4840B69C485BBC1AA")));
}

TEST_F(SignatureTest, AnotherIdGivesAnotherDigest) {
    EXPECT_NE(Sm2Digest(m_sm2.get(), "data", "ALICE123@YAHOO.COM"), Sm2Digest(m_sm2.get(), "data"));
    EXPECT_EQ(Sm2Za(m_sm2.get(), std::string(8192, 'x')), "");
    EXPECT_EQ(Sm2Za(m_sm2.get(), std::string(8191, 'x')).size(), 32u);
}

TEST_F(SignatureTest, AnRsaKeyHasNoZa) {
    EXPECT_EQ(Sm2Za(m_rsa.get()), "");
    EXPECT_EQ(Sm2Digest(m_rsa.get(), "data"), "");
    EXPECT_EQ(Sm2Za(nullptr), "");
}

TEST_F(SignatureTest, OpenSslAcceptsAnSm2Signature) {
    const std::string signature = SignData(m_sm2.get(), HashAlgorithm::kSm3, "data");
    ASSERT_FALSE(signature.empty());
    EXPECT_TRUE(OpenSslVerifies(m_sm2.get(), "data", signature));
    EXPECT_FALSE(OpenSslVerifies(m_sm2.get(), "Data", signature));
}

TEST_F(SignatureTest, WhatIsSignedFromADigestIsWhatIsSignedFromTheData) {
    for (const auto& [key, hash] : {std::pair(m_sm2.get(), HashAlgorithm::kSm3),
                                    std::pair(m_rsa.get(), HashAlgorithm::kSha256)}) {
        const std::string digest = DigestForKey(key, hash, "data");
        EXPECT_TRUE(VerifyData(key, hash, "data", SignDigest(key, hash, digest)));
        EXPECT_TRUE(VerifyDigest(key, hash, digest, SignData(key, hash, "data")));
    }
}

TEST_F(SignatureTest, EachRsaHashVerifiesUnderItsOwnNumberOnly) {
    for (const auto hash : {HashAlgorithm::kSha1, HashAlgorithm::kSha256, HashAlgorithm::kSha384,
                            HashAlgorithm::kSha512}) {
        const std::string signature = SignData(m_rsa.get(), hash, "data");
        EXPECT_EQ(signature.size(), 256u);
        EXPECT_TRUE(VerifyData(m_rsa.get(), hash, "data", signature));
        EXPECT_FALSE(VerifyData(m_rsa.get(), HashAlgorithm::kSm3, "data", signature));
    }
    const std::string signature = SignData(m_rsa.get(), HashAlgorithm::kSha1, "data");
    EXPECT_FALSE(VerifyData(m_rsa.get(), HashAlgorithm::kSha256, "data", signature));
}

TEST_F(SignatureTest, AnSm2KeySignsSm3AndNothingElse) {
    EXPECT_EQ(SignData(m_sm2.get(), HashAlgorithm::kSha256, "data"), "");
    EXPECT_EQ(SignDigest(m_sm2.get(), HashAlgorithm::kSha256, std::string(32, 'x')), "");
    EXPECT_EQ(SignData(m_rsa.get(), HashAlgorithm::kSm3, "data"), "");
}

TEST_F(SignatureTest, ADigestOfAnotherLengthIsRefused) {
    EXPECT_EQ(SignDigest(m_sm2.get(), HashAlgorithm::kSm3, std::string(31, 'x')), "");
    EXPECT_EQ(SignDigest(m_rsa.get(), HashAlgorithm::kSha256, std::string(20, 'x')), "");
    EXPECT_EQ(SignDigest(m_rsa.get(), HashAlgorithm::kSha256, ""), "");
    EXPECT_FALSE(VerifyDigest(m_sm2.get(), HashAlgorithm::kSm3, std::string(33, 'x'), "signature"));
}

TEST_F(SignatureTest, ASigningKeyMakesOneSignatureAfterAnother) {
    SigningKey sm2(KeyHandle(EVP_PKEY_dup(m_sm2.get())));
    SigningKey rsa(KeyHandle(EVP_PKEY_dup(m_rsa.get())));
    // The hash changes and comes back.
    for (const auto hash : {HashAlgorithm::kSha256, HashAlgorithm::kSha256, HashAlgorithm::kSha1,
                            HashAlgorithm::kSha256}) {
        const std::string text = "text " + std::to_string(static_cast<int>(hash));
        const std::string plain = sm2.Sign(HashAlgorithm::kSm3, Sm2Digest(m_sm2.get(), text));
        EXPECT_TRUE(OpenSslVerifies(m_sm2.get(), text, plain));
        EXPECT_EQ(rsa.Sign(hash, Digest(hash, text)), SignData(m_rsa.get(), hash, text));
    }
}

TEST_F(SignatureTest, ASigningKeySignsAgainAfterAFailure) {
    SigningKey key(KeyHandle(EVP_PKEY_dup(m_rsa.get())));
    const std::string digest = Digest(HashAlgorithm::kSha256, "data");
    ASSERT_NE(key.Sign(HashAlgorithm::kSha256, digest), "");
    EXPECT_EQ(key.Sign(HashAlgorithm::kSm3, std::string(32, 'x')), "");
    EXPECT_EQ(key.Sign(HashAlgorithm::kSha256, "short"), "");
    EXPECT_EQ(key.Sign(HashAlgorithm::kSha256, digest),
              SignDigest(m_rsa.get(), HashAlgorithm::kSha256, digest));
    EXPECT_EQ(SigningKey().Sign(HashAlgorithm::kSha256, digest), "");
}

TEST_F(SignatureTest, TheBareFormOfAnSm2SignatureVerifies) {
    const std::string der = SignData(m_sm2.get(), HashAlgorithm::kSm3, "data");
    std::string bare = BareFromDer(der);
    EXPECT_TRUE(VerifyData(m_sm2.get(), HashAlgorithm::kSm3, "data", bare));
    bare[10] ^= 1;
    EXPECT_FALSE(VerifyData(m_sm2.get(), HashAlgorithm::kSm3, "data", bare));
    EXPECT_FALSE(VerifyData(m_sm2.get(), HashAlgorithm::kSm3, "data", std::string(64, '\0')));
    EXPECT_FALSE(VerifyData(m_sm2.get(), HashAlgorithm::kSm3, "data", bare.substr(1)));
}

TEST_F(SignatureTest, EverySingleBitOfASignatureCounts) {
    const std::string good = SignData(m_sm2.get(), HashAlgorithm::kSm3, "data");
    for (size_t bit = 0; bit < good.size() * 8; ++bit) {
        std::string changed = good;
        changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ (1 << (bit % 8)));
        EXPECT_FALSE(VerifyData(m_sm2.get(), HashAlgorithm::kSm3, "data", changed)) << bit;
    }
}

TEST_F(SignatureTest, NothingIsSignedOrVerifiedWithoutAKeyThatIsKnown) {
    const KeyHandle other(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"));
    EXPECT_EQ(KindOfKey(other.get()), KeyKind::kOther);
    EXPECT_EQ(KindOfKey(nullptr), KeyKind::kOther);
    EXPECT_EQ(SignData(other.get(), HashAlgorithm::kSha256, "data"), "");
    EXPECT_EQ(SignData(nullptr, HashAlgorithm::kSha256, "data"), "");
    EXPECT_FALSE(VerifyData(other.get(), HashAlgorithm::kSha256, "data", "signature"));
    EXPECT_FALSE(VerifyData(m_rsa.get(), HashAlgorithm::kSha256, "data", ""));
    EXPECT_EQ(GenerateKey(KeyKind::kOther, 2048), nullptr);
}

TEST(DigestTest, ADigestThatCannotBeMadeIsNobodys) {
    const auto unknown = static_cast<HashAlgorithm>(0x7F);
    EXPECT_EQ(Digest(unknown, "data"), "");
    EXPECT_FALSE(IsDigest("", unknown, "data"));
    EXPECT_FALSE(IsDigest("", HashAlgorithm::kSha256, "data"));
    EXPECT_FALSE(IsDigest(Digest(HashAlgorithm::kSha256, "data."), HashAlgorithm::kSha256, "data"));
    EXPECT_TRUE(IsDigest(Digest(HashAlgorithm::kSha256, "data"), HashAlgorithm::kSha256, "data"));
    EXPECT_TRUE(IsDigest(Digest(HashAlgorithm::kSm3, ""), HashAlgorithm::kSm3, ""));
}

}  // namespace
