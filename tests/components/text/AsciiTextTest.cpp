#include "components/text/AsciiText.h"

#include <gtest/gtest.h>

namespace {

TEST(AsciiTextTest, LettersOfAsciiAloneBecomeLowerCase) {
    EXPECT_EQ(LowerCase("Content-TYPE @[`{"), "content-type @[`{");
    EXPECT_EQ(LowerCase("\xC4\xD6"), "\xC4\xD6");
    EXPECT_EQ(LowerCase(""), "");
}

TEST(AsciiTextTest, BlanksAroundATextGo) {
    EXPECT_EQ(Trimmed(" \t\r\na b\t \n"), "a b");
    EXPECT_EQ(Trimmed("a"), "a");
    EXPECT_EQ(Trimmed(" \r\n\t"), "");
    EXPECT_EQ(Trimmed(""), "");
}

}  // namespace
