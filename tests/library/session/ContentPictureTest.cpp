// Pictures that a host has drawn of its own texts, through the exports.
#include "DrawingTest.h"
#include "foundation/Text.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr unsigned char kFont[] = "楷体";
constexpr int kFontLength = sizeof kFont - 1;

// A style of its own, whose numbers are told apart.
struct Style {
    int fontSize = 20;
    int bold = 0;
    int perColumn = 2;
    std::string font{reinterpret_cast<const char*>(kFont), kFontLength};
};

class ContentPictureTest : public DrawingTest {
protected:
    ContentPictureTest() {
        SetCurrentCertID("cert-1");
        EXPECT_EQ(InitKVLLib(), 0);
        fakes::ClearCalls();
        ForgetLog();
    }

    // The three exports' ways to a picture, as queries or into a buffer; m_length starts at -7.
    int Styled(const Style& style = {}, const char* content = "text",
               unsigned char* out = nullptr) {
        return GetContentPicture(out, &m_length, content, 3, 4,
                                 reinterpret_cast<const unsigned char*>(style.font.data()),
                                 static_cast<int>(style.font.size()), 5, 6, style.fontSize,
                                 style.bold, style.perColumn);
    }
    int ByContent(int kind = 9, const char* text1 = "one", const char* text2 = "two",
                  unsigned char* out = nullptr) {
        return GetPicByContentInfo(kind, text1, text2, out, &m_length);
    }
    // `length` bytes as either export fetches them.
    std::string FetchStyled(int length, const char* content = "text") {
        std::string bytes(static_cast<std::size_t>(length), '?');
        m_length = length;
        const int code = Styled({}, content, reinterpret_cast<unsigned char*>(bytes.data()));
        return code == 0 ? bytes : "failed";
    }
    std::string FetchByContent(int length) {
        std::string bytes(static_cast<std::size_t>(length), '?');
        m_length = length;
        const int code = ByContent(9, "one", "two", reinterpret_cast<unsigned char*>(bytes.data()));
        return code == 0 ? bytes : "failed";
    }
    // Both exports, one after the other, with the same end: the code, the length told, no record
    // but these failures, nothing selected and no control held.
    template <typename Prepare>
    void ExpectBothFail(int code, int length, std::vector<std::string> failures, Prepare prepare) {
        for (const bool styled : {true, false}) {
            SCOPED_TRACE(styled ? "GetContentPicture" : "GetPicByContentInfo");
            SetCurrentCertID("cert-1");
            ASSERT_EQ(InitKVLLib(), 0);
            fakes::ClearCalls();
            prepare();
            ForgetLog();
            m_length = -7;
            EXPECT_EQ(styled ? Styled() : ByContent(), code);
            EXPECT_EQ(m_length, length);
            EXPECT_EQ(Failures(), failures);
            ExpectEnded();
            EXPECT_FALSE(DrawingControl::IsHeld());
        }
    }
    void ExpectEnded() {
        EXPECT_EQ(SelectedCert(), "");
        EXPECT_EQ(GetEsealMode(), 0);
    }
    bool IsSelected() {
        int length = 0;
        GetSelectedCertId(nullptr, &length);
        return length != 0;
    }

    int m_length = -7;
};

TEST_F(ContentPictureTest, AQueryTriesTheKeyAndDrawsInThisOrder) {
    EXPECT_EQ(Styled(), 0);
    EXPECT_EQ(m_length, 9);
    EXPECT_THAT(fakes::CalledFunctions(),
                ElementsAre("SOF_ExportUserCert", "SOF_ExportUserCert", "SOF_GetCertInfo",
                            "SOF_GetCertInfo", "SOF_GetCertInfo", "SOF_ValidateCert",
                            "SOF_SetSignMethod", "SOF_SignData", "SOF_SignData",
                            "SOF_SetSignMethod", "GetPersonalEsealByContentWithXML"));
    EXPECT_THAT(fakes::CallTexts("SOF_SignData"),
                ElementsAre("SOF_SignData(ctx, \"cert-1\", 1 \"1\", size?)",
                            "SOF_SignData(ctx, \"cert-1\", 1 \"1\", out[22])"));
    EXPECT_THAT(Failures(), IsEmpty());
    EXPECT_FALSE(DrawingControl::IsHeld());
}

