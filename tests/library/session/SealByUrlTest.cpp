// Seals of the online service: bSealPosition 1. The user is never asked for one here.
#include <cstdlib>

#include "OnlineTest.h"

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class SealByUrlTest : public OnlineTest {
protected:
    static int Drag(std::string& text) {
        char* base64 = nullptr;
        const int code = GetDragSealPic(&base64);
        if (code == 0) text = base64;
        std::free(base64);
        return code;
    }
    // The host has told mode 2 together with a seal, as after a search of its own.
    static void HostSelectsModeTwo() {
        const unsigned char text[] = "QQ==";
        ASSERT_EQ(SetCertSeal(text, 4, text, 4, 2), 0);
        ASSERT_EQ(GetEsealMode(), 2);
    }
    // A seal that the library verifies and finds no picture in, so that the host's mode stays.
    fakes::NationalSeal& ServiceHasSealOfModeTwo() {
        fakes::On("TVK_Get_Pic_From_Eseal_Ex").Returns(kFailure);
        return ServiceHasNationalSeal();
    }
};

TEST_F(SealByUrlTest, TheOnlySealIsDeliveredWithoutADialogByTwoRequests) {
    EXPECT_EQ(Picture(), "picture");
    EXPECT_THAT(Sent(), ElementsAre(ListRequest(), SealRequest("7001")));
    EXPECT_THAT(Failures(), IsEmpty());
    EXPECT_EQ(SelectedCert(), "cert-1");
    EXPECT_EQ(SelectedSeal(), fakes::EsSeal("picture"));
}

TEST_F(SealByUrlTest, TheSizeQueryCallsTheClosedLibrariesInThisOrder) {
    ServiceHasNationalSeal();
    ASSERT_EQ(InitKVLLib(), 0);
    fakes::ClearCalls();
    m_length = 0;
    EXPECT_EQ(GetSealInfo(nullptr, &m_length), 0);
    EXPECT_EQ(m_length, 16);
    EXPECT_THAT(
        fakes::CalledFunctions(),
        ElementsAre("GetDeviceCountEx", "SOF_GetUserList", "SOF_GetUserList", "GetDeviceInfo",
                    "SOF_ExportUserCert", "SOF_ExportUserCert", "SOF_GetCertInfo",
                    "SOF_GetCertInfo", "SOF_GetCertInfo", "SOF_ValidateCert", "SOF_SetSignMethod",
                    "SOF_SignData", "SOF_SignData", "SOF_SetSignMethod", "SOF_ExportUserCert",
                    "SOF_GetCertInfo", "SOF_GetCertInfo", "dwnt_context_init", "dwnt_config_set",
                    "dwnt_config_end", "dwnt_http_request_create", "dwnt_http_head_set",
                    "dwnt_http_head_set", "dwnt_http_handler", "dwnt_http_body_set",
                    "dwnt_http_processEx", "dwnt_http_response_data_get", "dwnt_context_init",
                    "dwnt_config_set", "dwnt_config_end", "dwnt_http_request_create",
                    "dwnt_http_head_set", "dwnt_http_head_set", "dwnt_http_handler",
                    "dwnt_http_body_set", "dwnt_http_processEx", "dwnt_http_response_data_get",
                    "TVK_Get_Pic_From_Eseal_Ex", "TVK_Get_Pic_From_Eseal_Ex", "TVK_Verify_SESeal"));
    EXPECT_EQ(fakes::CallTexts("SOF_ExportUserCert").back(),
              "SOF_ExportUserCert(ctx, \"cert-1\", out[4096])");
    const std::vector<std::string> fields = fakes::CallTexts("SOF_GetCertInfo");
    EXPECT_THAT((std::vector<std::string>{fields.end() - 2, fields.end()}),
                ElementsAre("SOF_GetCertInfo(ctx, 13 \"DER of cert-1\", 33, out[256])",
                            "SOF_GetCertInfo(ctx, 13 \"DER of cert-1\", 2, out[256])"));
    EXPECT_THAT(
        fakes::CallTexts("dwnt_config_set"),
        Each("dwnt_config_set(\"context\", \"ServerHost\", \"" + std::string(kUrl) + "\")"));
    EXPECT_THAT(fakes::CallTexts("TVK_Verify_SESeal"),
                ElementsAre("TVK_Verify_SESeal(13 \"national seal\")"));
}

