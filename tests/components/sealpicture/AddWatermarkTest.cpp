// AddWatermarkOnEseal: the mark, and how the marked picture is handed out.

#include "components/sealpicture/Watermark.h"

#include <gd.h>
#include <gtest/gtest.h>

#include <string>

#include "components/sealpicture/Conversion.h"
#include "components/sealpicture/PictureCodes.h"
#include "components/sealpicture/Pictures.h"
#include "platform/closed/SealPicture.h"

namespace {

constexpr int kWidth = 120;
constexpr int kHeight = 96;
constexpr int kPeriod = 16;  // a sixth of the shorter side; its stripes are 2 wide

int Mark(const std::string& picture, unsigned char* out, int* outLen) {
    return AddWatermarkOnEseal(reinterpret_cast<const unsigned char*>(picture.data()),
                               static_cast<int>(picture.size()), out, outLen);
}

// As the library calls it: a query, then the buffer with no capacity told.
std::string Marked(const std::string& picture) {
    int length = 0;
    EXPECT_EQ(Mark(picture, nullptr, &length), kPictureOk);
    std::string marked(static_cast<std::size_t>(length), '\0');
    int filled = 0;
    EXPECT_EQ(Mark(picture, reinterpret_cast<unsigned char*>(marked.data()), &filled), kPictureOk);
    EXPECT_EQ(filled, length);
    return marked;
}

bool IsOnStripe(int x, int y) { return (x + y) % kPeriod < 2; }

int Colour(const Image& image, int x, int y) { return gdImageGetTrueColorPixel(image.get(), x, y); }

// A red seal on nothing at all, with a white, a half transparent and a black spot.
class AddWatermarkTest : public testing::Test {
protected:
    AddWatermarkTest() : m_seal(gdImageCreateTrueColor(kWidth, kHeight)) {
        gdImageAlphaBlending(m_seal.get(), 0);
        gdImageSaveAlpha(m_seal.get(), 1);
        Fill(0, 0, kWidth, gdTrueColorAlpha(7, 7, 7, 127));
        Fill(20, 20, 60, gdTrueColor(224, 0, 0));
        Fill(30, 30, 20, gdTrueColor(255, 255, 255));
        Fill(50, 50, 20, gdTrueColorAlpha(200, 0, 0, 60));
    }
    void Fill(int left, int top, int size, int colour) const {
        gdImageFilledRectangle(m_seal.get(), left, top, left + size - 1, top + size - 1, colour);
    }
    // Of an opaque picture.
    void FillPaper() const {
        gdImageSaveAlpha(m_seal.get(), 0);
        Fill(0, 0, kWidth, gdTrueColor(255, 255, 255));
        Fill(20, 20, 60, gdTrueColor(224, 0, 0));
    }

    Image m_seal;
};

TEST_F(AddWatermarkTest, StripesLightenThePaintAndTintTheWhite) {
    const Image marked = ReadPng(Marked(Png(m_seal)));
    ASSERT_TRUE(marked);
    ASSERT_TRUE(IsOnStripe(20, 28) && IsOnStripe(33, 31) && !IsOnStripe(20, 30));
    EXPECT_EQ(Colour(marked, 20, 28), gdTrueColor(239, 127, 127));
    EXPECT_EQ(Colour(marked, 33, 31), gdTrueColor(207, 217, 237));
    EXPECT_EQ(Colour(marked, 20, 30), gdTrueColor(224, 0, 0));
}

TEST_F(AddWatermarkTest, OffTheStripesEveryPixelOfAPngStaysAndOnThemAllPaintChanges) {
    const Image marked = ReadPng(Marked(Png(m_seal)));
    ASSERT_TRUE(marked);
    ASSERT_EQ(gdImageSX(marked.get()), kWidth);
    ASSERT_EQ(gdImageSY(marked.get()), kHeight);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            const int before = Colour(m_seal, x, y);
            const int after = Colour(marked, x, y);
            const bool changes = IsOnStripe(x, y) && gdTrueColorGetAlpha(before) != 127;
            ASSERT_EQ(before != after, changes) << x << ", " << y;
            ASSERT_EQ(gdTrueColorGetAlpha(before), gdTrueColorGetAlpha(after)) << x << ", " << y;
        }
}