TEST_F(ContentPictureTest, EveryMemberOfTheStyleGoesIntoTheSettings) {
    EXPECT_EQ(Styled({20, 1, 4}, "内容"), 0);
    EXPECT_THAT(Drawings(),
                ElementsAre("GetPersonalEsealByContentWithXML(" +
                            Settings(Utf8(u8"<m_iRadioColor>3</m_iRadioColor>"
                                          u8"<m_strFrameThick>4</m_strFrameThick>"
                                          u8"<m_strFont>楷体</m_strFont><m_bFrame>5</m_bFrame>"
                                          u8"<m_strFontSpace>6</m_strFontSpace>"
                                          u8"<m_strFontSize>20</m_strFontSize>"
                                          u8"<m_strFontThick>粗体</m_strFontThick>"
                                          u8"<m_strArrangement>每列4个汉字</m_strArrangement>")) +
                            "|" + Utf8(u8"内容") + ")"));
}

TEST_F(ContentPictureTest, NumbersGoIntoTheSettingsWithTheirSignAndNothingIsEscaped) {
    const std::string font = "<a & b>";
    EXPECT_EQ(GetContentPicture(nullptr, &m_length, "<&>", -1, -2147483647,
                                reinterpret_cast<const unsigned char*>(font.data()),
                                static_cast<int>(font.size()), -3, -4, 10, -5, 1),
              0);
    EXPECT_THAT(Drawings(),
                ElementsAre("GetPersonalEsealByContentWithXML(" +
                            Settings(Utf8(u8"<m_iRadioColor>-1</m_iRadioColor>"
                                          u8"<m_strFrameThick>-2147483647</m_strFrameThick>"
                                          u8"<m_strFont><a & b></m_strFont><m_bFrame>-3</m_bFrame>"
                                          u8"<m_strFontSpace>-4</m_strFontSpace>"
                                          u8"<m_strFontSize>10</m_strFontSize>"
                                          u8"<m_strFontThick>常规</m_strFontThick>"
                                          u8"<m_strArrangement>每列1个汉字</m_strArrangement>")) +
                            "|<&>)"));
}

TEST_F(ContentPictureTest, OnlyBold1IsTheBoldWeight) {
    for (const int bold : {0, 2, -1, 256 + 1}) {
        fakes::ClearCalls();
        EXPECT_EQ(Styled({20, bold, 2}), 0);
        EXPECT_THAT(Drawings(), ElementsAre(testing::HasSubstr(Utf8(u8">常规<")))) << bold;
    }
    fakes::ClearCalls();
    EXPECT_EQ(Styled({20, 1, 2}), 0);
    EXPECT_THAT(Drawings(), ElementsAre(testing::HasSubstr(Utf8(u8">粗体<"))));
}

TEST_F(ContentPictureTest, TheFontEndsAtItsLengthAndAtItsFirstZeroByte) {
    EXPECT_EQ(Styled({20, 0, 2, std::string("ab\0c", 4)}), 0);
    EXPECT_THAT(Drawings(), ElementsAre(testing::HasSubstr("<m_strFont>ab</m_strFont>")));
    fakes::ClearCalls();
    EXPECT_EQ(Styled({20, 0, 2, ""}), 0);
    EXPECT_THAT(Drawings(), ElementsAre(testing::HasSubstr("<m_strFont></m_strFont>")));
    fakes::ClearCalls();
    EXPECT_EQ(Styled({20, 0, 2, std::string(5000, 'f')}), 0);
    EXPECT_THAT(Drawings(), ElementsAre(testing::HasSubstr(std::string(5000, 'f') + "<")));
}

TEST_F(ContentPictureTest, ANullFontWithoutALengthIsNoFont) {
    EXPECT_EQ(GetContentPicture(nullptr, &m_length, "", 0, 0, nullptr, 0, 0, 0, 20, 0, 1), 0);
    EXPECT_THAT(Drawings(), ElementsAre(testing::HasSubstr("<m_strFont></m_strFont>")));
}

