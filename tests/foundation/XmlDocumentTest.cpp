#include "foundation/XmlDocument.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// The text of the first element with that name among the children of the root; the root's own for
// null.
std::string TextIn(const std::string& source, const char* name = nullptr) {
    XmlDocument document;
    document.Load(source.c_str());
    if (!document.FindElement(nullptr)) return "no root";
    if (name == nullptr) return document.GetElementText();
    document.EnterElement();
    return document.FindElement(name) ? document.GetElementText() : "not found";
}

TEST(XmlDocumentTest, AnEmptyElementHasNoTextInEitherForm) {
    EXPECT_EQ(TextIn("<A/>"), "");
    EXPECT_EQ(TextIn("<A></A>"), "");
    EXPECT_EQ(TextIn("<A />"), "");
}

TEST(XmlDocumentTest, AnElementWithAChildHasNoText) { EXPECT_EQ(TextIn("<A>x<B/>y</A>"), ""); }

TEST(XmlDocumentTest, CommentsArePassedOverAndCDataSectionsTakenAsTheyAre) {
    EXPECT_EQ(TextIn("<A>x<!-- c -->y<![CDATA[<z>]]></A>"), "xy<z>");
    EXPECT_EQ(TextIn("<A><![CDATA[&amp; ]] > ]]]></A>"), "&amp; ]] > ]");
    EXPECT_EQ(TextIn("<A>x<?p <q> ?>&lt;y</A>"), "x<y");
}

TEST(XmlDocumentTest, WhiteSpaceIsKeptButForPiecesOfNothingElseBetweenMarkup) {
    EXPECT_EQ(TextIn("<A> x\r\n\ty </A>"), " x\r\n\ty ");
    EXPECT_EQ(TextIn("<A> \r\n\t</A>"), " \r\n\t");
    EXPECT_EQ(TextIn("<A> <!-- c --> x <!-- c -->\t<![CDATA[ ]]></A>"), " x  ");
}

TEST(XmlDocumentTest, ReferencesAreResolvedOnce) {
    EXPECT_EQ(TextIn("<A>&amp;lt;</A>"), "&lt;");
    EXPECT_EQ(TextIn("<A>&lt;&amp;&gt;&quot;&apos;</A>"), "<&>\"'");
}

TEST(XmlDocumentTest, AReferenceThatMeansNothingStaysAsItIs) {
    EXPECT_EQ(TextIn("<A>&bogus;</A>"), "&bogus;");
    EXPECT_EQ(TextIn("<A>&verylongname;</A>"), "&verylongname;");
    EXPECT_EQ(TextIn("<A>a & b &amp c &</A>"), "a & b &amp c &");
}

TEST(XmlDocumentTest, ANumberedCharacterComesInTheAnsiCodePageAndStaysIfThatLacksIt) {
    EXPECT_EQ(TextIn("<A>&#20013;</A>"), "中");
    EXPECT_EQ(TextIn("<A>&#xD7FF;</A>"), "&#xD7FF;");
    EXPECT_EQ(TextIn("<A>&#x1F600;</A>"), "&#x1F600;");
}

TEST(XmlDocumentTest, AnElementNeverEndedHasNoContentAndTheOneAroundItCloses) {
    XmlDocument document;
    EXPECT_FALSE(document.Load("<A><B></A>"));
    ASSERT_TRUE(document.FindElement("A"));
    document.EnterElement();
    ASSERT_TRUE(document.FindElement("B"));
    EXPECT_EQ(document.GetElementText(), "");
    EXPECT_FALSE(document.FindElement(nullptr));
}

TEST(XmlDocumentTest, WhatAnElementNeverEndedHeldStandsBesideIt) {
    XmlDocument document;
    EXPECT_FALSE(document.Load("<A><B><C>1</C><D>2</D></A>"));
    ASSERT_TRUE(document.FindElement("A"));
    document.EnterElement();
    ASSERT_TRUE(document.FindElement("B"));
    document.EnterElement();
    EXPECT_FALSE(document.FindElement(nullptr));
    document.LeaveElement();
    ASSERT_TRUE(document.FindElement("C"));
    EXPECT_EQ(document.GetElementText(), "1");
    ASSERT_TRUE(document.FindElement("D"));
    EXPECT_EQ(document.GetElementText(), "2");
    EXPECT_FALSE(document.FindElement(nullptr));
}

