#include "session/ScanSeals.h"

#include "ScanTest.h"
#include "SweptCall.h"
#include "session/ScanFiles.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int kFailure = 77;

// The reading of the device behind the login.
class ScanSealsTest : public ScanTest {
protected:
    ScanSealsTest() {
        AddNationalSeal();
        EnsureServiceReady();
        fakes::ClearCalls();
        ForgetLog();
    }
    static void Add(const std::string& name, const std::string& content) {
        fakes::AddFile(kScanCert, name, content);
    }
    int Read() { return GetPZMSealPic(kScanCert, m_picture); }
    // A reading that ends in `code` with nothing selected, nothing kept and no dialog.
    void ExpectNothingRead(int code) {
        EXPECT_EQ(Read(), code);
        EXPECT_EQ(m_picture, "");
        EXPECT_TRUE(g_currentCertId.Empty());
        EXPECT_TRUE(g_pzmSealItems.empty());
    }

    std::string m_picture;
};

TEST_F(ScanSealsTest, AListThatCannotBeMeasuredIsReturnedAsTheServiceTellsIt) {
    fakes::On("EnumFilesInDevice").ReturnsAt(1, kFailure);
    ExpectNothingRead(kFailure);
    EXPECT_THAT(Failures(), ElementsAre("EnumFilesInKey1 error:77"));
}

TEST_F(ScanSealsTest, AListThatCannotBeReadIsReturnedAsTheServiceTellsIt) {
    fakes::On("EnumFilesInDevice").ReturnsAt(2, kFailure);
    ExpectNothingRead(kFailure);
    EXPECT_THAT(Failures(), ElementsAre("EnumFilesInKey2 error:77"));
}

TEST_F(ScanSealsTest, AServiceThatIsNotUpAnyMoreIsToldByTheList) {
    KVLUnInitialize(g_appOpt);
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    ExpectNothingRead(TESMARK_SERVICE_FAILED);
    EXPECT_EQ(Failures().back(), "EnumFilesInKey1 error:-3022");
    EXPECT_FALSE(Called("EnumFilesInDevice"));
}

TEST_F(ScanSealsTest, AListOfImpossibleSizeIsMemoryThatCannotBeHad) {
    fakes::On("EnumFilesInDevice").ReportsSizeAt(1, -5);
    ExpectNothingRead(TESMARK_NO_MEMORY);
    EXPECT_THAT(Failures(), ElementsAre("EnumFilesInKey2 error:-3015"));
}

TEST_F(ScanSealsTest, ADeviceWithoutAnyRecordHasItsOwnCode) {
    for (const char* list : {"", "ESEAL01", "&&"}) {
        fakes::On("EnumFilesInDevice").Gives(list);
        ExpectNothingRead(TESMARK_NO_SCANNED_FILE);
    }
    EXPECT_THAT(Log(4), ElementsAre("4 praseEnumPZMFiles error", "4 praseEnumPZMFiles error",
                                    "4 praseEnumPZMFiles error"));
}

TEST_F(ScanSealsTest, FilesThatAreNoSealsGiveNoneWithoutAnErrorOfTheirOwn) {
    Add("readme", "text");
    ExpectNothingRead(TESMARK_NO_SCANNED_SEAL);
    EXPECT_THAT(Failures(), ElementsAre("GetPZMEsealList error : 0"));
    EXPECT_FALSE(Called("SOF_ReadFile"));
}

TEST_F(ScanSealsTest, TextBehindTheLastEndOfTheFileListIsDropped) {
    Add("HLVQSEAL01", "first");
    Add("HLVQSEAL02", "second");
    fakes::On("EnumFilesInDevice").Gives("HLVQSEAL01&&&HLVQSEAL02");
    EXPECT_EQ(Read(), 0);
    EXPECT_EQ(m_picture, "first");
}