TEST_F(ContentPictureTest, AFontThatIsImpossibleIsTheStringTypesFailureAheadOfEverythingElse) {
    ASSERT_EQ(Styled(), 0);
    fakes::ClearCalls();
    unsigned char buffer[9] = {};
    for (unsigned char* const out : {static_cast<unsigned char*>(nullptr), buffer}) {
        EXPECT_EQ(StringFailureOf([&] {
                      GetContentPicture(out, &m_length, "", 0, 0, nullptr, 1, 0, 0, 20, 0, 1);
                  }),
                  StringFailure::kInvalidArgument);
        EXPECT_EQ(StringFailureOf([&] {
                      GetContentPicture(out, &m_length, "", 0, 0, kFont, -1, 0, 0, 20, 0, 1);
                  }),
                  StringFailure::kInvalidArgument);
    }
    EXPECT_EQ(buffer[0], 0);
    EXPECT_EQ(m_length, 9);
    EXPECT_TRUE(IsSelected());
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(ContentPictureTest, FontSizes10And40PassAnd9And41AreOutOfRangeBehindTheTestSignature) {
    for (const int size : {10, 40}) EXPECT_EQ(Styled({size, 0, 2}), 0) << size;
    for (const int size : {9, 41, 0, -20}) {
        SetCurrentCertID("cert-1");
        fakes::ClearCalls();
        m_length = -7;
        EXPECT_EQ(Styled({size, 0, 2}), TESMARK_STYLE_OUT_OF_RANGE) << size;
        EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 2);
        EXPECT_THAT(Drawings(), IsEmpty());
        EXPECT_EQ(m_length, 0);
        ExpectEnded();
    }
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(ContentPictureTest, OneAndFivePerColumnPassAnd0And6AreOutOfRangeBehindTheTestSignature) {
    for (const int count : {1, 5}) EXPECT_EQ(Styled({20, 0, count}), 0) << count;
    for (const int count : {0, 6, -1}) {
        SetCurrentCertID("cert-1");
        fakes::ClearCalls();
        EXPECT_EQ(Styled({20, 0, count}), TESMARK_STYLE_OUT_OF_RANGE) << count;
        EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 2);
        EXPECT_THAT(Drawings(), IsEmpty());
        EXPECT_EQ(m_length, 0);
        ExpectEnded();
    }
}

TEST_F(ContentPictureTest, AStyleOutOfRangeLeavesTheControlHeldForTheNextDrawing) {
    EXPECT_EQ(Styled({9, 0, 2}), TESMARK_STYLE_OUT_OF_RANGE);
    EXPECT_TRUE(DrawingControl::IsHeld());
    SetCurrentCertID("cert-1");
    EXPECT_EQ(Styled({41, 0, 2}), TESMARK_STYLE_OUT_OF_RANGE);
    EXPECT_TRUE(DrawingControl::IsHeld());
    // Not made anew: the class is gone.
    DrawingControl::Unregister();
    SetCurrentCertID("cert-1");
    EXPECT_EQ(ByContent(), 0);
    EXPECT_EQ(m_length, 9);
    EXPECT_FALSE(DrawingControl::IsHeld());
    EXPECT_EQ(ByContent(), TESMARK_FAILED);
}

TEST_F(ContentPictureTest, AControlThatIsMissingIsToldAheadOfAStyleOutOfRange) {
    DrawingControl::Unregister();
    EXPECT_EQ(Styled({9, 0, 9}), TESMARK_FAILED);
}

TEST_F(ContentPictureTest, TheKindAndBothTextsGoToTheControlInItsOwnOrder) {
    EXPECT_EQ(ByContent(-12, "第一", "第二"), 0);
    EXPECT_THAT(Drawings(),
                ElementsAre("GetPicByContent(-12|" + Utf8(u8"第二") + "|" + Utf8(u8"第一") + ")"));
    EXPECT_EQ(m_length, 9);
    EXPECT_EQ(FetchByContent(9), "drawing 1");
    EXPECT_FALSE(DrawingControl::IsHeld());
}

TEST_F(ContentPictureTest, NullTextsAreEmptyOnes) {
    EXPECT_EQ(Styled({}, nullptr), 0);
    EXPECT_EQ(ByContent(1, nullptr, nullptr), 0);
    ASSERT_EQ(Drawings().size(), 2u);
    EXPECT_TRUE(Drawings()[0].ends_with("</root>|)"));
    EXPECT_EQ(Drawings()[1], "GetPicByContent(1||)");
}