TEST(XmlDocumentTest, ATruncatedAnswerReadsAsEmpty) {
    XmlDocument document;
    EXPECT_FALSE(document.Load("<ROOT><STATUSCODE>200</STATUSCODE><COUNT>2</COUNT>"));
    ASSERT_TRUE(document.FindElement("ROOT"));
    document.EnterElement();
    EXPECT_FALSE(document.FindElement("STATUSCODE"));
    EXPECT_EQ(document.GetElementText(), "");
    document.LeaveElement();
    EXPECT_TRUE(document.FindElement("STATUSCODE"));
}

TEST(XmlDocumentTest, AnEndTagOfNothingIsDroppedAndTheElementBehindItIsTheRoot) {
    XmlDocument document;
    EXPECT_FALSE(document.Load("</X><A/>"));
    EXPECT_FALSE(document.FindElement("X"));
    ASSERT_TRUE(document.FindElement("A"));
    EXPECT_FALSE(document.FindElement(nullptr));
    EXPECT_EQ(document.GetText(), "</X><A/>");
    EXPECT_EQ(TextIn("<A>x</X>y</A>"), "xy");
}

TEST(XmlDocumentTest, ASearchFindsTheRootAndGoesOnlyForward) {
    XmlDocument document;
    ASSERT_TRUE(document.Load("<R><A>1</A><B>2</B><A>3</A></R>"));
    ASSERT_TRUE(document.FindElement("R"));
    EXPECT_FALSE(document.FindElement("R"));
    document.EnterElement();
    ASSERT_TRUE(document.FindElement("B"));
    ASSERT_TRUE(document.FindElement("A"));
    EXPECT_EQ(document.GetElementText(), "3");
    EXPECT_FALSE(document.FindElement("B"));
    EXPECT_EQ(document.GetElementText(), "3");
}

TEST(XmlDocumentTest, AfterAFailedSearchTheElementBeforeIsRead) {
    XmlDocument document;
    ASSERT_TRUE(document.Load("<R><STATUSCODE>500</STATUSCODE></R>"));
    ASSERT_TRUE(document.FindElement(nullptr));
    document.EnterElement();
    EXPECT_FALSE(document.FindElement("MESSAGE"));
    EXPECT_EQ(document.GetElementText(), "");
    ASSERT_TRUE(document.FindElement("STATUSCODE"));
    EXPECT_FALSE(document.FindElement("MESSAGE"));
    EXPECT_EQ(document.GetElementText(), "500");
}

TEST(XmlDocumentTest, NamesCompareExactly) {
    XmlDocument document;
    ASSERT_TRUE(document.Load("<R><ab/><AB1/><A/><AB x='1'/><印章>1</印章><AB>2</AB></R>"));
    ASSERT_TRUE(document.FindElement("R"));
    document.EnterElement();
    EXPECT_FALSE(document.FindElement(""));
    EXPECT_FALSE(document.FindElement("AB x='1'/"));
    ASSERT_TRUE(document.FindElement("AB"));
    ASSERT_TRUE(document.FindElement("印章"));
    EXPECT_EQ(document.GetElementText(), "1");
    ASSERT_TRUE(document.FindElement("AB"));
    EXPECT_EQ(document.GetElementText(), "2");
    EXPECT_FALSE(document.FindElement("AB"));
}

TEST(XmlDocumentTest, LeavingTwiceAtTheTopStaysOnTheRoot) {
    XmlDocument document;
    ASSERT_TRUE(document.Load("<R><A>1</A></R>"));
    ASSERT_TRUE(document.FindElement("R"));
    document.EnterElement();
    ASSERT_TRUE(document.FindElement("A"));
    document.LeaveElement();
    document.LeaveElement();
    EXPECT_FALSE(document.FindElement(nullptr));
    document.EnterElement();
    EXPECT_EQ(document.GetElementText(), "1");
}

