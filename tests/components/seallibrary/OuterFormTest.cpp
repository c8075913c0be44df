// The outer forms, as the openssl program sees them.
#include <fstream>

#include "components/seallibrary/SealAsn1.h"
#include "support/Program.h"
#include "tests/components/seallibrary/LibraryFixture.h"

namespace {

struct FormAndKind {
    SealForm form;
    KeyKind kind;
};

class OuterFormTest : public LibraryFixture, public testing::WithParamInterface<FormAndKind> {
protected:
    std::string Write(const char* name, std::string_view bytes) {
        const std::string path = m_prefix.Below(name);
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }
    static bool OpenSsl(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "/usr/bin/openssl");
        return RunProgram(arguments).exitCode == 0;
    }
    std::string PublicKey(const std::string& certificate) {
        const std::string path = m_prefix.Below("public.pem");
        EXPECT_TRUE(OpenSsl({"x509", "-inform", "DER", "-in", Write("certificate", certificate),
                             "-noout", "-pubkey", "-out", path}));
        return path;
    }
    bool OpenSslVerifies(const std::string& certificate, std::string_view data,
                         std::string_view bitString) {
        std::vector<std::string> arguments{"dgst", "-verify", PublicKey(certificate), "-signature",
                                           Write("signature", bitString.substr(1))};
        if (GetParam().kind == KeyKind::kSm2) {
            arguments.insert(arguments.end(), {"-sm3", "-sigopt", "distid:1234567812345678"});
        } else {
            arguments.push_back("-sha256");
        }
        arguments.push_back(Write("data", data));
        return OpenSsl(arguments);
    }
    bool IsAsn1(std::string_view der) {
        return OpenSsl({"asn1parse", "-inform", "DER", "-in", Write("der", der)});
    }

    TestIdentity m_maker = MakeIdentity(GetParam().kind);
    TestIdentity m_signer = MakeIdentity(GetParam().kind);
    std::string m_seal = MakeTestSeal(UsualOrder(GetParam().form, m_signer), m_maker);
};

INSTANTIATE_TEST_SUITE_P(Forms, OuterFormTest,
                         testing::Values(FormAndKind{SealForm::kGm2014, KeyKind::kSm2},
                                         FormAndKind{SealForm::kGm2014, KeyKind::kRsa},
                                         FormAndKind{SealForm::kGb2020, KeyKind::kSm2},
                                         FormAndKind{SealForm::kGb2020, KeyKind::kRsa},
                                         FormAndKind{SealForm::kGm2025, KeyKind::kSm2}));

TEST_P(OuterFormTest, TheSealMakersSignatureIsOverWhatTheFormSays) {
    ASSERT_TRUE(IsAsn1(m_seal));
    std::vector<DerElement> seal;
    ASSERT_TRUE(SplitSequence(m_seal, 5, seal));
    if (GetParam().form != SealForm::kGm2014) {
        ASSERT_EQ(seal.size(), 4u);
        EXPECT_EQ(seal[1].content, m_maker.certificate);
        EXPECT_TRUE(OpenSslVerifies(m_maker.certificate, seal[0].whole, seal[3].content));
        return;
    }
    ASSERT_EQ(seal.size(), 2u);
    std::vector<DerElement> signInfo;
    ASSERT_TRUE(SplitSequence(seal[1].whole, 3, signInfo));
    ASSERT_EQ(signInfo.size(), 3u);
    const std::string content =
        std::string(seal[0].whole).append(signInfo[0].whole).append(signInfo[1].whole);
    ASSERT_GT(content.size(), 255u);
    std::string toSign("\x30\x82", 2);
    toSign += static_cast<char>(content.size() >> 8);
    toSign += static_cast<char>(content.size());
    EXPECT_TRUE(OpenSslVerifies(m_maker.certificate, toSign + content, signInfo[2].content));
}

TEST_P(OuterFormTest, TheSignersSignatureIsOverTheSignedPart) {
    GiveKey("key", m_signer);
    const std::string der = SignData("key", m_signer, "data", m_seal);
    ASSERT_TRUE(IsAsn1(der));
    std::vector<DerElement> outer;
    std::vector<DerElement> toSign;
    ASSERT_TRUE(SplitSequence(der, 5, outer));
    ASSERT_TRUE(SplitSequence(outer[0].whole, 9, toSign));
    const bool form2014 = GetParam().form == SealForm::kGm2014;
    ASSERT_EQ(outer.size(), form2014 ? 2u : 4u);
    ASSERT_EQ(toSign.size(), form2014 ? 7u : 5u);
    EXPECT_EQ(toSign[1].whole, m_seal);
    EXPECT_EQ(toSign[3].content, std::string(1, '\0') + HashFor(m_signer, "data"));
    EXPECT_EQ(toSign[4].tag, V_ASN1_IA5STRING);
    EXPECT_EQ(toSign[4].content, m_property);
    EXPECT_EQ((form2014 ? toSign[5] : outer[1]).content, m_signer.certificate);
    EXPECT_TRUE(OpenSslVerifies(m_signer.certificate, outer[0].whole, outer.back().content));
}

}  // namespace
