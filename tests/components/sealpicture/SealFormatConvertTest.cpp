#include <gd.h>
#include <gtest/gtest.h>

#include <string>

#include "components/sealpicture/Conversion.h"
#include "components/sealpicture/PictureCodes.h"
#include "components/sealpicture/Pictures.h"
#include "platform/closed/SealPicture.h"

namespace {

int Convert(const std::string& picture, unsigned char* out, int* outLen) {
    return SealFormatConvert(reinterpret_cast<const unsigned char*>(picture.data()),
                             static_cast<int>(picture.size()), out, outLen);
}

// Of a query and a fetch.
std::string Converted(const std::string& picture) {
    int length = 0;
    EXPECT_EQ(Convert(picture, nullptr, &length), kPictureOk);
    std::string gif(static_cast<std::size_t>(length), '\0');
    EXPECT_EQ(Convert(picture, reinterpret_cast<unsigned char*>(gif.data()), &length), kPictureOk);
    EXPECT_EQ(length, static_cast<int>(gif.size()));
    return gif;
}

bool IsTransparent(const Image& image, int x, int y) {
    return gdImageGetPixel(image.get(), x, y) == gdImageGetTransparent(image.get());
}

class SealFormatConvertTest : public testing::Test {
protected:
    SealFormatConvertTest() : m_image(gdImageCreateTrueColor(60, 40)) {
        gdImageAlphaBlending(m_image.get(), 0);
        gdImageSaveAlpha(m_image.get(), 1);
        gdImageFilledRectangle(m_image.get(), 0, 0, 59, 39, gdTrueColorAlpha(0, 0, 0, 127));
        gdImageFilledRectangle(m_image.get(), 10, 10, 19, 19, gdTrueColor(255, 0, 0));
        gdImageFilledRectangle(m_image.get(), 30, 10, 39, 19, gdTrueColor(255, 255, 255));
        gdImageFilledRectangle(m_image.get(), 30, 25, 39, 34, gdTrueColorAlpha(255, 0, 0, 64));
    }

    Image m_image;
};

TEST_F(SealFormatConvertTest, APngKeepsItsTransparencyAndItsColours) {
    const Image gif = ReadGif(Converted(Png(m_image)));
    ASSERT_TRUE(gif);
    EXPECT_EQ(gdImageSX(gif.get()), 60);
    EXPECT_EQ(gdImageSY(gif.get()), 40);
    EXPECT_TRUE(IsTransparent(gif, 0, 0));
    EXPECT_FALSE(IsTransparent(gif, 15, 15));
    EXPECT_EQ(gdImageGetTrueColorPixel(gif.get(), 15, 15), 0xFF0000);
}

TEST_F(SealFormatConvertTest, WhitePaintIsNotTakenForPaper) {
    const Image gif = ReadGif(Converted(Png(m_image)));
    EXPECT_FALSE(IsTransparent(gif, 35, 15));
    EXPECT_EQ(gdImageGetTrueColorPixel(gif.get(), 35, 15), 0xFFFFFF);
}

TEST_F(SealFormatConvertTest, HalfTransparentPaintIsPaintedOverWhite) {
    const Image gif = ReadGif(Converted(Png(m_image)));
    EXPECT_FALSE(IsTransparent(gif, 35, 30));
    const int colour = gdImageGetTrueColorPixel(gif.get(), 35, 30);
    EXPECT_EQ(gdTrueColorGetRed(colour), 255);
    EXPECT_NEAR(gdTrueColorGetGreen(colour), 128, 2);
}

TEST_F(SealFormatConvertTest, AJpegAndABmpBecomeOpaqueGifs) {
    gdImageFilledRectangle(m_image.get(), 0, 0, 59, 39, gdTrueColor(0, 0, 255));
    for (const std::string& picture : {Jpeg(m_image), Bmp(m_image)}) {
        const Image gif = ReadGif(Converted(picture));
        ASSERT_TRUE(gif);
        EXPECT_FALSE(IsTransparent(gif, 5, 5));
        EXPECT_NEAR(gdTrueColorGetBlue(gdImageGetTrueColorPixel(gif.get(), 5, 5)), 255, 3);
    }
}

TEST_F(SealFormatConvertTest, AGifStaysAsItIs) {
    const std::string gif = Gif(m_image);
    EXPECT_EQ(Converted(gif), gif);
}

TEST_F(SealFormatConvertTest, APictureOfManyColoursIsReduced) {
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 60; ++x)
            gdImageSetPixel(m_image.get(), x, y, gdTrueColor(4 * x, 6 * y, 2 * x + 2 * y));
    const Image gif = ReadGif(Converted(Png(m_image)));
    ASSERT_TRUE(gif);
    EXPECT_NEAR(gdTrueColorGetRed(gdImageGetTrueColorPixel(gif.get(), 50, 20)), 200, 24);
}