TEST_F(SealByUrlTest, TheFlowHasAScopeOfItsOwnInTheLog) {
    SetGetStampPictureMode(0);
    ASSERT_EQ(Query(), 0);
    ForgetLog();
    EXPECT_EQ(Fetch(7), "picture");
    EXPECT_THAT(Log(), ElementsAre("8 [GetSealInfo start]", "8 [GetEsealByUrl start]",
                                   "8 [GetEsealByUrl end][Time consume N ms]",
                                   "8 [GetSealInfo end][Time consume N ms]"));
}

TEST_F(SealByUrlTest, TheTestSignatureIsMadeAtTheSizeQueryAndAtTheFetch) {
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 2);
    EXPECT_EQ(Fetch(7), "picture");
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 4);
    EXPECT_THAT(fakes::CallTexts("SOF_SignData").back(),
                "SOF_SignData(ctx, \"cert-1\", 1 \"1\", out[22])");
}

TEST_F(SealByUrlTest, PictureModeZeroMakesNoSignatureAtAll) {
    SetGetStampPictureMode(0);
    EXPECT_EQ(Picture(), "picture");
    EXPECT_FALSE(Called("SOF_SignData"));
    EXPECT_FALSE(Called("SOF_ValidateCert"));
}

TEST_F(SealByUrlTest, AnyPictureModeButZeroMakesTheTestSignature) {
    SetGetStampPictureMode(255);
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 2);
}

TEST_F(SealByUrlTest, ASealOfANationalFormatIsVerifiedWithPictureModeZeroToo) {
    SetGetStampPictureMode(0);
    ServiceHasNationalSeal();
    EXPECT_EQ(Picture(), "national picture");
    EXPECT_THAT(ProbesAndChecks(), ElementsAre("TVK_Verify_SESeal"));
}

TEST_F(SealByUrlTest, NoTimeStampIsTriedThoughSignaturesCarryThem) {
    m_prefix.SetNumber("bSignWithTimeStamp", 1);
    EXPECT_EQ(Picture(), "picture");
    EXPECT_FALSE(Called("SOF_TSGenREQ"));
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(SealByUrlTest, AnOldSealHasModeZeroAndNoSizeAndIsNotVerified) {
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(GetEsealMode(), 0);
    EXPECT_EQ(Size(), "0 by 0");
    EXPECT_FALSE(Called("TVK_Verify_SESeal"));
    EXPECT_FALSE(Called("TVK_Get_Pic_From_Eseal_Ex"));
}

TEST_F(SealByUrlTest, AnyOtherSealHasModeOneAndItsPicturesSize) {
    ServiceHasNationalSeal();
    EXPECT_EQ(Picture(), "national picture");
    EXPECT_EQ(GetEsealMode(), 1);
    EXPECT_EQ(Size(), "40 by 40");
    EXPECT_EQ(SelectedSeal(), "national seal");
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(SealByUrlTest, AnOldSealTakesTheSizeAndTheModeOfTheOneBeforeItAway) {
    ServiceHasNationalSeal();
    ASSERT_EQ(Query(), 0);
    ServiceHas(fakes::EsSeal("picture"));
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(GetEsealMode(), 0);
    EXPECT_EQ(Size(), "0 by 0");
}

TEST_F(SealByUrlTest, AFetchAheadOfAnySizeQueryCopiesZeroBytesAndExchangesNothing) {
    unsigned char buffer[6];
    std::fill(std::begin(buffer), std::end(buffer), 0xAA);
    m_length = 5;
    EXPECT_EQ(GetSealInfo(buffer, &m_length), 0);
    EXPECT_EQ(m_length, 5);
    EXPECT_THAT(buffer, ElementsAre(0, 0, 0, 0, 0, 0xAA));
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 2);
}

TEST_F(SealByUrlTest, AFetchNeedsNoAddress) {
    ASSERT_EQ(Query(), 0);
    m_prefix.SetText("sWSURL", "");
    EXPECT_EQ(Fetch(7), "picture");
    EXPECT_EQ(Fetch(9), std::string("picture\0\0", 9));
    EXPECT_EQ(Fetch(3), "pic");
    EXPECT_EQ(Fetch(0), "");
}

TEST_F(SealByUrlTest, AFetchOfANegativeLengthIsTheStringTypesFailure) {
    ASSERT_EQ(Query(), 0);
    unsigned char byte = 0;
    m_length = -1;
    EXPECT_EQ(StringFailureOf([&] { GetSealInfo(&byte, &m_length); }),
              StringFailure::kInvalidArgument);
}

TEST_F(SealByUrlTest, AFetchCutsTheCachesLengthAtAZeroByteAndLeavesItsBytes) {
    ServiceHas(fakes::EsSeal(std::string("ab\0cd", 5)));
    EXPECT_EQ(Picture(), std::string("ab\0cd", 5));
    EXPECT_EQ(Fetch(5), std::string("ab\0cd", 5));
    // The length alone decides where the local path looks for a picture.
    ServiceHas(fakes::EsSeal(std::string("\0b", 2)));
    EXPECT_EQ(Picture(), std::string("\0b", 2));
    m_prefix.SetNumber("bSealPosition", 0);
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("local"));
    std::string bytes(5, '?');
    m_length = 5;
    EXPECT_EQ(GetSealInfo(reinterpret_cast<unsigned char*>(bytes.data()), &m_length), 0);
    EXPECT_EQ(bytes, "local");
}