TEST(XmlDocumentTest, EnteringAfterLeavingComesBackToTheElementLeft) {
    XmlDocument document;
    ASSERT_TRUE(document.Load("<R><A>1</A><A>2</A><A>3</A></R>"));
    ASSERT_TRUE(document.FindElement("R"));
    document.EnterElement();
    ASSERT_TRUE(document.FindElement("A"));
    ASSERT_TRUE(document.FindElement("A"));
    document.LeaveElement();
    EXPECT_EQ(document.GetElementText(), "");
    document.EnterElement();
    EXPECT_EQ(document.GetElementText(), "2");
    ASSERT_TRUE(document.FindElement("A"));
    EXPECT_EQ(document.GetElementText(), "3");
}

TEST(XmlDocumentTest, ASearchForgetsTheElementLeft) {
    XmlDocument document;
    ASSERT_TRUE(document.Load("<R><P><A>1</A></P><P><A>2</A></P></R>"));
    ASSERT_TRUE(document.FindElement("R"));
    document.EnterElement();
    ASSERT_TRUE(document.FindElement("P"));
    document.EnterElement();
    ASSERT_TRUE(document.FindElement("A"));
    document.LeaveElement();
    ASSERT_TRUE(document.FindElement("P"));
    document.EnterElement();
    EXPECT_EQ(document.GetElementText(), "");
    ASSERT_TRUE(document.FindElement("A"));
    EXPECT_EQ(document.GetElementText(), "2");
}

TEST(XmlDocumentTest, WithoutACurrentElementThereIsNothingToEnterOrLeave) {
    XmlDocument document;
    ASSERT_TRUE(document.Load("<R><A/></R>"));
    document.EnterElement();
    document.LeaveElement();
    EXPECT_TRUE(document.FindElement("R"));
}

TEST(XmlDocumentTest, AnEmptyTextHasNoElement) {
    for (const char* text : {static_cast<const char*>(nullptr), "", " \r\n", "text"}) {
        XmlDocument document;
        EXPECT_FALSE(document.Load(text));
        EXPECT_FALSE(document.FindElement(nullptr));
        EXPECT_EQ(document.GetElementText(), "");
        EXPECT_EQ(document.GetText(), text != nullptr ? text : "");
    }
}

TEST(XmlDocumentTest, LoadingAnewForgetsWhatWasThere) {
    XmlDocument document;
    EXPECT_FALSE(document.Load("<A><B>1</B></X></A><C/>"));
    ASSERT_TRUE(document.FindElement("A"));
    document.EnterElement();
    ASSERT_TRUE(document.FindElement("B"));
    ASSERT_TRUE(document.Load("<R>2</R>"));
    EXPECT_EQ(document.GetResults(), "");
    EXPECT_EQ(document.GetElementText(), "");
    ASSERT_TRUE(document.FindElement(nullptr));
    EXPECT_EQ(document.GetElementText(), "2");
    document.LeaveElement();
    EXPECT_EQ(document.GetElementText(), "2");
    EXPECT_FALSE(document.FindElement(nullptr));
}

TEST(XmlDocumentTest, AMegabyteComesWhole) {
    const std::string seal(1 << 20, 'Q');
    EXPECT_EQ(TextIn("<ROOT><SEAL>" + seal + "</SEAL></ROOT>", "SEAL"), seal);
}

TEST(XmlDocumentTest, AHundredThousandElementsAreFoundInTheirOrder) {
    std::string text = "<R>";
    for (int i = 0; i < 100'000; ++i) text += "<A>" + std::to_string(i) + "</A>";
    XmlDocument document;
    ASSERT_TRUE(document.Load((text + "</R>").c_str()));
    ASSERT_TRUE(document.FindElement("R"));
    document.EnterElement();
    for (int i = 0; i < 100'000; ++i) {
        ASSERT_TRUE(document.FindElement("A"));
        ASSERT_EQ(document.GetElementText(), std::to_string(i));
    }
    EXPECT_FALSE(document.FindElement("A"));
}

}  // namespace
