#include "foundation/Text.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "support/TemporaryPrefix.h"

namespace {

using namespace std::string_literals;

const std::string kUtf8 = "\xE5\x8D\xB0\xE7\xAB\xA0";

TEST(TextTest, ChineseGoesToUtf8AndBack) {
    EXPECT_EQ(AnsiToUtf8("印章"), kUtf8);
    EXPECT_EQ(Utf8ToAnsi(kUtf8), "印章");
    EXPECT_EQ(Utf8ToAnsiBounded(kUtf8), "印章");
}

TEST(TextTest, AnEmptyTextStaysEmpty) {
    EXPECT_EQ(AnsiToUtf8(""), "");
    EXPECT_EQ(Utf8ToAnsi(""), "");
    EXPECT_EQ(Utf8ToAnsiBounded(""), "");
}

TEST(TextTest, AZeroByteEndsTheTextOnItsWayToUtf8) {
    EXPECT_EQ(AnsiToUtf8("印\0章"s), kUtf8.substr(0, 3));
    EXPECT_EQ(AnsiToUtf8("ab\0c"s), "ab");
}

TEST(TextTest, ZeroBytesSurviveOnTheWayToAnsi) {
    EXPECT_EQ(Utf8ToAnsi("a\0b"s + kUtf8), "a\0b印章"s);
    EXPECT_EQ(Utf8ToAnsiBounded("a\0b"s), "a\0b"s);
}

TEST(TextTest, WhatTheAnsiCodePageLacksBecomesAQuestionMark) {
    EXPECT_EQ(Utf8ToAnsi("a\xE0\xB8\x81z"), "a?z");
}

TEST(TextTest, AFileIsReadWholeWithItsZeroBytes) {
    const TemporaryPrefix prefix;
    const std::string path = prefix.Path() + "/file";
    const std::string contents = "a\0b\r\n"s + std::string(5000, 'x');
    std::ofstream(path, std::ios::binary) << contents;
    EXPECT_EQ(ReadFileToString(path), contents);
}

TEST(TextTest, AFileOfAnySizeIsReadWhole) {
    const TemporaryPrefix prefix;
    const std::string path = prefix.Path() + "/file";
    for (const std::size_t size : {0, 1, 4095, 4096, 4097, 3'000'000}) {
        std::string contents(size, 'x');
        if (size > 0) contents.back() = 'e';
        std::ofstream(path, std::ios::binary | std::ios::trunc) << contents;
        EXPECT_TRUE(ReadFileToString(path) == contents) << size;
    }
}

TEST(TextTest, AFileThatCannotBeOpenedOrReadIsEmpty) {
    const TemporaryPrefix prefix;
    EXPECT_EQ(ReadFileToString(prefix.Path() + "/none"), "");
    EXPECT_EQ(ReadFileToString(prefix.Path()), "");
}

}  // namespace