TEST_F(SealByUrlTest, EachSizeQueryAsksTheServiceAnew) {
    ASSERT_EQ(Query(), 0);
    ServiceHas(fakes::EsSeal("another picture"));
    m_length = 0;
    EXPECT_EQ(GetSealInfo(nullptr, &m_length), 0);
    EXPECT_EQ(m_length, 15);
    EXPECT_EQ(Sent().size(), 4u);
    EXPECT_EQ(Fetch(15), "another picture");
}

TEST_F(SealByUrlTest, TheAddressIsReadAnewByEachQuery) {
    ASSERT_EQ(Query(), 0);
    m_prefix.SetText("sWSURL", "http://other");
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(fakes::CallTexts("dwnt_config_set").back(),
              "dwnt_config_set(\"context\", \"ServerHost\", \"http://other\")");
}

TEST_F(SealByUrlTest, WithASelectionNobodyListsTheCertificatesAndNoDialogAppears) {
    fakes::AddCertificate("two", "cert-2");
    SetCurrentCertID("cert-2");
    ASSERT_EQ(Query(), 0);
    EXPECT_FALSE(Called("SOF_GetUserList"));
    EXPECT_THAT(Sent().front(), HasSubstr("<SN>serial of cert-2</SN>"));
    EXPECT_EQ(SelectedCert(), "cert-2");
}

TEST_F(SealByUrlTest, AnOldSealWithoutAPictureHasOneOfLengthZero) {
    ServiceHas(fakes::EsSeal(""));
    m_length = -7;
    EXPECT_EQ(GetSealInfo(nullptr, &m_length), 0);
    EXPECT_EQ(m_length, 0);
    EXPECT_EQ(SelectedSeal(), fakes::EsSeal(""));
    ExpectNothingCached();
}

TEST_F(SealByUrlTest, DetailsOfTheCertificateThatFillTheirRoomAreTakenWhole) {
    const std::string name(256, 'n');
    const std::string serial(256, 's');
    SetGetStampPictureMode(0);
    SetCurrentCertID("cert-1");
    fakes::On("SOF_GetCertInfo").GivesAt(1, name).GivesAt(2, serial);
    ASSERT_EQ(Query(), 0);
    EXPECT_THAT(Sent().front(), HasSubstr("<SN>" + serial + "</SN>\r\n<DN>" + name + "</DN>"));
}

