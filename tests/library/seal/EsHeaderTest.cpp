#include "seal/EsHeader.h"

#include <gtest/gtest.h>

#include "fakes/World.h"

namespace {

constexpr std::size_t kLength = 12;
constexpr std::size_t kName = 86;
constexpr std::size_t kPicture = 328;

TEST(EsHeaderTest, AWholeFileGivesItsPictureAndItsName) {
    const std::string file = fakes::EsSeal(std::string("pic\0ture", 8), "公章");
    const auto header = ReadEsHeader(file);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->picture, std::string_view("pic\0ture", 8));
    EXPECT_EQ(header->name, "公章");
}

TEST(EsHeaderTest, BytesBehindThePromisedPictureAreLeftOut) {
    const std::string file = fakes::EsSeal("picture") + "more";
    const auto header = ReadEsHeader(file);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->picture, "picture");
}

TEST(EsHeaderTest, AFileWithoutANameIsCalledSeal) {
    const std::string file = fakes::EsSeal("picture", "");
    const auto header = ReadEsHeader(file);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->name, "\xD3\xA1\xD5\xC2");
}

TEST(EsHeaderTest, APictureOfLengthZeroIsOne) {
    const std::string file = fakes::EsSeal("");
    const auto header = ReadEsHeader(file);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->picture, "");
}

TEST(EsHeaderTest, AFileWithoutTheMagicIsRefused) {
    std::string file = fakes::EsSeal("picture");
    file[1] = 's';
    EXPECT_FALSE(ReadEsHeader(file));
    EXPECT_FALSE(ReadEsHeader(""));
    EXPECT_FALSE(ReadEsHeader("E"));
}

TEST(EsHeaderTest, AFileThatEndsBeforeItsHeaderIsRefused) {
    const std::string file = fakes::EsSeal("");
    EXPECT_TRUE(ReadEsHeader(file));
    for (const std::size_t size : {2u, 12u, 15u, 16u, 86u, 327u}) {
        EXPECT_FALSE(ReadEsHeader(file.substr(0, size))) << size;
    }
}

TEST(EsHeaderTest, AFileThatEndsBeforeItsPictureIsRefused) {
    const std::string file = fakes::EsSeal("picture");
    EXPECT_FALSE(ReadEsHeader(file.substr(0, file.size() - 1)));
    std::string huge = file;
    huge.replace(kLength, 4, "\xFF\xFF\xFF\x7F");
    EXPECT_FALSE(ReadEsHeader(huge));
}

TEST(EsHeaderTest, ANegativeLengthIsRefused) {
    std::string file = fakes::EsSeal("picture");
    file.replace(kLength, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_FALSE(ReadEsHeader(file));
    file.replace(kLength, 4, std::string("\0\0\0\x80", 4));
    EXPECT_FALSE(ReadEsHeader(file));
}

TEST(EsHeaderTest, AnUnterminatedNameRunsOnAndEndsWithTheFileAtTheLatest) {
    std::string file = fakes::EsSeal("picture");
    file.replace(kName, kPicture - kName, kPicture - kName, 'n');
    const auto header = ReadEsHeader(file);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->name, std::string(kPicture - kName, 'n') + "picture");
}

}  // namespace
