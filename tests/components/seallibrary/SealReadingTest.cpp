#include <gtest/gtest.h>

#include "components/certservice/AmbiguousData.h"
#include "components/crypto/Signature.h"
#include "components/seallibrary/Seal.h"
#include "components/seallibrary/SealAsn1.h"
#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealLimits.h"
#include "tests/components/seallibrary/HandMade.h"

namespace {

// Both outer shapes, put together byte by byte.
class SealReadingTest : public testing::TestWithParam<bool> {
protected:
    SealReadingTest() { m_made.form2014 = GetParam(); }

    int Read() { return ReadSeal(Build(m_made, m_maker, m_signer), m_seal); }
    bool MakerVerifies() {
        return VerifyData(m_maker.key.get(), HashAlgorithm::kSm3, m_seal.signedPart,
                          m_seal.signature);
    }

    TestIdentity m_maker = MakeIdentity(KeyKind::kSm2);
    TestIdentity m_signer = MakeIdentity(KeyKind::kSm2);
    HandMadeSeal m_made;
    Seal m_seal;
};

INSTANTIATE_TEST_SUITE_P(Shapes, SealReadingTest, testing::Bool());

TEST_P(SealReadingTest, ASealOfAnotherMakerIsReadAndItsSignatureHolds) {
    ASSERT_EQ(Read(), kSealOk);
    EXPECT_EQ(m_seal.form, GetParam() ? SealForm::kGm2014 : SealForm::kGb2020);
    EXPECT_EQ(m_seal.esId, "42");
    EXPECT_EQ(m_seal.widthMm, 42);
    EXPECT_EQ(m_seal.created, m_seal.validFrom);
    EXPECT_TRUE(NamesSigner(m_seal, m_signer.certificate));
    EXPECT_TRUE(MakerVerifies());
}

TEST_P(SealReadingTest, TheSignatureMayBeTheBareValues) {
    m_made.bareSignature = true;
    ASSERT_EQ(Read(), kSealOk);
    EXPECT_EQ(m_seal.signature.size(), 64u);
    EXPECT_TRUE(MakerVerifies());
}

TEST_P(SealReadingTest, ExtensionsMayStandBareOrBehindATag) {
    const std::string one = Der(0x30, Der(0x06, "\x2A\x03") + Der(0x04, "x"));
    for (const std::string& extDatas :
         {Der(0x30, one), Der(0x30, ""), Der(0xA0, one + one), Der(0xA0, Der(0x30, one + one))}) {
        m_made.extDatas = extDatas;
        ASSERT_EQ(Read(), kSealOk);
        EXPECT_TRUE(MakerVerifies());
    }
}

TEST_P(SealReadingTest, TextsMayBeOfAnyTextType) {
    for (const int tag : {0x0C, 0x13, 0x1A}) {
        m_made.textTag = tag;
        ASSERT_EQ(Read(), kSealOk);
        EXPECT_EQ(m_seal.pictureType, "ofd");
    }
}

TEST_P(SealReadingTest, ANameInBmpStringArrivesInUtf8) {
    m_made.nameTag = 0x1E;
    m_made.name = "\x53\x70\x7A\xE0";
    ASSERT_EQ(Read(), kSealOk);
    EXPECT_EQ(m_seal.name, "\xE5\x8D\xB0\xE7\xAB\xA0");
}

TEST_P(SealReadingTest, DatesMayBeOfTheOtherTimeType) {
    m_made.dateTag = 0x17;
    m_made.createDate = m_made.validStart = m_made.validEnd = "260615120000Z";
    ASSERT_EQ(Read(), kSealOk);
    EXPECT_EQ(m_seal.validTo, kTestNow);
    m_made.dateTag = 0x18;
    ASSERT_EQ(Read(), kSealOk);
    EXPECT_EQ(m_seal.validTo, kTestNow);
}

TEST_P(SealReadingTest, ACertificateMayStandInTheListWithoutItsOctetString) {
    m_made.certList = Der(0x30, m_signer.certificate);
    ASSERT_EQ(Read(), kSealOk);
    EXPECT_TRUE(NamesSigner(m_seal, m_signer.certificate));
}

TEST_P(SealReadingTest, ABitStringWithUnusedBitsIsRefused) {
    m_made.unusedBits = 1;
    EXPECT_EQ(Read(), kSealDamaged);
}

TEST_P(SealReadingTest, ASealWithoutItsMarkIsRefused) {
    m_made.mark = Der(0x16, "EX");
    EXPECT_EQ(Read(), kSealDamaged);
}

// The two characters in each type of text, whole and in pieces, and with lengths and tags that DER
// doesn't write.
std::vector<std::string> MarksOfOtherForms() {
    std::vector<std::string> marks = {"\x16\x81\x02\x45\x53", "\x1F\x16\x02\x45\x53"};
    for (const int tag : {0x0C, 0x13, 0x14, 0x16, 0x1A, 0x1E}) {
        if (tag != 0x16) marks.push_back(Der(tag, "ES"));
        const int inPieces = tag | 0x20;
        marks.push_back(Der(inPieces, Der(tag, "ES")));
        marks.push_back(Der(inPieces, Der(tag, "E") + Der(tag, "") + Der(0x04, "S")));
        marks.push_back(Der(inPieces, Der(0x24, Der(tag, "E") + Der(tag, "S"))));
        const std::string end(2, '\0');
        marks.push_back(static_cast<char>(inPieces) + ("\x80" + Der(tag, "ES")) + end);
        marks.push_back(Der(inPieces, "\x21\x80" + Der(tag, "ES") + end));
    }
    return marks;
}

// What somebody had signed as a message must not turn out to be a seal.
TEST_P(SealReadingTest, AMarkOfAnotherFormIsRefusedAndItsDataAreAmbiguousToSign) {
    ASSERT_EQ(Read(), kSealOk);
    EXPECT_TRUE(IsAmbiguous(m_seal.signedPart));
    for (const std::string& mark : MarksOfOtherForms()) {
        m_made.mark = mark;
        const std::string seal = Build(m_made, m_maker, m_signer);
        EXPECT_EQ(ReadSeal(seal, m_seal), kSealDamaged) << mark;
        std::vector<DerElement> parts;
        ASSERT_TRUE(SplitSequence(seal, 5, parts));
        const std::string info(parts[0].whole);
        EXPECT_TRUE(Decode<SesInfo>(info)) << mark;
        EXPECT_TRUE(IsAmbiguous(info)) << mark;
        EXPECT_TRUE(IsAmbiguous(Der(0x30, info + Der(0x04, "certificate")))) << mark;
    }
}

// The same element with its tag written the long way, which no DER does and decoders take.
std::string WithLongTag(const std::string& element, const std::string& padding = "") {
    const auto tag = static_cast<unsigned char>(element[0]);
    const std::string number = padding + static_cast<char>(tag & 0x1F);
    return static_cast<char>(tag | 0x1F) + number + element.substr(1);
}

TEST_P(SealReadingTest, SignedPartsWithTagsOfOtherFormsAreAmbiguousToSign) {
    const std::string seal = Build(m_made, m_maker, m_signer);
    std::vector<DerElement> parts;
    ASSERT_TRUE(SplitSequence(seal, 5, parts));
    const std::string info(parts[0].whole);
    std::vector<DerElement> fields;
    ASSERT_TRUE(SplitSequence(info, 6, fields));
    const std::string header(fields[0].whole);
    const std::string rest = info.substr(info.find(header) + header.size());
    for (const char* padding : {"", "\x80"}) {
        for (const std::string& changed :
             {WithLongTag(info, padding), Der(0x30, WithLongTag(header, padding) + rest)}) {
            EXPECT_TRUE(Decode<SesInfo>(changed));
            EXPECT_TRUE(IsAmbiguous(changed));
            EXPECT_TRUE(IsAmbiguous(Der(0x30, changed)));
        }
    }

    const std::vector<std::string> elements = {Der(0x02, "\x04"), seal,
                                               Der(0x18, "20260615120000Z"), DerBits("hash"),
                                               Der(0x16, "property")};
    for (std::size_t changed = 0; changed < elements.size(); ++changed) {
        std::string content;
        for (std::size_t i = 0; i < elements.size(); ++i)
            content += i == changed ? WithLongTag(elements[i]) : elements[i];
        EXPECT_TRUE(Decode<SesToSign>(Der(0x30, content))) << changed;
        EXPECT_TRUE(IsAmbiguous(Der(0x30, content))) << changed;
        EXPECT_TRUE(IsAmbiguous(WithLongTag(Der(0x30, content)))) << changed;
    }
}

TEST_P(SealReadingTest, SizesMustBeSensible) {
    for (const std::string& width : {Der(0x02, "\xFF"), Der(0x02, "\x7F\xFF"),
                                     Der(0x02, std::string(20, '\x11')), Der(0x02, "")}) {
        m_made.width = width;
        EXPECT_EQ(Read(), kSealDamaged);
    }
}

TEST_P(SealReadingTest, ATimeThatIsNoneIsRefused) {
    m_made.validEnd = "20261332000000Z";
    EXPECT_EQ(Read(), kSealDamaged);
}

TEST_P(SealReadingTest, AnEmptyListOfSignersIsRefused) {
    m_made.certList = Der(0x30, "");
    EXPECT_EQ(Read(), kSealDamaged);
}

TEST_P(SealReadingTest, AListOfTooManySignersIsRefused) {
    std::string list;
    for (std::size_t i = 0; i < kMaxSigners; ++i) list += Der(0x04, "x");
    m_made.certList = Der(0x30, list);
    EXPECT_EQ(Read(), kSealOk);
    m_made.certList = Der(0x30, list + Der(0x04, "x"));
    EXPECT_EQ(Read(), kSealDamaged);
}

TEST_P(SealReadingTest, BytesBehindTheSealAreRefused) {
    const std::string seal = Build(m_made, m_maker, m_signer);
    EXPECT_EQ(ReadSeal(seal + '\0', m_seal), kSealDamaged);
    EXPECT_EQ(ReadSeal(seal + seal, m_seal), kSealDamaged);
}

TEST_P(SealReadingTest, EveryTruncationIsRefused) {
    const std::string seal = Build(m_made, m_maker, m_signer);
    for (std::size_t size = 0; size < seal.size(); ++size)
        ASSERT_EQ(ReadSeal(std::string_view(seal).substr(0, size), m_seal), kSealDamaged) << size;
}

class FormOfFourTest : public testing::Test {
protected:
    int Read() { return ReadSeal(Build(m_made, m_maker, m_signer), m_seal); }