TEST_F(SealByUrlTest, DetailsOfTheCertificateEndAtTheirFirstZeroByte) {
    SetGetStampPictureMode(0);
    SetCurrentCertID("cert-1");
    fakes::On("SOF_GetCertInfo").GivesAt(1, std::string("CN\0x", 4)).GivesAt(2, "");
    ASSERT_EQ(Query(), 0);
    EXPECT_THAT(Sent().front(), HasSubstr("<SN/>\r\n<DN>CN</DN>"));
}

TEST_F(SealByUrlTest, ChineseDetailsGoOverInUtf8) {
    SetGetStampPictureMode(0);
    SetCurrentCertID("cert-1");
    fakes::On("SOF_GetCertInfo").GivesAt(1, "CN=张三").GivesAt(2, "1B");
    ASSERT_EQ(Query(), 0);
    EXPECT_THAT(Sent(), Each(HasSubstr(Utf8(u8"<DN>CN=张三</DN>"))));
}

TEST_F(SealByUrlTest, ALengthBeyondTheCertificatesRoomIsTheRooms) {
    SetGetStampPictureMode(0);
    SetCurrentCertID("cert-1");
    fakes::On("SOF_ExportUserCert").ReportsSize(100'000);
    fakes::On("SOF_GetCertInfo").Gives("detail");
    ASSERT_EQ(Query(), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_GetCertInfo").front(),
                HasSubstr("SOF_GetCertInfo(ctx, 4096 \"DER of cert-1"));
}

TEST_F(SealByUrlTest, WithoutAnAddressTheSelectionIsClearedBehindTheTestSignature) {
    ServiceHasNationalSeal();
    ASSERT_EQ(Query(), 0);
    for (const std::string& address : {std::string(), std::string(200, 'u')}) {
        SetCurrentCertID("cert-1");
        m_prefix.SetText("sWSURL", address);
        fakes::ClearCalls();
        ForgetLog();
        ExpectQueryFails(TESMARK_NO_ONLINE_ADDRESS);
        EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 2);
        EXPECT_THAT(Sent(), IsEmpty());
        EXPECT_THAT(Failures(), IsEmpty());
        EXPECT_EQ(Size(), "40 by 40");
        ExpectCleared();
    }
}

TEST_F(SealByUrlTest, AnAddressOf199BytesIsUsed) {
    m_prefix.SetText("sWSURL", std::string(199, 'u'));
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(fakes::Calls().empty(), false);
    EXPECT_EQ(Sent().size(), 2u);
}

TEST_F(SealByUrlTest, AFailedTestSignatureIsLoggedAndKeepsTheSelectionOnEitherCall) {
    ServiceHasNationalSeal();
    ASSERT_EQ(Query(), 0);
    fakes::On("SOF_SignData").Returns(kFailure);
    fakes::ClearCalls();
    ForgetLog();
    ExpectQueryFails(kFailure);
    unsigned char buffer[16] = {};
    m_length = 16;
    EXPECT_EQ(GetSealInfo(buffer, &m_length), kFailure);
    EXPECT_THAT(buffer, Each(0));
    EXPECT_THAT(Failures(), ElementsAre("[SignData]SOF_SignData: error:77", "SignData error 77",
                                        "[SignData]SOF_SignData: error:77", "SignData error 77"));
    EXPECT_THAT(Sent(), IsEmpty());
    fakes::On("SOF_SignData") = fakes::FunctionScript();
    EXPECT_EQ(SelectedCert(), "cert-1");
    EXPECT_EQ(SelectedSeal(), "national seal");
    EXPECT_EQ(GetEsealMode(), 1);
    EXPECT_EQ(Fetch(16), "national picture");
}

TEST_F(SealByUrlTest, ACodeOfTheChoiceKeepsWhatThereIs) {
    ASSERT_EQ(Query(), 0);
    SetCurrentCertID(nullptr);
    fakes::On("SOF_GetUserList").Returns(kFailure);
    ExpectQueryFails(TESMARK_CERT_LIST_FAILED);
    EXPECT_EQ(SelectedSeal(), fakes::EsSeal("picture"));
    fakes::On("SOF_GetUserList") = fakes::FunctionScript();
    EXPECT_EQ(Fetch(7), "picture");
}

