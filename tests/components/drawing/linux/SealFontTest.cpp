#include "components/drawing/SealFont.h"

#include <gtest/gtest.h>

namespace {

TEST(SealFontOnLinux, AFamilyThatLacksTheCharactersIsPassedOver) {
    SealFont latin;
    SealFont mixed;
    ASSERT_TRUE(FindSealFont(U"Ltd.", "DejaVu Sans", latin));
    ASSERT_TRUE(FindSealFont(U"深圳市", "DejaVu Sans", mixed));
    EXPECT_NE(mixed.path, latin.path);
}

}  // namespace