TEST_F(ContentPictureTest, AContentOfAnotherCodePageGoesThroughUnchangedToTheControl) {
    EXPECT_EQ(Styled({}, reinterpret_cast<const char*>(u8"张三")), 0);
    const std::vector<std::string> drawings = Drawings();
    ASSERT_EQ(drawings.size(), 1u);
    EXPECT_THAT(drawings[0], testing::EndsWith("|" + Utf8(u8"寮犱笁") + ")"));
    EXPECT_EQ(Utf8ToAnsi(Utf8(u8"寮犱笁")), Utf8(u8"张三")) << "the same bytes";
}

TEST_F(ContentPictureTest, ATextOfAnotherCodePageGoesThroughAsTheBytesRead) {
    EXPECT_EQ(ByContent(1, reinterpret_cast<const char*>(u8"张三"), ""), 0);
    EXPECT_THAT(Drawings(), ElementsAre("GetPicByContent(1||" + Utf8(u8"寮犱笁") + ")"));
}

TEST_F(ContentPictureTest, WithoutASelectionNothingIsDoneAndTheLengthIsLeftAlone) {
    ClearSelectKeyID();
    unsigned char byte = 0xAA;
    for (unsigned char* const out : {static_cast<unsigned char*>(nullptr), &byte}) {
        EXPECT_EQ(Styled({}, "text", out), 0);
        EXPECT_EQ(ByContent(9, "one", "two", out), 0);
    }
    EXPECT_EQ(m_length, -7);
    EXPECT_EQ(byte, 0xAA);
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(ContentPictureTest, ASecondCallWithABufferCopiesThatManyBytesAndAsksNobody) {
    ASSERT_EQ(Styled(), 0);
    fakes::ClearCalls();
    ForgetLog();
    EXPECT_EQ(FetchStyled(9), "drawing 1");
    EXPECT_EQ(FetchStyled(3), "dra");
    EXPECT_EQ(FetchStyled(12), std::string("drawing 1\0\0\0", 12));
    EXPECT_EQ(m_length, 12);
    EXPECT_EQ(FetchByContent(9), "drawing 1");
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(ContentPictureTest, ASecondCallWithAnotherTextGivesTheFormerPicture) {
    ASSERT_EQ(Styled({}, "one"), 0);
    EXPECT_EQ(FetchStyled(9, "another"), "drawing 1");
    EXPECT_EQ(Drawings().size(), 1u);
}

TEST_F(ContentPictureTest, AFetchNeedsNoSelectionAndNoService) {
    ASSERT_EQ(Styled(), 0);
    SetCurrentCertID(nullptr);
    UnInitKVLLib();
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    EXPECT_EQ(FetchStyled(9), "drawing 1");
}

TEST_F(ContentPictureTest, ABufferWithAnEmptyCacheIsLeftAloneAndTheNextCallCopies) {
    unsigned char buffer[16];
    std::fill(std::begin(buffer), std::end(buffer), 0xAA);
    m_length = 16;
    EXPECT_EQ(Styled({}, "text", buffer), 0);
    EXPECT_EQ(m_length, 9);
    EXPECT_THAT(buffer, testing::Each(0xAA));
    EXPECT_EQ(FetchStyled(9), "drawing 1");
    ResetEsealData();
    m_length = 16;
    EXPECT_EQ(ByContent(9, "one", "two", buffer), 0);
    EXPECT_EQ(m_length, 9);
    EXPECT_THAT(buffer, testing::Each(0xAA));
    EXPECT_EQ(FetchByContent(9), "drawing 1");
}

TEST_F(ContentPictureTest, AQueryWithAFilledCacheDrawsAnew) {
    ASSERT_EQ(Styled(), 0);
    ASSERT_EQ(Styled(), 0);
    EXPECT_EQ(FetchStyled(9), "drawing 2");
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 4);
}

TEST_F(ContentPictureTest, AResetAsksForANewPictureAndAClearTakesTheSelectionToo) {
    ASSERT_EQ(Styled(), 0);
    ResetEsealData();
    unsigned char byte = 0;
    m_length = 1;
    EXPECT_EQ(Styled({}, "text", &byte), 0);
    EXPECT_EQ(m_length, 9);
    ClearSelectKeyID();
    m_length = 1;
    EXPECT_EQ(Styled({}, "text", &byte), 0);
    EXPECT_EQ(m_length, 1);
    EXPECT_EQ(Drawings().size(), 2u);
}

// The length is that of the bytes ahead of the first zero byte; the bytes are still there.
TEST_F(ContentPictureTest, AFetchCutsTheCachesLengthAtAZeroByteAndLeavesItsBytes) {
    fakes::On("GetPicByContent").Gives("YWIAY2Q=");
    ASSERT_EQ(ByContent(), 0);
    EXPECT_EQ(m_length, 5);
    EXPECT_EQ(FetchByContent(5), std::string("ab\0cd", 5));
    EXPECT_EQ(FetchByContent(5), std::string("ab\0cd", 5));
    fakes::On("GetPicByContent").Gives("AGFi");
    ASSERT_EQ(ByContent(), 0);
    EXPECT_EQ(FetchByContent(3), std::string("\0ab", 3));
    EXPECT_EQ(FetchByContent(3), "???") << "a cache of length 0 is an empty one";
    EXPECT_EQ(fakes::CountCalls("GetPicByContent"), 3);
}

TEST_F(ContentPictureTest, AFetchOfANegativeLengthIsTheStringTypesFailure) {
    ASSERT_EQ(Styled(), 0);
    unsigned char byte = 0xAA;
    m_length = -1;
    EXPECT_EQ(StringFailureOf([&] { Styled({}, "text", &byte); }), StringFailure::kInvalidArgument);
    EXPECT_EQ(StringFailureOf([&] { ByContent(9, "one", "two", &byte); }),
              StringFailure::kInvalidArgument);
    EXPECT_EQ(byte, 0xAA);
}

TEST_F(ContentPictureTest, ANullStringAndAnEmptyOneAreAnEmptyPictureWithSuccess) {
    fakes::On("GetPersonalEsealByContentWithXML").ReportsSize(fakes::kNullPicture);
    fakes::On("GetPicByContent").Gives("");
    EXPECT_EQ(Styled(), 0);
    EXPECT_EQ(m_length, 0);
    m_length = -7;
    EXPECT_EQ(ByContent(), 0);
    EXPECT_EQ(m_length, 0);
    EXPECT_TRUE(IsSelected());
    EXPECT_FALSE(DrawingControl::IsHeld());
    // Nothing is cached, so a buffer draws.
    EXPECT_EQ(FetchStyled(2), "??");
    EXPECT_EQ(fakes::CountCalls("GetPersonalEsealByContentWithXML"), 2);
}

TEST_F(ContentPictureTest, RubbishInPlaceOfBase64IsDecodedAsFarAsItGoes) {
    fakes::On("GetPicByContent").Gives("QUJD!QU");
    EXPECT_EQ(ByContent(), 0);
    EXPECT_EQ(m_length, 3);
    EXPECT_EQ(FetchByContent(3), "ABC");
    fakes::On("GetPicByContent").Gives("\xE5\xBC\xA0");
    EXPECT_EQ(ByContent(), 0);
    EXPECT_EQ(m_length, 0);
    EXPECT_TRUE(IsSelected());
}

TEST_F(ContentPictureTest, WithoutTheControlTheTestSignatureSucceedsAndTheSelectionIsGone) {
    ExpectBothFail(TESMARK_FAILED, 0, {}, [] { DrawingControl::Unregister(); });
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 2);
    ExpectBothFail(TESMARK_FAILED, 0, {}, [] { DrawingControl::RegisterMissing(); });
}

