#include "SessionTest.h"
#include "foundation/Text.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const unsigned char* Bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

int Select(const std::string& serial, const std::string& sealBase64, int mode) {
    return SetCertSeal(Bytes(serial), static_cast<int>(serial.size()), Bytes(sealBase64),
                       static_cast<int>(sealBase64.size()), mode);
}

int SelectForContent(const std::string& certId) {
    return SetContentSignCertId(Bytes(certId), static_cast<int>(certId.size()));
}

class SelectionTest : public SessionTest {
protected:
    // Two certificates; the second one has an old seal and a national one.
    static void AddTwoKeys() {
        fakes::AddCertificate("one", "cert-1").serial = "01AB";
        fakes::AddCertificate("two", "cert-2").serial = "02CD";
        fakes::AddFile("cert-2", "ESEAL01", fakes::EsSeal("picture"));
        fakes::AddFile("cert-2", "GBESEAL01", "national seal");
        fakes::AddNationalSeal("national seal", "name", "picture");
    }
    static std::string NationalBase64() { return Base64Encode("national seal"); }
};

TEST_F(SelectionTest, ASealIsFoundByTheSerialAndTheBase64OfItsFile) {
    AddTwoKeys();
    EXPECT_EQ(Select("02CD", NationalBase64(), 1), 0);
    EXPECT_EQ(GetEsealMode(), 2);
    EXPECT_EQ(SelectedSeal(), "national seal");
    EXPECT_EQ(SelectedCert(), "cert-2");
}

TEST_F(SelectionTest, TheSearchAsksEachCertificateForItsSerialUntilItIsFound) {
    AddTwoKeys();
    ASSERT_EQ(InitKVLLib(), 0);
    fakes::ClearCalls();
    ASSERT_EQ(Select("02CD", NationalBase64(), 1), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_ExportUserCert"),
                ElementsAre("SOF_ExportUserCert(ctx, \"cert-1\", size?)",
                            "SOF_ExportUserCert(ctx, \"cert-1\", out[13])",
                            "SOF_ExportUserCert(ctx, \"cert-2\", size?)",
                            "SOF_ExportUserCert(ctx, \"cert-2\", out[13])"));
    EXPECT_EQ(fakes::CallTexts("SOF_GetCertInfo").front(),
              "SOF_GetCertInfo(ctx, 13 \"DER of cert-1\", 2, size?)");
    EXPECT_THAT(ProbesAndChecks(), IsEmpty());
}

TEST_F(SelectionTest, WithModeZeroTheSealIsNotLookedAt) {
    AddTwoKeys();
    EXPECT_EQ(Select("02CD", "no seal's Base64", 0), 0);
    EXPECT_EQ(SelectedCert(), "cert-2");
    EXPECT_EQ(SelectedSeal(), "");
    EXPECT_EQ(GetEsealMode(), 0);
}

