#include "components/personalseal/PersonalSeal.h"

#include <gmock/gmock.h>

#include <future>
#include <vector>

#include "components/personalseal/DrawnPicture.h"
#include "components/personalseal/SealControlCodes.h"

namespace {

using testing::SizeIs;

constexpr char kPlain[] = "<m_bFrame>0</m_bFrame>";

std::string Utf8(std::u8string_view text) { return {text.begin(), text.end()}; }

TEST(PersonalSealTest, ACharacterThatNoFontHasIsRefusedRatherThanLeftOut) {
    const std::string text = Utf8(u8"张\U0010FFFD");  // private use, in no font of Debian's
    std::string png = "before";
    EXPECT_EQ(DrawStyledSeal(kPlain, text, png), kSealNoFont);
    EXPECT_EQ(png, "");
    EXPECT_EQ(DrawNameSeal(text, 300, 100, png), kSealNoFont);
    EXPECT_EQ(DrawContentPicture(1, text, "x", png), kSealNoFont);
}

TEST(PersonalSealTest, ATextThatIsNotUtf8IsRefused) {
    std::string png = "before";
    EXPECT_EQ(DrawStyledSeal(kPlain, "\xD5\xC5\xC8\xFD", png), kSealBadText);
    EXPECT_EQ(png, "");
    EXPECT_EQ(DrawNameSeal("\xFF", 300, 100, png), kSealBadText);
    EXPECT_EQ(DrawContentPicture(0, "\xFF", "x", png), kSealDrawn) << "it isn't looked at";
    EXPECT_EQ(DrawContentPicture(1, "\xFF", "x", png), kSealBadText);
}

TEST(PersonalSealTest, ThreadsDrawAtATime) {
    const auto draw = [] {
        std::string png;
        EXPECT_EQ(DrawNameSeal(Utf8(u8"张三"), 300, 100, png), kSealDrawn);
        return png;
    };
    std::vector<std::future<std::string>> drawings;
    for (int i = 0; i < 4; ++i) drawings.push_back(std::async(std::launch::async, draw));
    const std::string alone = draw();
    for (auto& drawing : drawings) EXPECT_TRUE(drawing.get() == alone);
}

TEST(PersonalSealTest, DescendersAreNotCutOff) {
    std::string png;
    ASSERT_EQ(DrawStyledSeal(kPlain, "gjpqy,", png), kSealDrawn);
    const DrawnPicture picture(png);
    for (int x = 0; x < picture.Width(); ++x) {
        ASSERT_EQ(picture.Alpha(x, 0), 0);
        ASSERT_EQ(picture.Alpha(x, picture.Height() - 1), 0);
    }
}

TEST(PersonalSealTest, AWordAmongIdeographsStandsInTheirLine) {
    std::string png;
    ASSERT_EQ(DrawStyledSeal(kPlain, Utf8(u8"田HH田"), png), kSealDrawn);
    const DrawnPicture picture(png);
    EXPECT_THAT(picture.Down(), SizeIs(1));
    EXPECT_THAT(picture.Across(), SizeIs(testing::Ge(3u)));
}

}  // namespace
