#include <algorithm>
#include <functional>

#include "components/certservice/ForeignMessageTest.h"
#include "components/certservice/SignedMessage.h"
#include "components/certservice/StampMessage.h"

namespace {

// One changed byte anywhere in a message. VerifySignedMessage doesn't look at the signer's chain,
// so a message counts as accepted here if it verifies and ValidateCert takes the certificate that
// comes out of it. The messages hold no other certificate, no list and no unsigned attribute but
// the time stamp: nothing signs those.
class MessageDamageTest : public ForeignMessageTest {
protected:
    bool Accepted(const std::string& message) {
        if (VerifyMessage(message) != 0) return false;
        const auto parsed = SignedMessage::Parse(message);
        std::string certificate;
        if (!parsed || parsed->Field(2, certificate) != 0) return false;
        return Validate(m_context, certificate) == 0;
    }
    // True at the issuer's name in a SignerInfo: the name of `certificate`'s issuer, behind the
    // certificate itself.
    static bool IsIssuerName(const std::string& message, const std::string& certificate,
                             size_t at) {
        const CertificateHandle parsed = ParseCertificate(certificate);
        const std::string name = DerOf<i2d_X509_NAME>(X509_get_issuer_name(parsed.get()));
        const size_t from = message.find(name, message.find(certificate) + certificate.size());
        return from != std::string::npos && at >= from && at < from + name.size();
    }
    // Changes each byte by each mask and expects that none is accepted. Names are compared as RFC
    // 5280 has it (section 7.1): another letter case or type of text in a signer's issuer name
    // still names the same certificate. That alone may stay unnoticed, and only there.
    void ExpectNoChangeAccepted(const std::string& message, const std::vector<int>& masks,
                                const std::vector<std::string>& certificates,
                                const std::function<bool(const std::string&)>& accepted) {
        ASSERT_TRUE(accepted(message));
        for (size_t i = 0; i < message.size(); ++i) {
            for (const int mask : masks) {
                std::string changed = message;
                changed[i] = static_cast<char>(changed[i] ^ mask);
                if (!accepted(changed)) continue;
                const bool harmless =
                    std::any_of(certificates.begin(), certificates.end(),
                                [&](const auto& one) { return IsIssuerName(message, one, i); });
                EXPECT_TRUE(harmless) << "byte " << i << " by " << mask;
            }
        }
    }
    std::string SignerOf(const std::string& message) {
        std::string certificate;
        EXPECT_EQ(SignedMessage::Parse(message)->Field(2, certificate), 0);
        return certificate;
    }
    void ExpectNoChangeAccepted(const std::string& message, const std::vector<int>& masks) {
        ExpectNoChangeAccepted(message, masks, {SignerOf(message)},
                               [&](const std::string& changed) { return Accepted(changed); });
    }

    const std::vector<int> m_everyBit = {1, 2, 4, 8, 16, 32, 64, 128, 255};
};

TEST_F(MessageDamageTest, NoBitOfAnAttachedMessageCanBeChanged) {
    MakeSigner();
    ExpectNoChangeAccepted(Foreign("-nodetach"), m_everyBit);
}

TEST_F(MessageDamageTest, NoByteOfAMessageWithoutAttributesCanBeChanged) {
    MakeSigner();
    ExpectNoChangeAccepted(Foreign("-nodetach -noattr"), {1, 32, 255});
}

TEST_F(MessageDamageTest, NoByteOfAnyOtherFormCanBeChanged) {
    MakeSigner();
    for (const char* options : {"", "-noattr", "-stream -indef -nodetach"}) {
        SCOPED_TRACE(options);
        ExpectNoChangeAccepted(Foreign(options), {1, 255});
    }
}

TEST_F(MessageDamageTest, NoByteOfAnSm2MessageCanBeChanged) {
    ExpectNoChangeAccepted(Message(KeyKind::kSm2), {1, 32, 255});
}

TEST_F(MessageDamageTest, NoByteOfAStampedMessageCanBeChanged) {
    const std::string message = Message(KeyKind::kSm2);
    const StampAuthority stamper = Stamper(KeyKind::kSm2);
    const std::string token = stamper.Token({.imprint = Imprint(message)});
    ExpectNoChangeAccepted(
        StampMessage(message, token), {1, 32, 255}, {SignerOf(message), stamper.Certificate()},
        [&](const std::string& changed) { return VerifyStamp(changed) == 0 && Accepted(changed); });
}

TEST_F(MessageDamageTest, TheVersionIsOneOrWhatTheContentsAskFor) {
    MakeSigner();
    for (const auto& [options, versions] : {std::pair("-nodetach", std::string("\1")),
                                            std::pair("-nodetach -keyid", std::string("\1\3"))}) {
        std::string message = Foreign(options);
        const size_t at = message.find(std::string("\xA0\x82", 2)) + 4 + 4 + 2;
        for (char version = 0; version < 8; ++version) {
            message[at] = version;
            EXPECT_EQ(VerifyMessage(message) == 0, versions.find(version) != std::string::npos)
                << options << int(version);
        }
    }
}

}  // namespace
