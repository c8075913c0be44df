#include "components/drawing/FontSearch.h"

#include <gtest/gtest.h>

namespace {

TEST(FontSearchTest, AFaceWithEveryCharacterIsChosen) {
    FoundFont font;
    ASSERT_TRUE(CFontSearch({"", true}).Find(U"深圳市 Ltd. 44", font));
    EXPECT_FALSE(font.path.empty());
    EXPECT_GE(font.index, 0);
}

TEST(FontSearchTest, AFamilyThatIsNotThereIsNoFailure) {
    FoundFont font;
    EXPECT_TRUE(CFontSearch({"No Such Family", true}).Find(U"公司", font));
}

TEST(FontSearchTest, AFamilyOfMarkupOrRubbishIsNoFailure) {
    for (const std::string& family :
         {std::string("</m_strFont><root>&amp;\"'%s:bold:size=9"), std::string("\xFF\xFE\x80"),
          std::string(100'000, 'x'), std::string(1, '\0')}) {
        FoundFont font;
        EXPECT_TRUE(CFontSearch({family, false}).Find(U"Ltd.", font));
        EXPECT_FALSE(font.path.empty());
    }
}

TEST(FontSearchTest, OnlyABoldWishIsEverMadeBolder) {
    FoundFont font;
    ASSERT_TRUE(CFontSearch({"", false}).Find(U"公司", font));
    EXPECT_FALSE(font.embolden);
}

TEST(FontSearchTest, ATextThatNoSingleFaceHasIsNotFound) {
    FoundFont font{"before", 7, false};
    EXPECT_FALSE(CFontSearch({"", true}).Find(U"公\U0010FFFD", font));
    EXPECT_EQ(font.path, "before");
}

}  // namespace
