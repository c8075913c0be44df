// Seals drawn from a certificate's name: bSealPosition 3 and 4.
#include "DrawingTest.h"
#include "SweptCall.h"

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SealByNameTest : public DrawingTest {
protected:
    SealByNameTest() { m_prefix.SetNumber("bSealPosition", 3); }

    static std::string FixedSettings() {
        return Settings(
            Utf8(u8"<m_iRadioColor>0</m_iRadioColor>"
                 u8"<m_strFrameThick>3</m_strFrameThick>"
                 u8"<m_strFont>宋体</m_strFont><m_bFrame>0</m_bFrame>"
                 u8"<m_strFontSpace>6</m_strFontSpace>"
                 u8"<m_strFontSize>28</m_strFontSize>"
                 u8"<m_strFontThick>常规</m_strFontThick>"
                 u8"<m_strArrangement>每列1个汉字</m_strArrangement>"));
    }
    static std::string FixedDrawing(const char8_t* name) {
        return "GetPersonalEsealByXML(" + FixedSettings() + "|" + Utf8(name) + ")";
    }
    static std::string SizedDrawing(const char8_t* name) {
        return "GetPersonalEsealByCertInfo(" + Utf8(name) + "|300|100)";
    }
};

TEST_F(SealByNameTest, Position3DrawsTheCommonNameByTheFixedSettings) {
    EXPECT_EQ(Picture(), "drawing 1");
    EXPECT_THAT(Drawings(), ElementsAre(FixedDrawing(u8"张三")));
    EXPECT_FALSE(DrawingControl::IsHeld());
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(SealByNameTest, Position4DrawsTheCommonNameBySize) {
    m_prefix.SetNumber("bSealPosition", 4);
    EXPECT_EQ(Picture(), "drawing 1");
    EXPECT_THAT(Drawings(), ElementsAre(SizedDrawing(u8"张三")));
    EXPECT_FALSE(DrawingControl::IsHeld());
}

TEST_F(SealByNameTest, TheSizeQueryCallsTheClosedLibrariesInThisOrder) {
    ASSERT_EQ(InitKVLLib(), 0);
    fakes::ClearCalls();
    int length = -7;
    EXPECT_EQ(GetSealInfo(nullptr, &length), 0);
    EXPECT_EQ(length, 9);
    std::vector<std::string> texts = fakes::CallTexts();
    texts.pop_back();
    EXPECT_THAT(texts, ElementsAre("GetDeviceCountEx(ctx, 1)", "SOF_GetUserList(ctx, size?)",
                                   "SOF_GetUserList(ctx, out[15])",
                                   "GetDeviceInfo(ctx, \"cert-1\", 7, out[32])",
                                   "SOF_ExportUserCert(ctx, \"cert-1\", size?)",
                                   "SOF_ExportUserCert(ctx, \"cert-1\", out[13])",
                                   "SOF_Base64Encode(ctx, 13 \"DER of cert-1\", out[26])",
                                   "SOF_Base64Decode(ctx, 20 \"REVSIG9mIGNlcnQtMQ==\", size?)",
                                   "SOF_Base64Decode(ctx, 20 \"REVSIG9mIGNlcnQtMQ==\", out[13])",
                                   "SOF_GetCertInfo(ctx, 13 \"DER of cert-1\", 17, size?)",
                                   "SOF_GetCertInfo(ctx, 13 \"DER of cert-1\", 17, out[4])"));
    EXPECT_EQ(fakes::CalledFunctions().back(), "GetPersonalEsealByXML");
}

TEST_F(SealByNameTest, TheFlowHasAScopeOfItsOwnInTheLog) {
    ASSERT_EQ(Query(), 0);
    ForgetLog();
    EXPECT_EQ(Fetch(9), "drawing 1");
    EXPECT_THAT(Log(), ElementsAre("8 [GetSealInfo start]", "8 [GetEsealByCertCN start]",
                                   "8 [GetEsealByCertCN end][Time consume N ms]",
                                   "8 [GetSealInfo end][Time consume N ms]"));
}

TEST_F(SealByNameTest, TheKeyIsNeitherTriedNorStampedWhateverTheSettingsSay) {
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    m_prefix.SetNumber("ReqEsealStatus", 1);
    for (const unsigned char mode : {1, 0}) {
        SetGetStampPictureMode(mode);
        ASSERT_EQ(Query(), 0);
    }
    EXPECT_THAT(ProbesAndChecks(), IsEmpty());
    EXPECT_FALSE(Called("SOF_TSGenREQ"));
    EXPECT_FALSE(Called("SOF_ValidateCert"));
}

TEST_F(SealByNameTest, TheCertificateIsSelectedAndNoSealOrModeOrSizeIs) {
    fakes::AddNationalSeal("national seal", "name", "national picture");
    fakes::AddFile("cert-1", "SEAL01", "national seal");
    m_prefix.SetNumber("bSealPosition", 0);
    ASSERT_EQ(Query(), 0);
    m_prefix.SetNumber("bSealPosition", 3);
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(SelectedCert(), "cert-1");
    EXPECT_EQ(SelectedSeal(), "national seal");
    EXPECT_EQ(GetEsealMode(), 1);
    int width = 0, height = 0;
    GetSealPicSize(&width, &height);
    EXPECT_EQ(width, 40);
    EXPECT_EQ(height, 40);
    EXPECT_EQ(Fetch(9), "drawing 1");
}

TEST_F(SealByNameTest, TwoQueriesDrawTwiceAndABufferGetsTheLastDrawing) {
    for (const unsigned position : {3u, 4u}) {
        ClearSelectKeyID();
        fakes::ClearCalls();
        m_prefix.SetNumber("bSealPosition", position);
        ASSERT_EQ(Query(), 0);
        ASSERT_EQ(Query(), 0);
        EXPECT_EQ(Drawings().size(), 2u);
        EXPECT_EQ(Fetch(9), "drawing 2");
        EXPECT_EQ(Drawings().size(), 2u);
    }
}

TEST_F(SealByNameTest, TheFetchAsksNobodyAndNeedsNoService) {
    ASSERT_EQ(Query(), 0);
    UnInitKVLLib();
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    fakes::ClearCalls();
    EXPECT_EQ(Fetch(4), "draw");
    EXPECT_EQ(Fetch(11), std::string("drawing 1\0\0", 11));
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(SealByNameTest, ABufferWithAnEmptyCacheIsLeftAloneAndTheNextCallCopies) {
    unsigned char buffer[16];
    std::fill(std::begin(buffer), std::end(buffer), 0xAA);
    int length = 16;
    EXPECT_EQ(GetSealInfo(buffer, &length), 0);
    EXPECT_EQ(length, 9);
    EXPECT_THAT(buffer, Each(0xAA));
    EXPECT_EQ(Fetch(9), "drawing 1");
}

TEST_F(SealByNameTest, ANegativeLengthIsTheStringTypesFailure) {
    ASSERT_EQ(Query(), 0);
    unsigned char byte = 0;
    int length = -1;
    EXPECT_EQ(StringFailureOf([&] { GetSealInfo(&byte, &length); }),
              StringFailure::kInvalidArgument);
}

TEST_F(SealByNameTest, AFetchCutsTheCachesLengthAtAZeroByteAndLeavesItsBytes) {
    fakes::On("GetPersonalEsealByXML").Gives("YWIAY2Q=");
    ASSERT_EQ(Picture(), std::string("ab\0cd", 5));
    EXPECT_EQ(Fetch(5), std::string("ab\0cd", 5));
    fakes::On("GetPersonalEsealByXML").Gives("AGFi");
    ASSERT_EQ(Picture(), std::string("\0ab", 3));
    EXPECT_EQ(Fetch(3), "???") << "a cache of length 0 is an empty one";
}

TEST_F(SealByNameTest, WithASelectionNobodyListsTheCertificates) {
    fakes::AddCertificate("李四", "cert-2");
    SetCurrentCertID("cert-2");
    EXPECT_EQ(Picture(), "drawing 1");
    EXPECT_THAT(Drawings(), ElementsAre(FixedDrawing(u8"李四")));
    EXPECT_FALSE(Called("SOF_GetUserList"));
}

TEST_F(SealByNameTest, ANullStringIsAnEmptyPictureWithSuccess) {
    fakes::On("GetPersonalEsealByXML").ReportsSize(fakes::kNullPicture);
    int length = -7;
    EXPECT_EQ(GetSealInfo(nullptr, &length), 0);
    EXPECT_EQ(length, 0);
    EXPECT_FALSE(DrawingControl::IsHeld());
}

TEST_F(SealByNameTest, NoDrawingClearsWhatIsBusy) {
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(Query(), 0);
    m_prefix.SetNumber("bSealPosition", 0);
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("local picture"));
    EXPECT_EQ(Picture(), "local picture");
}

TEST_F(SealByNameTest, ADraggedDrawingIsBase64WithOneZeroByteBehindIt) {
    for (const unsigned position : {3u, 4u}) {
        ClearSelectKeyID();
        fakes::ClearCalls();
        m_prefix.SetNumber("bSealPosition", position);
        EXPECT_EQ(DragPicture(), "ZHJhd2luZyAxAA==");
        EXPECT_EQ(Drawings().size(), 1u);
    }
}

TEST_F(SealByNameTest, ADraggedEmptyDrawingIsDrawnTwice) {
    fakes::On("GetPersonalEsealByXML").Gives("");
    EXPECT_EQ(DragPicture(), "");
    EXPECT_EQ(Drawings().size(), 2u);
}

TEST_F(SealByNameTest, ADraggedDrawingThatGrowsFromNothingIsTakenWhole) {
    fakes::On("GetPersonalEsealByXML").GivesAt(1, "").GivesAt(2, "Z3Jvd24gcGljdHVyZQ==");
    EXPECT_EQ(DragPicture(), "Z3Jvd24gcGljdHVyZQ==");
    EXPECT_EQ(Fetch(13), "grown picture");
}

// The room of a drawing of length 0 is its one zero byte, which the second drawing leaves alone.
TEST_F(SealByNameTest, ADraggedDrawingThatGrowsIntoItsRoomIsTheZeroByteOfThatRoom) {
    fakes::On("GetPersonalEsealByXML").GivesAt(1, "").GivesAt(2, "QQ==");
    EXPECT_EQ(DragPicture(), "AA==");
}

TEST_F(SealByNameTest, ADragFailsWithTheCodeOfEitherDrawingAndLeavesThePointer) {
    char untouched = 0;
    char* base64 = &untouched;
    fakes::On("GetPersonalEsealByXML").GivesAt(1, "").ReturnsAt(2, -7);
    EXPECT_EQ(GetDragSealPic(&base64), TESMARK_DRAWING_FAILED);
    DrawingControl::Unregister();
    EXPECT_EQ(GetDragSealPic(&base64), TESMARK_FAILED);
    EXPECT_EQ(base64, &untouched);
}

// One call on the way to a drawing, and what comes of its failure.
struct Step : SweptCall {
    int failure;
    int result;
    const char* lastFailure;  // empty: none is logged
};

constexpr Step kSteps[] = {
    {"GetDeviceCountEx", 1, 77, TESMARK_DEVICE_COUNT_FAILED,
     "[GetUserList]GetDeviceCountEx: failed,error:77"},
    {"SOF_GetUserList", 1, 77, TESMARK_CERT_LIST_FAILED,
     "[GetUserList]SOF_GetUserList: failed,error:77"},
    {"SOF_GetUserList", 2, 77, TESMARK_CERT_LIST_FAILED,
     "[GetUserList]SOF_GetUserList: failed,error:77"},
    {"GetDeviceInfo", 1, 77, TESMARK_CERT_LIST_FAILED,
     "[GetUserList]GetDeviceInfo: failed,error:77"},
    {"SOF_ExportUserCert", 1, 77, TESMARK_CERT_EXPORT_FAILED,
     "[GetKeyCert]SOF_ExportUserCert: failed,error:77"},
    {"SOF_ExportUserCert", 2, 77, TESMARK_CERT_EXPORT_FAILED,
     "[GetKeyCert]SOF_ExportUserCert: failed,error:77"},
    {"SOF_Base64Encode", 1, 77, TESMARK_BASE64_FAILED,
     "[GetKeyCert]SOF_Base64Encode: failed,error:77"},
    {"SOF_Base64Decode", 1, 77, TESMARK_CERT_INFO_NO_MEMORY,
     "[GetCertificateInfo]SOF_Base64Encode: error:77"},
    {"SOF_Base64Decode", 2, 77, TESMARK_CERT_INFO_NO_MEMORY,
     "[GetCertificateInfo]SOF_Base64Encode: error:77"},
    {"SOF_GetCertInfo", 1, 77, TESMARK_CERT_FIELD_FAILED,
     "[GetCertificateInfo]SOF_GetCertInfo: error:77"},
    {"SOF_GetCertInfo", 2, 77, TESMARK_CERT_FIELD_FAILED,
     "[GetCertificateInfo]SOF_GetCertInfo: error:77"},
    {"GetPersonalEsealByXML", 1, -7, TESMARK_DRAWING_FAILED, ""},
};

class SealByNameSweepTest : public SealByNameTest, public testing::WithParamInterface<Step> {};

// An older picture, and the certificate as far as it was selected, outlive the failure.
TEST_P(SealByNameSweepTest, AFailedCallLeavesThePictureAndTheLengthAndTheNextQuestionIsAnswered) {
    const Step& step = GetParam();
    ASSERT_EQ(Query(), 0);
    SetCurrentCertID(nullptr);
    fakes::ClearCalls();
    ForgetLog();
    fakes::On(step.function).ReturnsAt(step.number, step.failure);
    int length = -7;
    EXPECT_EQ(GetSealInfo(nullptr, &length), step.result);
    EXPECT_EQ(length, -7);
    const std::vector<std::string> failures = Failures();
    EXPECT_EQ(failures.empty() ? "" : failures.back(), step.lastFailure);
    EXPECT_EQ(fakes::CountCalls(step.function), step.number);
    EXPECT_FALSE(DrawingControl::IsHeld());
    EXPECT_EQ(Fetch(9), "drawing 1");
    int selected = 0;
    GetSelectedCertId(nullptr, &selected);
    EXPECT_EQ(selected, Called("SOF_ExportUserCert") ? 6 : 0);
    fakes::On(step.function) = fakes::FunctionScript();
    EXPECT_EQ(Query(), 0);
}

INSTANTIATE_TEST_SUITE_P(EachCall, SealByNameSweepTest, testing::ValuesIn(kSteps));

TEST_F(SealByNameTest, EveryCallOnTheWayIsOneOfTheSweep) {
    ASSERT_EQ(InitKVLLib(), 0);
    fakes::ClearCalls();
    ASSERT_EQ(Query(), 0);
    for (const fakes::Call& call : fakes::Calls()) {
        EXPECT_TRUE(IsSwept(kSteps, call)) << call.text;
    }
}

TEST_F(SealByNameTest, WithoutTheControlTheResultIsItsCodeAndTheSelectionStays) {
    for (const bool registered : {false, true}) {
        DrawingControl::Unregister();
        if (registered) DrawingControl::RegisterMissing();
        int length = -7;
        EXPECT_EQ(GetSealInfo(nullptr, &length), TESMARK_FAILED);
        EXPECT_EQ(length, -7);
        EXPECT_EQ(SelectedCert(), "cert-1");
        EXPECT_THAT(Failures(), IsEmpty());
    }
}

TEST_F(SealByNameTest, AFailedDrawingBySizeLeavesThePictureTheLengthAndTheSelection) {
    m_prefix.SetNumber("bSealPosition", 4);
    ASSERT_EQ(Query(), 0);
    fakes::On("GetPersonalEsealByCertInfo").ReturnsAt(2, -7);
    int length = -7;
    EXPECT_EQ(GetSealInfo(nullptr, &length), TESMARK_DRAWING_FAILED);
    EXPECT_EQ(length, -7);
    EXPECT_THAT(Failures(), IsEmpty());
    EXPECT_FALSE(DrawingControl::IsHeld());
    EXPECT_EQ(SelectedCert(), "cert-1");
    EXPECT_EQ(Fetch(9), "drawing 1");
}

TEST_F(SealByNameTest, AControlThatLacksTheMethodIsAFailedDrawing) {
    DrawingControl::RegisterWithoutMethods();
    for (const unsigned position : {3u, 4u}) {
        m_prefix.SetNumber("bSealPosition", position);
        EXPECT_EQ(Query(), TESMARK_DRAWING_FAILED);
        EXPECT_EQ(SelectedCert(), "cert-1");
    }
    DrawingControl::Register();
    EXPECT_EQ(Picture(), "drawing 1");
}

TEST_F(SealByNameTest, AMissingServiceFileIsAFailedStart) {
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    EXPECT_EQ(Query(), TESMARK_SERVICE_FAILED);
}

TEST_F(SealByNameTest, WithoutAKeyTheResultIsTheChoices) {
    fakes::ResetWorld();
    EXPECT_EQ(Query(), TESMARK_NO_KEY);
    EXPECT_THAT(Drawings(), IsEmpty());
}

}  // namespace