TEST_F(SealByUrlTest, AChoiceThatGivesNoCertificateFailsWhereItsCertificateIsNeededFirst) {
    fakes::ResetWorld();
    fakes::AddCertificate("label", "hlvqDev123");
    ExpectQueryFails(TESMARK_CERT_EXPORT_FAILED);
    EXPECT_EQ(Failures().back(), "SignData error -3033");
    SetGetStampPictureMode(0);
    fakes::ClearCalls();
    ExpectQueryFails(fakes::kUnknownCertificate);
    EXPECT_THAT(fakes::CallTexts("SOF_ExportUserCert"),
                ElementsAre("SOF_ExportUserCert(ctx, \"\", out[4096])"));
    EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(SealByUrlTest, AServiceThatCannotStartKeepsTheSelection) {
    ASSERT_EQ(Query(), 0);
    UnInitKVLLib();
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    ExpectQueryFails(TESMARK_SERVICE_NOT_FOUND);
    unsigned char byte = 0;
    m_length = 1;
    EXPECT_EQ(GetSealInfo(&byte, &m_length), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_TRUE(IsSelected());
    EXPECT_EQ(SelectedSeal(), fakes::EsSeal("picture"));
}

TEST_F(SealByUrlTest, AServiceWithoutASealOfThisCertificateHasACodeOfItsOwn) {
    m_listAnswer = SealList(0, "");
    ExpectQueryFails(TESMARK_NO_ONLINE_SEAL);
    EXPECT_EQ(Sent().size(), 1u);
    EXPECT_THAT(Failures(), IsEmpty());
    ExpectCleared();
}

TEST_F(SealByUrlTest, AListOfAnotherStatusIsShownToTheUserAndClears) {
    ASSERT_EQ(Query(), 0);
    m_listAnswer = Document("<STATUSCODE>500</STATUSCODE><MESSAGE>closed today</MESSAGE>");
    {
        ShownBoxes boxes;
        ExpectQueryFails(TESMARK_SERVICE_REFUSED);
        EXPECT_THAT(boxes.Take(), HasSubstr("closed today"));
    }
    EXPECT_EQ(Size(), "0 by 0");
    ExpectCleared();
}

TEST_F(SealByUrlTest, AListWithoutItsNumberIsMinusTwo) {
    m_listAnswer = Success(SealInfo("7001", "name"));
    ExpectQueryFails(TESMARK_SERVICE_ANSWER);
    EXPECT_THAT(Failures(), ElementsAre("[找不到COUNT节点！]"));
    ExpectCleared();
}

TEST_F(SealByUrlTest, AListThatPromisesOneSealAndHasNoneAsksForTheOneWithoutANumber) {
    m_listAnswer = SealList(1, "");
    EXPECT_EQ(Picture(), "picture");
    EXPECT_EQ(Sent().back(), SealRequest(""));
}

TEST_F(SealByUrlTest, AListThatPromisesOneSealAndHasTwoIsTakenByItsNumber) {
    m_listAnswer = SealList(1, SealInfo("7001", "one") + SealInfo("7002", "two"));
    EXPECT_EQ(Picture(), "picture");
    EXPECT_EQ(Sent().back(), SealRequest("7001"));
}

TEST_F(SealByUrlTest, UnderTheDeliveredNameSeveralSealsAskForTheOneWithoutANumber) {
    m_listAnswer = SealList(2, SealInfo("7001", "one") + SealInfo("7002", "two"));
    EXPECT_EQ(Picture(), "picture");
    EXPECT_THAT(Sent(), ElementsAre(ListRequest(), SealRequest("")));
}

TEST_F(SealByUrlTest, AListThatPromisesMoreThanAnyMemoryHoldsIsReadAsFarAsItGoes) {
    for (const char* const count : {"2147483647", "-1"}) {
        m_listAnswer = Success("<COUNT>" + std::string(count) + "</COUNT>" +
                               SealInfo("7001", "one") + SealInfo("7002", "two"));
        EXPECT_EQ(Picture(), "picture") << count;
        EXPECT_EQ(Sent().back(), SealRequest("")) << count;
    }
}

TEST_F(SealByUrlTest, AMarkInANumberGoesBackEscaped) {
    m_listAnswer = SealList(1, SealInfo("a&amp;b", "name"));
    EXPECT_EQ(Picture(), "picture");
    EXPECT_EQ(Sent().back(), SealRequest("a&amp;b"));
}

TEST_F(SealByUrlTest, ASealOfAnotherStatusIsMinusTwoAndClearsWithoutAWord) {
    ASSERT_EQ(Query(), 0);
    m_sealAnswer = Document("<STATUSCODE>404</STATUSCODE><MESSAGE>gone</MESSAGE>");
    ForgetLog();
    ExpectQueryFails(TESMARK_SERVICE_ANSWER);
    EXPECT_THAT(Failures(), IsEmpty());
    ExpectCleared();
}

TEST_F(SealByUrlTest, AnAnswerWithAnEmptySealIsMinusOneAndClears) {
    m_sealAnswer = Success("<SEAL></SEAL>");
    ExpectQueryFails(TESMARK_FAILED);
    EXPECT_THAT(Failures(), IsEmpty());
    ExpectCleared();
}

// What is read in its place is the status.
TEST_F(SealByUrlTest, AnAnswerWithoutASealIsSuccessWithASealOfTwoBytesAndNoPicture) {
    m_sealAnswer = Success("");
    m_length = 0;
    EXPECT_EQ(GetSealInfo(nullptr, &m_length), 0);
    EXPECT_EQ(m_length, 0);
    EXPECT_EQ(SelectedSeal(), "\xDB\x4D");
    EXPECT_EQ(GetEsealMode(), 0);
    EXPECT_TRUE(IsSelected());
    EXPECT_THAT(Failures(),
                ElementsAre("TVK_Get_Pic_From_Eseal error:" + std::to_string(fakes::kUnknownSeal)));
    ExpectNothingCached();
}

TEST_F(SealByUrlTest, WhatHasNoPictureLeavesTheLengthWhichMustBeZero) {
    ASSERT_EQ(Query(), 0);
    ServiceHas("unknown");
    for (const int length : {-7, 1, 4096}) {
        m_length = length;
        EXPECT_EQ(StringFailureOf([&] { GetSealInfo(nullptr, &m_length); }),
                  StringFailure::kInvalidArgument);
        EXPECT_EQ(m_length, length);
        EXPECT_TRUE(IsSelected());
    }
    EXPECT_EQ(Fetch(7), "picture");
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(SelectedSeal(), "unknown");
    ExpectNothingCached();
}

// Neither reader understands it, so it is judged by the mode of the seal before it.
TEST_F(SealByUrlTest, WhatHasNoPictureIsVerifiedIfTheSealBeforeItWasOfANationalFormat) {
    ServiceHasNationalSeal();
    ASSERT_EQ(Query(), 0);
    ServiceHas("unknown");
    fakes::ClearCalls();
    ForgetLog();
    m_length = 0;
    EXPECT_EQ(GetSealInfo(nullptr, &m_length), fakes::kUnknownSeal);
    EXPECT_THAT(fakes::CallTexts("TVK_Verify_SESeal"),
                ElementsAre("TVK_Verify_SESeal(7 \"unknown\")"));
    EXPECT_EQ(Failures().back(), "TVK_Verify_SESeal error " + std::to_string(fakes::kUnknownSeal));
    ExpectCleared();
}

TEST_F(SealByUrlTest, ASealThatIsNotValidClearsEverythingButTheSize) {
    ServiceHasNationalSeal().verifyResult = 99;
    m_length = 0;
    EXPECT_EQ(GetSealInfo(nullptr, &m_length), 99);
    EXPECT_EQ(m_length, 16);
    EXPECT_THAT(Failures(), ElementsAre("TVK_Verify_SESeal error 99"));
    EXPECT_EQ(Size(), "40 by 40");
    ExpectCleared();
}

TEST_F(SealByUrlTest, TheStatusOfASealOfModeOneIsNeverAskedFor) {
    m_prefix.SetNumber("ReqEsealStatus", 1);
    ServiceHasNationalSeal();
    EXPECT_EQ(Picture(), "national picture");
    EXPECT_FALSE(Called("TVK_GetSealInfo"));
    EXPECT_FALSE(Called("TVK_Request_Eseal_Status"));
}

TEST_F(SealByUrlTest, TheStatusOfASealOfModeTwoIsAskedForIfTheSettingIsExactlyOne) {
    ServiceHasSealOfModeTwo();
    for (const unsigned setting : {0u, 2u, 1u}) {
        HostSelectsModeTwo();
        m_prefix.SetNumber("ReqEsealStatus", setting);
        fakes::ClearCalls();
        m_length = 0;
        EXPECT_EQ(GetSealInfo(nullptr, &m_length), 0);
        EXPECT_EQ(GetEsealMode(), 2);
        EXPECT_EQ(fakes::CountCalls("TVK_Verify_SESeal"), 1);
        EXPECT_EQ(fakes::CountCalls("TVK_GetSealInfo"), setting == 1 ? 2 : 0);
        EXPECT_EQ(fakes::CountCalls("TVK_Request_Eseal_Status"), setting == 1 ? 1 : 0);
    }
    EXPECT_THAT(fakes::CallTexts("TVK_Request_Eseal_Status"),
                ElementsAre("TVK_Request_Eseal_Status(5 \"field\", 5 \"field\", 0, 0)"));
}

TEST_F(SealByUrlTest, EachFailureOfTheStatusIsLoggedAsTheVerificationsAndClears) {
    m_prefix.SetNumber("ReqEsealStatus", 1);
    ServiceHasSealOfModeTwo();
    for (const auto& [function, number] : {std::pair{"TVK_GetSealInfo", 1},
                                           {"TVK_GetSealInfo", 2},
                                           {"TVK_Request_Eseal_Status", 1}}) {
        SCOPED_TRACE(function + std::to_string(number));
        HostSelectsModeTwo();
        fakes::ClearCalls();
        fakes::On(function).ReturnsAt(number, 88);
        ForgetLog();
        m_length = 0;
        EXPECT_EQ(GetSealInfo(nullptr, &m_length), 88);
        EXPECT_EQ(fakes::CountCalls(function), number);
        EXPECT_EQ(Failures().back(), "TVK_Verify_SESeal error 88");
        ExpectCleared();
        fakes::On(function) = fakes::FunctionScript();
    }
}

TEST_F(SealByUrlTest, AnEmptyStatusFieldClearsAndIsLoggedWithTheResultZero) {
    m_prefix.SetNumber("ReqEsealStatus", 1);
    ServiceHasSealOfModeTwo().fields[4] = "";
    HostSelectsModeTwo();
    m_length = 0;
    EXPECT_EQ(GetSealInfo(nullptr, &m_length), 0);
    EXPECT_EQ(Failures().back(), "TVK_Verify_SESeal error 0");
    EXPECT_FALSE(Called("TVK_Request_Eseal_Status"));
    ExpectCleared();
}

TEST_F(SealByUrlTest, ADraggedPictureIsBase64WithOneZeroByteBehindItAndTwoTestSignatures) {
    ServiceHas(fakes::EsSeal("abcde"));
    std::string text;
    EXPECT_EQ(Drag(text), 0);
    EXPECT_EQ(text, "YWJjZGUA");
    EXPECT_EQ(Sent().size(), 2u);
    EXPECT_EQ(fakes::CountCalls("SOF_SignData"), 4);
}

TEST_F(SealByUrlTest, ADragOfWhatHasNoPictureGivesTheZeroByteAlone) {
    ServiceHas("unknown");
    std::string text;
    EXPECT_EQ(Drag(text), 0);
    EXPECT_EQ(text, "AA==");
}

TEST_F(SealByUrlTest, ADragFailsWithTheCodeOfItsFetch) {
    fakes::On("SOF_SignData").ReturnsAt(3, 17);
    std::string text = "as it was";
    EXPECT_EQ(Drag(text), 17);
    EXPECT_EQ(text, "as it was");
}

}  // namespace
