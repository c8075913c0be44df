#include <gtest/gtest.h>
#include <iconv.h>

#include <string>

#include "platform/CodePage.h"

using platform::AnsiFromUtf8;
using platform::Utf8FromAnsi;

namespace {

// One character by the C library's converter; empty if it has none.
std::string ByIconv(iconv_t converter, std::string text) {
    char out[16];
    char* in = text.data();
    char* end = out;
    std::size_t inLeft = text.size();
    std::size_t outLeft = sizeof out;
    const bool done = iconv(converter, &in, &inLeft, &end, &outLeft) == 0;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    return done ? std::string(out, end) : "";
}

TEST(CodePageOnLinux, EveryPairIsWhatTheCLibrarySaysOrTwoUndecodableBytes) {
    const iconv_t converter = iconv_open("UTF-8", "GBK");
    ASSERT_NE(converter, reinterpret_cast<iconv_t>(-1));
    int known = 0;
    for (int lead = 0x81; lead <= 0xFE; ++lead) {
        for (int trail = 0x40; trail <= 0xFF; ++trail) {
            const std::string pair{static_cast<char>(lead), static_cast<char>(trail)};
            const std::string expected = ByIconv(converter, pair);
            if (expected.empty()) {
                ASSERT_EQ(Utf8FromAnsi(pair), "?" + Utf8FromAnsi(pair.substr(1)));
                continue;
            }
            ++known;
            ASSERT_EQ(Utf8FromAnsi(pair), expected) << lead << " " << trail;
            ASSERT_EQ(AnsiFromUtf8(expected), pair) << lead << " " << trail;
        }
    }
    iconv_close(converter);
    EXPECT_GT(known, 21000);
}

TEST(CodePageOnLinux, AnUndecodableAnsiByteBecomesAQuestionMarkAndTheNextIsReadAnew) {
    EXPECT_EQ(Utf8FromAnsi("a\xFFz"), "a?z");
    EXPECT_EQ(Utf8FromAnsi("\xD3"), "?");
    EXPECT_EQ(Utf8FromAnsi("\xD3 "), "? ");
    EXPECT_EQ(Utf8FromAnsi("\xD3\x7F"), "?\x7F");
    EXPECT_EQ(Utf8FromAnsi("\xD3\xFF"), "??");
    EXPECT_EQ(Utf8FromAnsi("\xFF\xD3\xA1"), "?\xE5\x8D\xB0");
}

TEST(CodePageOnLinux, WhatTheAnsiCodePageLacksBecomesOneQuestionMark) {
    EXPECT_EQ(AnsiFromUtf8("a\xF0\x9F\x98\x80z"), "a?z");
    EXPECT_EQ(AnsiFromUtf8("\xC3\xBFz"), "?z");
    EXPECT_EQ(AnsiFromUtf8("\xEF\xBF\xBD"), "?");
}

TEST(CodePageOnLinux, MalformedUtf8BecomesOneQuestionMarkForEachPartThatCouldHaveBegunACharacter) {
    EXPECT_EQ(AnsiFromUtf8("\x80z"), "?z");
    EXPECT_EQ(AnsiFromUtf8("\xC0\xAF"), "??");
    EXPECT_EQ(AnsiFromUtf8("\xE5\x8D"), "?");
    EXPECT_EQ(AnsiFromUtf8("\xE5\x8Dz"), "?z");
    EXPECT_EQ(AnsiFromUtf8("\xE5z"), "?z");
    EXPECT_EQ(AnsiFromUtf8("\xE0\x80\x80"), "???");
    EXPECT_EQ(AnsiFromUtf8("\xED\xA0\x80"), "???");
    EXPECT_EQ(AnsiFromUtf8("\xF0\x8F\x80\x80"), "????");
    EXPECT_EQ(AnsiFromUtf8("\xF0\x9F\x98"), "?");
    EXPECT_EQ(AnsiFromUtf8("\xF4\x90\x80\x80"), "????");
    EXPECT_EQ(AnsiFromUtf8("\xF5\xFF"), "??");
}

}  // namespace