TEST_F(SelectionTest, ANullSealIsRefusedWithModeZeroToo) {
    AddTwoKeys();
    const std::string serial = "02CD";
    EXPECT_EQ(SetCertSeal(Bytes(serial), 4, nullptr, 0, 0), TESMARK_NULL_ARGUMENT);
    EXPECT_EQ(SetCertSeal(nullptr, 0, Bytes(serial), 4, 0), TESMARK_NULL_ARGUMENT);
    EXPECT_THAT(Log(), IsEmpty());
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(SelectionTest, ANullSerialWithALengthIsTheStringTypesFailure) {
    const std::string seal = "c2VhbA==";
    EXPECT_EQ(StringFailureOf([&] { SetCertSeal(nullptr, 4, Bytes(seal), 8, 0); }),
              StringFailure::kInvalidArgument);
    EXPECT_EQ(StringFailureOf([&] { SetCertSeal(Bytes(seal), -1, Bytes(seal), 8, 0); }),
              StringFailure::kInvalidArgument);
}

TEST_F(SelectionTest, TheArgumentsAreLogged) {
    EXPECT_EQ(Select("02CD", "c2VhbA==", 0), TESMARK_NO_SEAL_MATCHES);
    EXPECT_EQ(Log(6).front(), "6 SetCertSealName pCertId is 02CD, pSeal is c2VhbA==");
}

TEST_F(SelectionTest, TheSerialIsComparedWithRegardToCase) {
    AddTwoKeys();
    EXPECT_EQ(Select("02cd", NationalBase64(), 1), TESMARK_NO_SEAL_MATCHES);
    EXPECT_EQ(SelectedCert(), "");
}

TEST_F(SelectionTest, TheSerialIsComparedUpToItsZeroByte) {
    AddTwoKeys();
    EXPECT_EQ(Select(std::string("02CD\0tail", 9), NationalBase64() + std::string("\0tail", 5), 1),
              0);
    EXPECT_EQ(SelectedSeal(), "national seal");
}

TEST_F(SelectionTest, OnlyAWholeSerialMatches) {
    AddTwoKeys();
    for (const char* serial : {"02C", "02CDE", ""}) {
        EXPECT_EQ(Select(serial, NationalBase64(), 1), TESMARK_NO_SEAL_MATCHES) << serial;
        EXPECT_EQ(SelectedCert(), "");
    }
}

TEST_F(SelectionTest, OnlyAWholeTextOfTheSealMatches) {
    AddTwoKeys();
    const std::string text = NationalBase64();
    EXPECT_EQ(Select("02CD", text + "A", 1), TESMARK_NO_SEAL_MATCHES);
    EXPECT_EQ(Select("02CD", text.substr(0, text.size() - 4), 1), TESMARK_NO_SEAL_MATCHES);
    EXPECT_EQ(Select("02CD", "", 1), TESMARK_NO_SEAL_MATCHES);
}

TEST_F(SelectionTest, AnEmptySerialIsThatOfACertificateWhoseSerialCannotBeHad) {
    AddTwoKeys();
    fakes::On("SOF_ExportUserCert").ReturnsAt(1, 5);
    EXPECT_EQ(Select("", NationalBase64(), 0), 0);
    EXPECT_EQ(SelectedCert(), "cert-1");
}

TEST_F(SelectionTest, AnyModeButZeroAsksForTheSealWhoseTypeReplacesIt) {
    AddTwoKeys();
    for (const int mode : {3, 7, -1}) {
        EXPECT_EQ(Select("02CD", Base64Encode(fakes::EsSeal("picture")), mode), 0);
        EXPECT_EQ(GetEsealMode(), 0) << mode;
        EXPECT_EQ(SelectedSeal(), fakes::EsSeal("picture"));
    }
}

TEST_F(SelectionTest, InAnEmptyListNothingMatchesAndAnOlderSealMakesItSuccess) {
    fakes::AddCertificate("翠枫证书", "cert-1");  // is left out of the list
    EXPECT_EQ(Select("02CD", NationalBase64(), 1), TESMARK_NO_SEAL_MATCHES);
    m_prefix.SetNumber("bSealPosition", 1);
    ASSERT_EQ(Select("any", NationalBase64(), 1), 0);
    m_prefix.SetNumber("bSealPosition", 0);
    EXPECT_EQ(Select("02CD", "bm9uZQ==", 2), 0);
    EXPECT_EQ(SelectedSeal(), "national seal");
    EXPECT_EQ(GetEsealMode(), 2);
}

TEST_F(SelectionTest, ASealThatIsNotInTheMatchingCertificateLeavesTheCertificateSelected) {
    AddTwoKeys();
    EXPECT_EQ(Select("01AB", NationalBase64(), 1), TESMARK_NO_SEAL_MATCHES);
    EXPECT_EQ(SelectedCert(), "cert-1");
    EXPECT_EQ(GetEsealMode(), 1);
}

TEST_F(SelectionTest, AnOlderSealMakesAnUnsuccessfulSearchLookLikeSuccess) {
    AddTwoKeys();
    ASSERT_EQ(Select("02CD", NationalBase64(), 1), 0);
    EXPECT_EQ(Select("01AB", "bm9uZQ==", 1), 0);
    EXPECT_EQ(SelectedCert(), "cert-1");
    EXPECT_EQ(SelectedSeal(), "national seal");
}

TEST_F(SelectionTest, AnOlderSealGivesTheStatusOfTheLastSerialRead) {
    AddTwoKeys();
    ASSERT_EQ(Select("02CD", NationalBase64(), 1), 0);
    fakes::ClearCalls();
    fakes::On("SOF_ExportUserCert").ReturnsAt(4, 5);
    EXPECT_EQ(Select("none", "bm9uZQ==", 1), TESMARK_CERT_EXPORT_FAILED);
    fakes::On("SOF_GetCertInfo").Returns(6);
    EXPECT_EQ(Select("none", "bm9uZQ==", 1), TESMARK_CERT_FIELD_FAILED);
}

TEST_F(SelectionTest, AnOlderSealIsCutAtItsZeroByteButHandedOutWhole) {
    AddTwoKeys();
    const std::string file = fakes::EsSeal("picture");
    ASSERT_EQ(Select("02CD", Base64Encode(file), 1), 0);
    ASSERT_EQ(Select("none", "bm9uZQ==", 1), 0);
    int length = 0;
    ASSERT_EQ(GetSelectedSeal(nullptr, &length), 0);
    EXPECT_EQ(length, 2);
    std::string whole(file.size(), '?');
    length = static_cast<int>(file.size());
    ASSERT_EQ(GetSelectedSeal(reinterpret_cast<unsigned char*>(whole.data()), &length), 0);
    EXPECT_EQ(whole, file);
}

TEST_F(SelectionTest, ASealThatBeginsWithAZeroByteCountsAsNoneAfterTheCut) {
    AddTwoKeys();
    m_prefix.SetNumber("bSealPosition", 1);
    ASSERT_EQ(Select("any", "AGFi", 1), 0);
    m_prefix.SetNumber("bSealPosition", 0);
    EXPECT_EQ(Select("none", "bm9uZQ==", 1), TESMARK_NO_SEAL_MATCHES);
}

TEST_F(SelectionTest, AFailedEnumerationIsIgnoredAndSearchesTheOldList) {
    AddTwoKeys();
    ASSERT_EQ(Select("02CD", NationalBase64(), 0), 0);
    fakes::On("GetDeviceCountEx").Returns(3);
    EXPECT_EQ(Select("01AB", NationalBase64(), 0), 0);
    EXPECT_EQ(SelectedCert(), "cert-1");
}

TEST_F(SelectionTest, AServiceThatCannotStartEndsTheSearchWithItsCodeAndTheModeSet) {
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    EXPECT_EQ(Select("02CD", "bm9uZQ==", 2), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_EQ(GetEsealMode(), 2);
}

TEST_F(SelectionTest, TheOnlineSourceTakesTheSealAndLeavesTheCertificate) {
    AddTwoKeys();
    SetCurrentCertID("cert-1");
    m_prefix.SetNumber("bSealPosition", 1);
    fakes::ClearCalls();
    EXPECT_EQ(Select("02CD", Base64Encode("online seal"), 1), 0);
    EXPECT_EQ(SelectedSeal(), "online seal");
    EXPECT_EQ(GetEsealMode(), 1);
    EXPECT_FALSE(Called("SOF_GetUserList"));
    EXPECT_EQ(SelectedCert(), "cert-1");
}

TEST_F(SelectionTest, ANegativeLengthOfTheSealIsTheStringTypesFailureWithTheModeSet) {
    const std::string seal = "c2VhbA==";
    for (const unsigned int position : {0U, 1U}) {
        m_prefix.SetNumber("bSealPosition", position);
        const int mode = static_cast<int>(position) + 1;
        EXPECT_EQ(StringFailureOf([&] { SetCertSeal(Bytes(seal), 8, Bytes(seal), -1, mode); }),
                  StringFailure::kInvalidArgument);
        EXPECT_EQ(GetEsealMode(), mode);
        EXPECT_EQ(SelectedSeal(), "");
    }
}

TEST_F(SelectionTest, PositionFourSearchesTheKeys) {
    AddTwoKeys();
    m_prefix.SetNumber("bSealPosition", 4);
    EXPECT_EQ(Select("02CD", NationalBase64(), 1), 0);
    EXPECT_EQ(SelectedSeal(), "national seal");
}

TEST_F(SelectionTest, TheSameSerialTwiceIsSearchedToTheEnd) {
    fakes::AddCertificate("one", "cert-1").serial = "02CD";
    fakes::AddCertificate("two", "cert-2").serial = "02CD";
    fakes::AddFile("cert-2", "GBESEAL01", "national seal");
    fakes::AddNationalSeal("national seal", "name", "picture");
    EXPECT_EQ(Select("02CD", NationalBase64(), 1), 0);
    EXPECT_EQ(SelectedCert(), "cert-2");
}

TEST_F(SelectionTest, ASearchLeavesThePictureSizeAndTheCachedPicture) {
    AddEsKey("old picture");
    ASSERT_EQ(Query(), 0);
    fakes::ResetWorld();
    AddTwoKeys();
    ASSERT_EQ(Select("02CD", NationalBase64(), 1), 0);
    int width = 0;
    int height = 0;
    GetSealPicSize(&width, &height);
    EXPECT_EQ(width, -1);
    EXPECT_EQ(height, -1);
    EXPECT_EQ(Fetch(11), "old picture");
}

TEST_F(SelectionTest, AContentCertificateIsSelectedWithModeZero) {
    AddGbKey();
    ASSERT_EQ(Query(), 0);
    fakes::ClearCalls();
    ForgetLog();
    EXPECT_EQ(SelectForContent("cert-1"), 0);
    EXPECT_EQ(GetEsealMode(), 0);
    EXPECT_EQ(SelectedSeal(), "national seal");
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
    EXPECT_THAT(Log(), ElementsAre("6 SetContentSignCertId pCertId is cert-1"));
}

TEST_F(SelectionTest, AContentCertificateCutsAnOlderSealAtItsZeroByte) {
    m_prefix.SetNumber("bSealPosition", 1);
    ASSERT_EQ(Select("any", Base64Encode(std::string("ab\0c", 4)), 2), 0);
    EXPECT_EQ(SelectForContent("cert-1"), 0);
    EXPECT_EQ(SelectedSeal(), "ab");
}

TEST_F(SelectionTest, AContentCertificateKeepsItsZeroBytesUntilTheNextSelectionIsCut) {
    EXPECT_EQ(SelectForContent(std::string("cert\0-1", 7)), 0);
    int length = 0;
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(length, 7);
    m_prefix.SetNumber("bSealPosition", 3);
    EXPECT_EQ(Select("any", "bm9uZQ==", 1), 0);
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(length, 4);
}

TEST_F(SelectionTest, ANullContentCertificateWithALengthIsTheStringTypesFailure) {
    fakes::AddCertificate("label", "cert-1");
    SetCurrentCertID("cert-1");
    EXPECT_EQ(StringFailureOf([] { SetContentSignCertId(nullptr, 5); }),
              StringFailure::kInvalidArgument);
    EXPECT_EQ(SelectedCert(), "cert-1");
    EXPECT_EQ(SetContentSignCertId(nullptr, 0), 0);
    EXPECT_EQ(SelectedCert(), "");
}

TEST_F(SelectionTest, ANullCurrentCertificateEmptiesTheSelectionAndLeavesTheSeal) {
    AddGbKey();
    ASSERT_EQ(Query(), 0);
    SetCurrentCertID(nullptr);
    EXPECT_EQ(SelectedCert(), "");
    EXPECT_EQ(SelectedSeal(), "national seal");
    EXPECT_EQ(GetEsealMode(), 2);
}

TEST_F(SelectionTest, ASelectedCertificateIsCheckedBeforeItIsHandedOut) {
    fakes::AddCertificate("label", "cert-1");
    SetCurrentCertID("cert-1");
    fakes::On("SOF_ExportUserCert").Returns(fakes::kUnknownCertificate);
    unsigned char buffer[8] = "xxxxxxx";
    int length = 6;
    EXPECT_EQ(GetSelectedCertId(buffer, &length), TESMARK_CERT_EXPORT_FAILED);
    EXPECT_EQ(length, 6);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "xxxxxxx");
}

TEST_F(SelectionTest, AKeyTypeThatFillsItsWholeBufferStaysWithinTheCheck) {
    fakes::AddCertificate("label", "cert-1").keyType = std::string(260, 'x');
    SetCurrentCertID("cert-1");
    unsigned char buffer[7] = "xxxxxx";
    int length = 6;
    EXPECT_EQ(GetSelectedCertId(buffer, &length), 0);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "cert-1");
}

TEST_F(SelectionTest, ThePulledKeyDoesNotStopTheQuestionForTheSize) {
    SetCurrentCertID("cert-1");
    fakes::On("SOF_ExportUserCert").Returns(fakes::kUnknownCertificate);
    int length = 0;
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(length, 6);
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(SelectionTest, AnEmptySelectionTouchesNothing) {
    unsigned char buffer[4] = "xxx";
    int length = 3;
    EXPECT_EQ(GetSelectedCertId(buffer, &length), 0);
    EXPECT_EQ(GetSelectedSeal(buffer, &length), 0);
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(GetSelectedSeal(nullptr, &length), 0);
    EXPECT_EQ(length, 3);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "xxx");
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(SelectionTest, MoreBytesThanTheSealHasComeBackAsZero) {
    AddGbKey();
    ASSERT_EQ(Query(), 0);
    std::string seal(15, '?');
    int length = 15;
    ASSERT_EQ(GetSelectedSeal(reinterpret_cast<unsigned char*>(seal.data()), &length), 0);
    EXPECT_EQ(seal, std::string("national seal\0\0", 15));
    EXPECT_EQ(length, 15);
}

}  // namespace
