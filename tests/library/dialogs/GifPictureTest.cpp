#include "dialogs/GifPicture.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "GifFile.h"

namespace {

using platform::Colour;
using platform::Picture;

constexpr Colour kPaper = 0xF0F0F0;
const std::vector<Colour> kColours = {0xFF0000, 0x00FF00, 0x0000FF, 0x123456};

// "WxH:" and the pixels, a letter each: red, green, blue, dark, paper; "none" without pixels.
std::string Seen(const Picture& picture) {
    if (picture.pixels.empty()) return picture.width == 0 && picture.height == 0 ? "none" : "torn";
    std::string seen = std::to_string(picture.width) + "x" + std::to_string(picture.height) + ":";
    for (const Colour pixel : picture.pixels) {
        const auto at = std::find(kColours.begin(), kColours.end(), pixel) - kColours.begin();
        seen += pixel == kPaper ? 'p' : "rgbd?"[at];
    }
    return seen;
}

std::string Decoded(const GifFile& file) { return Seen(DecodeGif(file.Bytes(), kPaper)); }

// A file of one frame that fills the screen.
GifFile OneFrame(int width, int height, const std::string& pixels) {
    return {width, height, kColours, {{0, 0, width, height, pixels, {}}}};
}

// A file with the longest rows, whose first one is whole and alone.
std::string LongRow(int height) {
    GifFile file = OneFrame(kMaxGifSide, 1, std::string(kMaxGifSide, '1'));
    file.frames[0].height = file.height = height;
    return file.Bytes();
}

TEST(GifPictureTest, EachPixelHasItsColourAndTheFirstRowIsTheTop) {
    EXPECT_EQ(Decoded(OneFrame(2, 2, "0123")), "2x2:rgbd");
}

TEST(GifPictureTest, RowsLongerThanABlockOfTheFileAreWhole) {
    const std::string pixels(900, '2');
    EXPECT_EQ(Decoded(OneFrame(900, 1, pixels)), "900x1:" + std::string(900, 'b'));
}

TEST(GifPictureTest, TheBackgroundShowsThroughTransparentPixels) {
    GifFile file = OneFrame(3, 1, "010");
    file.frames[0].transparent = '0';
    EXPECT_EQ(Decoded(file), "3x1:pgp");
}

TEST(GifPictureTest, TheFirstFrameIsThePicture) {
    GifFile file = OneFrame(2, 1, "00");
    file.frames.push_back({0, 0, 2, 1, "11", {}});
    EXPECT_EQ(Decoded(file), "2x1:rr");
}

TEST(GifPictureTest, TheFramesOwnColoursWinOverTheScreens) {
    GifFile file = OneFrame(2, 1, "01");
    file.frames[0].colours = {0x0000FF, 0x123456};
    EXPECT_EQ(Decoded(file), "2x1:bd");
    file.colours.clear();
    EXPECT_EQ(Decoded(file), "2x1:bd");
}

TEST(GifPictureTest, InterlacedRowsStandInTheirPlaces) {
    GifFile file = OneFrame(1, 9, "012301230");
    file.frames[0].interlaced = true;
    EXPECT_EQ(Decoded(file), "1x9:rgbdrgbdr");
}

TEST(GifPictureTest, AFrameStandsAtItsPlaceOnTheScreenAndTheRestIsBackground) {
    GifFile file{3, 3, kColours, {{1, 1, 2, 1, "01", {}}}};
    EXPECT_EQ(Decoded(file), "3x3:pppprgppp");
}

TEST(GifPictureTest, AScreenThatDoesNotHoldTheFrameGrows) {
    EXPECT_EQ(Decoded({0, 0, kColours, {{0, 0, 2, 1, "01", {}}}}), "2x1:rg");
    EXPECT_EQ(Decoded({2, 2, kColours, {{1, 1, 2, 1, "01", {}}}}), "3x2:pppprg");
}

TEST(GifPictureTest, AnIndexWithoutAColourPaintsNothing) {
    EXPECT_EQ(Decoded(OneFrame(3, 1, "0z1")), "3x1:rpg");
}

TEST(GifPictureTest, TheOlderFormatIsRead) {
    std::string bytes = OneFrame(2, 1, "01").Bytes();
    bytes.replace(0, 6, "GIF87a");
    EXPECT_EQ(Seen(DecodeGif(bytes, kPaper)), "2x1:rg");
}

TEST(GifPictureTest, AFileOfAnotherProgramsIsRead) {
    // A row of red above one of blue, written by ImageMagick: codes of three bits that grow.
    constexpr char kBytes[] =
        "GIF89a\x14\0\x02\0\xF0\0\0\xFF\0\0\0\0\xFF!\xF9\x04\0\0\0\0\0,\0\0\0\0\x14\0\x02\0\0"
        "\x02\x07\x84\x8F\x99\xC1\xED\xFF\x0A\0;";
    const Picture picture = DecodeGif({kBytes, sizeof kBytes - 1}, kPaper);
    EXPECT_EQ(Seen(picture), "20x2:" + std::string(20, 'r') + std::string(20, 'b'));
}

TEST(GifPictureTest, APictureWithoutColoursHasNoPixels) {
    GifFile file = OneFrame(2, 1, "01");
    file.colours.clear();
    EXPECT_EQ(Decoded(file), "none");
}

TEST(GifPictureTest, AFileWithoutAFrameHasNoPixels) {
    EXPECT_EQ(Decoded({2, 1, kColours, {}}), "none");
    EXPECT_EQ(Decoded({2, 1, kColours, {{0, 0, 0, 1, "", {}}}}), "none");
    EXPECT_EQ(Decoded({2, 1, kColours, {{0, 0, 2, 0, "", {}}}}), "none");
}

TEST(GifPictureTest, WhatIsNoGifHasNoPixels) {
    for (const std::string& bytes :
         {std::string(), std::string("GIF"), std::string("GIF89a"), std::string("GIF89a\1\0\1", 9),
          std::string("picture with GIF in its middle"), std::string(1000, '\xFF')}) {
        EXPECT_EQ(Seen(DecodeGif(bytes, kPaper)), "none") << bytes;
    }
    EXPECT_EQ(Seen(DecodeGif({}, kPaper)), "none");
}

TEST(GifPictureTest, ACutOffFileHasTheRowsAheadOfTheCutAndNothingElse) {
    const std::string bytes = OneFrame(300, 3, std::string(900, '0')).Bytes();
    const std::string red(300, 'r'), paper(300, 'p');
    std::vector<std::string> seen;
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        const std::string now = Seen(DecodeGif(bytes.substr(0, size), kPaper));
        if (seen.empty() || seen.back() != now) seen.push_back(now);
    }
    EXPECT_THAT(seen,
                testing::ElementsAre("none", "300x3:" + red + paper + paper,
                                     "300x3:" + red + red + paper, "300x3:" + red + red + red));
}

