#include <gtest/gtest.h>

#include <string>

#include "foundation/XmlDocument.h"

namespace {

class XmlDocumentWritingTest : public testing::Test {
protected:
    // Goes to the elements of those names, each in the one before.
    void GoTo(std::initializer_list<const char*> names) {
        for (const char* name : names) {
            m_document.EnterElement();
            ASSERT_TRUE(m_document.FindElement(name)) << name;
        }
    }

    void ExpectText(const std::string& expected) { EXPECT_EQ(m_document.GetText(), expected); }

    XmlDocument m_document;
};

TEST_F(XmlDocumentWritingTest, ARequestStandsOneElementToALine) {
    ASSERT_TRUE(m_document.AddElement("ROOT", nullptr));
    m_document.EnterElement();
    ASSERT_TRUE(m_document.AddElement("A", "1"));
    ASSERT_TRUE(m_document.AddElement("B", ""));
    m_document.LeaveElement();
    ExpectText("<ROOT>\r\n<A>1</A>\r\n<B/>\r\n</ROOT>\r\n");
}

TEST_F(XmlDocumentWritingTest, MarkupInAValueIsWrittenAsReferencesAndReadBack) {
    ASSERT_TRUE(m_document.AddElement("A", "a<b&c"));
    EXPECT_EQ(m_document.GetText(), "<A>a&lt;b&amp;c</A>\r\n");
    EXPECT_EQ(m_document.GetElementText(), "a<b&c");
    ASSERT_TRUE(m_document.AddElement("B", "\"'>&amp;"));
    EXPECT_EQ(m_document.GetElementText(), "\"'>&amp;");
    EXPECT_NE(m_document.GetText().find("<B>\"'&gt;&amp;amp;</B>"), std::string::npos);
}

TEST_F(XmlDocumentWritingTest, CharactersOfTwoBytesAreWrittenWhole) {
    ASSERT_TRUE(m_document.AddElement("印", "财务专用章\x81]"));
    ExpectText("<印>财务专用章\x81]</印>\r\n");
    EXPECT_EQ(m_document.GetElementText(), "财务专用章\x81]");
}

TEST_F(XmlDocumentWritingTest, TheNewElementIsTheCurrentOne) {
    ASSERT_TRUE(m_document.AddElement("R", nullptr));
    m_document.EnterElement();
    ASSERT_TRUE(m_document.AddElement("A", "1"));
    EXPECT_EQ(m_document.GetElementText(), "1");
    EXPECT_FALSE(m_document.FindElement(nullptr));
    m_document.EnterElement();
    ASSERT_TRUE(m_document.AddElement("B", "2"));
    m_document.LeaveElement();
    EXPECT_EQ(m_document.GetElementText(), "");
    m_document.EnterElement();
    EXPECT_EQ(m_document.GetElementText(), "2");
}

TEST_F(XmlDocumentWritingTest, AnElementIsAddedBehindTheCurrentOne) {
    ASSERT_TRUE(m_document.Load("<R><A/><C>3</C></R>"));
    GoTo({"R", "A"});
    ASSERT_TRUE(m_document.AddElement("B", "2"));
    ExpectText("<R><A/><B>2</B>\r\n<C>3</C></R>");
    ASSERT_TRUE(m_document.FindElement("C"));
    EXPECT_EQ(m_document.GetElementText(), "3");
}

TEST_F(XmlDocumentWritingTest, WhiteSpaceBeforeMarkupStaysWithTheElementBefore) {
    ASSERT_TRUE(m_document.Load("<R>\r\n\t<A/> \r\n<C/></R>"));
    GoTo({"R", "A"});
    ASSERT_TRUE(m_document.AddElement("B", nullptr));
    ExpectText("<R>\r\n\t<A/> \r\n<B/>\r\n<C/></R>");
}

TEST_F(XmlDocumentWritingTest, WhiteSpaceBeforeTextOrTheEndStaysBehindTheNewElement) {
    ASSERT_TRUE(m_document.Load("<R><A/> \r\nx</R>\r\n"));
    GoTo({"R", "A"});
    ASSERT_TRUE(m_document.AddElement("B", nullptr));
    ExpectText("<R><A/><B/>\r\n \r\nx</R>\r\n");
    m_document.LeaveElement();
    ASSERT_TRUE(m_document.AddElement("S", nullptr));
    ExpectText("<R><A/><B/>\r\n \r\nx</R><S/>\r\n\r\n");
}

TEST_F(XmlDocumentWritingTest, WithoutACurrentElementItIsAddedRightBeforeTheParentsEndTag) {
    ASSERT_TRUE(m_document.Load("<R><A/>\r\ntext</R>"));
    GoTo({"R"});
    m_document.EnterElement();
    ASSERT_TRUE(m_document.AddElement("B", nullptr));
    ExpectText("<R><A/>\r\ntext<B/>\r\n</R>");
    ASSERT_TRUE(m_document.Load("<R></R>"));
    GoTo({"R"});
    m_document.EnterElement();
    ASSERT_TRUE(m_document.AddElement("B", nullptr));
    ExpectText("<R><B/>\r\n</R>");
}

TEST_F(XmlDocumentWritingTest, AnEmptyElementTagIsOpenedUp) {
    ASSERT_TRUE(m_document.Load("<R><P a='/>' /><Q>1</Q></R>"));
    GoTo({"R", "P"});
    m_document.EnterElement();
    ASSERT_TRUE(m_document.AddElement("A", "2"));
    ExpectText("<R><P a='/>' >\r\n<A>2</A>\r\n</P><Q>1</Q></R>");
    m_document.LeaveElement();
    ASSERT_TRUE(m_document.FindElement("Q"));
    EXPECT_EQ(m_document.GetElementText(), "1");
}

TEST_F(XmlDocumentWritingTest, AStartTagThatWasNeverEndedGetsItsEndTag) {
    EXPECT_FALSE(m_document.Load("<R><P><Q>1</Q></R>"));
    GoTo({"R", "P"});
    m_document.EnterElement();
    ASSERT_TRUE(m_document.AddElement("A", "2"));
    ExpectText("<R><P>\r\n<A>2</A>\r\n</P><Q>1</Q></R>");
    m_document.LeaveElement();
    ASSERT_TRUE(m_document.FindElement("Q"));
    EXPECT_EQ(m_document.GetElementText(), "1");
}

TEST_F(XmlDocumentWritingTest, OutsideTheRootItIsAddedAtTheEndOfTheText) {
    ASSERT_TRUE(m_document.Load("<R/>\r\n<!-- c -->"));
    ASSERT_TRUE(m_document.AddElement("S", nullptr));
    ExpectText("<R/>\r\n<!-- c --><S/>\r\n");
    EXPECT_FALSE(m_document.Load("text"));
    ASSERT_TRUE(m_document.AddElement("S", "1"));
    ExpectText("text<S>1</S>\r\n");
    EXPECT_EQ(m_document.GetElementText(), "1");
}

TEST_F(XmlDocumentWritingTest, EverythingBehindANewElementIsStillFound) {
    ASSERT_TRUE(
        m_document.Load("<R><P><A/></P><Q><B><C>3</C><D>4</D></B><E>5</E></Q><F>6</F></R>"));
    GoTo({"R", "P", "A"});
    ASSERT_TRUE(m_document.AddElement("N", "new"));
    m_document.LeaveElement();
    ASSERT_TRUE(m_document.FindElement("Q"));
    GoTo({"B", "D"});
    EXPECT_EQ(m_document.GetElementText(), "4");
    m_document.LeaveElement();
    ASSERT_TRUE(m_document.FindElement("E"));
    EXPECT_EQ(m_document.GetElementText(), "5");
    m_document.LeaveElement();
    ASSERT_TRUE(m_document.FindElement("F"));
    EXPECT_EQ(m_document.GetElementText(), "6");
    ASSERT_TRUE(m_document.AddElement("G", nullptr));
    ExpectText(
        "<R><P><A/><N>new</N>\r\n</P><Q><B><C>3</C><D>4</D></B><E>5</E></Q><F>6</F><G/>\r\n</R>");
}

TEST_F(XmlDocumentWritingTest, TenThousandElementsAreAddedAndFound) {
    ASSERT_TRUE(m_document.AddElement("R", nullptr));
    m_document.EnterElement();
    for (int i = 0; i < 10'000; ++i) {
        ASSERT_TRUE(m_document.AddElement("A", std::to_string(i).c_str()));
    }
    m_document.LeaveElement();
    XmlDocument again;
    ASSERT_TRUE(again.Load(m_document.GetText().c_str()));
    ASSERT_TRUE(again.FindElement("R"));
    again.EnterElement();
    int count = 0;
    for (; again.FindElement("A"); ++count) {
        ASSERT_EQ(again.GetElementText(), std::to_string(count));
    }
    EXPECT_EQ(count, 10'000);
}

}  // namespace
