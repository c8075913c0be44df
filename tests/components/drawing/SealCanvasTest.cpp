#include "components/drawing/SealCanvas.h"

#include <gtest/gtest.h>

namespace {

TEST(SealCanvasTest, FreeTypeCountsPixelsIn64ths) {
    EXPECT_EQ(Fixed26(1), 64);
    EXPECT_EQ(Fixed26(-0.5), -32);
    EXPECT_EQ(Fixed26(0.01), 1);
}

TEST(SealCanvasTest, ASheetIsPaintedInOneColourAsFarAsItIsCovered) {
    const FreeTypeLibrary library = StartFreeType();
    ASSERT_TRUE(library);
    CSealCanvas canvas(library.get(), 4, 2);
    // The left half.
    ASSERT_TRUE(canvas.Fill({{{-2, -1}, {0, -1}, {0, 1}, {-2, 1}}}));
    const Picture picture = canvas.Painted(0xD7000F);
    EXPECT_EQ(picture.width, 4);
    EXPECT_EQ(picture.height, 2);
    ASSERT_EQ(picture.rgba.size(), 32u);
    for (std::size_t at = 0; at < picture.rgba.size(); at += 4) {
        EXPECT_EQ(picture.rgba[at], 0xD7);
        EXPECT_EQ(picture.rgba[at + 1], 0);
        EXPECT_EQ(picture.rgba[at + 2], 0x0F);
        EXPECT_EQ(picture.rgba[at + 3], at / 4 % 4 < 2 ? 255 : 0) << at;
    }
}

}  // namespace