TEST(GifPictureTest, DamagedBytesNeverCostMoreThanTheirRows) {
    GifFile file = OneFrame(4, 4, "0123012301230123");
    file.frames[0].transparent = '3';
    const std::string sound = file.Bytes();
    for (std::size_t at = 0; at < sound.size(); ++at) {
        for (const char damage : {'\0', '\x7F', '\xFF'}) {
            std::string bytes = sound;
            bytes[at] = damage;
            const Picture picture = DecodeGif(bytes, kPaper);
            EXPECT_EQ(picture.pixels.size(), static_cast<std::size_t>(picture.width) *
                                                 static_cast<std::size_t>(picture.height));
        }
    }
}

TEST(GifPictureTest, TheLargestPictureIsDecoded) {
    const Picture picture = DecodeGif(LongRow(kMaxGifPixels / kMaxGifSide), kPaper);
    EXPECT_EQ(picture.width, 16'384);
    EXPECT_EQ(picture.height, 1'024);
    EXPECT_EQ(picture.pixels.size(), 16U * 1024 * 1024);
}

TEST(GifPictureTest, APictureOfMorePixelsIsNot) {
    EXPECT_EQ(Seen(DecodeGif(LongRow(kMaxGifPixels / kMaxGifSide + 1), kPaper)), "none");
    EXPECT_EQ(Seen(DecodeGif(LongRow(65'535), kPaper)), "none");
}

TEST(GifPictureTest, ASideBeyondTheLimitIsNot) {
    for (const auto& [width, height] : {std::pair{kMaxGifSide + 1, 1}, {1, kMaxGifSide + 1}}) {
        const std::string pixels(static_cast<std::size_t>(kMaxGifSide) + 1, '0');
        EXPECT_EQ(Decoded(OneFrame(width, height, pixels)), "none");
    }
}

TEST(GifPictureTest, AFrameThatReachesBeyondTheLimitIsNot) {
    EXPECT_EQ(Decoded({1, 1, kColours, {{kMaxGifSide, 0, 1, 1, "0", {}}}}), "none");
    EXPECT_EQ(Decoded({65'535, 65'535, kColours, {{65'535, 65'535, 1, 1, "0", {}}}}), "none");
}

}  // namespace
