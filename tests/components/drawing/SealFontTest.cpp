#include "components/drawing/SealFont.h"

#include <gtest/gtest.h>

namespace {

TEST(SealFontTest, AFaceWithEveryCharacterIsChosen) {
    SealFont font;
    ASSERT_TRUE(FindSealFont(U"深圳市 Ltd. 44", "", font));
    EXPECT_FALSE(font.path.empty());
    EXPECT_GE(font.index, 0);
}

TEST(SealFontTest, AFamilyThatIsNotThereIsNoFailure) {
    SealFont font;
    EXPECT_TRUE(FindSealFont(U"公司", "No Such Family", font));
}

}  // namespace
