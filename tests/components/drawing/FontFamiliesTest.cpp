#include "components/drawing/FontFamilies.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string_view>

namespace {

using testing::Contains;
using testing::SizeIs;

std::string Utf8(std::u8string_view text) { return {text.begin(), text.end()}; }

TEST(FontFamiliesTest, TheWishComesFirstAsItIsSpelled) {
    EXPECT_EQ(FontFamilies("No Such").front(), "No Such");
    EXPECT_EQ(FontFamilies("simhei").front(), "simhei");
}

TEST(FontFamiliesTest, WithoutAWishSongComesFirst) {
    EXPECT_EQ(FontFamilies("").front(), "SimSun");
}

TEST(FontFamiliesTest, AStyleIsLookedForUnderItsOtherNamesBeforeAnother) {
    const auto families = FontFamilies(Utf8(u8"黑体"));
    const auto hei = std::find(families.begin(), families.end(), "Noto Sans CJK SC");
    const auto song = std::find(families.begin(), families.end(), "SimSun");
    ASSERT_NE(hei, families.end());
    EXPECT_LT(hei, song);
}

TEST(FontFamiliesTest, NamesCompareWithoutRegardToCase) {
    EXPECT_THAT(FontFamilies("kaiti"), Contains("AR PL UKai CN"));
    EXPECT_THAT(FontFamilies("KaiTiX"), testing::Not(Contains("AR PL UKai CN")));
}

TEST(FontFamiliesTest, NoFamilyIsNamedTwice) {
    auto families = FontFamilies("SimSun");
    const auto count = families.size();
    std::sort(families.begin(), families.end());
    families.erase(std::unique(families.begin(), families.end()), families.end());
    EXPECT_THAT(families, SizeIs(count));
}

}  // namespace
