#include "components/text/Utf8Text.h"

#include <gtest/gtest.h>

namespace {

TEST(Utf8TextTest, Utf8IsReadStrictly) {
    std::u32string characters;
    const std::u8string text = u8"aé公\U00020000";
    ASSERT_TRUE(Utf8Characters({text.begin(), text.end()}, characters));
    EXPECT_EQ(characters, U"aé公\U00020000");
    EXPECT_TRUE(Utf8Characters("", characters));
    EXPECT_TRUE(characters.empty());
    for (const char* bad : {"\x80", "\xC3", "\xC1\x81", "\xE0\x80\x80", "\xED\xBF\xBF", "\xF5\x80",
                            "\xF0\x80\x80\x80", "\x7F", "\n", "\xC2\x85"}) {
        EXPECT_FALSE(Utf8Characters(bad, characters)) << bad;
    }
}

}  // namespace
