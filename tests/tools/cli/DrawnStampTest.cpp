// `tesmark stamp` without a seal: pictures drawn of the certificate's name, and of a text.

#include <gmock/gmock.h>

#include "SourceFixture.h"

namespace {

using testing::HasSubstr;

class DrawnFixture : public SourceFixture {
protected:
    DrawnFixture() { MakeKey("rsa", "rsa2048"); }
    void Register() const { Set("PersonalSealControl", CLI_PERSONAL_SEAL); }
    int TriesLeft() const { return Json({"key", "list"})["keys"][0]["triesLeft"].asInt(); }
};

class NameStampTest : public DrawnFixture {
protected:
    NameStampTest() { Set("bSealPosition", "3"); }
};

TEST_F(NameStampTest, ALineOfTheNameIsSignedWithAPkcs7) {
    Register();
    const Json::Value stamped = Stamped();
    EXPECT_EQ(stamped["source"], "name");
    EXPECT_EQ(stamped["mode"].asInt(), 0);
    EXPECT_EQ(stamped["subFilter"], "adbe.pkcs7.detached");
    EXPECT_GT(stamped["widthMm"].asDouble(), 5);
    ExpectPdfSigValid();
    ExpectVerified();
}

TEST_F(NameStampTest, AFramedNameHasThreeHundredByOneHundredDotsAtThreeHundredToTheInch) {
    Register();
    Set("bSealPosition", "4");
    const Json::Value stamped = Stamped();
    EXPECT_NEAR(stamped["widthMm"].asDouble(), 25.4, 0.01);
    EXPECT_NEAR(stamped["heightMm"].asDouble(), 25.4 / 3, 0.01);
    ExpectPdfSigValid();
}

TEST_F(NameStampTest, AnSm2KeySignsANameToo) {
    Register();
    MakeKey("sm2", "sm2");
    EXPECT_EQ(Stamped({"--cert", "sm2"})["subFilter"], "adbe.pkcs7.detached");
    ExpectVerified();
}

TEST_F(NameStampTest, TheSizeOfTheCommandLineGoesBeforeThePictures) {
    Register();
    EXPECT_EQ(Stamped({"--size", "30x10"})["widthMm"].asDouble(), 30);
}

TEST_F(NameStampTest, WithoutAControlTheCommandThatRegistersOneIsTold) {
    ExpectRefusal({}, 3, "to register one: tesmark config set PersonalSealControl ");
}

TEST_F(NameStampTest, AFileThatIsNoControlIsNone) {
    WriteFile(InPrefix("control"), "no library");
    Set("PersonalSealControl", InPrefix("control"));
    ExpectRefusal({}, 3, "There is no control that draws personal seals.");
}

TEST_F(NameStampTest, AControlIsTakenAwayAgain) {
    Register();
    ASSERT_EQ(Tesmark({"config", "unset", "PersonalSealControl"}).exitCode, 0);
    ExpectRefusal({}, 3, "There is no control that draws personal seals.");
}

TEST_F(NameStampTest, ASealNamedAndACertificateThatIsNotThereAreRefused) {
    Register();
    ExpectRefusal({"--seal", "ESEAL"}, 2, "drawn of the certificate's name");
    ExpectRefusal({"--cert", "carol"}, 5, "carol");
}

TEST_F(NameStampTest, AWrongPinCostsOneTry) {
    Register();
    EXPECT_EQ(Stamp({"--pin", "000000"}).exitCode, 6);
    EXPECT_EQ(TriesLeft(), 5);
    EXPECT_TRUE(NothingWritten());
}

class TextStampTest : public DrawnFixture {
protected:
    // Width and height of the drawing, in mm.
    std::pair<double, double> Size(std::vector<std::string> more) const {
        more.insert(more.begin(), {"--text", "ABCD"});
        const Json::Value stamped = Stamped(more);
        return {stamped["widthMm"].asDouble(), stamped["heightMm"].asDouble()};
    }
    // The objects of the stamp's picture, colours and transparency.
    std::string PictureInOutput() const {
        const std::string bytes = FileContent(m_out);
        const auto begin = bytes.find("/Subtype /Image", FileContent(kContract).size());
        const auto last = bytes.rfind("/Subtype /Image");
        return bytes.substr(begin, bytes.find("endobj", last) - begin);
    }
};

TEST_F(TextStampTest, FramesAndSpacesThatTheControlRefusesCostNoTryOfTheKey) {
    Register();
    for (const std::vector<std::string>& style : std::vector<std::vector<std::string>>{
             {"--frame", "21"}, {"--spacing", "101"}, {"--frame", "0"}}) {
        const auto outcome = Stamp({"--pin", "000000", "--text", "ABCD", style[0], style[1]});
        EXPECT_EQ(outcome.exitCode, 2) << style[0];
        EXPECT_THAT(outcome.error, HasSubstr(style[0]));
    }
    EXPECT_EQ(TriesLeft(), 6);
    EXPECT_THAT(Tesmark({"stamp", "--help"}).out, HasSubstr("in [1 - 20]"));
    EXPECT_EQ(Stamped({"--text", "AB", "--frame", "20", "--spacing", "100"})["source"], "text");
}

TEST_F(TextStampTest, ATextIsDrawnAndSignedWithAPkcs7) {
    Register();
    const std::string text = reinterpret_cast<const char*>(u8"同意");
    const Json::Value stamped = Stamped({"--text", text});
    EXPECT_EQ(stamped["source"], "text");
    EXPECT_EQ(stamped["mode"].asInt(), 0);
    ExpectPdfSigValid();
    ExpectVerified();
    EXPECT_THAT(Stamp({"--pin", "123456", "--text", text}).out, HasSubstr("drawn of a text"));
}

TEST_F(TextStampTest, WhereSealsComeFromIsNoMatter) {
    Register();
    MakeSeal("rsa", "es", "rsa");
    for (const char* const position : {"0", "1", "3", "4"}) {
        Set("bSealPosition", position);
        EXPECT_EQ(Stamped({"--text", "Approved"})["source"], "text") << position;
    }
}

TEST_F(TextStampTest, TheStyleChangesWhatIsDrawn) {
    Register();
    const auto [width, height] = Size({});
    const auto [largeWidth, largeHeight] = Size({"--font-size", "40"});
    EXPECT_GT(largeHeight, height);
    const auto [framedWidth, framedHeight] = Size({"--frame", "4"});
    EXPECT_GT(framedHeight, height);
    const std::string columns = reinterpret_cast<const char*>(u8"同意盖章");
    const double line = Stamped({"--text", columns})["widthMm"].asDouble();
    const double block = Stamped({"--text", columns, "--per-column", "2"})["widthMm"].asDouble();
    EXPECT_LT(block, line * 0.7);
    EXPECT_GT(Stamped({"--text", columns, "--spacing", "30"})["widthMm"].asDouble(), line);
    for (const char* const colour : {"red", "blue", "black"}) {
        EXPECT_GT(Size({"--colour", colour, "--bold", "--font", "SimHei"}).first, 0) << colour;
    }
}

TEST_F(TextStampTest, ColoursAreDrawn) {
    Register();
    Stamped({"--text", "A"});
    const std::string red = PictureInOutput();
    ASSERT_NE(red, "");
    Stamped({"--text", "A"});
    EXPECT_EQ(PictureInOutput(), red);
    Stamped({"--text", "A", "--colour", "blue"});
    EXPECT_NE(PictureInOutput(), red);
}

TEST_F(TextStampTest, AStyleOutOfRangeIsRefusedBeforeTheKeyIsTried) {
    Register();
    for (const std::vector<std::string>& style :
         std::vector<std::vector<std::string>>{{"--font-size", "9"},
                                               {"--font-size", "41"},
                                               {"--per-column", "0"},
                                               {"--per-column", "6"},
                                               {"--frame", "0"},
                                               {"--spacing", "-1"}}) {
        std::vector<std::string> arguments = {"--text", "A", "--pin", "000000"};
        arguments.insert(arguments.end(), style.begin(), style.end());
        EXPECT_EQ(Stamp(arguments).exitCode, 2) << style[1];
    }
    EXPECT_EQ(TriesLeft(), 6);
    EXPECT_TRUE(NothingWritten());
    EXPECT_GT(Size({"--font-size", "10", "--per-column", "5"}).first, 0);
}

TEST_F(TextStampTest, WhatTheControlRefusesIsTold) {
    Register();
    ExpectRefusal({"--text", std::string(129, 'A')}, 1, "The control can't draw this.");
    ExpectRefusal({"--text", " "}, 1, "code -2: ");
    ExpectRefusal({"--text", " "}, 1, "try another text, size or font");
}

TEST_F(TextStampTest, OptionsThatDoNotGoTogetherAreRefused) {
    Register();
    ExpectRefusal({"--bold"}, 2, "--text");
    ExpectRefusal({"--text", "A", "--seal", "ESEAL"}, 2, "--seal");
    ExpectRefusal({"--text", "A", "--colour", "green"}, 2, "red, blue and black");
    ExpectRefusal({"--text", ""}, 2, "--text");
}

TEST_F(TextStampTest, WithoutAControlTheCommandThatRegistersOneIsTold) {
    ExpectRefusal({"--text", "A"}, 3, "tesmark config set PersonalSealControl ");
}

TEST_F(TextStampTest, AWrongPinCostsOneTry) {
    Register();
    EXPECT_EQ(Stamp({"--pin", "000000", "--text", "A"}).exitCode, 6);
    EXPECT_EQ(TriesLeft(), 5);
}

TEST_F(TextStampTest, TheHelpTellsTheOptions) {
    const auto outcome = Tesmark({"stamp", "--help"});
    for (const char* const option : {"--text", "--font", "--font-size", "--bold", "--per-column",
                                     "--spacing", "--frame", "--colour", "bSealPosition"}) {
        EXPECT_THAT(outcome.out, HasSubstr(option));
    }
}

}  // namespace
