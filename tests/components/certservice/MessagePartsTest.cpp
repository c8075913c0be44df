// How many parts of a kind a signed message may have.
#include <gtest/gtest.h>

#include <functional>

#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignedMessage.h"
#include "components/certservice/SignedMessageAsn1.h"
#include "components/crypto/Signature.h"

namespace {

constexpr HashAlgorithm kHash = HashAlgorithm::kSha256;
constexpr std::time_t kNow = 1'781'524'800;

using AlgorithmHandle = OpenSslHandle<X509_ALGOR, X509_ALGOR_free>;
using AnyHandle = OpenSslHandle<ASN1_TYPE, ASN1_TYPE_free>;

class MessagePartsTest : public testing::Test {
protected:
    // A message over "data" with signed attributes, as `change` leaves it.
    std::string Message(const std::function<void(SignedData&)>& change) const {
        std::string message;
        MakeSignedMessage(
            m_certificate.get(), kHash, Digest(kHash, "data"), kNow,
            [this](HashAlgorithm hash, std::string_view digest, std::string& signature) {
                signature = SignDigest(m_key.get(), hash, digest);
                return 0;
            },
            message);
        const auto* at = reinterpret_cast<const unsigned char*>(message.data());
        const SignedContentHandle read(
            d2i_SignedContentInfo(nullptr, &at, static_cast<long>(message.size())));
        change(*read->signedData);
        return DerOf<i2d_SignedContentInfo>(read.get());
    }
    // The code of a message that can't be read is the certificate service's.
    static int Verify(const std::string& message, const std::string& data = "data") {
        const auto read = SignedMessage::Parse(message);
        return read ? read->VerifyData(data) : kServiceMessageDamaged;
    }
    int VerifyWithSigners(int count) const {
        return Verify(Message([count](SignedData& data) {
            const std::string one = DerOf<i2d_SignerInfo>(sk_SignerInfo_value(data.signers, 0));
            while (sk_SignerInfo_num(data.signers) < count) {
                const auto* at = reinterpret_cast<const unsigned char*>(one.data());
                sk_SignerInfo_push(data.signers,
                                   d2i_SignerInfo(nullptr, &at, static_cast<long>(one.size())));
            }
        }));
    }
    int VerifyWithDigestAlgorithms(int count) const {
        return Verify(Message([count](SignedData& data) {
            while (sk_X509_ALGOR_num(data.digestAlgorithms) < count) {
                X509_ALGOR* first = sk_X509_ALGOR_value(data.digestAlgorithms, 0);
                sk_X509_ALGOR_push(data.digestAlgorithms, X509_ALGOR_dup(first));
            }
        }));
    }
    int VerifyWithCertificates(int count) const {
        const std::string one = DerOf<i2d_X509>(m_certificate.get());
        return Verify(Message([&](SignedData& data) {
            while (sk_ASN1_TYPE_num(data.certificates) < count) {
                const auto* at = reinterpret_cast<const unsigned char*>(one.data());
                sk_ASN1_TYPE_push(data.certificates,
                                  d2i_ASN1_TYPE(nullptr, &at, static_cast<long>(one.size())));
            }
        }));
    }

    std::unique_ptr<DevelopmentCa> m_authority =
        DevelopmentCa::Make(KeyKind::kRsa, {.commonName = "Authority"});
    KeyHandle m_key{GenerateKey(KeyKind::kRsa, 2048)};
    CertificateHandle m_certificate =
        ParseCertificate(m_authority->Issue(m_key.get(), {.commonName = "Signer"}));
};

TEST_F(MessagePartsTest, UpTo64SignersAreTaken) {
    EXPECT_EQ(VerifyWithSigners(1), kServiceOk);
    EXPECT_EQ(VerifyWithSigners(64), kServiceOk);
    EXPECT_EQ(VerifyWithSigners(65), kServiceMessageDamaged);
}

TEST_F(MessagePartsTest, UpTo16DigestAlgorithmsAreTaken) {
    EXPECT_EQ(VerifyWithDigestAlgorithms(16), kServiceOk);
    EXPECT_EQ(VerifyWithDigestAlgorithms(17), kServiceMessageDamaged);
}

TEST_F(MessagePartsTest, UpTo256CertificatesAreTaken) {
    EXPECT_EQ(VerifyWithCertificates(256), kServiceOk);
    EXPECT_EQ(VerifyWithCertificates(257), kServiceMessageDamaged);
}

}  // namespace