TEST_F(ContentPictureTest, AControlThatLacksTheMethodIsAFailedDrawing) {
    ExpectBothFail(TESMARK_DRAWING_FAILED, 0, {}, [] { DrawingControl::RegisterWithoutMethods(); });
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 2);
}

TEST_F(ContentPictureTest, AFailedCallOfTheControlIsAFailedDrawing) {
    ExpectBothFail(TESMARK_DRAWING_FAILED, 0, {}, [] {
        fakes::On("GetPersonalEsealByContentWithXML").Returns(-7);
        fakes::On("GetPicByContent").Returns(-7);
    });
    EXPECT_EQ(fakes::CountCalls("GetPicByContent"), 1);
}

TEST_F(ContentPictureTest, AFailedDrawingTakesTheFormerPictureAway) {
    ASSERT_EQ(ByContent(), 0);
    fakes::On("GetPicByContent").Returns(-7);
    ASSERT_EQ(ByContent(), TESMARK_DRAWING_FAILED);
    EXPECT_EQ(FetchByContent(2), "??");
}

TEST_F(ContentPictureTest, ACodeOfTheTestSignatureIsReturnedUnloggedByItselfAndEndsTheSelection) {
    ExpectBothFail(kFailure, -7, {"[SignData]SOF_SignData: error:77"},
                   [] { fakes::On("SOF_SignData").Returns(kFailure); });
    EXPECT_THAT(Drawings(), IsEmpty());
}

