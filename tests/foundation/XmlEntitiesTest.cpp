#include "foundation/XmlEntities.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/XmlEntityTable.h"

namespace {

std::string Decoded(std::string_view text) {
    std::string decoded;
    AppendXmlDecoded(text, decoded);
    return decoded;
}

std::string Escaped(std::string_view value) {
    std::string text;
    AppendXmlEscaped(value, text);
    return text;
}

TEST(XmlEntitiesTest, DecimalAndHexadecimalNumbersNameACharacter) {
    EXPECT_EQ(XmlReferencedCharacter("#65"), 65U);
    EXPECT_EQ(XmlReferencedCharacter("#0065"), 65U);
    EXPECT_EQ(XmlReferencedCharacter("#x41"), 65U);
    EXPECT_EQ(XmlReferencedCharacter("#x4e2d"), 20013U);
    EXPECT_EQ(XmlReferencedCharacter("#x10FFFF"), 0x10FFFFU);
    EXPECT_EQ(XmlReferencedCharacter("#1114111"), 0x10FFFFU);
}

TEST(XmlEntitiesTest, NumbersAreReadWithoutRegardToCase) {
    EXPECT_EQ(XmlReferencedCharacter("#X41"), 65U);
    EXPECT_EQ(XmlReferencedCharacter("#X4E2D"), 20013U);
    EXPECT_EQ(Decoded("&#X41;"), "A");
}

TEST(XmlEntitiesTest, ZeroAndWhatIsNoNumberNameNoCharacter) {
    for (const char* reference :
         {"#0", "#x0", "#", "#x", "#-65", "#+65", "# 65", "#65 ", "#6a", "#xg", "#x 1", "x41", "65",
          "##65", "#xx41", "#x110000", "#1114112", "#9999999", "#xFFFFFF"}) {
        EXPECT_EQ(XmlReferencedCharacter(reference), 0U) << reference;
    }
}

TEST(XmlEntitiesTest, NamesAreReadWithoutRegardToCase) {
    EXPECT_EQ(XmlReferencedCharacter("amp"), 38U);
    EXPECT_EQ(XmlReferencedCharacter("AMP"), 38U);
    EXPECT_EQ(XmlReferencedCharacter("aMp"), 38U);
    EXPECT_EQ(XmlReferencedCharacter("Apos"), 39U);
    EXPECT_EQ(XmlReferencedCharacter("thetasym"), 977U);
    EXPECT_EQ(XmlReferencedCharacter("diams"), 9830U);
}

TEST(XmlEntitiesTest, OfNamesThatDifferInCaseOnlyTheOneWithTheCapitalIsMeant) {
    EXPECT_EQ(XmlReferencedCharacter("Omega"), 937U);
    EXPECT_EQ(XmlReferencedCharacter("omega"), 937U);
    EXPECT_EQ(XmlReferencedCharacter("agrave"), 192U);
    EXPECT_EQ(XmlReferencedCharacter("yuml"), 376U);
    EXPECT_EQ(XmlReferencedCharacter("dagger"), 8225U);
    EXPECT_EQ(XmlReferencedCharacter("prime"), 8243U);
    EXPECT_EQ(XmlReferencedCharacter("larr"), 8656U);
    EXPECT_EQ(Decoded("&omega;&Omega;"), "ΩΩ");
}

TEST(XmlEntitiesTest, AnUnknownNameMeansNothing) {
    for (const char* reference : {"", "bogus", "am", "ampe", "amp ", " amp", "4lt", "34quot",
                                  "0034quot", "verylongname", "thetasyms", "\xD3\xA1"}) {
        EXPECT_EQ(XmlReferencedCharacter(reference), 0U) << reference;
    }
}

TEST(XmlEntitiesTest, TheTableHas253NamesInTheirBuckets) {
    int count = 0;
    for (std::size_t bucket = 0; bucket < kXmlEntityBucketCount; ++bucket) {
        std::string_view entries = kXmlEntityBuckets[bucket];
        for (; !entries.empty(); ++count) {
            const auto length = static_cast<std::size_t>(entries[0] - '0');
            ASSERT_GE(entries.size(), 5 + length) << bucket;
            std::size_t sum = 0;
            for (const char c : entries.substr(5, length)) sum += static_cast<unsigned char>(c);
            EXPECT_EQ(sum % kXmlEntityBucketCount, bucket) << entries;
            EXPECT_NE(XmlReferencedCharacter(entries.substr(5, length)), 0U);
            entries.remove_prefix(5 + length);
        }
    }
    EXPECT_EQ(count, 253);
}

TEST(XmlEntitiesTest, ACharacterComesInTheAnsiCodePage) {
    EXPECT_EQ(Decoded("&#20013;&#x4E2D;"), "中中");
    EXPECT_EQ(Decoded("&middot;&times;&alpha;"), "·×Α");
    EXPECT_EQ(Decoded("&euro;"), "\x80");
    EXPECT_EQ(Decoded("a&#9;b&#10;c"), "a\tb\nc");
}

TEST(XmlEntitiesTest, ACharacterThatTheCodePageLacksLeavesItsReference) {
    for (const char* text : {"&nbsp;", "&copy;", "&#xD7FF;", "&#xD800;", "&#xDFFF;", "&#x1F600;",
                             "&#x10FFFF;", "&larr;"}) {
        EXPECT_EQ(Decoded(text), text);
    }
}

TEST(XmlEntitiesTest, AReferenceIsLookedForInTheNextNineBytes) {
    EXPECT_EQ(Decoded("&#0000065;"), "A");
    EXPECT_EQ(Decoded("&#00000065;"), "&#00000065;");
    EXPECT_EQ(Decoded("&thetasym;"), "&thetasym;");
    EXPECT_EQ(Decoded("&verylongname;"), "&verylongname;");
    EXPECT_EQ(Decoded("& a long way to go; &lt;"), "& a long way to go; <");
}

TEST(XmlEntitiesTest, BehindAnAmpersandThatMeansNothingTheTextGoesOn) {
    EXPECT_EQ(Decoded("&"), "&");
    EXPECT_EQ(Decoded("&;"), "&;");
    EXPECT_EQ(Decoded("&&lt;"), "&<");
    EXPECT_EQ(Decoded("&a&lt;b"), "&a<b");
    EXPECT_EQ(Decoded("&bogus&amp;lt;"), "&bogus&lt;");
    EXPECT_EQ(Decoded("&lt"), "&lt");
    EXPECT_EQ(Decoded("x&gt;"), "x>");
    EXPECT_EQ(Decoded(""), "");
}

TEST(XmlEntitiesTest, MarkupIsEscapedAndQuotesAreNot) {
    EXPECT_EQ(Escaped("a<b&c>d"), "a&lt;b&amp;c&gt;d");
    EXPECT_EQ(Escaped("\"'"), "\"'");
    EXPECT_EQ(Escaped("&lt;"), "&amp;lt;");
    EXPECT_EQ(Escaped("印章\x81]"), "印章\x81]");
    EXPECT_EQ(Escaped(""), "");
}

TEST(XmlEntitiesTest, WhatIsEscapedIsDecodedToTheSame) {
    std::string value;
    for (int c = 1; c < 256; ++c) value += static_cast<char>(c);
    EXPECT_EQ(Decoded(Escaped(value)), value);
}

}  // namespace
