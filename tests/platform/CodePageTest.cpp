#include "platform/CodePage.h"

#include <gtest/gtest.h>

#include <string>

using platform::AnsiFromCharacter;
using platform::AnsiFromUtf8;
using platform::IsAnsiLeadByte;
using platform::Utf8FromAnsi;

namespace {

using namespace std::string_literals;

TEST(CodePageTest, CharactersStandWhereCodePage936HasThem) {
    EXPECT_EQ(Utf8FromAnsi("\xD3\xA1\xD5\xC2"), "\xE5\x8D\xB0\xE7\xAB\xA0");
    EXPECT_EQ(Utf8FromAnsi("\xA1\xA4"), "\xC2\xB7");
    EXPECT_EQ(Utf8FromAnsi("\xA1\xAA"), "\xE2\x80\x94");
    EXPECT_EQ(Utf8FromAnsi("\xA8\x44"), "\xE2\x80\x95");
    EXPECT_EQ(Utf8FromAnsi("\xA3\xBA"), "\xEF\xBC\x9A");
    EXPECT_EQ(Utf8FromAnsi("\x81\x40"), "\xE4\xB8\x82");
}

TEST(CodePageTest, TheEuroSignIsOneByte) {
    EXPECT_EQ(Utf8FromAnsi("\x80"), "\xE2\x82\xAC");
    EXPECT_EQ(AnsiFromUtf8("\xE2\x82\xAC"), "\x80");
    EXPECT_EQ(Utf8FromAnsi("\x80\xD3\xA1"), "\xE2\x82\xAC\xE5\x8D\xB0");
}

TEST(CodePageTest, AsciiAndZeroBytesPassBothWays) {
    std::string ascii;
    for (int c = 0; c < 128; ++c) ascii += static_cast<char>(c);
    EXPECT_EQ(Utf8FromAnsi(ascii), ascii);
    EXPECT_EQ(AnsiFromUtf8(ascii), ascii);
    EXPECT_EQ(Utf8FromAnsi("\0\xD3\xA1\0"s), "\0\xE5\x8D\xB0\0"s);
    EXPECT_EQ(AnsiFromUtf8("\0\xE5\x8D\xB0\0"s), "\0\xD3\xA1\0"s);
    EXPECT_EQ(Utf8FromAnsi(""), "");
    EXPECT_EQ(AnsiFromUtf8(""), "");
}

TEST(CodePageTest, WhatCannotBeConvertedLeavesAMarkAndNeverEndsTheText) {
    for (const char* text : {"a\xFFz", "a\xD3", "a\xD3 z", "a\xD3\xFF\xFFz"}) {
        EXPECT_EQ(Utf8FromAnsi(text).front(), 'a');
        EXPECT_GT(Utf8FromAnsi(text).size(), 1U);
    }
    for (const char* text : {"a\xF0\x9F\x98\x80z", "a\x80z", "a\xE5\x8Dz", "a\xEF\xBF\xBDz"}) {
        EXPECT_TRUE(AnsiFromUtf8(text).starts_with("a?")) << text;
        EXPECT_TRUE(AnsiFromUtf8(text).ends_with("z")) << text;
    }
}

TEST(CodePageTest, LongTextsComeWhole) {
    std::string ansi, utf8;
    for (int i = 0; i < 5000; ++i) {
        ansi += i % 3 == 0 ? "a" : "\xD3\xA1";
        utf8 += i % 3 == 0 ? "a" : "\xE5\x8D\xB0";
    }
    EXPECT_EQ(Utf8FromAnsi(ansi), utf8);
    EXPECT_EQ(AnsiFromUtf8(utf8), ansi);
}

TEST(CodePageTest, OneCharacterStandsWhereCodePage936HasIt) {
    EXPECT_EQ(AnsiFromCharacter('A'), "A");
    EXPECT_EQ(AnsiFromCharacter(0), "\0"s);
    EXPECT_EQ(AnsiFromCharacter(0x4E2D), "\xD6\xD0");
    EXPECT_EQ(AnsiFromCharacter(937), "\xA6\xB8");
    EXPECT_EQ(AnsiFromCharacter(0x20AC), "\x80");
}

TEST(CodePageTest, ACharacterThatTheCodePageLacksIsEmptyAndSoIsNone) {
    for (const std::uint32_t number :
         {0xA0U, 0xA9U, 0xD7FFU, 0xD800U, 0xDC00U, 0x1F600U, 0x10FFFFU, 0x110000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(AnsiFromCharacter(number), "") << number;
    }
}

TEST(CodePageTest, ACharacterIsTheSameAloneAndInAText) {
    int known = 0;
    for (std::uint32_t number = 0x800; number < 0xD800; ++number) {
        const std::string ansi = AnsiFromCharacter(number);
        if (ansi.empty()) continue;
        const std::string utf8{static_cast<char>(0xE0 | number >> 12),
                               static_cast<char>(0x80 | (number >> 6 & 0x3F)),
                               static_cast<char>(0x80 | (number & 0x3F))};
        ASSERT_EQ(Utf8FromAnsi(ansi), utf8) << number;
        ASSERT_EQ(IsAnsiLeadByte(ansi[0]), ansi.size() == 2) << number;
        ++known;
    }
    EXPECT_GT(known, 21000);
}

TEST(CodePageTest, OnlyBytesBeyondAsciiBeginACharacterOfTwo) {
    for (int c = 0; c <= 0x80; ++c) EXPECT_FALSE(IsAnsiLeadByte(static_cast<char>(c))) << c;
    for (int c = 0x81; c <= 0xFE; ++c) EXPECT_TRUE(IsAnsiLeadByte(static_cast<char>(c))) << c;
    EXPECT_FALSE(IsAnsiLeadByte('\xFF'));
}

}  // namespace
