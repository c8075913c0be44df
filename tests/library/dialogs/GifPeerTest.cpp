// Pictures that libgd has encoded, against what libgd reads from them.
#include <gtest/gtest.h>

#include <random>

#include "components/drawing/Picture.h"
#include "dialogs/GifPicture.h"

namespace {

constexpr platform::Colour kPaper = 0xF0F0F0;

// Blots of some thirty colours; every fifth pixel or so is transparent.
Picture Blots(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    Picture picture{width, height, {}};
    unsigned pixel = 0;
    for (int i = 0; i < width * height; ++i) {
        if (random() % 3 == 0) pixel = static_cast<unsigned>(random());
        const bool seen = pixel % 5 != 0;
        for (const unsigned shift : {3U, 5U, 7U}) {
            picture.rgba.push_back(static_cast<std::uint8_t>(seen ? (pixel >> shift & 3) * 85 : 0));
        }
        picture.rgba.push_back(seen ? 255 : 0);
    }
    return picture;
}

std::vector<platform::Colour> OnPaper(const Picture& picture) {
    std::vector<platform::Colour> pixels;
    for (std::size_t at = 0; at < picture.rgba.size(); at += 4) {
        const std::uint8_t* const pixel = picture.rgba.data() + at;
        pixels.push_back(pixel[3] == 0 ? kPaper
                                       : static_cast<platform::Colour>(pixel[0] << 16 |
                                                                       pixel[1] << 8 | pixel[2]));
    }
    return pixels;
}

TEST(GifPeerTest, APictureThatLibgdWroteIsReadAsLibgdReadsIt) {
    for (const auto& [width, height] : {std::pair{1, 1}, {7, 3}, {64, 64}, {301, 257}}) {
        const std::string gif = EncodeGif(Blots(width, height, 7));
        ASSERT_FALSE(gif.empty());
        Picture read;
        std::string problem;
        ASSERT_TRUE(DecodePicture(gif, read, problem)) << problem;
        const platform::Picture ours = DecodeGif(gif, kPaper);
        EXPECT_EQ(ours.width, width);
        EXPECT_EQ(ours.height, height);
        EXPECT_TRUE(ours.pixels == OnPaper(read)) << width << "x" << height;
    }
}

}  // namespace
