#include "SessionTest.h"
#include "support/LockedStore.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SealRetrievalTest : public SessionTest {};

TEST_F(SealRetrievalTest, OneCertificateWithOneSealIsDeliveredWithoutADialog) {
    AddGbKey();
    EXPECT_EQ(Picture(), "national picture");
    EXPECT_THAT(Failures(), IsEmpty());
    EXPECT_THAT(ProbesAndChecks(),
                ElementsAre("SOF_SignData", "SOF_SignData", "TVK_Verify_SESeal"));
}

TEST_F(SealRetrievalTest, TheSizeQueryCallsTheClosedLibrariesInThisOrder) {
    AddEsKey();
    ASSERT_EQ(InitKVLLib(), 0);
    fakes::ClearCalls();
    ASSERT_EQ(Query(), 0);
    EXPECT_THAT(
        fakes::CallTexts(),
        ElementsAre("GetDeviceCountEx(ctx, 1)", "SOF_GetUserList(ctx, size?)",
                    "SOF_GetUserList(ctx, out[16])", "GetDeviceInfo(ctx, \"cert-1\", 7, out[32])",
                    "EnumFilesInDevice(ctx, \"cert-1\", size?)",
                    "EnumFilesInDevice(ctx, \"cert-1\", out[10])",
                    "SOF_ReadFile(ctx, \"cert-1\", \"ESEAL01\", size?)",
                    "SOF_ReadFile(ctx, \"cert-1\", \"ESEAL01\", out[338])",
                    "SOF_ExportUserCert(ctx, \"cert-1\", size?)",
                    "SOF_ExportUserCert(ctx, \"cert-1\", out[13])",
                    "SOF_GetCertInfo(ctx, 13 \"DER of cert-1\", 11, out[4096])",
                    "SOF_GetCertInfo(ctx, 13 \"DER of cert-1\", 12, out[4096])",
                    "SOF_GetCertInfo(ctx, 13 \"DER of cert-1\", 3, out[260])",
                    "SOF_ValidateCert(ctx, 13 \"DER of cert-1\")", "SOF_SetSignMethod(ctx, 131329)",
                    "SOF_SignData(ctx, \"cert-1\", 1 \"1\", size?)",
                    "SOF_SignData(ctx, \"cert-1\", 1 \"1\", out[22])",
                    "SOF_SetSignMethod(ctx, 0)"));
}

TEST_F(SealRetrievalTest, TheFetchAsksNobody) {
    AddGbKey();
    ASSERT_EQ(Query(), 0);
    fakes::ClearCalls();
    ForgetLog();
    EXPECT_EQ(Fetch(16), "national picture");
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
    EXPECT_THAT(Log(),
                ElementsAre("8 [GetSealInfo start]", "8 [GetSealInfo end][Time consume N ms]"));
}

TEST_F(SealRetrievalTest, AFetchOfMoreThanThePictureCopiesThatManyBytesAndLeavesTheLength) {
    AddEsKey("picture");
    ASSERT_EQ(Query(), 0);
    unsigned char buffer[10];
    std::fill(std::begin(buffer), std::end(buffer), 0xAA);
    int length = 9;
    EXPECT_EQ(GetSealInfo(buffer, &length), 0);
    EXPECT_EQ(length, 9);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(buffer), 9), std::string("picture\0\0", 9));
    EXPECT_EQ(buffer[9], 0xAA);
}

TEST_F(SealRetrievalTest, AFetchOfLessThanThePictureCopiesThatManyBytes) {
    AddEsKey("picture");
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(Fetch(4), "pict");
    EXPECT_EQ(Fetch(0), "");
}

TEST_F(SealRetrievalTest, AFetchOfANegativeLengthIsTheStringTypesFailure) {
    AddEsKey("picture");
    ASSERT_EQ(Query(), 0);
    unsigned char buffer[8];
    int length = -1;
    EXPECT_EQ(StringFailureOf([&] { GetSealInfo(buffer, &length); }),
              StringFailure::kInvalidArgument);
}

TEST_F(SealRetrievalTest, AHostThatNeverCallsWithNullGetsSelectionAndCopyInOneCall) {
    AddEsKey("picture");
    unsigned char buffer[8] = {};
    int length = 1;
    EXPECT_EQ(GetSealInfo(buffer, &length), 0);
    EXPECT_EQ(length, 7);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "picture");
    EXPECT_TRUE(Called("SOF_SignData"));
}