TEST_F(AddWatermarkTest, AnEighthOfThePaintIsMarked) {
    const Image marked = ReadPng(Marked(Png(m_seal)));
    ASSERT_TRUE(marked);
    int changed = 0;
    for (int y = 20; y < 80; ++y)
        for (int x = 20; x < 80; ++x) changed += Colour(m_seal, x, y) != Colour(marked, x, y);
    EXPECT_NEAR(changed, 60 * 60 / 8, 10);
}

TEST_F(AddWatermarkTest, AGifKeepsItsTransparentPixels) {
    std::string seal;
    ASSERT_EQ(ConvertToGif(Png(m_seal), seal), kPictureOk);
    const Image before = ReadGif(seal);
    const std::string file = Marked(seal);
    EXPECT_EQ(file.substr(0, 4), "GIF8");
    const Image marked = ReadGif(file);
    ASSERT_TRUE(marked);
    ASSERT_TRUE(before);
    ASSERT_GE(gdImageGetTransparent(before.get()), 0);
    int changed = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            const auto isClear = [&](const Image& image) {
                return gdImageGetPixel(image.get(), x, y) == gdImageGetTransparent(image.get());
            };
            ASSERT_EQ(isClear(before), isClear(marked)) << x << ", " << y;
            const bool same = isClear(before) || Colour(before, x, y) == Colour(marked, x, y);
            ASSERT_TRUE(same || IsOnStripe(x, y)) << x << ", " << y;
            changed += same ? 0 : 1;
        }
    EXPECT_NEAR(changed, 60 * 60 / 8, 10);
}

TEST_F(AddWatermarkTest, AGifOfAllColoursStaysOne) {
    const Image many(gdImageCreate(kWidth, kHeight));
    for (int i = 0; i < 256; ++i) gdImageColorAllocate(many.get(), i, 255 - i, i / 2);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) gdImageSetPixel(many.get(), x, y, (x + 3 * y) % 256);
    const Image marked = ReadGif(Marked(Gif(many)));
    ASSERT_TRUE(marked);
    EXPECT_NEAR(gdTrueColorGetRed(Colour(marked, 8, 0)), 8, 24);
}

TEST_F(AddWatermarkTest, AJpegAndABmpStayWhatTheyAre) {
    FillPaper();
    const std::string jpeg = Marked(Jpeg(m_seal));
    const std::string bmp = Marked(Bmp(m_seal));
    for (const Image& marked : {ReadJpeg(jpeg), ReadBmp(bmp)}) {
        ASSERT_TRUE(marked);
        ASSERT_EQ(gdImageSX(marked.get()), kWidth);
        ASSERT_EQ(gdImageSY(marked.get()), kHeight);
        EXPECT_NEAR(gdTrueColorGetRed(Colour(marked, 100, 4)), 255, 6);
        EXPECT_NEAR(gdTrueColorGetRed(Colour(marked, 100, 12)), 207, 24);
    }
    EXPECT_EQ(Colour(ReadBmp(bmp), 100, 12), gdTrueColor(207, 217, 237));
}

TEST_F(AddWatermarkTest, AnOpaquePngGetsNoAlphaChannel) {
    FillPaper();
    const std::string png = Marked(Png(m_seal));
    constexpr std::size_t kColourType = 25;
    ASSERT_GT(png.size(), kColourType);
    EXPECT_EQ(png[kColourType], 2);
    EXPECT_EQ(Marked(Png(ReadPng(png)))[kColourType], 2);
}

TEST_F(AddWatermarkTest, ATransparentColourOfAPngWithoutAlphaStaysTransparent) {
    FillPaper();
    gdImageColorTransparent(m_seal.get(), gdTrueColor(255, 255, 255));
    const Image marked = ReadPng(Marked(Png(m_seal)));
    ASSERT_TRUE(marked);
    EXPECT_EQ(gdTrueColorGetAlpha(Colour(marked, 100, 12)), 127);
    EXPECT_EQ(gdTrueColorGetAlpha(Colour(marked, 20, 28)), 0);
}

