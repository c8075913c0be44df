// Texts that are large, or made to cost a reader more than their length.

#include <gtest/gtest.h>

#include <string>

#include "XmlElements.h"
#include "foundation/XmlDocument.h"
#include "foundation/XmlReader.h"

namespace {

std::string Repeated(std::string_view text, int count) {
    std::string repeated;
    for (int i = 0; i < count; ++i) repeated += text;
    return repeated;
}

// The number of elements, the index being sound.
std::uint32_t CountElements(const std::string& text) {
    XmlIndex index;
    std::string results;
    ReadXml(text, index, results);
    EXPECT_STREQ(FaultOfIndex(text, index), nullptr) << text.substr(0, 40);
    return index.Count() - 1;
}

constexpr int kMany = 100'000;

// The longest of them would take longer than a test program may if its markup were looked for to
// the end of the text each time.
TEST(XmlTextLimits, MarkupRepeatedWithoutItsEndIsReadInOnePass) {
    for (const char* piece :
         {"<![CDATA[", "<!--",   "<?",      "<!DOCTYPE ", "<!DO<!DO>",   "</",
          "</A",       "<",      "<!",      "<A \"",      "<A '\" ",     "<a \">\"",
          "<A b='\">", "<A><B>", "<A></B>", "<A/>",       "<![CDATA[]]", "<![CDATA[\x81]]>",
          "&",         "&#",     "<A>&amp"}) {
        const std::string text = Repeated(piece, 3 * kMany);
        CountElements(text);
        XmlDocument document;
        document.Load(("<A>" + text + "</A>").c_str());
        if (document.FindElement("A")) document.GetElementText();
    }
}

TEST(XmlTextLimits, LoneEndTagsBelowManyOpenElementsAreReadInOnePass) {
    EXPECT_EQ(CountElements(Repeated("<A>", kMany) + Repeated("</B>", kMany)), kMany);
    EXPECT_EQ(CountElements(Repeated("<A>", kMany) + Repeated("</B></A>", kMany)), kMany);
    const std::string name(kMany, 'n');
    EXPECT_EQ(CountElements("<" + name + ">" + Repeated("</n>", kMany)), 1U);
}

TEST(XmlTextLimits, ElementsThatAreMovedUpLevelByLevelAreReadInOnePass) {
    std::string text = Repeated("<P><Q>", kMany) + Repeated("<M/>", kMany);
    EXPECT_EQ(CountElements(text + Repeated("</P>", kMany)), 3U * kMany);
    EXPECT_EQ(CountElements(text), 3U * kMany);
}

TEST(XmlTextLimits, ElementsNestAsDeepAsTheyLike) {
    const std::string text = Repeated("<A>", kMany) + Repeated("</A>", kMany);
    XmlDocument document;
    ASSERT_TRUE(document.Load(text.c_str()));
    int depth = 0;
    for (; document.FindElement("A"); ++depth) document.EnterElement();
    EXPECT_EQ(depth, kMany);
}

TEST(XmlTextLimits, MoreThanOneSegmentOfElementsIsIndexed) {
    EXPECT_EQ(CountElements("<R>" + Repeated("<A>1</A>", 2 * kMany) + "</R>"), 2U * kMany + 1);
    XmlDocument document;
    ASSERT_TRUE(document.Load(("<R>" + Repeated("<A/>", kMany) + "<B>2</B></R>").c_str()));
    ASSERT_TRUE(document.FindElement("R"));
    document.EnterElement();
    ASSERT_TRUE(document.FindElement("B"));
    EXPECT_EQ(document.GetElementText(), "2");
    ASSERT_TRUE(document.AddElement("C", "3"));
    EXPECT_EQ(document.GetElementText(), "3");
}

TEST(XmlTextLimits, AnEndTagTooLongForItsFieldIsFound) {
    for (const int blanks : {1000, 1019, 1020, 1021, 5000}) {
        const std::string text = "<A>x<!-- </A --></B>y</A" + std::string(blanks, ' ') + ">";
        XmlDocument document;
        document.Load(text.c_str());
        ASSERT_TRUE(document.FindElement("A"));
        EXPECT_EQ(document.GetElementText(), "xy") << blanks;
        document.EnterElement();
        ASSERT_TRUE(document.AddElement("C", "1"));
        ASSERT_TRUE(document.AddElement("D", "2"));
        document.LeaveElement();
        ASSERT_TRUE(document.AddElement("E", "3"));
        EXPECT_EQ(document.GetText(), "<A>x<!-- </A --></B>y<C>1</C>\r\n<D>2</D>\r\n</A" +
                                          std::string(blanks, ' ') + "><E>3</E>\r\n");
    }
}

TEST(XmlTextLimits, AStartTagTooLongForItsFieldIsFound) {
    for (const int blanks : {(1 << 22) - 13, (1 << 22) - 12, (1 << 22) - 11, 5 << 20}) {
        const std::string tag = "<A b='>' " + std::string(blanks, ' ');
        XmlDocument document;
        ASSERT_TRUE(document.Load((tag + ">x</A>").c_str()));
        ASSERT_TRUE(document.FindElement("A"));
        EXPECT_EQ(document.GetElementText(), "x") << blanks;
        ASSERT_TRUE(document.Load((tag + "/>").c_str()));
        ASSERT_TRUE(document.FindElement("A"));
        EXPECT_EQ(document.GetElementText(), "") << blanks;
        document.EnterElement();
        ASSERT_TRUE(document.AddElement("C", "1"));
        EXPECT_EQ(document.GetText(), tag + ">\r\n<C>1</C>\r\n</A>");
    }
}

// Short ones are found in one step, of which the place in the text's last bytes, the length and
// what stands in them may be beyond.
TEST(XmlTextLimits, NamesAndTextsOfEveryLengthAreReadAlikeWhereverTheyStand) {
    const std::string letters(40, 'n');
    for (std::size_t nameLength = 1; nameLength <= letters.size(); ++nameLength) {
        const std::string name = letters.substr(0, nameLength);
        for (std::size_t length = 0; length <= 40; ++length) {
            const std::string value(length, 'v');
            for (const std::size_t behind : {0u, 1u, 40u}) {
                const std::string text =
                    "<" + name + ">" + value + "</" + name + ">" + std::string(behind, ' ');
                XmlDocument document;
                ASSERT_TRUE(document.Load(text.c_str())) << text;
                ASSERT_TRUE(document.FindElement(name.c_str())) << text;
                ASSERT_EQ(document.GetElementText(), value) << text;
            }
        }
    }
}

TEST(XmlTextLimits, AReferenceIsResolvedAtEveryPlaceOfAText) {
    for (std::size_t before = 0; before <= 40; ++before) {
        for (const std::size_t behind : {0u, 1u, 40u}) {
            const std::string front(before, 'v');
            const std::string rest(behind, 'w');
            const std::string text = "<A><B>" + front + "&amp;" + rest + "</B></A>";
            XmlDocument document;
            ASSERT_TRUE(document.Load(text.c_str()));
            ASSERT_TRUE(document.FindElement("A"));
            document.EnterElement();
            ASSERT_TRUE(document.FindElement("B"));
            EXPECT_EQ(document.GetElementText(), front + "&" + rest);
        }
    }
}

TEST(XmlTextLimits, LongNamesAreReadAndWritten) {
    const std::string name(3000, 'n');
    XmlDocument document;
    ASSERT_TRUE(document.AddElement(name.c_str(), "1"));
    EXPECT_EQ(document.GetElementText(), "1");
    ASSERT_TRUE(document.Load(document.GetText().c_str()));
    EXPECT_FALSE(document.FindElement(name.substr(1).c_str()));
    ASSERT_TRUE(document.FindElement(name.c_str()));
    EXPECT_EQ(document.GetElementText(), "1");
}

}  // namespace