TEST_F(SealRetrievalTest, ASizeQueryIsNeverAnsweredFromTheCache) {
    AddEsKey("picture");
    ASSERT_EQ(Query(), 0);
    fakes::ClearCalls();
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_GetUserList"), 2);
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 2);
}

TEST_F(SealRetrievalTest, TheLengthToldIsThePicturesAndNotTheFiles) {
    AddEsKey("picture");
    int length = 0;
    ASSERT_EQ(GetSealInfo(nullptr, &length), 0);
    EXPECT_EQ(length, 7);
}

TEST_F(SealRetrievalTest, ASelectionSetsWhatTheSmallExportsTell) {
    AddGbKey();
    ASSERT_EQ(Query(), 0);
    int width = 0;
    int height = 0;
    EXPECT_EQ(GetSealPicSize(&width, &height), 0);
    EXPECT_EQ(width, 40);
    EXPECT_EQ(height, 40);
    EXPECT_EQ(GetEsealMode(), 2);
    EXPECT_EQ(SelectedSeal(), "national seal");
    EXPECT_EQ(SelectedCert(), "cert-1");
}

TEST_F(SealRetrievalTest, AnOldSealTellsNoSizeAndModeZero) {
    AddEsKey("picture");
    ASSERT_EQ(Query(), 0);
    int width = 0;
    int height = 0;
    EXPECT_EQ(GetSealPicSize(&width, &height), 0);
    EXPECT_EQ(width, -1);
    EXPECT_EQ(height, -1);
    EXPECT_EQ(GetEsealMode(), 0);
    EXPECT_EQ(SelectedSeal(), fakes::EsSeal("picture"));
}

TEST_F(SealRetrievalTest, PositionsTwoAndUnknownOnesTakeTheLocalPath) {
    AddEsKey("picture");
    for (const unsigned int position : {0u, 2u, 5u, 0x80000000u}) {
        m_prefix.SetNumber("bSealPosition", position);
        EXPECT_EQ(Picture(), "picture") << position;
    }
}

TEST_F(SealRetrievalTest, APositionThatIsALongTextTakesTheLocalPath) {
    AddEsKey("picture");
    m_prefix.SetText("bSealPosition", "12345");
    EXPECT_EQ(Picture(), "picture");
}

