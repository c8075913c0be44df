// What the control draws, through its class.

#include <gmock/gmock.h>

#include <sstream>

#include "components/automation/RegisteredClass.h"
#include "components/exports/ExportedNames.h"
#include "components/personalseal/SealControlCodes.h"
#include "components/personalseal/SealControlFixture.h"

namespace {

using std::string_literals::operator""s;
using testing::SizeIs;

class SealControlTest : public SealControlFixture {
protected:
    SettingsText m_settings;
};

// Pixels of a length in points, at 300 dpi.
int Points(double points) { return static_cast<int>(points * 300 / 72); }

TEST_F(SealControlTest, TheLibrarysFixedSettingsGiveALineOfTheName) {
    const std::string png =
        Png("GetPersonalEsealByXML",
            {"<?xml version='1.0' encoding='UTF-8'?><root><m_iRadioColor>0</m_iRadioColor>"
             "<m_strFrameThick>3</m_strFrameThick><m_strFont>宋体</m_strFont><m_bFrame>0</m_bFrame>"
             "<m_strFontSpace>6</m_strFontSpace><m_strFontSize>28</m_strFontSize>"
             "<m_strFontThick>常规</m_strFontThick><m_strArrangement>每列1个汉字"
             "</m_strArrangement></root>",
             "田田田"});
    const DrawnPicture picture(png);
    EXPECT_THAT(picture.Across(), SizeIs(3));
    EXPECT_THAT(picture.Down(), SizeIs(1));
    EXPECT_NEAR(picture.Width(), Points(3 * 28 + 2 * 6), Points(6));
    EXPECT_NEAR(picture.Height(), Points(28), Points(6));
}

TEST_F(SealControlTest, APictureIsAPngOf300DotsPerInch) {
    const std::string xml = m_settings.Xml();
    const std::string png = Png("GetPersonalEsealByXML", {xml.c_str(), "印"});
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1A\n");
    EXPECT_NE(png.find("pHYs\0\0\x2E\x23\0\0\x2E\x23\x01"s), std::string::npos);
}

TEST_F(SealControlTest, TheBackgroundIsTransparentAndEdgesAreSmooth) {
    m_settings.frame = "1";
    const DrawnPicture picture = Styled(m_settings, "印章");
    for (const int x : {0, picture.Width() - 1}) {
        EXPECT_EQ(picture.Alpha(x, 0), 0);
        EXPECT_EQ(picture.Alpha(x, picture.Height() - 1), 0);
    }
    int clear = 0;
    int partial = 0;
    for (std::size_t at = 3; at < picture.Pixels().size(); at += 4) {
        clear += picture.Pixels()[at] == 0;
        partial += picture.Pixels()[at] > 0 && picture.Pixels()[at] < 255;
    }
    EXPECT_GT(clear, picture.Width() * picture.Height() / 3);
    EXPECT_GT(partial, 4 * picture.Height());
}

TEST_F(SealControlTest, TheColourIsTheOneSelected) {
    const int colours[] = {0xD7000F, 0x0B3FA8, 0x000000};
    for (int i = 0; i < 3; ++i) {
        m_settings.colour = std::to_string(i);
        EXPECT_EQ(Styled(m_settings, "印章").Colour(), colours[i]);
    }
}

TEST_F(SealControlTest, OneToFivePerColumnMakeTheShape) {
    for (int perColumn = 1; perColumn <= 5; ++perColumn) {
        std::string text;
        for (int i = 0; i < 2 * perColumn; ++i) text += "田";
        const DrawnPicture picture = Styled(m_settings.PerColumn(perColumn), text);
        EXPECT_THAT(picture.Across(), SizeIs(2));
        EXPECT_THAT(picture.Down(), SizeIs(perColumn));
    }
}

TEST_F(SealControlTest, ColumnsRunFromRightToLeftAndALineFromLeftToRight) {
    const DrawnPicture columns = Styled(m_settings.PerColumn(2), "田田一一");
    EXPECT_GT(columns.Ink(0.5, 0, 1, 1), 2 * columns.Ink(0, 0, 0.5, 1));
    const DrawnPicture line = Styled(m_settings.PerColumn(1), "田一");
    EXPECT_GT(line.Ink(0, 0, 0.5, 1), 2 * line.Ink(0.5, 0, 1, 1));
}

TEST_F(SealControlTest, ALastColumnThatIsNotFullIsSpreadOverItsHeight) {
    const DrawnPicture picture = Styled(m_settings.PerColumn(2), "田田田");
    EXPECT_EQ(picture.Ink(0, 0, 0.5, 0.2), 0);
    EXPECT_GT(picture.Ink(0, 0.4, 0.5, 0.6), 0);
    EXPECT_EQ(picture.Ink(0, 0.8, 0.5, 1), 0);
}

TEST_F(SealControlTest, AColumnThatIsAloneIsAsLongAsItsText) {
    EXPECT_EQ(Styled(m_settings.PerColumn(5), "田田").Height(),
              Styled(m_settings.PerColumn(2), "田田").Height());
}

TEST_F(SealControlTest, WordsStandUprightAndReadFromLeftToRight) {
    const DrawnPicture line = Styled(m_settings.PerColumn(1), "WWW iii");
    EXPECT_THAT(line.Down(), Not(testing::IsEmpty()));
    EXPECT_GT(line.Width(), 2 * line.Height());
    EXPECT_GT(line.Ink(0, 0, 0.5, 1), line.Ink(0.5, 0, 1, 1));
    const DrawnPicture column = Styled(m_settings.PerColumn(2), "ooo xxx");
    EXPECT_THAT(column.Down(), SizeIs(2));
    EXPECT_LT(column.Width(), line.Width());
    const DrawnPicture two = Styled(m_settings.PerColumn(2), "WWW MMM i i");
    EXPECT_GT(two.Ink(0, 0, 0.5, 1), two.Ink(0.5, 0, 1, 1));
}

TEST_F(SealControlTest, BoldHasMoreInkThanRegular) {
    for (const char* const text : {"晨光示范", "Morning Light"}) {
        const double regular = Styled(m_settings, text).Ink();
        EXPECT_GT(Styled(SettingsText().Bold(), text).Ink(), 1.15 * regular) << text;
    }
}

TEST_F(SealControlTest, TheFrameIsAsThickAsAskedAndLeavesTheTextFree) {
    m_settings.frame = "1";
    for (const int thick : {1, 3, 8}) {
        m_settings.frameThick = std::to_string(thick);
        const DrawnPicture picture = Styled(m_settings, "田田");
        const int middle = picture.Height() / 2;
        int solid = 0;
        while (picture.Alpha(solid, middle) == 255) ++solid;
        EXPECT_NEAR(solid, Points(thick), 1);
        // The frame's inner corners are a little rounded.
        const int inset = Points(1.65 * thick) + 1;
        const auto text = picture.Across(inset);
        ASSERT_THAT(text, SizeIs(2));
        EXPECT_GT(text.front().begin, Points(thick + 5));
        EXPECT_LT(text.back().end, picture.Width() - Points(thick + 5));
        EXPECT_NEAR(text.front().begin, picture.Width() - text.back().end, Points(3));
    }
}

TEST_F(SealControlTest, WithoutAFrameItsThicknessDoesNotMatter) {
    const DrawnPicture picture = Styled(m_settings, "田");
    m_settings.frameThick = "-77";
    EXPECT_EQ(Styled(m_settings, "田").Pixels(), picture.Pixels());
}

TEST_F(SealControlTest, SpaceStandsBetweenCharactersBothWays) {
    m_settings.PerColumn(2).space = "0";
    const DrawnPicture narrow = Styled(m_settings, "田田田田");
    m_settings.space = "10";
    const DrawnPicture wide = Styled(m_settings, "田田田田");
    EXPECT_NEAR(wide.Width() - narrow.Width(), Points(10), 2);
    EXPECT_NEAR(wide.Height() - narrow.Height(), Points(10), 2);
}

TEST_F(SealControlTest, CharactersGrowWithTheirSize) {
    for (const int size : {10, 40}) {
        m_settings.size = std::to_string(size);
        const auto down = Styled(m_settings, "田").Down();
        ASSERT_THAT(down, SizeIs(1));
        EXPECT_NEAR(down[0].Length(), Points(0.85 * size), Points(0.15 * size));
    }
}

TEST_F(SealControlTest, AFontThatIsNotThereIsReplaced) {
    const DrawnPicture wished = Styled(m_settings, "印章 Seal");
    for (const char* const font : {"No Such Font", "", "每列"}) {
        m_settings.font = font;
        EXPECT_EQ(Styled(m_settings, "印章 Seal").Pixels(), wished.Pixels());
    }
}

TEST_F(SealControlTest, AFontNameFullOfMarkupIsANameThatNobodyHas) {
    m_settings.font = "No Such Font";
    const DrawnPicture picture = Styled(m_settings, "印章");
    for (const std::string& font :
         {"</m_strFont><m_bFrame>1</m_bFrame><m_strFont>"s, "<m_strFontSize>99</m_strFontSize>"s,
          "</m_strFont></root><root><m_strFont>"s, "<![CDATA[&x;]]><!-- "s, "\"'&<>%s%n"s,
          "</m_strFont><m_iRadioColor>2</m_iRadioColor><m_strFontSpace>x"s, std::string(5'000, '<'),
          std::string("\xFF\x81\xFE")}) {
        m_settings.font = font;
        EXPECT_EQ(Styled(m_settings, "印章").Pixels(), picture.Pixels()) << font;
    }
}

TEST_F(SealControlTest, SettingsThatSayNothingAreRefused) {
    for (const char* const xml : {"", "rubbish", "<root></root>", "<?xml version='1.0'?>"}) {
        EXPECT_EQ(Refusal("GetPersonalEsealByXML", {xml, "印章"}), kSealBadSettings) << xml;
    }
    EXPECT_EQ(Refusal("GetPersonalEsealByXML", {static_cast<const char*>(nullptr), "印章"}),
              kSealBadSettings);
}

TEST_F(SealControlTest, ValuesOutOfTheirRangeAreRefused) {
    const auto refusal = [this](const char* value, std::string SettingsText::*member) {
        SettingsText settings;
        settings.frame = "1";
        settings.*member = value;
        return StyledRefusal(settings, "印章");
    };
    for (const char* const colour : {"-1", "3", "red", ""}) {
        EXPECT_EQ(refusal(colour, &SettingsText::colour), kSealBadSettings);
    }
    for (const char* const thick : {"0", "21", "3.5", "99999999999"}) {
        EXPECT_EQ(refusal(thick, &SettingsText::frameThick), kSealBadSettings);
    }
    for (const char* const size : {"4", "101", "-28", "28 pt"}) {
        EXPECT_EQ(refusal(size, &SettingsText::size), kSealBadSettings);
    }
    for (const char* const space : {"-1", "101"}) {
        EXPECT_EQ(refusal(space, &SettingsText::space), kSealBadSettings);
    }
    for (const char* const arrangement : {"每列0个汉字", "每列11个汉字", "每列"}) {
        EXPECT_EQ(refusal(arrangement, &SettingsText::arrangement), kSealBadSettings);
    }
}

TEST_F(SealControlTest, ATextWithoutCharactersIsRefused) {
    for (const char* const text : {"", "   ", "\r\n\t", "　"}) {
        EXPECT_EQ(StyledRefusal(m_settings, text), kSealNoText);
        EXPECT_EQ(Refusal("GetPersonalEsealByCertInfo", {text, 300, 100}), kSealNoText);
        EXPECT_EQ(Refusal("GetPicByContent", {0, "not looked at", text}), kSealNoText);
        EXPECT_EQ(Refusal("GetPicByContent", {1, text, text}), kSealNoText);
    }
}

TEST_F(SealControlTest, ATextOf128CharactersIsTheLongest) {
    m_settings.size = "10";
    EXPECT_GT(Styled(m_settings.PerColumn(5), std::string(128, 'x')).Width(), 0);
    EXPECT_EQ(StyledRefusal(m_settings, std::string(129, 'x')), kSealLongText);
    EXPECT_EQ(StyledRefusal(m_settings, std::string(100'000, 'x')), kSealLongText);
}

TEST_F(SealControlTest, APictureThatWouldBeTooLargeIsRefused) {
    m_settings.size = "100";
    m_settings.space = "100";
    std::string text;
    for (int i = 0; i < 60; ++i) text += "印";
    EXPECT_EQ(StyledRefusal(m_settings, text), kSealBadSize);
}

TEST_F(SealControlTest, ANameIsExactlyAsLargeAsAskedAndInItsMiddle) {
    for (const char* const name :
         {"李明", "欧阳晓明", "Alice B. Carter", "深圳市晨光示范科技有限公司广州第一分公司"}) {
        const DrawnPicture picture = Name(name);
        EXPECT_EQ(picture.Width(), 300);
        EXPECT_EQ(picture.Height(), 100);
        const auto across = picture.Across(8);
        const auto down = picture.Down(8);
        ASSERT_FALSE(across.empty()) << name;
        EXPECT_NEAR(across.front().begin, 300 - across.back().end, 8) << name;
        EXPECT_NEAR(down.front().begin, 100 - down.back().end, 16) << name;
        EXPECT_GE(across.front().begin, 10) << name;
    }
}

TEST_F(SealControlTest, ALongNameIsBrokenIntoLines) {
    EXPECT_THAT(Name("欧阳晓明").Down(8), SizeIs(1));
    EXPECT_THAT(Name("田田田田田田田田田田田田").Down(8), SizeIs(2));
}

TEST_F(SealControlTest, ANamesSizeHasItsBounds) {
    EXPECT_EQ(Name("明", 24, 24).Width(), 24);
    EXPECT_EQ(Name("明", 4'096, 24).Width(), 4'096);
    for (const auto& [width, height] : {std::pair(23, 100), std::pair(300, 23), std::pair(0, 0),
                                        std::pair(-300, 100), std::pair(4'097, 100)}) {
        EXPECT_EQ(Refusal("GetPersonalEsealByCertInfo", {"明", width, height}), kSealBadSize);
    }
    EXPECT_EQ(Refusal("GetPersonalEsealByCertInfo", {std::string(100, 'W').c_str(), 60, 60}),
              kSealBadSize);
}

TEST_F(SealControlTest, ContentOfKind0IsTheFirstTextAlone) {
    const DrawnPicture picture = Content(0, "田田田", "田田");
    EXPECT_THAT(picture.Across(), SizeIs(2));
    EXPECT_THAT(picture.Down(), SizeIs(1));
    EXPECT_EQ(picture.Pixels(), Content(0, "", "田田").Pixels());
}

TEST_F(SealControlTest, ContentOfKind1HasTheSecondTextBelowAtHalfTheSize) {
    const auto down = Content(1, "田田", "田田").Down();
    ASSERT_THAT(down, SizeIs(2));
    EXPECT_NEAR(down[1].Length() * 2, down[0].Length(), 3);
    EXPECT_EQ(Content(1, "", "田田").Pixels(), Content(0, "", "田田").Pixels());
    const auto lower = Content(1, "田田", "").Down();
    ASSERT_THAT(lower, SizeIs(1));
    EXPECT_NEAR(lower[0].Length(), down[1].Length(), 1);
}

TEST_F(SealControlTest, ContentOfAnotherKindIsRefused) {
    for (const int kind : {-1, 2, 1'000}) {
        EXPECT_EQ(Refusal("GetPicByContent", {kind, "2026年", "明"}), kSealBadKind);
    }
}

TEST_F(SealControlTest, TheSameCallGivesTheSamePicture) {
    EXPECT_EQ(Styled(m_settings, "印章").Pixels(), Styled(m_settings, "印章").Pixels());
    const std::string xml = m_settings.Xml();
    EXPECT_EQ(Png("GetPersonalEsealByXML", {xml.c_str(), "印章"}),
              Png("GetPersonalEsealByContentWithXML", {xml.c_str(), "印章"}));
}

TEST_F(SealControlTest, TheFileLetsNothingElseOut) {
    std::ostringstream names;
    for (const std::string& name : ExportedNames(CONTROL_FILE)) {
        names << (names.str().empty() ? "" : " ") << name;
    }
    EXPECT_EQ(names.str(),
              ClassFileExports("GetPersonalEsealByCertInfo GetPersonalEsealByContentWithXML "
                               "GetPersonalEsealByXML GetPicByContent"));
}

}  // namespace