    TestIdentity m_maker = MakeIdentity(KeyKind::kSm2);
    TestIdentity m_signer = MakeIdentity(KeyKind::kSm2);
    HandMadeSeal m_made;
    Seal m_seal;
};

TEST_F(FormOfFourTest, Version5IsTheFormOf2025AndMayCarryATimeStamp) {
    m_made.version = 5;
    m_made.behindSignature = Der(0xA0, DerBits("token"));
    ASSERT_EQ(Read(), kSealOk);
    EXPECT_EQ(m_seal.form, SealForm::kGm2025);
    EXPECT_EQ(m_seal.version, 5);
    EXPECT_EQ(m_seal.timeStamp, "token");
    m_made.behindSignature = "";
    ASSERT_EQ(Read(), kSealOk);
    EXPECT_FALSE(m_seal.timeStamp);
}

TEST_F(FormOfFourTest, ATokenMayStandInAnOctetStringOrBare) {
    for (const std::string& inside : {Der(0x04, Der(0x30, "x")), Der(0x30, "x")}) {
        m_made.behindSignature = Der(0xA0, inside);
        ASSERT_EQ(Read(), kSealOk);
        EXPECT_EQ(m_seal.timeStamp, Der(0x30, "x"));
    }
}

TEST_F(FormOfFourTest, WhatHoldsNoTokenIsReadAsAnEmptyOne) {
    for (const std::string& inside : {std::string(), Der(0x0C, "token"), DerBits("token", 1),
                                      Der(0x03, ""), DerBits("a") + DerBits("b")}) {
        m_made.behindSignature = Der(0xA0, inside);
        ASSERT_EQ(Read(), kSealOk);
        EXPECT_EQ(m_seal.timeStamp, "");
    }
}

TEST_F(FormOfFourTest, TheListsKindMustBeToldAndKnown) {
    m_made.certListType = "";
    EXPECT_EQ(Read(), kSealDamaged);
    m_made.certListType = Der(0x02, "\x03");
    EXPECT_EQ(Read(), kSealDamaged);
}

TEST_F(FormOfFourTest, AListOfCertificatesThatIsCalledDigestsIsRefused) {
    m_made.certListType = Der(0x02, "\x02");
    EXPECT_EQ(Read(), kSealDamaged);
}

TEST_F(FormOfFourTest, ADigestOfAnyNameCountsByItsValue) {
    const std::string digest = Digest(HashAlgorithm::kSha256, m_signer.certificate);
    m_made.certListType = Der(0x02, "\x02");
    m_made.certList = Der(0x30, Der(0x30, Der(0x16, "whatever") + Der(0x04, digest)));
    ASSERT_EQ(Read(), kSealOk);
    EXPECT_TRUE(NamesSigner(m_seal, m_signer.certificate));
}

TEST_F(FormOfFourTest, AnEmptyDigestNamesNobody) {
    m_made.certListType = Der(0x02, "\x02");
    m_made.certList = Der(0x30, Der(0x30, Der(0x16, "SM3") + Der(0x04, "")));
    ASSERT_EQ(Read(), kSealOk);
    EXPECT_FALSE(NamesSigner(m_seal, m_signer.certificate));
}

TEST_F(FormOfFourTest, ThreeOrSixOuterElementsAreNoSeal) {
    const std::string seal = Build(m_made, m_maker, m_signer);
    m_made.behindSignature = Der(0xA0, DerBits("token")) + Der(0xA1, "");
    EXPECT_EQ(Read(), kSealDamaged);
    EXPECT_EQ(ReadSeal(Der(0x30, Der(0x30, "") + Der(0x30, "") + Der(0x30, "")), m_seal),
              kSealDamaged);
}

TEST_F(FormOfFourTest, ASealOverTheLimitIsRefusedUnread) {
    EXPECT_EQ(ReadSeal(std::string(kMaxSealBytes + 1, '0'), m_seal), kSealTooLarge);
}

}  // namespace
