#include "platform/linux/dialogprogram/Pixels.h"

#include <gtest/gtest.h>

namespace {

using platform::Colour;
using platform::Picture;
using platform::ReducedPicture;

Picture Plain(int width, int height, Colour colour) {
    return {width, height, std::vector<Colour>(static_cast<std::size_t>(width) * height, colour)};
}

TEST(PixelsOnLinux, APictureWithinTheLimitStaysAsItIs) {
    const Picture picture{2, 2, {1, 2, 3, 4}};
    const Picture same = ReducedPicture(picture, 4);
    EXPECT_EQ(same.width, 2);
    EXPECT_EQ(same.height, 2);
    EXPECT_EQ(same.pixels, picture.pixels);
}

TEST(PixelsOnLinux, APixelOfTheReducedPictureIsTheAverageOfThoseBehindIt) {
    const Picture picture{
        4, 2, {0x000000, 0xFF0000, 0x0000FF, 0x0000FF, 0x00FF00, 0x000000, 0x0000FF, 0x0000FF}};
    const Picture reduced = ReducedPicture(picture, 2);
    EXPECT_EQ(reduced.width, 2);
    EXPECT_EQ(reduced.height, 1);
    EXPECT_EQ(reduced.pixels, (std::vector<Colour>{0x404000, 0x0000FF}));
}

TEST(PixelsOnLinux, AReducedPictureKeepsItsShapeAndTheLimit) {
    const Picture reduced = ReducedPicture(Plain(3000, 1500, 0x123456), 1'048'576);
    EXPECT_LE(reduced.width * reduced.height, 1'048'576);
    EXPECT_GT(reduced.width * reduced.height, 1'040'000);
    EXPECT_NEAR(reduced.width, 2 * reduced.height, 2);
    EXPECT_EQ(
        reduced.pixels,
        std::vector<Colour>(static_cast<std::size_t>(reduced.width) * reduced.height, 0x123456));
}

TEST(PixelsOnLinux, AThinPictureIsReducedToo) {
    for (const auto& [width, height] : {std::pair{5'000'000, 1}, {1, 5'000'000}}) {
        const Picture reduced = ReducedPicture(Plain(width, height, 7), 1000);
        EXPECT_GE(reduced.width, 1);
        EXPECT_GE(reduced.height, 1);
        EXPECT_LE(reduced.width * reduced.height, 1000);
        EXPECT_EQ(reduced.pixels.size(), static_cast<std::size_t>(reduced.width) * reduced.height);
    }
}

TEST(PixelsOnLinux, APictureWithoutItsPixelsHasNone) {
    EXPECT_TRUE(ReducedPicture({}, 10).pixels.empty());
    EXPECT_TRUE(ReducedPicture({2, 2, {1, 2, 3}}, 10).pixels.empty());
    EXPECT_TRUE(ReducedPicture({-1, -2, {1, 2}}, 10).pixels.empty());
    EXPECT_TRUE(ReducedPicture({0, 5, {}}, 10).pixels.empty());
}

}  // namespace