TEST_F(SealFormatConvertTest, ABufferTooSmallIsTold) {
    const std::string png = Png(m_image);
    const std::string gif = Converted(png);
    int length = static_cast<int>(gif.size()) - 1;
    std::string out(gif.size(), '?');
    EXPECT_EQ(Convert(png, reinterpret_cast<unsigned char*>(out.data()), &length),
              kPictureBufferTooSmall);
    EXPECT_EQ(length, static_cast<int>(gif.size()));
    EXPECT_EQ(out, std::string(gif.size(), '?'));
}

TEST_F(SealFormatConvertTest, WhatIsNoPictureIsRefused) {
    int length = 0;
    EXPECT_EQ(Convert("%PDF-1.7", nullptr, &length), kPictureUnknownFormat);
    EXPECT_EQ(Convert("GIF89a", nullptr, &length), kPictureDamaged);
    EXPECT_EQ(Convert("", nullptr, &length), kPictureBadArgument);
    EXPECT_EQ(SealFormatConvert(nullptr, 5, nullptr, &length), kPictureBadArgument);
    EXPECT_EQ(Convert("GIF89a", nullptr, nullptr), kPictureBadArgument);
}

TEST_F(SealFormatConvertTest, ATruncatedPictureIsRefused) {
    int length = 0;
    for (const std::string& picture : {Png(m_image), Jpeg(m_image), Bmp(m_image)})
        for (const std::size_t missing : {std::size_t{1}, picture.size() / 4, picture.size() / 2})
            EXPECT_EQ(Convert(picture.substr(0, picture.size() - missing), nullptr, &length),
                      kPictureDamaged)
                << picture.substr(0, 4) << " without " << missing;
}

TEST_F(SealFormatConvertTest, AHeaderThatPromisesTooManyPixelsIsRefusedUndecoded) {
    int length = 0;
    std::string png = Png(m_image);
    png.replace(16, 8, std::string("\0\0\x10\0\0\0\x10\1", 8));
    EXPECT_EQ(Convert(png, nullptr, &length), kPictureTooLarge);
    png.replace(16, 8, std::string("\0\0\x40\1\0\0\0\1", 8));
    EXPECT_EQ(Convert(png, nullptr, &length), kPictureTooLarge);
    png.replace(16, 8, std::string("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 8));
    EXPECT_EQ(Convert(png, nullptr, &length), kPictureTooLarge);
}

TEST_F(SealFormatConvertTest, ATransparentColourOfAPngWithoutAlphaStaysTransparent) {
    gdImageSaveAlpha(m_image.get(), 0);
    gdImageFilledRectangle(m_image.get(), 0, 0, 59, 39, gdTrueColor(1, 2, 3));
    gdImageFilledRectangle(m_image.get(), 10, 10, 19, 19, gdTrueColor(255, 0, 0));
    gdImageColorTransparent(m_image.get(), gdTrueColor(1, 2, 3));
    const Image gif = ReadGif(Converted(Png(m_image)));
    ASSERT_TRUE(gif);
    EXPECT_TRUE(IsTransparent(gif, 0, 0));
    EXPECT_FALSE(IsTransparent(gif, 15, 15));
}

TEST_F(SealFormatConvertTest, TheLibraryComesUpAndGoes) {
    EXPECT_EQ(MR_Init(), kPictureOk);
    EXPECT_EQ(MR_Release(), kPictureOk);
}

}  // namespace
