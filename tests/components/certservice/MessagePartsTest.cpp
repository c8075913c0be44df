// How many parts of a kind a signed message may have.
#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignedMessage.h"
#include "components/certservice/SignedMessageAsn1.h"
#include "components/crypto/Signature.h"

namespace {

constexpr HashAlgorithm kHash = HashAlgorithm::kSha256;
constexpr int kFirstId = NID_id_smime_aa_signingCertificate;
constexpr int kSecondId = NID_id_smime_aa_signingCertificateV2;
constexpr std::time_t kNow = 1'781'524'800;

using AlgorithmHandle = OpenSslHandle<X509_ALGOR, X509_ALGOR_free>;
using AnyHandle = OpenSslHandle<ASN1_TYPE, ASN1_TYPE_free>;

// Its kind and its values, which are octets.
using AttributePlan = std::pair<int, std::vector<std::string>>;

X509_ATTRIBUTE* MakeAttribute(int kind, const std::vector<std::string>& values) {
    X509_ATTRIBUTE* attribute = X509_ATTRIBUTE_new();
    X509_ATTRIBUTE_set1_object(attribute, OBJ_nid2obj(kind));
    for (const std::string& value : values) {
        X509_ATTRIBUTE_set1_data(attribute, V_ASN1_OCTET_STRING, value.data(),
                                 static_cast<int>(value.size()));
    }
    return attribute;
}

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

    // The same with further signed attributes, in front of the others or behind them.
    std::string MessageWith(const std::vector<AttributePlan>& plans, bool inFront) const {
        return Message([&](SignedData& data) {
            SignerInfo* signer = sk_SignerInfo_value(data.signers, 0);
            for (const auto& [kind, values] : plans) {
                sk_X509_ATTRIBUTE_insert(signer->signedAttributes, MakeAttribute(kind, values),
                                         inFront ? 0 : -1);
            }
            const std::string signature =
                SignData(m_key.get(), kHash, EncodeSortedAttributes(signer->signedAttributes));
            ASN1_OCTET_STRING_set(signer->signature,
                                  reinterpret_cast<const unsigned char*>(signature.data()),
                                  static_cast<int>(signature.size()));
        });
    }
    int VerifyWith(const std::vector<AttributePlan>& plans) const {
        const int code = Verify(MessageWith(plans, true));
        EXPECT_EQ(Verify(MessageWith(plans, false)), code);
        return code;
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

TEST_F(MessagePartsTest, OneSignatureIsNotOverTwoDocuments) {
    const std::vector<AttributePlan> other = {
        {NID_pkcs9_messageDigest, {Digest(kHash, "other data")}}};
    for (const bool inFront : {true, false}) {
        const std::string message = MessageWith(other, inFront);
        EXPECT_EQ(Verify(message, "data"), kServiceMessageDamaged);
        EXPECT_EQ(Verify(message, "other data"), kServiceMessageDamaged);
    }
}

TEST_F(MessagePartsTest, AnAttributeThatHasToBeSingleStandsOnceWithOneValue) {
    EXPECT_EQ(VerifyWith({}), kServiceOk);
    for (const int kind : {NID_pkcs9_contentType, NID_pkcs9_messageDigest, NID_pkcs9_signingTime}) {
        EXPECT_EQ(VerifyWith({{kind, {"x"}}}), kServiceMessageDamaged) << kind;
    }
    for (const int kind : {kFirstId, kSecondId}) {
        EXPECT_EQ(VerifyWith({{kind, {"x"}}}), kServiceOk) << kind;
        EXPECT_EQ(VerifyWith({{kind, {"x", "y"}}}), kServiceMessageDamaged) << kind;
        EXPECT_EQ(VerifyWith({{kind, {"x"}}, {kind, {"y"}}}), kServiceMessageDamaged) << kind;
    }
}

TEST_F(MessagePartsTest, AttributesOfOtherKindsMayStandTwice) {
    EXPECT_EQ(VerifyWith({{kFirstId, {"x"}}, {kSecondId, {"x"}}}), kServiceOk);
    EXPECT_EQ(VerifyWith({{NID_description, {"x"}}, {NID_description, {"y", "z"}}}), kServiceOk);
}

TEST_F(MessagePartsTest, AttributesKeepTheirOrderWhenTheyAreSorted) {
    const std::string message = MessageWith({{NID_description, {"a long one, sorted last"}}}, true);
    const auto* at = reinterpret_cast<const unsigned char*>(message.data());
    const SignedContentHandle read(
        d2i_SignedContentInfo(nullptr, &at, static_cast<long>(message.size())));
    STACK_OF(X509_ATTRIBUTE)* attributes =
        sk_SignerInfo_value(read->signedData->signers, 0)->signedAttributes;
    sk_X509_ATTRIBUTE_unshift(attributes, sk_X509_ATTRIBUTE_pop(attributes));
    const std::string asRead = EncodeAttributesAsRead(attributes);
    EXPECT_NE(EncodeSortedAttributes(attributes), asRead);
    EXPECT_EQ(EncodeAttributesAsRead(attributes), asRead);
}

}  // namespace