TEST_F(ContentPictureTest, AnExpiredCertificateEndsTheSelectionAheadOfItsKey) {
    fakes::On("SOF_ValidateCert").Returns(-2);
    EXPECT_EQ(Styled(), TESMARK_CERT_EXPIRED);
    ExpectEnded();
    EXPECT_FALSE(Called("SOF_SignData"));
}

TEST_F(ContentPictureTest, AServiceThatCannotStartEndsTheSelection) {
    UnInitKVLLib();
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    EXPECT_EQ(Styled(), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_FALSE(IsSelected());
    SetCurrentCertID("cert-1");
    EXPECT_EQ(ByContent(), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_FALSE(IsSelected());
    EXPECT_EQ(m_length, -7);
}

TEST_F(ContentPictureTest, PictureModeZeroDoesNotStopTheTestSignature) {
    SetGetStampPictureMode(0);
    EXPECT_EQ(Styled(), 0);
    EXPECT_EQ(ByContent(), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 4);
}

TEST_F(ContentPictureTest, WithTimeStampsOnTheByteIsStampedAheadOfTheDrawing) {
    StampEngine::Register();
    m_prefix.SetNumber("bSignWithTimeStamp", 2);
    fakes::On("SOF_HashData").Gives("hash");
    fakes::On("SOF_TSGenREQ").Gives(StampEngine::kSwapped);
    EXPECT_EQ(Styled(), 0);
    const std::vector<std::string> names = fakes::CalledFunctions();
    EXPECT_THAT((std::vector<std::string>{names.end() - 4, names.end()}),
                ElementsAre("SOF_HashData", "SOF_TSGenREQ", "SOF_TSGenPDFSignature",
                            "GetPersonalEsealByContentWithXML"));
    EXPECT_THAT(fakes::CallTexts("SOF_TSGenPDFSignature"),
                ElementsAre("SOF_TSGenPDFSignature(ctx, 7 \"swapped\", 1 \"1\", size?)"));
    EXPECT_EQ(ByContent(), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_TSGenREQ"), 2);
}

TEST_F(ContentPictureTest, AStampThatCannotBeMadeEndsTheSelectionWithItsCodeInTheLog) {
    StampEngine::Register();
    fakes::On("SOF_HashData").Gives("hash");
    fakes::On("SOF_TSGenREQ").Returns(93);
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    ExpectBothFail(TESMARK_TIME_STAMP_FAILED, -7, {"SignTimeStamp error -3008"}, [] {});
    EXPECT_THAT(Drawings(), IsEmpty());
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 2);
}

TEST_F(ContentPictureTest, TheInnerCodeOfAStampStandsInTheLog) {
    StampEngine::Register();
    fakes::On("SOF_HashData").Gives("hash");
    fakes::On("SOF_TSGenREQ").Gives(StampEngine::kSwapped);
    fakes::On("SOF_TSGenPDFSignature").Returns(95);
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    EXPECT_EQ(ByContent(), TESMARK_TIME_STAMP_FAILED);
    EXPECT_EQ(Failures().back(), "SignTimeStamp error 95");
    ExpectEnded();
}

// The key answers while the drawing control of another selection would be made.
TEST_F(ContentPictureTest, TheSealThatIsSelectedStaysWithASuccess) {
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("picture"));
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(Styled(), 0);
    EXPECT_EQ(SelectedSeal(), fakes::EsSeal("picture"));
    EXPECT_EQ(SelectedCert(), "cert-1");
}

}  // namespace
