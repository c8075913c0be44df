#include "components/drawing/Picture.h"

#include <gtest/gtest.h>

namespace {

using std::string_literals::operator""s;

Picture Filled(int width, int height, std::vector<std::uint8_t> pixel) {
    Picture picture{width, height, {}};
    for (int i = 0; i < width * height; ++i) {
        picture.rgba.insert(picture.rgba.end(), pixel.begin(), pixel.end());
    }
    return picture;
}

// A row of 256 pixels whose alpha rises from 0 to 255.
Picture Ramp() {
    Picture picture{256, 1, {}};
    for (int i = 0; i < 256; ++i) {
        picture.rgba.insert(picture.rgba.end(), {200, 0, 0, static_cast<std::uint8_t>(i)});
    }
    return picture;
}

// Two by two pixels of 24 bits: blue, green; red, white.
std::string Bmp() {
    const std::string head =
        "BM\x46\0\0\0\0\0\0\0\x36\0\0\0"s
        "\x28\0\0\0\x02\0\0\0\x02\0\0\0\x01\0\x18\0\0\0\0\0\x10\0\0\0"s +
        std::string(16, '\0');
    return head + "\0\0\xFF\xFF\xFF\xFF\0\0"s + "\xFF\0\0\0\xFF\0\0\0"s;
}

// Two by one pixels of 24 bits, the colours (1, 2, 3), which tRNS names as transparent, and red.
std::string PngWithATransparentColour() {
    return "\211PNG\015\012\032\012\000\000\000\015IHDR\000\000\000\002\000\000\000\001\010\002"
           "\000\000\000{@\350\335\000\000\000\006tRNS\000\001\000\002\000\003\311K\253\365\000"
           "\000\000\017IDATx\332c`db\376\317\300\000\000\003 \001\006\304/\231j\000\000\000\000"
           "IEND\256B`\202"s;
}

std::string Problem(std::string_view bytes) {
    Picture picture;
    std::string problem;
    EXPECT_FALSE(DecodePicture(bytes, picture, problem));
    EXPECT_TRUE(picture.rgba.empty());
    return problem;
}

TEST(PictureTest, APngComesBackAsItWas) {
    const Picture picture = Filled(3, 2, {1, 20, 255, 255});
    Picture decoded;
    std::string problem;
    ASSERT_TRUE(DecodePicture(EncodePng(picture), decoded, problem)) << problem;
    EXPECT_EQ(decoded.width, 3);
    EXPECT_EQ(decoded.height, 2);
    EXPECT_EQ(decoded.rgba, picture.rgba);
}

TEST(PictureTest, APngTellsItsResolution) {
    // pHYs: 11,811 pixels a metre both ways.
    const std::string chunk = "pHYs\0\0\x2E\x23\0\0\x2E\x23\x01"s;
    EXPECT_NE(EncodePng(Ramp(), 300).find(chunk), std::string::npos);
    EXPECT_EQ(EncodePng(Ramp(), 600).find(chunk), std::string::npos);
}

TEST(PictureTest, APngKeepsItsAlphaToSevenBits) {
    Picture decoded;
    std::string problem;
    ASSERT_TRUE(DecodePicture(EncodePng(Ramp()), decoded, problem)) << problem;
    for (int i = 0; i < 256; ++i) EXPECT_NEAR(decoded.rgba[4 * i + 3], i, 2) << i;
    EXPECT_EQ(decoded.rgba[3], 0);
    EXPECT_EQ(decoded.rgba[4 * 255 + 3], 255);
}

TEST(PictureTest, AColourThatAPngWithoutAlphaNamesAsTransparentIs) {
    Picture decoded;
    std::string problem;
    ASSERT_TRUE(DecodePicture(PngWithATransparentColour(), decoded, problem)) << problem;
    EXPECT_EQ(decoded.rgba, (std::vector<std::uint8_t>{1, 2, 3, 0, 255, 0, 0, 255}));
}

TEST(PictureTest, AGifIsEitherTransparentOrPaintedOverWhite) {
    Picture decoded;
    std::string problem;
    ASSERT_TRUE(DecodePicture(EncodeGif(Ramp()), decoded, problem)) << problem;
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(decoded.rgba[4 * i + 3], i < 24 ? 0 : 255) << i;
        if (i < 24) continue;
        EXPECT_NEAR(decoded.rgba[4 * i + 1], 255 - i, 9) << i;
    }
}

TEST(PictureTest, AWhiteThatIsToBeSeenIsNotTheTransparentOne) {
    Picture decoded;
    std::string problem;
    ASSERT_TRUE(DecodePicture(EncodeGif(Filled(2, 2, {255, 255, 255, 255})), decoded, problem));
    EXPECT_EQ(decoded.rgba[3], 255);
    EXPECT_GE(decoded.rgba[0], 254);
}

