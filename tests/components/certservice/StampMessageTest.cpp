#include "components/certservice/StampMessage.h"

#include "components/certservice/BerElements.h"
#include "components/certservice/ForeignMessageTest.h"
#include "components/certservice/SignedMessage.h"

namespace {

// What becomes of the other parts of a message when a time stamp is put into it.
class StampMessageTest : public ForeignMessageTest {
protected:
    std::string Token(const std::string& message) {
        return m_stamper.Token({.imprint = Imprint(message)});
    }
    // `message` with `more` at the end of its last element, `levels` down: 5 is the signer.
    static std::string Lengthened(std::string_view message, const std::string& more, int levels) {
        const auto element = FirstBerElement(message);
        EXPECT_TRUE(element);
        if (levels == 1) return DerElement(element->tag, std::string(element->content) + more);
        const auto parts = SplitBer(element->content);
        EXPECT_TRUE(parts);
        const std::string_view last = parts->back().whole;
        std::string content(element->content.substr(0, element->content.size() - last.size()));
        content += Lengthened(last, more, levels - 1);
        return DerElement(element->tag, content);
    }

    StampAuthority m_stamper = Stamper(KeyKind::kRsa);
};

TEST_F(StampMessageTest, EveryFormOfMessageTakesAStampAndStillVerifies) {
    MakeSigner();
    for (const char* options : {"", "-nodetach", "-noattr", "-noattr -nodetach", "-keyid",
                                "-stream -indef -nodetach", "-stream -indef"}) {
        const std::string message = Foreign(options);
        const Answer stamped = Stamp(StampAuthority::Response(Token(message)), message);
        ASSERT_EQ(stamped.code, 0) << options;
        EXPECT_EQ(VerifyMessage(stamped.data), 0) << options;
        EXPECT_EQ(VerifyStamp(stamped.data), 0) << options;
        WriteFile(Path("stamped"), stamped.data);
        const ProgramRun run = OpenSsl(
            "cms -verify -binary -inform DER -in stamped -content data -out out -CAfile "
            "trust/velmora-development-rsa.pem -purpose any");
        EXPECT_EQ(run.status, 0) << options << run.output;
    }
}

TEST_F(StampMessageTest, ALaterStampTakesThePlaceOfTheEarlierOne) {
    const std::string message = Message();
    const std::string once = StampMessage(message, Token(message));
    const std::string token = Token(message);
    const std::string twice = StampMessage(once, token);
    EXPECT_EQ(twice, StampMessage(message, token));
    EXPECT_EQ(VerifyStamp(twice), 0);
}

TEST_F(StampMessageTest, AnEarlierStampIsFoundHoweverItsLengthsAreWritten) {
    const std::string message = Message();
    const std::string token = Token(message);
    const std::string mark("\x06\x0B\x2A\x86\x48\x86\xF7\x0D\x01\x09\x10\x02\x0E", 13);
    const std::string attribute =
        DerElement(kBerSequence, "\x06\x81" + mark.substr(1) + DerElement(kBerSet, token));
    const std::string other = Lengthened(message, DerElement(kBerContext1, attribute), 5);
    EXPECT_EQ(VerifyStamp(other), 0);
    EXPECT_EQ(StampMessage(other, token), StampMessage(message, token));
}

TEST_F(StampMessageTest, OtherUnsignedAttributesStay) {
    const std::string message = Message();
    std::string stamped = StampMessage(message, Token(message));
    const std::string oid("\x2A\x86\x48\x86\xF7\x0D\x01\x09\x10\x02\x0E", 11);
    const size_t at = stamped.find(oid);
    ASSERT_NE(at, std::string::npos);
    stamped[at + oid.size() - 1] = '\x7E';
    EXPECT_EQ(VerifyStamp(stamped), kServiceTimeStampMissing);
    const std::string token = Token(message);
    const std::string both = StampMessage(stamped, token);
    EXPECT_EQ(VerifyStamp(both), 0);
    EXPECT_EQ(VerifyMessage(both), 0);
    EXPECT_NE(both.find(oid.substr(0, oid.size() - 1) + '\x7E'), std::string::npos);
    EXPECT_NE(both.find(token), std::string::npos);
}

TEST_F(StampMessageTest, AMessageWithSeveralStampsIsRefused) {
    const std::string message = Message();
    const std::string token = Token(message);
    const std::string twice = StampMessage(message, token + token);
    EXPECT_EQ(VerifyMessage(twice), 0);
    EXPECT_EQ(VerifyStamp(twice), kServiceTimeStampDamaged);
    EXPECT_EQ(VerifyStamp(StampMessage(message, std::string("\x30\0", 2))),
              kServiceTimeStampDamaged);
}

TEST_F(StampMessageTest, TheFirstSignersValueIsStampedAndTheOthersKeepTheirPlaces) {
    MakeSigner();
    const std::string first = Foreign("");
    for (const char* file : {"key", "signer"}) {
        WriteFile(Path(file + std::string("1.pem")), ReadFile(Path(file + std::string(".pem"))));
    }
    MakeSigner();
    const std::string both = Foreign("-signer signer1.pem -inkey key1.pem");
    const Answer stamped = Stamp(StampAuthority::Response(Token(both)), both);
    ASSERT_EQ(stamped.code, 0);
    EXPECT_EQ(VerifyStamp(stamped.data), 0);
    EXPECT_EQ(VerifyMessage(stamped.data), 0);
    EXPECT_EQ(SignatureValue(stamped.data), SignatureValue(both));
}

TEST_F(StampMessageTest, BytesBehindTheMessageAreDropped) {
    const std::string message = Message();
    const std::string token = Token(message);
    EXPECT_EQ(StampMessage(message + std::string(100, '\0'), token), StampMessage(message, token));
}

TEST_F(StampMessageTest, WhatIsNoMessageTakesNoStamp) {
    const std::string message = Message();
    EXPECT_EQ(StampMessage("", "token"), "");
    EXPECT_EQ(StampMessage("no message", "token"), "");
    for (size_t size = 1; size < message.size(); size += 11) {
        EXPECT_EQ(StampMessage(message.substr(0, size), "token"), "");
    }
    EXPECT_EQ(StampMessage(DerElement(kBerSequence, ""), "token"), "");
}

TEST_F(StampMessageTest, ElementsAreReadWithDefiniteAndIndefiniteLengths) {
    const std::string indefinite("\x30\x80\x02\x01\x05\x30\x80\0\0\0\0rest", 15);
    const auto element = FirstBerElement(indefinite);
    ASSERT_TRUE(element);
    EXPECT_EQ(element->whole, indefinite.substr(0, 11));
    EXPECT_EQ(element->content, indefinite.substr(2, 7));
    const auto parts = SplitBer(element->content);
    ASSERT_TRUE(parts);
    ASSERT_EQ(parts->size(), 2u);
    EXPECT_EQ((*parts)[0].content, "\x05");
    EXPECT_EQ((*parts)[1].tag, kBerSequence);
    EXPECT_EQ((*parts)[1].content, "");
    EXPECT_FALSE(FirstBerElement(std::string("\x30\x80\x02\x01", 4)));
    EXPECT_FALSE(SplitBer(std::string("\x02\x01\x05\x02", 4)));
    EXPECT_TRUE(SplitBer("")->empty());
    for (const size_t size : {0u, 1u, 127u, 128u, 255u, 256u, 65535u, 65536u}) {
        const std::string made = DerElement(0x04, std::string(size, 'x'));
        const auto read = FirstBerElement(made);
        ASSERT_TRUE(read) << size;
        EXPECT_EQ(read->content.size(), size);
        EXPECT_EQ(read->whole.size(), made.size());
    }
}

}  // namespace
