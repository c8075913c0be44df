#include "drawing/SealDrawing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string_view>

namespace {

std::string Utf8(std::u8string_view text) { return {text.begin(), text.end()}; }

class SealDrawingTest : public testing::Test {
protected:
    SealDrawingTest() {
        m_design.name = Utf8(u8"深圳市晨光示范科技有限公司");
        m_design.purpose = Utf8(u8"合同专用章");
        m_design.number = "4403018765432";
    }

    Picture Draw() {
        Picture picture;
        std::string problem;
        EXPECT_TRUE(DrawRoundSeal(m_design, picture, problem)) << problem;
        return picture;
    }
    std::string Problem() {
        Picture picture;
        std::string problem;
        EXPECT_FALSE(DrawRoundSeal(m_design, picture, problem));
        EXPECT_TRUE(picture.rgba.empty());
        return problem;
    }

    SealDesign m_design;
};

// Coverage at a place told in parts of the radius, x to the right and y up from the centre.
int At(const Picture& picture, double x, double y) {
    const double radius = picture.width / 2.0;
    const int column = std::min(picture.width - 1, int(radius + x * radius));
    const int row = std::min(picture.height - 1, int(radius - y * radius));
    return picture.rgba[4 * (std::size_t(row) * picture.width + column) + 3];
}

// The part of a ring's sector that is covered; angles in degrees, clockwise from the top.
double Ink(const Picture& picture, double inner, double outer, double from, double to) {
    double sum = 0;
    int count = 0;
    for (double angle = from; angle < to; angle += 0.5) {
        for (double r = inner; r < outer; r += 0.01, ++count) {
            const double radians = angle * std::numbers::pi / 180;
            sum += At(picture, r * std::sin(radians), r * std::cos(radians)) / 255.0;
        }
    }
    return sum / count;
}

TEST_F(SealDrawingTest, ItIsAsWideAsTheRingAtTheResolutionAsked) {
    EXPECT_EQ(Draw().width, 496);
    m_design.dpi = 600;
    m_design.diameterMm = 40;
    const Picture picture = Draw();
    EXPECT_EQ(picture.width, 945);
    EXPECT_EQ(picture.height, 945);
    EXPECT_EQ(picture.rgba.size(), std::size_t{4} * 945 * 945);
}

TEST_F(SealDrawingTest, RingAndStarAreSolidAndTheRestIsTransparent) {
    m_design.number.clear();
    m_design.purpose.clear();
    const Picture picture = Draw();
    EXPECT_GT(Ink(picture, 0.955, 0.985, 0, 360), 0.99);
    EXPECT_EQ(At(picture, 0, 0), 255);
    EXPECT_EQ(At(picture, 0, 0.28), 255) << "a point of the star is up";
    EXPECT_EQ(At(picture, 0, -0.28), 0) << "and none is down";
    EXPECT_EQ(At(picture, -0.99, 0.99), 0);
    EXPECT_EQ(Ink(picture, 0.4, 0.55, 0, 360), 0);
    EXPECT_EQ(Ink(picture, 0.56, 0.93, 150, 210), 0) << "the name leaves the bottom free";
}

TEST_F(SealDrawingTest, TheColourIsTheSameEverywhere) {
    m_design.colour = 0x123456;
    const Picture picture = Draw();
    for (std::size_t at = 0; at < picture.rgba.size(); at += 4) {
        ASSERT_EQ(picture.rgba[at], 0x12);
        ASSERT_EQ(picture.rgba[at + 1], 0x34);
        ASSERT_EQ(picture.rgba[at + 2], 0x56);
    }
}

TEST_F(SealDrawingTest, TheNameIsSpreadEvenlyOverTheArc) {
    m_design.name = Utf8(u8"田田田田田田田田田");
    m_design.number.clear();
    const Picture picture = Draw();
    const double left = Ink(picture, 0.6, 0.88, -130, -44);
    const double top = Ink(picture, 0.6, 0.88, -43, 43);
    const double right = Ink(picture, 0.6, 0.88, 44, 130);
    EXPECT_GT(top, 0.1);
    EXPECT_NEAR(left, top, 0.03);
    EXPECT_NEAR(right, top, 0.03);
}

TEST_F(SealDrawingTest, PurposeAndNumberStandBelowTheStar) {
    const Picture with = Draw();
    EXPECT_GT(Ink(with, 0.82, 0.91, 145, 215), 0.1);
    EXPECT_GT(Ink(with, 0.45, 0.58, 175, 185), 0.05);
    m_design.purpose.clear();
    m_design.number.clear();
    const Picture without = Draw();
    EXPECT_EQ(Ink(without, 0.82, 0.91, 145, 215), 0);
    EXPECT_EQ(Ink(without, 0.45, 0.58, 175, 185), 0);
}

TEST_F(SealDrawingTest, LatinNamesStandOnTheArcAsWell) {
    m_design.name = "Morning Light Example Trading Co., Ltd.";
    m_design.purpose = "CONTRACT";
    const Picture picture = Draw();
    EXPECT_GT(Ink(picture, 0.62, 0.86, -100, 100), 0.1);
    EXPECT_EQ(Ink(picture, 0.4, 0.55, -100, 100), 0);
}

TEST_F(SealDrawingTest, ALongNameIsMadeNarrowerAndStaysWithinTheRing) {
    m_design.name = Utf8(u8"中国非常长的名字有限责任公司北京第一分公司广州营业部");
    const Picture picture = Draw();
    EXPECT_GT(Ink(picture, 0.62, 0.86, -100, 100), 0.1);
    EXPECT_EQ(Ink(picture, 0.89, 0.93, -118, 118), 0);
}

TEST_F(SealDrawingTest, EdgesAreSmooth) {
    const Picture picture = Draw();
    int partial = 0;
    for (std::size_t at = 3; at < picture.rgba.size(); at += 4) {
        partial += picture.rgba[at] > 0 && picture.rgba[at] < 255;
    }
    EXPECT_GT(partial, 2 * 496);
}

TEST_F(SealDrawingTest, TheSameDesignGivesTheSamePictureAndASmallGif) {
    EXPECT_EQ(Draw().rgba, Draw().rgba);
    EXPECT_LT(EncodeGif(Draw()).size(), 24u * 1024);
    m_design.dpi = 600;
    EXPECT_LT(EncodeGif(Draw()).size(), 60u * 1024);
}

TEST_F(SealDrawingTest, ANameIsNeeded) {
    m_design.name = "  ";
    EXPECT_EQ(Problem(), "The seal needs a name.");
    m_design.name.clear();
    EXPECT_EQ(Problem(), "The seal needs a name.");
}

TEST_F(SealDrawingTest, TextsThatAreNotUtf8AreRefused) {
    for (const char* text :
         {"\xC9\xEE\xDB\xDA", "a\tb", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE6\xB7"}) {
        m_design.purpose = text;
        EXPECT_NE(Problem().find("not UTF-8"), std::string::npos);
    }
}

TEST_F(SealDrawingTest, ANameThatCannotFitIsRefused) {
    m_design.name = std::string(201, 'W');
    EXPECT_EQ(Problem(), "The texts of the seal are too long.");
    m_design.name = std::string(150, 'W');
    EXPECT_EQ(Problem(), "The texts of the seal don't fit into it.");
}

TEST_F(SealDrawingTest, MeasuresOutOfRangeAreRefused) {
    for (const double diameter : {9.9, 171.0, -42.0, std::nan("")}) {
        m_design.diameterMm = diameter;
        EXPECT_NE(Problem().find("diameter"), std::string::npos);
    }
    m_design.diameterMm = 42;
    for (const int dpi : {0, 71, 1'201}) {
        m_design.dpi = dpi;
        EXPECT_NE(Problem().find("resolution"), std::string::npos);
    }
    m_design.diameterMm = 170;
    m_design.dpi = 1'200;
    EXPECT_EQ(Problem(), "The seal's picture would be too large.");
}

TEST_F(SealDrawingTest, ACharacterThatNoFontHasIsToldWithThePackageThatMayHelp) {
    m_design.name = Utf8(u8"\U0010FFFD");  // private use, in no font of Debian's
    EXPECT_NE(Problem().find("fonts-noto-cjk"), std::string::npos);
}

}  // namespace
