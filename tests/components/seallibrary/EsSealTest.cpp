#include "components/seallibrary/EsSeal.h"

#include <gtest/gtest.h>

namespace {

TEST(EsSealTest, NameAndPictureStandAtTheirFixedPlaces) {
    const std::string picture("GIF\0x", 5);
    const std::string seal = MakeEsSeal("印章", picture);
    ASSERT_EQ(seal.size(), 333u);
    EXPECT_EQ(seal.substr(0, 2), "\x45\x53");
    EXPECT_EQ(seal.substr(12, 4), std::string("\x05\0\0\0", 4));
    EXPECT_EQ(seal.substr(86, 5), std::string("\xD3\xA1\xD5\xC2\0", 5));
    EXPECT_EQ(seal.substr(328), picture);
}

TEST(EsSealTest, TheLengthIsLittleEndian) {
    const std::string seal = MakeEsSeal("", std::string(0x012345, 'x'));
    EXPECT_EQ(seal.substr(12, 4), std::string("\x45\x23\x01\0", 4));
}

TEST(EsSealTest, AnEmptyNameLeavesAZeroByteInItsPlace) {
    EXPECT_EQ(MakeEsSeal("", "x").at(86), '\0');
}

TEST(EsSealTest, ANameThatWouldReachThePictureIsRefused) {
    EXPECT_EQ(MakeEsSeal(std::string(241, 'n'), "x").size(), 329u);
    EXPECT_EQ(MakeEsSeal(std::string(241, 'n'), "x").at(327), '\0');
    EXPECT_EQ(MakeEsSeal(std::string(242, 'n'), "x"), "");
    EXPECT_EQ(MakeEsSeal(std::string("a\0b", 3), "x"), "");
}

}  // namespace
