#include "components/drawing/FontSearch.h"

#include <gtest/gtest.h>

namespace {

TEST(FontSearchOnLinux, AFamilyThatLacksTheCharactersIsPassedOver) {
    FoundFont latin;
    FoundFont mixed;
    ASSERT_TRUE(CFontSearch({"DejaVu Sans", true}).Find(U"Ltd.", latin));
    ASSERT_TRUE(CFontSearch({"DejaVu Sans", true}).Find(U"深圳市", mixed));
    EXPECT_NE(mixed.path, latin.path);
}

TEST(FontSearchOnLinux, ABoldFaceIsTakenBeforeALighterOneOfItsFamily) {
    FoundFont bold;
    FoundFont regular;
    ASSERT_TRUE(CFontSearch({"DejaVu Sans", true}).Find(U"Ltd.", bold));
    ASSERT_TRUE(CFontSearch({"DejaVu Sans", false}).Find(U"Ltd.", regular));
    EXPECT_NE(bold.path, regular.path);
    EXPECT_FALSE(bold.embolden);
}

}  // namespace
