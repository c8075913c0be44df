#include "platform/linux/dialogprogram/ProtocolLine.h"

#include <gtest/gtest.h>

#include <climits>

#include "platform/linux/dialogprogram/Utf8.h"

namespace {

using platform::BytesOf;
using platform::LineParser;
using platform::LineReader;
using platform::LineWriter;

std::string Written(const std::string& text) {
    LineWriter writer("w");
    writer.Put(text);
    return std::move(writer).Finish();
}

std::optional<std::string> TextIn(const std::string& field) {
    const std::string line = "w\t" + field;
    LineParser parser(line);
    std::string text;
    parser.Take(text);
    if (!parser.IsWhole()) return {};
    return text;
}

std::optional<int> NumberIn(const std::string& field) {
    const std::string line = "w\t" + field;
    LineParser parser(line);
    int number = 0;
    parser.Take(number);
    if (!parser.IsWhole()) return {};
    return number;
}

TEST(ProtocolLineOnLinux, LinesComeWholeHoweverTheyAreCut) {
    LineReader reader(100);
    std::vector<std::string> lines;
    for (const char c : std::string("one\n\nthree\nfo")) {
        reader.Append({&c, 1});
        while (const auto line = reader.Next()) lines.push_back(*line);
    }
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "", "three"}));
    reader.Append("ur\nfive\n");
    EXPECT_EQ(reader.Next(), "four");
    EXPECT_EQ(reader.Next(), "five");
    EXPECT_EQ(reader.Next(), std::nullopt);
    EXPECT_FALSE(reader.IsTooLong());
}

TEST(ProtocolLineOnLinux, ALineOfTheLimitIsTakenAndAByteMoreIsTooLong) {
    LineReader reader(5);
    reader.Append("1234\n");
    EXPECT_EQ(reader.Next(), "1234");
    reader.Append("12345\n");
    EXPECT_EQ(reader.Next(), std::nullopt);
    EXPECT_TRUE(reader.IsTooLong());
    reader.Append("1\n");
    EXPECT_EQ(reader.Next(), std::nullopt);
}

TEST(ProtocolLineOnLinux, ALineWithoutAnEndIsTooLongBeforeItsEndComes) {
    LineReader reader(5);
    reader.Append("1234");
    EXPECT_EQ(reader.Next(), std::nullopt);
    EXPECT_FALSE(reader.IsTooLong());
    reader.Append("5");
    EXPECT_EQ(reader.Next(), std::nullopt);
    EXPECT_TRUE(reader.IsTooLong());
}

TEST(ProtocolLineOnLinux, WhatSeparatesIsEscaped) {
    EXPECT_EQ(Written("a\tb\\c\nd\re"), "w\ta\\tb\\\\c\\nd\\re\n");
    EXPECT_EQ(TextIn("a\\tb\\\\c\\nd\\re"), "a\tb\\c\nd\re");
    EXPECT_EQ(Written(""), "w\t\n");
    EXPECT_EQ(TextIn(""), "");
}

TEST(ProtocolLineOnLinux, WhatNoLineMayHoldIsReplacedInWriting) {
    const std::string replaced(BytesOf(u8"\uFFFD"));
    EXPECT_EQ(Written(std::string("a\0b", 3)), "w\ta" + replaced + "b\n");
    EXPECT_EQ(Written("\x1B[2J\x7F"), "w\t" + replaced + "[2J" + replaced + "\n");
    EXPECT_EQ(Written("\xC2\x9B"), "w\t" + replaced + "\n");
    EXPECT_EQ(Written("\xFF"), "w\t" + replaced + "\n");
    EXPECT_EQ(Written("\xED\xA0\x80"), "w\t" + replaced + replaced + replaced + "\n");
}

TEST(ProtocolLineOnLinux, WhatNoLineMayHoldIsInvalid) {
    for (const char* const field : {"\x1B", "\x7F", "\xC2\x9B", "\xFF", "\xC0\x80", "\xED\xA0\x80",
                                    "\xF4\x90\x80\x80", "\xE5\x8D", "\\x", "\\", "a\\"}) {
        EXPECT_EQ(TextIn(field), std::nullopt) << field;
    }
    EXPECT_EQ(TextIn(std::string("\0", 1)), std::nullopt);
}

TEST(ProtocolLineOnLinux, CharactersOfEveryLengthAreTaken) {
    const std::string text(BytesOf(u8"aé印\U0001F600\U0010FFFF"));
    EXPECT_EQ(TextIn(text), text);
    EXPECT_EQ(Written(text), "w\t" + text + "\n");
}

TEST(ProtocolLineOnLinux, NumbersHaveOneForm) {
    EXPECT_EQ(NumberIn("0"), 0);
    EXPECT_EQ(NumberIn("-7"), -7);
    EXPECT_EQ(NumberIn("2147483647"), INT_MAX);
    EXPECT_EQ(NumberIn("-2147483648"), INT_MIN);
    for (const char* const field :
         {"", "-", "+1", "01", "-0", " 1", "1 ", "1x", "2147483648", "-2147483649", "0x1", "1.0"}) {
        EXPECT_EQ(NumberIn(field), std::nullopt) << field;
    }
}

TEST(ProtocolLineOnLinux, AMissingOrASurplusFieldMakesTheLineInvalid) {
    for (const char* const line : {"w", "w\t1", "w\t1\t2\t3", "w\t1\t2\t"}) {
        LineParser parser(line);
        int first = 0, second = 0;
        parser.Take(first);
        parser.Take(second);
        EXPECT_FALSE(parser.IsWhole()) << line;
    }
}

TEST(ProtocolLineOnLinux, AFieldBehindAWrongOneDoesNotMendTheLine) {
    LineParser parser("w\tx\t2");
    int first = 5, second = 5;
    parser.Take(first);
    parser.Take(second);
    EXPECT_FALSE(parser.IsWhole());
    EXPECT_EQ(first, 5);
    EXPECT_EQ(second, 5);
}

}  // namespace
