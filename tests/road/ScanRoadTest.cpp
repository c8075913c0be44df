// A stamp by a scan with a phone: the library, the open service with its phone, the open seal
// library.

#include <filesystem>

#include "components/certservice/ScanDevice.h"
#include "foundation/Text.h"
#include "library/bridge/ExportCalls.h"
#include "platform/closed/SealLibrary.h"
#include "road/PhoneRoad.h"

namespace {

constexpr char kData[] = "the bytes of the document";

using ScanRoadTest = PhoneRoad;

TEST_F(ScanRoadTest, OneSealOfTheNationalFormIsSelectedWithItsPictureAndNoDialog) {
    MakePhone(KeyKind::kSm2);
    BringGmSeal();
    const Handed picture = Picture();
    ASSERT_EQ(picture.code, 0);
    EXPECT_EQ(picture.bytes, SealPicture());
    EXPECT_EQ(GetEsealMode(), 1);
    EXPECT_EQ(Selected(), kScanCertId);
    int width = 0;
    int height = 0;
    EXPECT_EQ(GetSealPicSize(&width, &height), 0);
    EXPECT_EQ(width, 40);
    EXPECT_EQ(height, 30);
}

TEST_F(ScanRoadTest, ASealSignatureByThePhoneIsAccepted) {
    MakePhone(KeyKind::kSm2);
    BringGmSeal();
    ASSERT_EQ(Picture().code, 0);
    const Handed signature = SignP7(kData);
    ASSERT_EQ(signature.code, 0);
    std::string text = Base64Encode(kData);
    EXPECT_EQ(TVK_Verify_SES_Sign(AsBytes(signature.bytes), AsLength(signature.bytes),
                                  AsBytes(text), AsLength(text)),
              0);
    text = Base64Encode("other bytes");
    EXPECT_NE(TVK_Verify_SES_Sign(AsBytes(signature.bytes), AsLength(signature.bytes),
                                  AsBytes(text), AsLength(text)),
              0);
}

TEST_F(ScanRoadTest, AnEsSealAndABarePictureGiveMessagesThatOpenSslAccepts) {
    MakePhone(KeyKind::kRsa);
    const std::string path = WriteFile("document.pdf", kData);
    for (const bool bare : {false, true}) {
        Bring("HLVQSEAL1", bare ? SealPicture() : "");
        Bring("ESEAL1", MadeEsSeal());
        const std::string files = KeyPath("DevKeys/.scan/zhang") + "/files/";
        std::filesystem::remove(files + (bare ? "ESEAL1" : "HLVQSEAL1"));
        const Handed picture = Picture();
        ASSERT_EQ(picture.code, 0);
        EXPECT_EQ(picture.bytes, SealPicture());
        EXPECT_EQ(GetEsealMode(), 0);
        const Handed message = SignP7(kData);
        ASSERT_EQ(message.code, 0);
        EXPECT_TRUE(CmsAccepts(message.bytes, path));
        ClearSelectKeyID();
    }
}

TEST_F(ScanRoadTest, ThePictureIsFetchedWithoutAnotherScan) {
    MakePhone(KeyKind::kSm2);
    BringGmSeal();
    int length = 0;
    ASSERT_EQ(GetSealInfo(nullptr, &length), 0);
    SetAnswer(ScanAnswer::kRefuse);
    std::string picture(static_cast<std::size_t>(length), '\0');
    auto* const out = reinterpret_cast<unsigned char*>(picture.data());
    EXPECT_EQ(GetSealInfo(out, &length), 0);
    EXPECT_EQ(picture, SealPicture());
    EXPECT_EQ(SignP7(kData).code, 0);
    EXPECT_EQ(GetSealInfo(nullptr, &length), -3050) << "a second selection scans again";
}

TEST_F(ScanRoadTest, APhoneThatRefusesOrDoesntAnswerIsAFailedLogin) {
    MakePhone(KeyKind::kSm2);
    BringGmSeal();
    for (const ScanAnswer answer : {ScanAnswer::kRefuse, ScanAnswer::kSilent}) {
        SetAnswer(answer);
        EXPECT_EQ(Picture().code, -3050);
        EXPECT_EQ(PZMLogin(), -3050);
        EXPECT_EQ(Selected(), "");
        EXPECT_EQ(Files(), "");
    }
}

TEST_F(ScanRoadTest, AWrongRequestIsRefusedAndAScanFollowsAllTheSame) {
    MakePhone(KeyKind::kSm2);
    BringGmSeal();
    ASSERT_EQ(InitKVLLib(), 0);
    for (const std::string& pin :
         {std::string(kRoadPin), std::string(), Base64Encode("{}"),
          Base64Encode(R"({"appid":"","cardid":"","cardimage":"","cardname":"",)"
                       R"("showselectcertwnd":"0","type":"1"})")}) {
        EXPECT_EQ(LoginIn(kScanCertId, pin.c_str()), -3050) << pin;
        EXPECT_EQ(Files(), "");
    }
    EXPECT_EQ(Picture().bytes, SealPicture());
}

TEST_F(ScanRoadTest, APhoneWithoutFilesAndOneWithoutASealAreToldApart) {
    MakePhone(KeyKind::kSm2);
    EXPECT_EQ(Picture().code, -3046);
    Bring("readme.txt", "no seal");
    EXPECT_EQ(Picture().code, -3054);
    Bring("GBESEAL1", "no ES file");
    EXPECT_EQ(Picture().code, -3);
}

TEST_F(ScanRoadTest, ALoginBringsTheFilesAndALogoutTakesThemAndTheSelection) {
    MakePhone(KeyKind::kSm2);
    BringGmSeal();
    ASSERT_EQ(PZMLogin(), 0);
    EXPECT_EQ(Selected(), "");
    EXPECT_EQ(Files(), "SEAL01&&&");
    ASSERT_EQ(Picture().code, 0);
    EXPECT_EQ(Logout(), 0);
    EXPECT_EQ(Selected(), "");
    EXPECT_EQ(Files(), "");
}

TEST_F(ScanRoadTest, EveryApplicationIdGoesOutInARequestThatIsTaken) {
    MakePhone(KeyKind::kSm2);
    for (const std::string& id :
         {std::string("app"), std::string("应用"), std::string("\"\\/"),
          std::string("\x01\x1F\n\t"), std::string("\xFF\xFE\x80"), std::string(5000, 'x')}) {
        ASSERT_EQ(SetAppId(AsBytes(id), AsLength(id)), 0);
        EXPECT_EQ(PZMLogin(), 0) << id;
    }
}

TEST_F(ScanRoadTest, ThePhonesCertificateIsPresentAfterAScanOfItsOwn) {
    MakePhone(KeyKind::kSm2);
    const std::string text = Base64Encode(Certificate());
    const auto isThere = [&] { return CheckIsCertExist(AsBytes(text), AsLength(text)); };
    SetAnswer(ScanAnswer::kRefuse);
    EXPECT_EQ(isThere(), -3050);
    SetAnswer(ScanAnswer::kAccept);
    EXPECT_EQ(isThere(), 0);
    EXPECT_EQ(Selected(), kScanCertId);
    SetAnswer(ScanAnswer::kRefuse);
    EXPECT_EQ(isThere(), 0) << "it is in use already";
    SetCurrentCertID("DevKeys/other");
    EXPECT_EQ(isThere(), -3053);
}

TEST_F(ScanRoadTest, TheTypeOfThePhonesKeyIsHadByAScan) {
    MakePhone(KeyKind::kSm2);
    char type[260] = {};
    ASSERT_EQ(GetCertType(type), 0);
    EXPECT_STREQ(type, "SM2");
    EXPECT_EQ(Selected(), kScanCertId);
    // An SM2 signature may be longer than the one before: the size asked for first is no measure.
    unsigned char signature[256];
    int length = sizeof signature;
    const std::string data = kData;
    EXPECT_EQ(P1SignData(AsBytes(data), AsLength(data), signature, &length), 0);
}

}  // namespace
