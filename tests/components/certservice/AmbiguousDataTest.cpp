// Data that would be signed in another sense as well: what is told of them, that no message over
// them is made without signed attributes, and that none is accepted.
#include "components/certservice/AmbiguousData.h"

#include "components/certservice/BerElements.h"
#include "components/certservice/ServiceTest.h"
#include "components/certservice/SignedMessageAsn1.h"
#include "components/crypto/Signature.h"

namespace {

constexpr unsigned char kOctets = 0x04;
constexpr unsigned char kBits = 0x03;
constexpr unsigned char kText = 0x16;
constexpr unsigned char kTime = 0x18;

const std::string kContentTypeName("\x06\x09\x2A\x86\x48\x86\xF7\x0D\x01\x09\x03", 11);
const std::string kDigestName("\x06\x09\x2A\x86\x48\x86\xF7\x0D\x01\x09\x04", 11);
const std::string kDataName("\x06\x09\x2A\x86\x48\x86\xF7\x0D\x01\x07\x01", 11);

std::string Attribute(const std::string& name, const std::string& value) {
    return DerElement(kBerSequence, name + DerElement(kBerSet, value));
}

std::string ContentType() { return Attribute(kContentTypeName, kDataName); }

std::string DigestOf(const std::string& data) {
    return Attribute(kDigestName, DerElement(kOctets, Digest(HashAlgorithm::kSm3, data)));
}

// What a signer of `data` would sign with attributes.
std::string Attributes(const std::string& data = "other data") {
    return DerElement(kBerSet, ContentType() + DigestOf(data));
}

std::string Number(char value) { return DerElement(kBerInteger, std::string(1, value)); }

std::string SealInfo(const std::string& mark = DerElement(kText, "ES")) {
    const std::string header =
        DerElement(kBerSequence, mark + Number(4) + DerElement(kText, "maker"));
    return DerElement(kBerSequence, header + DerElement(kText, "number"));
}

std::string SealToSign() {
    return DerElement(kBerSequence, Number(4) + DerElement(kBerSequence, SealInfo()) +
                                        DerElement(kTime, "20260615120000Z") +
                                        DerElement(kBits, std::string(33, '\0')) +
                                        DerElement(kText, "property"));
}

TEST(AmbiguousDataTest, WhatMessagesAndSealsSignIsAmbiguous) {
    EXPECT_TRUE(IsAmbiguous(Attributes()));
    EXPECT_TRUE(IsAmbiguous(DerElement(kBerSet, DigestOf("data"))));
    EXPECT_TRUE(IsAmbiguous(SealToSign()));
    EXPECT_TRUE(IsAmbiguous(SealInfo()));
    EXPECT_TRUE(IsAmbiguous(DerElement(kBerSequence, SealInfo() + DerElement(kOctets, "cert"))));
}

// In any type of text, whole or in pieces.
const std::string kUtf8Mark = DerElement(0x0C, "ES");
const std::string kMarkInPieces = DerElement(0x36, DerElement(kText, "E") + DerElement(kText, "S"));

TEST(AmbiguousDataTest, ASealsMarkMayBeOfAnyTextTypeAndInPieces) {
    EXPECT_TRUE(IsAmbiguous(SealInfo(kUtf8Mark)));
    EXPECT_TRUE(IsAmbiguous(SealInfo(kMarkInPieces)));
    EXPECT_FALSE(IsAmbiguous(SealInfo(DerElement(0x0C, "EX"))));
    EXPECT_FALSE(IsAmbiguous(SealInfo(DerElement(0x0C, "ESX"))));
    EXPECT_FALSE(IsAmbiguous(SealInfo(DerElement(0x0C, "E"))));
    EXPECT_FALSE(IsAmbiguous(SealInfo(DerElement(0x36, DerElement(kText, "E")))));
}

TEST(AmbiguousDataTest, TheWholeHasToHaveThatForm) {
    for (const std::string& whole : {Attributes(), SealToSign(), SealInfo()}) {
        EXPECT_FALSE(IsAmbiguous(whole + " "));
        EXPECT_FALSE(IsAmbiguous(" " + whole));
        EXPECT_FALSE(IsAmbiguous(DerElement(kOctets, whole)));
        for (std::size_t size = 0; size < whole.size(); ++size) {
            EXPECT_FALSE(IsAmbiguous(whole.substr(0, size))) << size;
        }
    }
}

TEST(AmbiguousDataTest, OtherStructuresAndTextsAreNot) {
    EXPECT_FALSE(IsAmbiguous(""));
    EXPECT_FALSE(IsAmbiguous("0"));
    EXPECT_FALSE(IsAmbiguous("1.5 is a number, 0x31 its first byte"));
    EXPECT_FALSE(IsAmbiguous(DerElement(kBerSet, "")));
    EXPECT_FALSE(IsAmbiguous(DerElement(kBerSequence, "")));
    // No digest: no message could have these alone.
    EXPECT_FALSE(IsAmbiguous(DerElement(kBerSet, ContentType())));
    EXPECT_FALSE(IsAmbiguous(DerElement(kBerSet, kDigestName)));
    // A private key, and a seal signature's beginning with another fourth part.
    EXPECT_FALSE(IsAmbiguous(DerElement(
        kBerSequence, Number(0) + DerElement(kBerSequence, kDataName) + DerElement(kOctets, ""))));
    EXPECT_FALSE(IsAmbiguous(
        DerElement(kBerSequence, Number(4) + DerElement(kBerSequence, "") + DerElement(kTime, "") +
                                     DerElement(kOctets, "") + DerElement(kText, ""))));
}

class AmbiguousMessageTest : public ServiceTest {
protected:
    std::string LoggedIn(KeyKind kind) {
        std::string certId = MakeKey(kind);
        EXPECT_EQ(SOF_Login(m_context, certId.c_str(), kPin), 0);
        return certId;
    }

