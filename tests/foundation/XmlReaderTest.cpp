#include "foundation/XmlReader.h"

#include <gtest/gtest.h>

#include <string>

#include "XmlElements.h"

namespace {

struct Read {
    bool isWellFormed;
    std::string elements;  // as ElementsOf tells them
    std::string results;
};

Read ReadText(const std::string& text) {
    XmlIndex index;
    Read read;
    read.isWellFormed = ReadXml(text, index, read.results);
    EXPECT_STREQ(FaultOfIndex(text, index), nullptr) << text;
    read.elements = ElementsOf(text, index);
    return read;
}

// The findings without their line ends; checks that they go along with the result.
std::string Findings(const std::string& text) {
    Read read = ReadText(text);
    EXPECT_EQ(read.isWellFormed, read.results.empty()) << text;
    for (std::size_t i = 0; (i = read.results.find("\r\n")) != std::string::npos;) {
        read.results.erase(i, 2);
    }
    return read.results;
}

std::string Elements(const std::string& text) { return ReadText(text).elements; }

TEST(XmlReaderTest, AWellFormedTextHasNoFinding) {
    for (const char* text :
         {"<A/>", "<A></A>", "<_a:b.c-d1>x</_a:b.c-d1>", "<?xml version='1.0'?>\r\n<A/>\r\n",
          "<!-- c --><A b='1' c=\"2\"><B/></A ><!-- d -->", "<!DOCTYPE a [<!ELEMENT a ANY>]><a/>",
          "<印章>x</印章>", "<A><![CDATA[<B>]]></A>"}) {
        EXPECT_EQ(Findings(text), "") << text;
    }
}

TEST(XmlReaderTest, ElementsStandInTheIndexAsInTheText) {
    EXPECT_EQ(Elements("<A><B/>x<C><D></D></C></A>"), "A(B C(D))");
    EXPECT_EQ(Elements("<A>\r\n <A>\t<A/></A>\r\n</A>"), "A(A(A))");
    EXPECT_EQ(Elements("text"), "");
}

TEST(XmlReaderTest, WhatStandsBetweenTagsMakesNoDifference) {
    for (const std::string gap :
         {"", "\r\n", "\r\n\r\n", "\r", "\n", "\r\r\n", "\r\n ", "\r\nx", "x\r\n", "\r\n<!---->"}) {
        std::string text = gap;
        for (const char* tag : {"<A>", "<B>", "</B>", "<C>", "<D/>", "</C>", "</A>"}) {
            text += tag + gap;
        }
        EXPECT_EQ(Elements(text), "A(B C(D))") << text;
        EXPECT_EQ(Findings(text), "") << text;
        EXPECT_EQ(Elements("<A>" + gap), "A!") << text;
    }
}

TEST(XmlReaderTest, AnAngleBracketInQuotesDoesNotEndAStartTag) {
    EXPECT_EQ(Elements("<A b='/>' c=\">'\"><B d='\"'/></A>"), "A(B)");
    EXPECT_EQ(Elements("<A b=\"<C>\"/>"), "A");
    EXPECT_EQ(Elements("<A\"><B>\"></A>"), "A");
}

TEST(XmlReaderTest, MarkupInsideSectionsIsNone) {
    EXPECT_EQ(Elements("<A><!-- <B> -- <C> --><D/></A>"), "A(D)");
    EXPECT_EQ(Elements("<A><![CDATA[<B>]]]]><D/></A>"), "A(D)");
    EXPECT_EQ(Elements("<A><?p <B> ? > ?><D/></A>"), "A(D)");
    EXPECT_EQ(Elements("<!DOCTYPE A [<!ELEMENT B ANY> <C>]><D/>"), "D");
}

TEST(XmlReaderTest, TheSecondByteOfACharacterIsNoBracketOfASection) {
    // "\x81]" is one character, and so are "\x81\x81" and "\xFE]".
    EXPECT_EQ(Elements("<A><![CDATA[\x81]]><B/>]]></A>"), "A");
    EXPECT_EQ(Elements("<A><![CDATA[\x81\x81]]><B/></A>"), "A(B)");
    EXPECT_EQ(Elements("<A><![CDATA[\x81\x81\xFE]]><B/>]]></A>"), "A");
    EXPECT_EQ(Elements("<A><![CDATA[a]]]><B/></A>"), "A(B)");
}

TEST(XmlReaderTest, TheInnermostElementOfTheNameIsEnded) {
    EXPECT_EQ(Elements("<A><A><A></A></A><B/></A>"), "A(A(A) B)");
    EXPECT_EQ(Elements("<A><B></A\r\n>"), "A(B!)");
}

TEST(XmlReaderTest, WhatAnUnendedElementHeldMovesUpInTheOrderOfTheText) {
    EXPECT_EQ(Elements("<A><B><C/><D/></A>"), "A(B! C D)");
    EXPECT_EQ(Elements("<A><B><C><D/></C><E><F/></A>"), "A(B! C(D) E! F)");
    EXPECT_EQ(Elements("<A><X/><B><C><D><E/></A>"), "A(X B! C! D! E)");
    EXPECT_EQ(Elements("<R><A><B></A><C/></R>"), "R(A(B!) C)");
    EXPECT_EQ(Elements("<T><S><R><Q><P><M/></P></R></T>"), "T(S! R(Q! P(M)))");
}

TEST(XmlReaderTest, ARootThatIsNeverEndedHoldsNothing) {
    EXPECT_EQ(Elements("<R><A>1</A><B>2</B>"), "R! A B");
    EXPECT_EQ(Findings("<R><A/>"),
              "<unended_start_tag tagname=\"R\" offset=\"0\" offset2=\"7\"/>"
              "<root_has_sibling tagname=\"A\" offset=\"3\" offset2=\"0\"/>");
}

TEST(XmlReaderTest, AnUnendedStartTagIsFoundWithTheTagThatEndsIt) {
    EXPECT_EQ(Findings("<A><B></A>"),
              "<unended_start_tag tagname=\"B\" offset=\"3\" offset2=\"6\"/>");
    EXPECT_EQ(Findings("<A><B><C></A>"),
              "<unended_start_tag tagname=\"C\" offset=\"6\" offset2=\"9\"/>"
              "<unended_start_tag tagname=\"B\" offset=\"3\" offset2=\"9\"/>");
}

TEST(XmlReaderTest, ALoneEndTagIsFoundAndDropped) {
    EXPECT_EQ(Findings("</X><A/>"), "<lone_end_tag tagname=\"X\" offset=\"0\"/>");
    EXPECT_EQ(Findings("<A></B></></ A></A>"),
              "<lone_end_tag tagname=\"B\" offset=\"3\"/><lone_end_tag tagname=\"\" offset=\"7\"/>"
              "<lone_end_tag tagname=\"\" offset=\"10\"/>");
    EXPECT_EQ(Elements("<A></B><C/></A>"), "A(C)");
    EXPECT_EQ(Findings("<A></a></A>"), "<lone_end_tag tagname=\"a\" offset=\"3\"/>");
}

TEST(XmlReaderTest, ARootWithASiblingIsFound) {
    EXPECT_EQ(Findings("<A/><B/>"), "<root_has_sibling tagname=\"B\" offset=\"4\" offset2=\"0\"/>");
    EXPECT_EQ(Elements("<A/><B/>"), "A B");
}

TEST(XmlReaderTest, ATextWithoutElementsIsFound) {
    for (const char* text : {"", " ", "text", "<!-- <A/> -->", "<?p?>"}) {
        EXPECT_EQ(Findings(text), "<no_root_element/>") << text;
    }
}

TEST(XmlReaderTest, BadMarkupIsNamedAndPassedOverToItsNextBracket) {
    EXPECT_EQ(Findings("<A>1 < 2</A>"), "<first_tag_syntax offset=\"5\"/>");
    EXPECT_EQ(Findings("<A><1></A>"), "<first_tag_syntax offset=\"3\"/>");
    EXPECT_EQ(Findings("<A><<B/></A>"), "<first_tag_syntax offset=\"3\"/>");
    EXPECT_EQ(Elements("<A><<B/></A>"), "A(B)");
    EXPECT_EQ(Findings("<A><!X></A>"), "<exclamation_tag_syntax offset=\"3\"/>");
    EXPECT_EQ(Findings("<A><!d></A>"), "<exclamation_tag_syntax offset=\"3\"/>");
    EXPECT_EQ(Findings("<A><!-x></A>"), "<comment_tag_syntax offset=\"3\"/>");
    EXPECT_EQ(Elements("<A><!-x<B/>--></A>"), "A(B)");
    EXPECT_EQ(Findings("<A><![x]]></A>"), "<cdata_section_syntax offset=\"3\"/>");
    EXPECT_EQ(Findings("<A><![cdata[x]]></A>"), "<cdata_section_syntax offset=\"3\"/>");
    EXPECT_EQ(Findings("<A><![CXATA[x]]></A>"), "<cdata_section_syntax offset=\"3\"/>");
    EXPECT_EQ(Findings("<!DX><A/>"), "<doctype_tag_syntax offset=\"0\"/>");
}

TEST(XmlReaderTest, ATagThatTheTextsEndCutsOffIsFoundWithItsKind) {
    const auto found = [](const std::string& cutOff) {
        const std::string findings = Findings("<A/>" + cutOff);
        constexpr std::string_view kBegin = "<unterminated_tag_syntax type=\"";
        if (!findings.starts_with(kBegin)) return findings;
        EXPECT_TRUE(findings.ends_with("\" offset=\"4\"/>")) << findings;
        return findings.substr(kBegin.size(), findings.find('"', kBegin.size()) - kBegin.size());
    };
    for (const char* tag : {"<B", "<B a='1'", "<B a='>", "<B a=\">'"}) {
        EXPECT_EQ(found(tag), "start_tag") << tag;
    }
    EXPECT_EQ(found("</"), "end_tag");
    EXPECT_EQ(found("</A"), "end_tag");
    EXPECT_EQ(found("<?p ?"), "processing_instruction");
    for (const char* tag : {"<!-", "<!--", "<!-- --"}) EXPECT_EQ(found(tag), "comment") << tag;
    for (const char* tag : {"<![", "<![CDA", "<![CDATA[]]"}) {
        EXPECT_EQ(found(tag), "cdata_section") << tag;
    }
    for (const char* tag : {"<!D", "<!DOCTYPE", "<!DOCTYPE a ["}) {
        EXPECT_EQ(found(tag), "document_type") << tag;
    }
    EXPECT_EQ(found("<"), "tag");
    EXPECT_EQ(found("<!"), "tag");
}

TEST(XmlReaderTest, BehindWhatIsCutOffTheTextIsReadOn) {
    EXPECT_EQ(Elements("<A><B x='1></B><C/></A>"), "A(C)");
    EXPECT_EQ(Elements("<A><!-- <B/></A>"), "A(B)");
    EXPECT_EQ(Elements("<A><![CDATA[<B/></A>"), "A(B)");
    EXPECT_EQ(Elements("<A><?p <B/></A>"), "A(B)");
    EXPECT_EQ(Elements("<!DOCTYPE x [ <A><B/></A>"), "A(B)");
    EXPECT_EQ(Elements("<!DOCTYPE x [ <!DOCTYPE y><A/>"), "A");
}

TEST(XmlReaderTest, AQuoteLeftOpenInOneTagDoesNotHideTheNext) {
    EXPECT_EQ(Elements("<A><B x='><C y=\"1\"/><D/></A>"), "A(C D)");
    EXPECT_EQ(Elements("<A x='1'><B x=\"'><C/><D y='\"'/></A>"), "A(C D)");
}

TEST(XmlReaderTest, ResultsStopGrowingAtAThousandCharacters) {
    std::string text;
    for (int i = 0; i < 100; ++i) text += "</X>";
    const std::string results = ReadText(text).results;
    EXPECT_GE(results.size(), 1000U);
    EXPECT_LT(results.size(), 1050U);
    EXPECT_TRUE(results.starts_with("<lone_end_tag tagname=\"X\" offset=\"0\"/>\r\n"));
    EXPECT_TRUE(results.ends_with("/>\r\n"));
}

TEST(XmlReaderTest, ResultsAreADocumentThemselves) {
    const std::string results = ReadText("</a&b=c><A>1 < 2</B></A>").results;
    EXPECT_EQ(Elements(results), "lone_end_tag first_tag_syntax lone_end_tag");
    EXPECT_NE(results.find("tagname=\"a&amp;b=c\""), std::string::npos);
}

TEST(XmlReaderTest, RecordsSayWhereAnElementAndItsTagsAre) {
    const std::string text = " <A x='1'>y<B/></A >";
    XmlIndex index;
    std::string results;
    ASSERT_TRUE(ReadXml(text, index, results));
    ASSERT_EQ(index.Count(), 3U);
    EXPECT_EQ(index[0].firstChild, 1U);
    EXPECT_EQ(index[1].start, 1U);
    EXPECT_EQ(index[1].length, 19U);
    EXPECT_EQ(index[1].tagLengths, 9U | 5U << 22);
    EXPECT_EQ(index[1].firstChild, 2U);
    EXPECT_EQ(index[2].start, 11U);
    EXPECT_EQ(index[2].length, 4U);
    EXPECT_EQ(index[2].tagLengths, 4U);
    EXPECT_EQ(index[2].parent, 1U);
}

TEST(XmlReaderTest, AFirstChildPointsToTheLastAndEachOtherToTheOneBefore) {
    XmlIndex index;
    std::string results;
    ASSERT_TRUE(ReadXml("<A><B/><C/><D/></A>", index, results));
    EXPECT_EQ(index[1].previousSibling, 1U);
    EXPECT_EQ(index[2].previousSibling, 4U);
    EXPECT_EQ(index[3].previousSibling, 2U);
    EXPECT_EQ(index[4].previousSibling, 3U);
    EXPECT_EQ(index[2].nextSibling, 3U);
    EXPECT_EQ(index[4].nextSibling, 0U);
}

TEST(XmlReaderTest, RecordsSayWhatIsIllFormed) {
    XmlIndex index;
    std::string results;
    EXPECT_FALSE(ReadXml("<A><B>1 < 2</B><C><D></C></A>", index, results));
    EXPECT_NE(index[0].flags & XmlElement::kIllFormedDocument, 0U);
    EXPECT_NE(index[2].flags & XmlElement::kIllFormedBelow, 0U);
    EXPECT_NE(index[3].flags & XmlElement::kIllFormedBelow, 0U);
    EXPECT_EQ(index[2].flags & XmlElement::kWithoutEndTag, 0U);
    EXPECT_NE(index[4].flags & XmlElement::kWithoutEndTag, 0U);
    EXPECT_EQ(index[4].length, 3U);
    ASSERT_TRUE(ReadXml("<A/>", index, results));
    EXPECT_EQ(index[0].flags & XmlElement::kIllFormedDocument, 0U);
}

}  // namespace