TEST_F(ScanSealsTest, TheFilterKeepsTheThreeKindsOfNamesInTheirOrder) {
    std::vector<std::string> files;
    EXPECT_EQ(praseEnumPZMFiles("ESEAL&&&x&&&aSEAL01b&&&&&&HLVQSEAL7&&&eseal&&&SEAL02&&&GBESEAL&&&",
                                files),
              1);
    EXPECT_THAT(files, ElementsAre("ESEAL", "aSEAL01b", "HLVQSEAL7", "GBESEAL"));
    std::vector<std::string> none;
    EXPECT_EQ(praseEnumPZMFiles("x&&&", none), 1);
    EXPECT_EQ(praseEnumPZMFiles("", none), 0);
    EXPECT_EQ(praseEnumPZMFiles("HLVQSEAL", none), 0);
    EXPECT_THAT(none, IsEmpty());
}

TEST_F(ScanSealsTest, ANameWithGbesealPassesTheFilterAndFailsUnlessTheFileStartsWithEs) {
    Add("GBESEAL01", "national seal");
    ExpectNothingRead(TESMARK_NOT_AN_ES_FILE);
    EXPECT_THAT(Failures(), ElementsAre("GetPZMEsealList error : -3"));
    fakes::ResetWorld();
    AddScanEntry();
    Add("GBESEAL01", fakes::EsSeal("picture"));
    EXPECT_EQ(Read(), 0);
    EXPECT_EQ(m_picture, "picture");
    EXPECT_EQ(g_esealMode, 0);
}

