#include "XmlPeers.h"

#include <gtest/gtest.h>
#include <libxml/HTMLparser.h>

#include <cctype>
#include <map>
#include <random>
#include <string>

#include "foundation/Text.h"
#include "foundation/XmlCharacters.h"
#include "foundation/XmlDocument.h"
#include "foundation/XmlEntities.h"
#include "foundation/XmlReader.h"

namespace {

// The children of `parent` as the peers tell them, the cursor being before the first.
std::string Tell(XmlDocument& document, const std::string& text, const XmlIndex& index,
                 std::uint32_t parent = 0) {
    std::string told;
    for (std::uint32_t i = index[parent].firstChild; i != 0; i = index[i].nextSibling) {
        EXPECT_TRUE(document.FindElement(nullptr));
        const std::string name(XmlNameAtFront(std::string_view(text).substr(index[i].start + 1)));
        const std::string leaf = document.GetElementText();
        document.EnterElement();
        const std::string inside = Tell(document, text, index, i);
        document.LeaveElement();
        told += inside.empty() ? name + "=" + leaf + "\n" : name + "{\n" + inside + "}\n";
    }
    EXPECT_FALSE(document.FindElement(nullptr));
    return told;
}

// Well-formed documents of random form, in GBK. What they hold depends on nothing but the seed.
class Corpus {
public:
    explicit Corpus(unsigned int seed) : m_random(seed) {}

    std::string Document() {
        std::string text = OneOf({"", "<?xml version=\"1.0\"?>", "<?xml version='1.0' ?>\n"});
        text += OneOf({"", "", "<!DOCTYPE R>", "<!DOCTYPE R [<!ELEMENT R ANY> <!-- c -->]>\n"});
        return text + Layout() + Element(0) + Layout();
    }

private:
    std::string OneOf(std::initializer_list<const char*> choices) {
        return choices.begin()[m_random() % choices.size()];
    }

    // What may stand between elements without being read.
    std::string Layout() {
        return OneOf({"", "", "", " ", "\r\n", "\n\t", "<!-- <x> - -->", "<!---->", "<?p <q> ?>",
                      "\r\n  <!-- c -->\r\n"});
    }

    std::string Attributes() {
        std::string text;
        for (unsigned int i = m_random() % 3; i > 0; --i) {
            text += OneOf({" ", "\n", "\t "}) + "a" + std::to_string(i) + OneOf({"=", " = "}) +
                    OneOf({"'>'", "\"/>\"", "'\"'", "\"'&lt;\"", "''", "\"印章\""});
        }
        return text + OneOf({"", "", " "});
    }

    std::string Element(int depth) {
        const std::string name = OneOf({"R", "ROOT", "a.b-c_1", "_x", "印章", "SEALINFO", "章n"});
        std::string text = "<" + name + Attributes();
        const unsigned int kind = m_random() % 4;
        if (kind == 0 && depth > 0) return text + "/>";
        text += ">";
        if (kind == 1 || depth == 6) {
            text += Leaf();
        } else {
            for (unsigned int i = m_random() % 4; i > 0; --i) text += Layout() + Element(depth + 1);
            if (text.ends_with(">") && !text.ends_with("-->")) text += OneOf({"", "<!-- c -->"});
        }
        return text + "</" + name + OneOf({"", "", " ", "\n"}) + ">";
    }

    // No piece is of white space alone, which a reader of XML keeps and ours doesn't.
    std::string Leaf() {
        std::string text;
        for (unsigned int i = m_random() % 5; i > 0; --i) {
            text +=
                OneOf({"x", "7001", "财务专用章", " y ", "&lt;", "&amp;lt;", "&#20013;",
                       "&#x4E2D;z", "\xB0]", "]", "a]>b", "<!-- <c> -->", "<?p?>",
                       "<![CDATA[<z>&amp;]]>", "<![CDATA[]]]]>", "<![CDATA[\xB0]]]>", "&apos;"});
        }
        return text;
    }

    std::mt19937 m_random;
};

TEST(XmlPeersOnLinux, EveryWellFormedDocumentReadsAsOthersReadIt) {
    for (unsigned int seed = 0; seed < 3000; ++seed) {
        const std::string text = Corpus(seed).Document();
        const std::string utf8 = AnsiToUtf8(text);
        XmlDocument document;
        ASSERT_TRUE(document.Load(text.c_str())) << utf8 << document.GetResults();
        XmlIndex index;
        std::string results;
        ASSERT_TRUE(ReadXml(text, index, results));
        const std::string expected = ReadByLibxml2(utf8);
        ASSERT_EQ(AnsiToUtf8(Tell(document, text, index)), expected) << utf8;
        ASSERT_EQ(expected, ReadByExpat(utf8)) << utf8;
        ASSERT_EQ(expected, ReadByPugixml(utf8)) << utf8;
    }
}

TEST(XmlPeersOnLinux, WhateverIsCutOffADocumentIsIllFormed) {
    for (unsigned int seed = 0; seed < 5; ++seed) {
        const std::string text = Corpus(seed).Document();
        const std::size_t end = text.rfind("</") != std::string::npos ? text.rfind("</") : 0;
        for (std::size_t length = 0; length < end; ++length) {
            XmlDocument document;
            const std::string cut = text.substr(0, length);
            EXPECT_FALSE(document.Load(cut.c_str())) << cut;
            EXPECT_EQ(ReadByLibxml2(AnsiToUtf8(cut)), "ill-formed");
        }
    }
}

TEST(XmlPeersOnLinux, EveryReferenceOfHtml4IsKnownTheCapitalOneWhereTwoDifferInCase) {
    std::map<std::string, unsigned int> expected;
    int count = 0;
    // Names with a capital come last, and replace the others.
    for (const bool isCapital : {false, true}) {
        for (unsigned int number = 1; number < 10'000; ++number) {
            const htmlEntityDesc* entity = htmlEntityValueLookup(number);
            if (entity == nullptr) continue;
            std::string name = entity->name;
            const std::string original = name;
            for (char& c : name) c = static_cast<char>(std::tolower(c));
            if ((original != name) != isCapital) continue;
            expected[name] = number;
            ++count;
        }
    }
    EXPECT_EQ(count, 253);
    for (const auto& [name, number] : expected) {
        EXPECT_EQ(XmlReferencedCharacter(name), number) << name;
    }
}

}  // namespace