TEST_F(AddWatermarkTest, APicturesResolutionIsKept) {
    gdImageSetResolution(m_seal.get(), 300, 300);
    EXPECT_EQ(gdImageResolutionX(ReadPng(Marked(Png(m_seal))).get()), 300);
}

TEST_F(AddWatermarkTest, TheSamePictureGivesTheSameBytes) {
    for (const std::string& picture : {Png(m_seal), Gif(m_seal), Jpeg(m_seal), Bmp(m_seal)}) {
        EXPECT_TRUE(Marked(picture) == Marked(picture)) << picture.substr(0, 4);
    }
}

TEST_F(AddWatermarkTest, ABufferWhoseCapacityIsToldMustSuffice) {
    const std::string png = Png(m_seal);
    const std::string marked = Marked(png);
    std::string out(marked.size(), '?');
    auto* const place = reinterpret_cast<unsigned char*>(out.data());
    int length = static_cast<int>(marked.size()) - 1;
    EXPECT_EQ(Mark(png, place, &length), -kPictureBufferTooSmall);
    EXPECT_EQ(length, static_cast<int>(marked.size()));
    EXPECT_EQ(out, std::string(marked.size(), '?'));
    EXPECT_EQ(Mark(png, place, &length), kPictureOk);
    EXPECT_TRUE(out == marked);
}

TEST_F(AddWatermarkTest, EveryFailureIsNegativeAndLeavesTheLength) {
    int length = 4711;
    EXPECT_EQ(Mark("%PDF-1.7", nullptr, &length), -kPictureUnknownFormat);
    EXPECT_EQ(Mark("GIF89a", nullptr, &length), -kPictureDamaged);
    EXPECT_EQ(Mark(Png(m_seal).substr(0, 200), nullptr, &length), -kPictureDamaged);
    EXPECT_EQ(Mark("", nullptr, &length), -kPictureBadArgument);
    EXPECT_EQ(AddWatermarkOnEseal(nullptr, 5, nullptr, &length), -kPictureBadArgument);
    EXPECT_EQ(Mark(Png(m_seal), nullptr, nullptr), -kPictureBadArgument);
    std::string png = Png(m_seal);
    png.replace(16, 8, std::string("\0\0\x10\0\0\0\x10\1", 8));
    EXPECT_EQ(Mark(png, nullptr, &length), -kPictureTooLarge);
    EXPECT_EQ(length, 4711);
}

TEST_F(AddWatermarkTest, AGifWhoseFrameIsSmallerThanItIsRefused) {
    std::string gif = Gif(m_seal);
    ++gif[6];
    int length = 0;
    EXPECT_EQ(Mark(gif, nullptr, &length), -kPicturePartialFrame);
}

TEST_F(AddWatermarkTest, APictureWithoutPaintHasNothingToMark) {
    Fill(0, 0, kWidth, gdTrueColorAlpha(7, 7, 7, 127));
    const Image marked = ReadPng(Marked(Png(m_seal)));
    ASSERT_TRUE(marked);
    for (int i = 0; i < kHeight; ++i) EXPECT_EQ(gdTrueColorGetAlpha(Colour(marked, i, i)), 127);
}

TEST_F(AddWatermarkTest, TheStripesGrowWithThePicture) {
    EXPECT_EQ(StripePeriod(1, 1), 8);
    EXPECT_EQ(StripePeriod(53, 200), 8);
    EXPECT_EQ(StripePeriod(200, 60), 10);
    EXPECT_EQ(StripePeriod(600, 600), 100);
    const Image one(gdImageCreateTrueColor(1, 1));
    EXPECT_EQ(Colour(ReadPng(Marked(Png(one))), 0, 0), gdTrueColor(127, 127, 127));
}

}  // namespace
