#include "tools/dialog/tty/TtyText.h"

#include <gtest/gtest.h>

#include "platform/linux/dialogprogram/Utf8.h"

namespace {

using platform::BytesOf;

TEST(TtyTextOnLinux, NothingInALabelSteersTheTerminal) {
    EXPECT_EQ(OneLine("\x1B]0;title\x07name"), "?]0;title?name");
    EXPECT_EQ(OneLine("a\x1B[2Jb"), "a?[2Jb");
    EXPECT_EQ(OneLine("\x7F\x08"), "??");
    EXPECT_EQ(OneLine("\xC2\x9B"
                      "31m"),
              "?31m");
    EXPECT_EQ(OneLine(std::string("a\0b", 3)), "a?b");
}

TEST(TtyTextOnLinux, ALabelIsOneLine) {
    EXPECT_EQ(OneLine("a\nb\rc\td"), "a b c d");
    EXPECT_EQ(OneLine(BytesOf(u8"a\u2028b\u2029c")), "a?b?c");
}

TEST(TtyTextOnLinux, TheDirectionOfWritingCannotBeTurned) {
    EXPECT_EQ(OneLine(BytesOf(u8"\u202Etxt\u202C \u2066x\u2069 \u200Fy \u061C")), "?txt? ?x? ?y ?");
}

TEST(TtyTextOnLinux, OtherTextStaysAndWhatIsNoneIsMarked) {
    const std::string text(BytesOf(u8"印章 é \U0001F600"));
    EXPECT_EQ(OneLine(text), text);
    EXPECT_EQ(OneLine("\xFF"
                      "a\xE5\x8D"),
              "?a?");
}

TEST(TtyTextOnLinux, ATerminalOfUtf8GetsTheTextAsItIs) {
    const CharacterSet utf8("UTF-8");
    const std::string text(BytesOf(u8"印章\U0001F600"));
    EXPECT_TRUE(utf8.IsUtf8());
    EXPECT_TRUE(utf8.HasChinese());
    EXPECT_EQ(utf8.FromUtf8(text), text);
    EXPECT_EQ(utf8.ToUtf8(text), text);
    EXPECT_EQ(utf8.ToUtf8("a\xFFz"), "a?z");
}

TEST(TtyTextOnLinux, AChineseTerminalGetsItsOwnBytes) {
    const CharacterSet chinese("GBK");
    EXPECT_FALSE(chinese.IsUtf8());
    EXPECT_TRUE(chinese.HasChinese());
    EXPECT_EQ(chinese.FromUtf8(BytesOf(u8"印章\U0001F600!")), "印章?!");
    EXPECT_EQ(chinese.ToUtf8("印章"), BytesOf(u8"印章"));
}

TEST(TtyTextOnLinux, ATerminalWithoutChineseGetsOneMarkForEachCharacter) {
    const CharacterSet ascii("ANSI_X3.4-1968");
    EXPECT_FALSE(ascii.HasChinese());
    EXPECT_EQ(ascii.FromUtf8(BytesOf(u8"a印章b")), "a??b");
    EXPECT_EQ(ascii.ToUtf8("a\xD3z"), "a?z");
}

TEST(TtyTextOnLinux, ALongTextIsConvertedToItsEnd) {
    const CharacterSet chinese("GBK");
    std::string text, expected;
    for (int i = 0; i < 5000; ++i) {
        text += BytesOf(u8"印\U0001F600");
        expected += "印?";
    }
    EXPECT_EQ(chinese.FromUtf8(text), expected);
}

TEST(TtyTextOnLinux, ACharacterSetThatNobodyKnowsShowsMarks) {
    const CharacterSet unknown("no-such-set");
    EXPECT_FALSE(unknown.HasChinese());
    EXPECT_EQ(unknown.FromUtf8("ab"), "??");
    EXPECT_EQ(unknown.ToUtf8("ab"), "??");
}

}  // namespace
