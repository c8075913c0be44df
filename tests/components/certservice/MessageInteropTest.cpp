#include "components/certservice/ForeignMessageTest.h"

namespace {

// Messages of the openssl program, over every size of key that there are certificates for.
class MessageInteropTest : public ForeignMessageTest {
protected:
    std::string Sign(const std::string& options) { return Foreign(options, m_data); }
    int VerifyHash(const std::string& message, const std::string& hash) {
        return SOF_VerifySignedHashMessage(m_context, Bytes(message), Size(message), Bytes(hash),
                                           Size(hash));
    }
    void ExpectEveryForm(int bits) {
        MakeSigner(bits);
        for (const auto& [name, hash] : {std::pair("sha256", HashAlgorithm::kSha256),
                                         std::pair("sha384", HashAlgorithm::kSha384),
                                         std::pair("sha512", HashAlgorithm::kSha512)}) {
            for (const char* form : {"", " -nodetach", " -noattr", " -noattr -nodetach",
                                     " -stream -indef -nodetach", " -stream -indef -noattr"}) {
                SCOPED_TRACE(name + std::string(form));
                std::string message = Sign("-md " + std::string(name) + form);
                EXPECT_EQ(VerifyMessage(message, m_data), 0);
                EXPECT_NE(VerifyMessage(message, m_data + "."), 0);
                EXPECT_EQ(VerifyHash(message, Digest(hash, m_data)), 0);
                EXPECT_NE(VerifyHash(message, Digest(hash, m_data + ".")), 0);
            }
        }
    }

    // More than one piece of a streamed message.
    const std::string m_data = std::string(20'000, 'd') + std::string("zero\0and\r\nline ends", 19);
};

TEST_F(MessageInteropTest, EveryFormVerifiesWithAKeyOf2048Bits) { ExpectEveryForm(2048); }

TEST_F(MessageInteropTest, EveryFormVerifiesWithAKeyOf3072Bits) { ExpectEveryForm(3072); }

TEST_F(MessageInteropTest, EveryFormVerifiesWithAKeyOf4096Bits) { ExpectEveryForm(4096); }

TEST_F(MessageInteropTest, EachFailureNamesItsStep) {
    MakeSigner(2048);
    const std::string attributes = Sign("-nodetach");
    EXPECT_EQ(VerifyMessage(attributes, "other data"), kServiceDigestMismatch);
    std::string changed = attributes;
    changed[attributes.find("ddd") + 5] = 'e';
    EXPECT_EQ(VerifyMessage(changed, ""), kServiceDigestMismatch);
    changed = attributes;
    changed.back() ^= 1;
    EXPECT_EQ(VerifyMessage(changed, m_data), kServiceSignatureInvalid);
    EXPECT_EQ(VerifyMessage(Sign("-noattr"), "other data"), kServiceSignatureInvalid)
        << "without attributes data and value can't be told apart";
    EXPECT_EQ(VerifyMessage(Sign("-nocerts"), m_data), kServiceSignerMissing);
    EXPECT_EQ(VerifyMessage(Sign("-md md5"), m_data), kServiceAlgorithmUnknown);
    EXPECT_EQ(VerifyMessage(attributes.substr(1), m_data), kServiceMessageDamaged);
}

TEST_F(MessageInteropTest, ACertificateThatCantBeReadSpoilsTheMessage) {
    MakeSigner(2048);
    const std::string first = ReadFile(Path("signer.pem"));
    const KeyHandle key(GenerateKey(KeyKind::kSm2, 0));
    const std::string other =
        Authority(KeyKind::kRsa).Issue(key.get(), {.commonName = "Bystander"});
    const CertificateHandle parsed = ParseCertificate(other);
    WriteFile(Path("other.pem"), PemOf(parsed.get()));
    const std::string message = Sign("-certfile other.pem");
    EXPECT_EQ(VerifyMessage(message, m_data), 0);
    const size_t at = message.find(other);
    ASSERT_NE(at, std::string::npos);
    std::string changed = message;
    changed[at + 4] ^= 1;
    EXPECT_EQ(VerifyMessage(changed, m_data), kServiceMessageDamaged);
    changed = message;
    changed[at + other.size() - 1] ^= 1;
    EXPECT_EQ(VerifyMessage(changed, m_data), 0) << "nobody asks whether a bystander is genuine";
}

}  // namespace