TEST_F(SealRetrievalTest, SettingsThatCannotBeOpenedTakeTheLocalPathWithEverythingOff) {
    AddGbKey();
    for (const char* name : {"bSealPosition", "bSignWithTimeStamp", "ReqEsealStatus"}) {
        m_prefix.SetNumber(name, 1);
    }
    ASSERT_EQ(InitKVLLib(), 0);
    const LockedStore locked(m_prefix);
    EXPECT_EQ(Picture(), "national picture");
    EXPECT_FALSE(Called("TVK_Request_Eseal_Status"));
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(SealRetrievalTest, AMissingServiceFileEndsTheEnumeration) {
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    int length = -7;
    EXPECT_EQ(GetSealInfo(nullptr, &length), TESMARK_ENUMERATION_NO_SERVICE);
    EXPECT_EQ(length, -7);
    EXPECT_THAT(Failures(), ElementsAre("KVLInitialize error", "GetCertAndPic error:-3000"));
}

TEST_F(SealRetrievalTest, ACodeOfTheEnumerationIsReturnedAndLogged) {
    EXPECT_EQ(Query(), TESMARK_NO_KEY);
    EXPECT_THAT(Failures(), ElementsAre("[GetUserList]not exist key.", "GetUserList error:-3024",
                                        "GetUserList error:-3024", "GetCertAndPic error:-3024"));
}

TEST_F(SealRetrievalTest, AfterAFailureTheOldPictureIsDelivered) {
    AddEsKey("old picture");
    ASSERT_EQ(Query(), 0);
    fakes::On("SOF_SignData").Returns(17);
    int length = -7;
    EXPECT_EQ(GetSealInfo(nullptr, &length), 17);
    EXPECT_EQ(length, -7);
    EXPECT_EQ(Fetch(11), "old picture");
    fakes::On("SOF_SignData").Returns(0);
    EXPECT_EQ(SelectedCert(), "cert-1");
}

TEST_F(SealRetrievalTest, ClearSelectKeyIDLeavesThePictureSizeAndTheKeyLoggedIn) {
    AddGbKey();
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(ClearSelectKeyID(), 0);
    int width = 0;
    int height = 0;
    GetSealPicSize(&width, &height);
    EXPECT_EQ(width, 40);
    EXPECT_EQ(height, 40);
    EXPECT_EQ(GetEsealMode(), 0);
    EXPECT_EQ(SelectedSeal(), "");
    EXPECT_EQ(SelectedCert(), "");
    EXPECT_FALSE(Called("SOF_Logout"));
}

TEST_F(SealRetrievalTest, AfterClearSelectKeyIDABufferDoesTheWholeWork) {
    AddEsKey("picture");
    ASSERT_EQ(Query(), 0);
    ClearSelectKeyID();
    fakes::ClearCalls();
    EXPECT_EQ(Fetch(7), "picture");
    EXPECT_TRUE(Called("SOF_SignData"));
}

TEST_F(SealRetrievalTest, ResetEsealDataLeavesTheCertificate) {
    AddGbKey();
    ASSERT_EQ(Query(), 0);
    ResetEsealData();
    EXPECT_EQ(GetEsealMode(), 0);
    EXPECT_EQ(SelectedSeal(), "");
    EXPECT_EQ(SelectedCert(), "cert-1");
}

TEST_F(SealRetrievalTest, ADraggedPictureIsBase64WithOneZeroByteBehindIt) {
    AddEsKey("abcde");
    EXPECT_EQ(DragPicture(), "YWJjZGUA");
}

TEST_F(SealRetrievalTest, ADraggedPictureOfAThousandBytesHasAThousandAndOne) {
    AddEsKey(std::string(1000, '\xFF'));
    const std::string text = DragPicture();
    EXPECT_EQ(text.size(), 1336u);
    EXPECT_EQ(text.substr(1332), "/wA=");
}

TEST_F(SealRetrievalTest, ADraggedPictureNeedsOneEnumeration) {
    AddEsKey("abcde");
    EXPECT_EQ(DragPicture(), "YWJjZGUA");
    EXPECT_EQ(fakes::CountCalls("SOF_GetUserList"), 2);
}

TEST_F(SealRetrievalTest, ADraggedEmptyPictureLeavesNoCacheAndIsSelectedTwice) {
    AddEsKey("");
    EXPECT_EQ(DragPicture(), "");
    EXPECT_EQ(fakes::CountCalls("SOF_GetUserList"), 4);
}

TEST_F(SealRetrievalTest, ADraggedPictureThatGrowsFromNothingIsTakenWhole) {
    AddEsKey("");
    const std::string grown = fakes::EsSeal("grown picture");
    fakes::On("SOF_ReadFile").GivesAt(3, grown).GivesAt(4, grown);
    EXPECT_EQ(DragPicture(), "Z3Jvd24gcGljdHVyZQ==");
    EXPECT_EQ(Fetch(13), "grown picture");
}

TEST_F(SealRetrievalTest, ADraggedPictureFailsWithTheCodeOfItsSecondSelection) {
    AddEsKey("");
    fakes::On("SOF_SignData").ReturnsAt(3, 17);
    char untouched = 0;
    char* base64 = &untouched;
    EXPECT_EQ(GetDragSealPic(&base64), 17);
    EXPECT_EQ(base64, &untouched);
}

TEST_F(SealRetrievalTest, ADragThatSelectsNothingGivesTheZeroByteAlone) {
    m_prefix.SetNumber("ReqEsealStatus", 1);
    AddGbKey().fields[0] = "";
    EXPECT_EQ(DragPicture(), "AA==");
}

TEST_F(SealRetrievalTest, BothQuestionsOfADragStandInTheLog) {
    AddEsKey("");
    ASSERT_EQ(DragPicture(), "");
    const std::vector<std::string> log = Log();
    EXPECT_EQ(std::count(log.begin(), log.end(), "8 [GetSealInfo start]"), 2);
    EXPECT_EQ(log.back(), "8 [GetSealInfo end][Time consume N ms]");
}

TEST_F(SealRetrievalTest, AFailedDragLeavesThePointer) {
    char untouched = 0;
    char* base64 = &untouched;
    EXPECT_EQ(GetDragSealPic(&base64), TESMARK_NO_KEY);
    EXPECT_EQ(base64, &untouched);
}

}  // namespace
