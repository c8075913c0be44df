#include "components/picture/PictureHeader.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using std::string_literals::operator""s;

void ExpectHeader(const std::string& file, PictureFormat format, int width, int height) {
    const PictureHeader header = ReadPictureHeader(file);
    EXPECT_EQ(header.format, format);
    EXPECT_EQ(header.width, width);
    EXPECT_EQ(header.height, height);
}

TEST(PictureHeaderTest, AGifTellsItsScreen) {
    ExpectHeader("GIF89a\x02\x01\x03\x00"s, PictureFormat::kGif, 258, 3);
    ExpectHeader("GIF87a\x02\x01\x03\x00"s, PictureFormat::kGif, 258, 3);
    ExpectHeader("GIF89a\x02\x01\x03"s, PictureFormat::kGif, 0, 0);
}

TEST(PictureHeaderTest, APngTellsItsSizeInItsFirstChunkOnly) {
    const std::string start = "\x89PNG\r\n\x1A\n\0\0\0\x0D"s;
    ExpectHeader(start + "IHDR\0\0\1\0\0\0\0\7"s, PictureFormat::kPng, 256, 7);
    ExpectHeader(start + "IDAT\0\0\1\0\0\0\0\7"s, PictureFormat::kPng, 0, 0);
    ExpectHeader(start + "IHDR\0\0\1\0\0\0\0"s, PictureFormat::kPng, 0, 0);
}

TEST(PictureHeaderTest, ABmpMayRunFromTheTop) {
    const std::string start = "BM"s + std::string(12, '\0') + "\x28\0\0\0"s;
    ExpectHeader(start + "\5\0\0\0\xFA\xFF\xFF\xFF"s, PictureFormat::kBmp, 5, 6);
    ExpectHeader(start + "\5\0\0\0\6\0\0"s, PictureFormat::kBmp, 0, 0);
    ExpectHeader("BM"s + std::string(12, '\0') + "\x0C\0\0\0\5\0\6\0\1\0\1\0"s, PictureFormat::kBmp,
                 5, 6);
}

TEST(PictureHeaderTest, AJpegTellsItsSizeBehindItsOtherSegments) {
    const std::string other = "\xFF\xE0\0\4xx"s;
    const std::string huffman = "\xFF\xC4\0\3x"s;
    const std::string frame = "\xFF\xC2\0\x0B\x08\0\2\1\0"s;
    ExpectHeader("\xFF\xD8"s + other + huffman + "\xFF"s + frame, PictureFormat::kJpeg, 256, 2);
    ExpectHeader("\xFF\xD8\xFF\x01\xFF\xD0"s + other + frame, PictureFormat::kJpeg, 256, 2);
    ExpectHeader("\xFF\xD8"s + other + frame.substr(0, 8), PictureFormat::kJpeg, 0, 0);
    ExpectHeader("\xFF\xD8\xFF"s, PictureFormat::kJpeg, 0, 0);
}

TEST(PictureHeaderTest, ASideAndTheWholeHaveTheirLimits) {
    EXPECT_FALSE(IsPictureTooLarge(16'384, 1'024));
    EXPECT_FALSE(IsPictureTooLarge(4'096, 4'096));
    EXPECT_TRUE(IsPictureTooLarge(4'096, 4'097));
    EXPECT_TRUE(IsPictureTooLarge(16'385, 1));
    EXPECT_TRUE(IsPictureTooLarge(1, 0xFFFFFFFF));
    EXPECT_TRUE(IsPictureTooLarge(0xFFFFFFFF, 0xFFFFFFFF));
}

TEST(PictureHeaderTest, AnythingElseIsUnknown) {
    ExpectHeader("", PictureFormat::kUnknown, 0, 0);
    ExpectHeader("%PDF-1.7", PictureFormat::kUnknown, 0, 0);
}

}  // namespace
