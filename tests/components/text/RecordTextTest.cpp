#include "components/text/RecordText.h"

#include <gtest/gtest.h>

namespace {

std::string Utf8(std::u8string_view text) { return {text.begin(), text.end()}; }

TEST(RecordTextTest, ATextComesInTheCodePageOfTheLog) {
    EXPECT_EQ(RecordText(Utf8(u8"印章: refused")), "印章: refused");
    EXPECT_EQ(RecordText(""), "");
}

TEST(RecordTextTest, NoControlCharacterBeginsARecordOfItsOwn) {
    using std::string_view_literals::operator""sv;
    EXPECT_EQ(RecordText("a\r\n[forged]\x01\x1B[2J\x7F\0z"sv), "a  [forged]  [2J  z");
}

TEST(RecordTextTest, ALongTextIsCutBetweenTwoCharacters) {
    const std::string most(kLongestRecordText, 'x');
    EXPECT_EQ(RecordText(most), most);
    EXPECT_EQ(RecordText(most + "y"), most);
    const std::string almost(kLongestRecordText - 2, 'x');
    EXPECT_EQ(RecordText(almost + Utf8(u8"印章")), almost);
}

TEST(RecordTextTest, WhatIsNoUtf8IsCutAllTheSame) {
    const std::string text = RecordText(std::string(70'000, '\x80'));
    EXPECT_FALSE(text.empty());
    EXPECT_LE(text.size(), kLongestRecordText);
    EXPECT_EQ(text, std::string(text.size(), '?'));
}

}  // namespace