TEST(PictureTest, AGifOfManyColoursTakesTheNearestAndStaysTransparent) {
    Picture picture{64, 64, {}};
    for (int i = 0; i < 64 * 64; ++i) {
        const auto low = static_cast<std::uint8_t>(4 * (i % 64));
        const auto high = static_cast<std::uint8_t>(4 * (i / 64));
        picture.rgba.insert(picture.rgba.end(),
                            {low, high, 128, static_cast<std::uint8_t>(i < 64 ? 0 : 255)});
    }
    Picture decoded;
    std::string problem;
    ASSERT_TRUE(DecodePicture(EncodeGif(picture), decoded, problem)) << problem;
    EXPECT_EQ(decoded.rgba[3], 0);
    const std::size_t middle = 4 * (32 * 64 + 32);
    EXPECT_EQ(decoded.rgba[middle + 3], 255);
    EXPECT_NEAR(decoded.rgba[middle], 128, 40);
    EXPECT_NEAR(decoded.rgba[middle + 1], 128, 40);
}

TEST(PictureTest, ABmpIsDecoded) {
    Picture decoded;
    std::string problem;
    ASSERT_TRUE(DecodePicture(Bmp(), decoded, problem)) << problem;
    ASSERT_EQ(decoded.rgba.size(), 16u);
    const std::vector<std::uint8_t> expected = {0,   0, 255, 255, 0,   255, 0,   255,
                                                255, 0, 0,   255, 255, 255, 255, 255};
    EXPECT_EQ(decoded.rgba, expected);
}

TEST(PictureTest, FormatAndSizeAreReadFromTheHeaderAlone) {
    PictureInfo info;
    ASSERT_TRUE(ReadPictureInfo("GIF89a\x2C\x01\x10\x00"s, info));
    EXPECT_EQ(info.format, PictureFormat::kGif);
    EXPECT_EQ(info.width, 300);
    EXPECT_EQ(info.height, 16);
    ASSERT_TRUE(ReadPictureInfo(EncodePng(Ramp()).substr(0, 24), info));
    EXPECT_EQ(info.format, PictureFormat::kPng);
    EXPECT_EQ(info.width, 256);
    ASSERT_TRUE(ReadPictureInfo(Bmp().substr(0, 26), info));
    EXPECT_EQ(info.format, PictureFormat::kBmp);
    ASSERT_TRUE(ReadPictureInfo(
        "\xFF\xD8\xFF\xE0\x00\x04xx\xFF\xFF\xC2\x00\x0B\x08\x00\x20\x01\x00\x03"s, info));
    EXPECT_EQ(info.format, PictureFormat::kJpeg);
    EXPECT_EQ(info.width, 256);
    EXPECT_EQ(info.height, 32);
}

TEST(PictureTest, HeadersThatAreCutOffAreRefusedWithTheirFormatTold) {
    PictureInfo info;
    for (const auto& whole :
         {EncodePng(Ramp()).substr(0, 24), Bmp().substr(0, 26), "GIF89a\x2C\x01\x10\x00"s,
          "\xFF\xD8\xFF\xC0\x00\x0B\x08\x00\x20\x01\x00"s}) {
        ASSERT_TRUE(ReadPictureInfo(whole, info));
        EXPECT_FALSE(ReadPictureInfo(std::string_view(whole).substr(0, whole.size() - 1), info));
        EXPECT_NE(info.format, PictureFormat::kUnknown);
    }
    EXPECT_FALSE(ReadPictureInfo("", info));
    EXPECT_FALSE(ReadPictureInfo("%PDF-1.7", info));
    EXPECT_EQ(info.format, PictureFormat::kUnknown);
}

TEST(PictureTest, ABmpWithRowsFromTheTopHasAPositiveHeight) {
    std::string bmp = Bmp();
    bmp.replace(22, 4, "\xFE\xFF\xFF\xFF");
    PictureInfo info;
    ASSERT_TRUE(ReadPictureInfo(bmp, info));
    EXPECT_EQ(info.height, 2);
}

TEST(PictureTest, ALargePictureIsRefusedBeforeItIsDecoded) {
    EXPECT_NE(Problem("GIF89a\xFF\xFF\xFF\xFF and nothing behind it").find("65535 by 65535"),
              std::string::npos);
    std::string png = EncodePng(Ramp());
    png.replace(16, 8, "\0\0\x20\x00\0\0\x20\x00"s);
    EXPECT_NE(Problem(png).find("too large"), std::string::npos);
}

TEST(PictureTest, DamageIsTold) {
    EXPECT_EQ(Problem("PK\x03\x04"), "The picture is neither GIF nor PNG, JPEG or BMP.");
    const std::string png = EncodePng(Filled(40, 40, {9, 8, 7, 255}));
    EXPECT_EQ(Problem(png.substr(0, 60)), "The picture is damaged.");
    EXPECT_EQ(Problem("GIF89a\x02\x00\x02\x00"s), "The picture is damaged.");
    EXPECT_EQ(Problem("GIF89a\0\0\0\0"s), "The picture is damaged: its header tells no size.");
}

TEST(PictureTest, NothingIsEncodedToNothing) {
    EXPECT_TRUE(EncodeGif({}).empty());
    EXPECT_TRUE(EncodePng({}).empty());
    EXPECT_TRUE(EncodePng({2, 2, {1, 2, 3}}).empty());
}

TEST(PictureTest, LengthsAndPixelsAreTurnedIntoEachOther) {
    EXPECT_EQ(PixelsOf(42, 300), 496);
    EXPECT_EQ(PixelsOf(0.001, 72), 1);
    EXPECT_DOUBLE_EQ(MillimetresOf(300, 300), 25.4);
}

}  // namespace
