#include "components/personalseal/SealStyle.h"

#include <gtest/gtest.h>

#include "components/personalseal/SealControlCodes.h"
#include "foundation/Text.h"

namespace {

std::string Utf8(std::u8string_view text) { return {text.begin(), text.end()}; }

SealStyle Read(const std::string& settings) {
    SealStyle style;
    EXPECT_EQ(ReadSealSettings(settings, style), kSealDrawn) << settings;
    return style;
}

int Refusal(const std::string& settings) {
    SealStyle style;
    return ReadSealSettings(settings, style);
}

TEST(SealStyleTest, EveryElementIsRead) {
    const SealStyle style = Read(
        "<root><m_iRadioColor>1</m_iRadioColor><m_strFrameThick>4</m_strFrameThick>"
        "<m_strFont>SimHei</m_strFont><m_bFrame>1</m_bFrame><m_strFontSpace>7</m_strFontSpace>"
        "<m_strFontSize>33</m_strFontSize><m_strFontThick>" +
        Utf8(u8"粗体</m_strFontThick><m_strArrangement>每列3个汉字</m_strArrangement>"));
    EXPECT_EQ(style.colour, 0x0B3FA8u);
    EXPECT_EQ(style.frameThick, 4);
    EXPECT_EQ(style.font, "SimHei");
    EXPECT_TRUE(style.frame);
    EXPECT_EQ(style.space, 7);
    EXPECT_EQ(style.size, 33);
    EXPECT_TRUE(style.bold);
    EXPECT_EQ(style.perColumn, 3);
}

TEST(SealStyleTest, WhatIsMissingStaysAsItIs) {
    const SealStyle style = Read("<m_strFontSize>10</m_strFontSize>");
    EXPECT_EQ(style.size, 10);
    EXPECT_EQ(style.colour, SealStyle().colour);
    EXPECT_EQ(style.space, 6);
    EXPECT_EQ(style.font, "SimSun");
    EXPECT_FALSE(style.frame);
}

TEST(SealStyleTest, OrderAndBlanksDoNotMatter) {
    const SealStyle style = Read(
        "\r\n <m_strFont>\n SimHei </m_strFont>\n<m_strFontSize>\t12\r\n</m_strFontSize>"
        "<m_bFrame> 1 </m_bFrame>");
    EXPECT_EQ(style.size, 12);
    EXPECT_EQ(style.font, "SimHei");
    EXPECT_TRUE(style.frame);
}

TEST(SealStyleTest, TheFontIsAllBetweenItsFirstTagAndItsLast) {
    const SealStyle style = Read(
        "<m_strFont>a</m_strFont><m_bFrame>1</m_bFrame><m_strFont>b&lt;</m_strFont>"
        "<m_bFrame>0</m_bFrame>");
    EXPECT_EQ(style.font, "a</m_strFont><m_bFrame>1</m_bFrame><m_strFont>b&lt;");
    EXPECT_FALSE(style.frame);
}

TEST(SealStyleTest, AFontWithoutItsEndIsNone) {
    EXPECT_EQ(Read("<m_strFont>SimHei<m_bFrame>1</m_bFrame>").font, "SimSun");
    EXPECT_EQ(Read("</m_strFont><m_strFont>SimHei").font, "SimSun");
    EXPECT_TRUE(Read("<m_strFont>SimHei<m_bFrame>1</m_bFrame>").frame);
}

TEST(SealStyleTest, OnlyOneWordIsBold) {
    for (const std::string& weight : {Utf8(u8"常规"), std::string("Bold"), Utf8(u8"粗体粗体"),
                                      std::string("\xB4\xD6\xCC\xE5")}) {
        EXPECT_FALSE(Read("<m_strFontThick>" + weight + "</m_strFontThick>").bold);
    }
    EXPECT_TRUE(Read("<m_strFontThick>" + Utf8(u8" 粗体 ") + "</m_strFontThick>").bold);
}

TEST(SealStyleTest, TheArrangementIsItsFirstNumberWhateverStandsAroundIt) {
    for (const char* const text : {"3", "?? 3 ??",
                                   "\xC3\xBF\xC1\xD0"
                                   "3\xB8\xF6",
                                   "3 or 5"}) {
        const std::string element =
            "<m_strArrangement>" + std::string(text) + "</m_strArrangement>";
        EXPECT_EQ(Read(element).perColumn, 3) << text;
    }
}

TEST(SealStyleTest, AnyNumberButZeroIsAFrame) {
    EXPECT_TRUE(Read("<m_bFrame>-1</m_bFrame>").frame);
    EXPECT_FALSE(Read("<m_bFrame>00</m_bFrame>").frame);
    EXPECT_EQ(Refusal("<m_bFrame>true</m_bFrame>"), kSealBadSettings);
}

TEST(SealStyleTest, SettingsHaveALimit) {
    const std::string element = "<m_bFrame>0</m_bFrame>";
    EXPECT_EQ(Refusal(element + std::string(kSealLongestSettings - element.size(), ' ')),
              kSealDrawn);
    EXPECT_EQ(Refusal(element + std::string(kSealLongestSettings, ' ')), kSealBadSettings);
}

}  // namespace
