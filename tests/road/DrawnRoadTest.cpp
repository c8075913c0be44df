// A stamp without a seal: the library and the open control that draws, registered as its class.

#include "components/automation/RegisteredClass.h"
#include "library/bridge/ExportCalls.h"
#include "platform/Automation.h"
#include "platform/closed/PersonalSealControl.h"
#include "road/RoadTest.h"

namespace {

constexpr char kData[] = "the bytes of the document";

struct Style {
    int fontSize = 28;
    int perColumn = 1;
};

// The control is registered, the key open, and its certificate selected.
class DrawnRoadTest : public RoadTest {
protected:
    DrawnRoadTest() {
        platform::InitializeAutomation();
        EXPECT_TRUE(RegisterClassFile(ROAD_DRAWING_CONTROL, kPersonalSealControlClass));
        m_certId = MakeKey(KeyKind::kRsa, "signer");
        EXPECT_EQ(Login(m_certId), 0);
    }
    ~DrawnRoadTest() override {
        UnregisterClassFile(ROAD_DRAWING_CONTROL, kPersonalSealControlClass);
        platform::UninitializeAutomation();
    }

    static Handed Content(const std::string& text, const Style& style = {}) {
        const std::string font = "宋体";
        return InTwoSteps([&](unsigned char* out, int* outLen) {
            return GetContentPicture(out, outLen, text.c_str(), 0, 3, AsBytes(font), AsLength(font),
                                     0, 6, style.fontSize, 0, style.perColumn);
        });
    }
    static std::string Selected() {
        return InTwoSteps(
                   [](unsigned char* out, int* outLen) { return GetSelectedCertId(out, outLen); })
            .bytes;
    }
    // Of a PNG; 0 of anything else.
    static int WidthOf(const std::string& png) { return NumberAt(png, 16); }
    static int HeightOf(const std::string& png) { return NumberAt(png, 20); }
    void ExpectMessage() {
        EXPECT_EQ(GetEsealMode(), 0);
        const Handed message = SignP7(kData);
        ASSERT_EQ(message.code, 0);
        EXPECT_TRUE(CmsAccepts(message.bytes, WriteFile("document.pdf", kData)));
    }

    std::string m_certId;

private:
    static int NumberAt(const std::string& png, std::size_t offset) {
        if (!png.starts_with("\x89PNG") || png.size() < offset + 4) return 0;
        int number = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            number = number << 8 | static_cast<unsigned char>(png[offset + i]);
        }
        return number;
    }
};

TEST_F(DrawnRoadTest, TheNameIsDrawnAsALineAndTheSignatureIsAPlainMessage) {
    m_prefix.SetNumber("bSealPosition", 3);
    const Handed picture = Picture();
    ASSERT_EQ(picture.code, 0);
    EXPECT_GT(WidthOf(picture.bytes), HeightOf(picture.bytes));
    ExpectMessage();
}

TEST_F(DrawnRoadTest, TheNameIsDrawnInThreeHundredByOneHundredDots) {
    m_prefix.SetNumber("bSealPosition", 4);
    const Handed picture = Picture();
    ASSERT_EQ(picture.code, 0);
    EXPECT_EQ(WidthOf(picture.bytes), 300);
    EXPECT_EQ(HeightOf(picture.bytes), 100);
    ExpectMessage();
}

TEST_F(DrawnRoadTest, WithNothingSelectedTheOnlyCertificatesNameIsDrawn) {
    m_prefix.SetNumber("bSealPosition", 3);
    ClearSelectKeyID();
    EXPECT_GT(WidthOf(Picture().bytes), 0);
    EXPECT_EQ(Selected(), m_certId);
}

TEST_F(DrawnRoadTest, ATextIsDrawnAndTheSignatureIsAPlainMessage) {
    const Handed picture = Content("同意盖章");
    ASSERT_EQ(picture.code, 0);
    EXPECT_GT(WidthOf(picture.bytes), 3 * HeightOf(picture.bytes));
    ExpectMessage();
}

TEST_F(DrawnRoadTest, TwoCharactersInAColumnMakeABlock) {
    const Handed picture = Content("同意盖章", {.perColumn = 2});
    ASSERT_EQ(picture.code, 0);
    EXPECT_NEAR(WidthOf(picture.bytes), HeightOf(picture.bytes), HeightOf(picture.bytes) / 5);
}

TEST_F(DrawnRoadTest, AFurtherTextIsDrawnOnlyAfterTheFirstIsDropped) {
    const std::string first = Content("同意").bytes;
    ResetEsealData();
    const std::string second = Content("不同意").bytes;
    EXPECT_NE(first, second);
    EXPECT_GT(WidthOf(second), WidthOf(first));
}

TEST_F(DrawnRoadTest, ATextAndADateAreDrawn) {
    const Handed picture = InTwoSteps([](unsigned char* out, int* outLen) {
        return GetPicByContentInfo(1, "同意", "2026-11-22", out, outLen);
    });
    ASSERT_EQ(picture.code, 0);
    EXPECT_GT(HeightOf(picture.bytes), 0);
    ExpectMessage();
}

TEST_F(DrawnRoadTest, AStyleOutOfRangeAndATextThatCannotBeDrawnEndTheSelection) {
    for (const auto& [style, text, code] :
         {std::tuple{Style{9, 1}, "A", -2014}, std::tuple{Style{28, 6}, "A", -2014},
          std::tuple{Style{28, 1}, " ", -2}}) {
        SetCurrentCertID(m_certId.c_str());
        EXPECT_EQ(Content(text, style).code, code);
        EXPECT_EQ(Selected(), "");
    }
}

TEST_F(DrawnRoadTest, WithoutASelectionNoTextIsDrawn) {
    ClearSelectKeyID();
    int length = 7;
    EXPECT_EQ(GetPicByContentInfo(0, "A", "", nullptr, &length), 0);
    EXPECT_EQ(length, 7);
}

TEST_F(DrawnRoadTest, WithoutAControlNothingIsDrawn) {
    UnregisterClassFile(ROAD_DRAWING_CONTROL, kPersonalSealControlClass);
    m_prefix.SetNumber("bSealPosition", 3);
    EXPECT_EQ(Picture().code, -1);
    EXPECT_EQ(Selected(), m_certId) << "the name's path leaves it";
    EXPECT_EQ(Content("A").code, -1);
    EXPECT_EQ(Selected(), "");
    RegisterClassFile(ROAD_DRAWING_CONTROL, kPersonalSealControlClass);
}

}  // namespace