    int Verify(const std::string& message, std::string_view data) {
        return SOF_VerifySignedMessage(m_context, Bytes(message), Size(message), Bytes(data),
                                       Size(data));
    }

    // The value e of `data` for that key.
    std::string Sm2HashOf(const std::string& certId, const std::string& data) {
        const std::string certificate = Export(m_context, certId).data;
        return TwoSteps([&](unsigned char* out, int* outLen) {
                   return SOF_HashData(m_context, 1, Bytes(data), Size(data), Bytes(certificate),
                                       Size(certificate), "1234567812345678", 16, out, outLen);
               })
            .data;
    }

    void* m_context = Open();
};

TEST_F(AmbiguousMessageTest, NoMessageOfAnSm2KeyIsMadeOverThem) {
    const std::string certId = LoggedIn(KeyKind::kSm2);
    for (const std::string& data :
         {Attributes(), SealToSign(), SealInfo(), SealInfo(kUtf8Mark), SealInfo(kMarkInPieces)}) {
        EXPECT_EQ(SignMessage(m_context, certId, data).code, kServiceDataAmbiguous);
        // Neither at once into a buffer, nor after a size query for other data.
        ASSERT_EQ(SignMessage(m_context, certId, "data").code, 0);
        std::string room(10'000, '\0');
        int length = Size(room);
        EXPECT_EQ(SOF_SignMessageEx(m_context, certId.c_str(), 1, 1, Bytes(data), Size(data),
                                    reinterpret_cast<unsigned char*>(room.data()), &length),
                  kServiceDataAmbiguous);
    }
}

TEST_F(AmbiguousMessageTest, AMessageOfAnRsaKeyIsMadeSinceItSignsAttributes) {
    const std::string certId = LoggedIn(KeyKind::kRsa);
    const Answer message = SignMessage(m_context, certId, Attributes());
    ASSERT_EQ(message.code, 0);
    EXPECT_EQ(Verify(message.data, Attributes()), 0);
}

TEST_F(AmbiguousMessageTest, APlainSignatureOfThemIsMadeForHostsThatBuildTheirMessages) {
    const std::string certId = LoggedIn(KeyKind::kSm2);
    EXPECT_EQ(SignData(m_context, certId, Attributes()).code, 0);
}

TEST_F(AmbiguousMessageTest, AMessageOverThemThatWasMadeFromTheirHashIsNotAccepted) {
    const std::string certId = LoggedIn(KeyKind::kSm2);
    for (const std::string& data : {Attributes(), SealToSign(), SealInfo()}) {
        const Answer message = SignHash(m_context, certId, 1, Sm2HashOf(certId, data));
        ASSERT_EQ(message.code, 0);
        EXPECT_EQ(Verify(message.data, data), kServiceDataAmbiguous);
        EXPECT_EQ(Verify(message.data, "data"), kServiceSignatureInvalid);
    }
}

TEST_F(AmbiguousMessageTest, TheAttributesOfAGoodMessageAreNotAcceptedAsItsData) {
    const Answer message = SignMessage(m_context, LoggedIn(KeyKind::kRsa), "data");
    ASSERT_EQ(message.code, 0);
    const auto* cursor = Bytes(message.data);
    const SignedContentHandle info(
        d2i_SignedContentInfo(nullptr, &cursor, static_cast<long>(message.data.size())));
    ASSERT_TRUE(info);
    SignerInfo* signer = sk_SignerInfo_value(info->signedData->signers, 0);
    const std::string attributes = EncodeSortedAttributes(signer->signedAttributes);
    sk_X509_ATTRIBUTE_pop_free(signer->signedAttributes, X509_ATTRIBUTE_free);
    signer->signedAttributes = nullptr;
    EXPECT_EQ(Verify(DerOf<i2d_SignedContentInfo>(info.get()), attributes), kServiceDataAmbiguous);
}

TEST_F(AmbiguousMessageTest, ACertificateAKeyAndAMessageAreSignedAsAnyOtherData) {
    const std::string certId = LoggedIn(KeyKind::kSm2);
    const std::string certificate = Export(m_context, certId).data;
    for (const std::string& data : {certificate, SignMessage(m_context, certId, "data").data}) {
        const Answer message = SignMessage(m_context, certId, data);
        ASSERT_EQ(message.code, 0);
        EXPECT_EQ(Verify(message.data, data), 0);
    }
}

}  // namespace
