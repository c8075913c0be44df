#include "dialogs/SealPreview.h"

#include <gtest/gtest.h>

namespace {

using platform::Rectangle;

constexpr Rectangle kArea{0, 0, 200, 100};

TEST(SealPreviewTest, APictureSmallerThanTheAreaStandsInItsMiddleAtItsOwnSize) {
    EXPECT_EQ(PreviewPlace(kArea, 40, 20), (Rectangle{80, 40, 120, 60}));
    EXPECT_EQ(PreviewPlace({10, 20, 210, 120}, 40, 20), (Rectangle{90, 60, 130, 80}));
}

TEST(SealPreviewTest, TheMarginsOfAnOddRoomAreRoundedDown) {
    EXPECT_EQ(PreviewPlace(kArea, 41, 21), (Rectangle{79, 39, 120, 60}));
    EXPECT_EQ(PreviewPlace(kArea, 199, 99), (Rectangle{0, 0, 199, 99}));
}

TEST(SealPreviewTest, APictureOfTheAreasSizeFillsIt) {
    EXPECT_EQ(PreviewPlace(kArea, 200, 100), kArea);
}

TEST(SealPreviewTest, APictureAsWideOrAsHighAsTheAreaFillsItBothWays) {
    EXPECT_EQ(PreviewPlace(kArea, 200, 20), kArea);
    EXPECT_EQ(PreviewPlace(kArea, 40, 100), kArea);
}

TEST(SealPreviewTest, ALargerPictureFillsTheAreaWhateverItsProportions) {
    EXPECT_EQ(PreviewPlace(kArea, 201, 20), kArea);
    EXPECT_EQ(PreviewPlace(kArea, 40, 101), kArea);
    EXPECT_EQ(PreviewPlace(kArea, 16'384, 1'024), kArea);
}

TEST(SealPreviewTest, AnAreaWithoutRoomIsThePlaceItself) {
    EXPECT_EQ(PreviewPlace({}, 40, 20), Rectangle{});
}

}  // namespace