TEST_F(ScanSealsTest, AFileThatIsNoOldSealEndsTheReadingWithTheListAsFarAsItGot) {
    Add("HLVQSEAL", "picture");
    Add("ESEAL01", "XX");
    Add("HLVQSEAL02", "other");
    EXPECT_EQ(Read(), TESMARK_NOT_AN_ES_FILE);
    EXPECT_EQ(m_picture, "picture");
    EXPECT_EQ(g_currentCertId.Text(), kScanCert);
    EXPECT_EQ(fakes::CountCalls("SOF_ReadFile"), 4);
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(ScanSealsTest, AnOldSealThatEndsBeforeItsPictureIsNone) {
    std::string file = fakes::EsSeal("picture");
    for (const std::size_t size : {std::size_t{2}, std::size_t{327}, file.size() - 1}) {
        fakes::ResetWorld();
        AddScanEntry();
        Add("ESEAL01", file.substr(0, size));
        ExpectNothingRead(TESMARK_NOT_AN_ES_FILE);
    }
}

TEST_F(ScanSealsTest, TheFirstPartThatANameHoldsDecidesHowItIsRead) {
    Add("SEAL01-ESEAL", fakes::EsSeal("es picture"));
    Add("SEAL01-HLVQSEAL", "national seal");
    Add("SEAL01", "national seal");
    EXPECT_EQ(GetPZMEsealList({"SEAL01-ESEAL", "SEAL01-HLVQSEAL", "SEAL01"}, kScanCert), 0);
    ASSERT_EQ(g_pzmSealItems.size(), 3u);
    EXPECT_STREQ(reinterpret_cast<char*>(g_pzmSealItems[0].picData), "es picture");
    EXPECT_STREQ(reinterpret_cast<char*>(g_pzmSealItems[1].picData), "national seal");
    EXPECT_STREQ(reinterpret_cast<char*>(g_pzmSealItems[2].picData), "national picture");
    EXPECT_EQ(g_pzmSealItems[1].sealData, nullptr);
    EXPECT_EQ(g_pzmSealItems[1].type, 0);
    EXPECT_EQ(g_pzmSealItems[2].type, 1);
}

TEST_F(ScanSealsTest, TheStatusOfTheLastFileIsTheResultThoughASealWasFound) {
    Add("HLVQSEAL01", "picture");
    Add("HLVQSEAL02", "other");
    fakes::On("SOF_ReadFile").ReturnsAt(3, kFailure);
    EXPECT_EQ(Read(), -1);
    EXPECT_EQ(m_picture, "picture");
    EXPECT_THAT(Failures(), ElementsAre("[ReadKeyFile]SOF_ReadFile: error:77"));
    fakes::ClearCalls();
    fakes::On("SOF_ReadFile") = {};
    fakes::On("SOF_ReadFile").ReturnsAt(4, kFailure);
    EXPECT_EQ(Read(), -2);
    EXPECT_EQ(m_picture, "picture");
}

TEST_F(ScanSealsTest, AFailureOfAnEarlierFileIsForgottenWithTheNextOne) {
    Add("HLVQSEAL01", "other");
    Add("HLVQSEAL02", "picture");
    fakes::On("SOF_ReadFile").ReturnsAt(1, kFailure);
    EXPECT_EQ(Read(), 0);
    EXPECT_EQ(m_picture, "picture");
}

TEST_F(ScanSealsTest, TheOnlyFileThatCannotBeReadGivesNothing) {
    Add("HLVQSEAL", "picture");
    fakes::On("SOF_ReadFile").ReturnsAt(1, kFailure);
    ExpectNothingRead(-1);
    EXPECT_EQ(Failures().back(), "GetPZMEsealList error : -1");
    fakes::ClearCalls();
    fakes::On("SOF_ReadFile") = {};
    fakes::On("SOF_ReadFile").ReturnsAt(2, kFailure);
    ExpectNothingRead(TESMARK_SCANNED_SEAL_UNREAD);
    fakes::ClearCalls();
    fakes::On("SOF_ReadFile") = {};
    fakes::On("SOF_ReadFile").ReportsSizeAt(1, -1);
    ExpectNothingRead(TESMARK_SCANNED_SEAL_UNREAD);
}

TEST_F(ScanSealsTest, ANationalSealWhosePictureCannotBeMeasuredIsSkippedWithTheStatusZero) {
    Add("SEAL01", "national seal");
    fakes::On("TVK_Get_Pic_From_Eseal_Ex").ReturnsAt(1, kFailure);
    ExpectNothingRead(TESMARK_NO_SCANNED_SEAL);
    EXPECT_THAT(Failures(), ElementsAre("TVK_Get_Pic_From_Eseal error:77", "PraseEseal error:77",
                                        "GetPZMEsealList error : 0"));
}

TEST_F(ScanSealsTest, ANationalSealWhosePictureCannotBeReadIsSkippedWithItsCode) {
    Add("SEAL01", "national seal");
    fakes::On("TVK_Get_Pic_From_Eseal_Ex").ReturnsAt(3, kFailure);
    ExpectNothingRead(kFailure);
    EXPECT_THAT(Failures(),
                ElementsAre("TVK_Get_Pic_From_Eseal error:77", "GetPZMEsealList error : 77"));
}

TEST_F(ScanSealsTest, ANationalSealWithAnEmptyPictureIsSelectedWithItsFile) {
    fakes::AddNationalSeal("bare seal", "name", "");
    Add("SEAL01", "bare seal");
    EXPECT_EQ(Read(), 0);
    EXPECT_EQ(m_picture, "");
    EXPECT_EQ(g_selectedSeal.View(), "bare seal");
}

TEST_F(ScanSealsTest, ADialogKeepsTheStatusOfTheLastFile) {
    Add("HLVQSEAL01", "first");
    Add("HLVQSEAL02", "second");
    Add("SEAL01", "no seal");
    fakes::On("SOF_ReadFile").ReturnsAt(6, kFailure);
    UserPicks(1);
    EXPECT_EQ(Read(), -2);
    EXPECT_EQ(m_picture, "second");
}

TEST_F(ScanSealsTest, TheDialogBeginsWithoutAPickedPicture) {
    g_pzmDialogPick = "of an earlier scan";
    Add("HLVQSEAL01", "first");
    Add("HLVQSEAL02", "second");
    UserConfirms();
    EXPECT_EQ(Read(), 0);
    EXPECT_EQ(m_picture, "");
}

TEST_F(ScanSealsTest, ScopesOfTheirOwnNamesStandInTheLog) {
    Add("HLVQSEAL", "picture");
    ASSERT_EQ(Read(), 0);
    std::vector<std::string> scopes = Log();
    std::erase_if(scopes, [](const std::string& text) {
        return !text.starts_with("8 [") || text.find(" start]") == std::string::npos;
    });
    EXPECT_THAT(scopes, ElementsAre("8 [GetPZMSealPic start]", "8 [praseEnumPZMFiles start]",
                                    "8 [GetPZMEsealList start]"));
}

// One call behind the login, and what comes of its failure for a device with one national seal.
struct Step : SweptCall {
    int result;
    const char* failures;  // in the log, one after the other
};

constexpr char kPictureUnmeasured[] =
    "TVK_Get_Pic_From_Eseal error:77; PraseEseal error:77; GetPZMEsealList error : 0; ";
constexpr char kNameUnmeasured[] =
    "TVK_Get_SealName_From_Eseal error:77; PraseEseal error:77; GetPZMEsealList error : 0; ";
constexpr char kPictureUnread[] = "TVK_Get_Pic_From_Eseal error:77; GetPZMEsealList error : 77; ";
constexpr char kNameUnread[] = "TVK_Get_SealName_From_Eseal error:77; GetPZMEsealList error : 77; ";

constexpr Step kSteps[] = {
    {"EnumFilesInDevice", 1, kFailure, "EnumFilesInKey1 error:77; "},
    {"EnumFilesInDevice", 2, kFailure, "EnumFilesInKey2 error:77; "},
    {"SOF_ReadFile", 1, -1, "[ReadKeyFile]SOF_ReadFile: error:77; GetPZMEsealList error : -1; "},
    {"SOF_ReadFile", 2, -2, "[ReadKeyFile]SOF_ReadFile: error:77; GetPZMEsealList error : -2; "},
    {"TVK_Get_Pic_From_Eseal_Ex", 1, TESMARK_NO_SCANNED_SEAL, kPictureUnmeasured},
    {"TVK_Get_Pic_From_Eseal_Ex", 2, TESMARK_NO_SCANNED_SEAL, kPictureUnmeasured},
    {"TVK_Get_SealName_From_Eseal", 2, TESMARK_NO_SCANNED_SEAL, kNameUnmeasured},
    {"TVK_Get_Pic_From_Eseal_Ex", 3, kFailure, kPictureUnread},
    {"TVK_Get_Pic_From_Eseal_Ex", 4, kFailure, kPictureUnread},
    {"TVK_Get_SealName_From_Eseal", 4, kFailure, kNameUnread},
};

class ScanFailureSweepTest : public ScanSealsTest, public testing::WithParamInterface<Step> {};

TEST_P(ScanFailureSweepTest, AFailedCallSelectsNothingAndTheNextScanWorks) {
    const Step& step = GetParam();
    Add("SEAL01", "national seal");
    fakes::On(step.function).ReturnsAt(step.number, kFailure);
    ExpectNothingRead(step.result);
    std::string failures;
    for (const std::string& failure : Failures()) failures += failure + "; ";
    EXPECT_EQ(failures, step.failures);
    EXPECT_TRUE(g_selectedSeal.Empty());
    EXPECT_GE(fakes::CountCalls(step.function), step.number);
    fakes::ClearCalls();
    fakes::On(step.function) = {};
    EXPECT_EQ(Read(), 0);
    EXPECT_EQ(m_picture, "national picture");
}

INSTANTIATE_TEST_SUITE_P(EachCall, ScanFailureSweepTest, testing::ValuesIn(kSteps));

TEST_F(ScanSealsTest, EveryCallBehindTheLoginIsOneOfTheSweep) {
    Add("SEAL01", "national seal");
    ASSERT_EQ(Read(), 0);
    for (const fakes::Call& call : fakes::Calls()) {
        const bool swept = IsSwept(kSteps, call);
        // The size query of a name doesn't count, whatever it says.
        const bool ignored = call.function == "TVK_Get_SealName_From_Eseal" && call.query;
        EXPECT_TRUE(swept || ignored) << call.text;
    }
}

}  // namespace
