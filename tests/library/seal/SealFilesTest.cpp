#include "EnumerationTest.h"
#include "foundation/Text.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string_view Data(const unsigned char* bytes, int length) {
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)};
}

class SealFilesTest : public EnumerationTest {
protected:
    SealFilesTest() { fakes::AddCertificate("label", "cert-1"); }

    static void AddNational(const std::string& fileName, const std::string& content) {
        fakes::AddFile("cert-1", fileName, content);
        fakes::AddNationalSeal(content, "name of " + content, "picture of " + content);
    }

    const SealRecord& OnlySeal() {
        static const SealRecord none;
        EXPECT_EQ(m_list.GetCertAndPic(), 0);
        EXPECT_EQ(m_list.m_certs.at(0).seals.size(), 1u);
        return m_list.m_certs[0].seals.empty() ? none : m_list.m_certs[0].seals[0];
    }
};

TEST_F(SealFilesTest, AnOldFileIsARecordOfTypeZero) {
    const std::string file = fakes::EsSeal("picture", "name");
    fakes::AddFile("cert-1", "ESEAL01", file);
    const SealRecord& seal = OnlySeal();
    EXPECT_EQ(seal.type, SealTypeDefault);
    EXPECT_EQ(seal.name, "name");
    EXPECT_EQ(Data(seal.sealData, seal.sealDataLen), file);
    EXPECT_EQ(Data(seal.picData, seal.picLen), "picture");
    EXPECT_EQ(seal.sealData[seal.sealDataLen], 0);
    EXPECT_EQ(seal.picData[seal.picLen], 0);
    EXPECT_EQ(seal.picWidth, -1);
    EXPECT_EQ(seal.picHeight, -1);
}

TEST_F(SealFilesTest, AnOldFileWithoutANameIsListedAsSeal) {
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("picture", ""));
    EXPECT_EQ(OnlySeal().name, "印章");
}

TEST_F(SealFilesTest, AnOldFileWithAPictureOfLengthZeroIsASealWithAnEmptyPicture) {
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal(""));
    EXPECT_EQ(OnlySeal().picLen, 0);
}

TEST_F(SealFilesTest, ANationalFileIsARecordWithItsSize) {
    AddNational("SEAL01", "gm");
    const SealRecord& seal = OnlySeal();
    EXPECT_EQ(seal.type, SealTypeGM);
    EXPECT_EQ(seal.name, "name of gm(国密)");
    EXPECT_EQ(Data(seal.picData, seal.picLen), "picture of gm");
    EXPECT_EQ(seal.picWidth, 40);
    EXPECT_EQ(seal.picHeight, 40);
}

TEST_F(SealFilesTest, ABarePictureIsNamedAfterItsFile) {
    fakes::AddFile("cert-1", "HLVQSEAL.gif", "picture");
    const SealRecord& seal = OnlySeal();
    EXPECT_EQ(seal.type, SealTypeHLVQ);
    EXPECT_EQ(seal.name, "HLVQSEAL.gif");
    EXPECT_EQ(Data(seal.sealData, seal.sealDataLen), "picture");
    EXPECT_EQ(Data(seal.picData, seal.picLen), "picture");
    EXPECT_NE(seal.picData, seal.sealData);
    EXPECT_EQ(seal.picWidth, -1);
}

TEST_F(SealFilesTest, SealsStandInTheOrderOfTheFilesLessThoseThatCannotBeRead) {
    AddNational("SEAL01", "z");
    fakes::AddFile("cert-1", "ESEAL01", "no old file");
    fakes::AddFile("cert-1", "HLVQSEAL", "picture");
    AddNational("GBESEAL", "a");
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Seals(), ElementsAre("name of z(国密)", "HLVQSEAL", "name of a(国办)"));
}

TEST_F(SealFilesTest, TwoSealsOfTheSameNameBothStandInTheList) {
    AddNational("SEAL01", "a");
    AddNational("SEAL012", "a");
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Seals(), ElementsAre("name of a(国密)", "name of a(国密)"));
}

TEST_F(SealFilesTest, ANameOfTheOfficeFormatWinsOverTheOthers) {
    AddNational("SEAL01GBESEAL", "a");
    EXPECT_EQ(OnlySeal().name, "name of a(国办)");
}

TEST_F(SealFilesTest, ANameOfTheOldFormatWinsOverTheNationalOne) {
    fakes::AddFile("cert-1", "SEAL01ESEAL", fakes::EsSeal("picture", "name"));
    EXPECT_EQ(OnlySeal().type, SealTypeDefault);
    EXPECT_EQ(fakes::CountCalls("TVK_Get_Pic_From_Eseal_Ex"), 0);
}

TEST_F(SealFilesTest, AnOldNameWithoutTheMagicGivesNoSealAndNoLine) {
    fakes::AddFile("cert-1", "ESEAL01", "SE is no old file");
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Seals(), IsEmpty());
    EXPECT_THAT(Failures(), IsEmpty());
    EXPECT_EQ(m_list.GetEsealList({"ESEAL01"}, 0, "cert-1"), TESMARK_SEAL_FORMAT);
}

TEST_F(SealFilesTest, ATruncatedOldFileGivesNoSeal) {
    const std::string file = fakes::EsSeal("picture");
    fakes::AddFile("cert-1", "ESEAL01", file.substr(0, file.size() - 1));
    fakes::AddFile("cert-1", "ESEAL02", file.substr(0, 20));
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Seals(), IsEmpty());
    EXPECT_EQ(m_list.GetEsealList({"ESEAL01"}, 0, "cert-1"), TESMARK_SEAL_FORMAT);
    EXPECT_EQ(m_list.GetEsealList({"ESEAL02"}, 0, "cert-1"), TESMARK_SEAL_FORMAT);
}

TEST_F(SealFilesTest, AnEncodedNameIsReadAsTheOldFormatAndNotDecoded) {
    const std::string encoded = Base64Encode("national");
    fakes::AddFile("cert-1", "SSESEAL", encoded);
    fakes::AddNationalSeal("national", "name", "picture");
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Seals(), IsEmpty());
    EXPECT_EQ(fakes::CountCalls("TVK_Get_Pic_From_Eseal_Ex"), 0);
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(SealFilesTest, AFileOfAnyOtherNameIsKeptWithoutAPicture) {
    fakes::AddFile("cert-1", "other.dat", "content");
    ASSERT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_EQ(m_list.GetEsealList({"other.dat"}, 0, "cert-1"), 0);
    ASSERT_THAT(Seals(), ElementsAre(""));
    const SealRecord& seal = m_list.m_certs[0].seals[0];
    EXPECT_EQ(seal.type, 0);
    EXPECT_EQ(Data(seal.sealData, seal.sealDataLen), "content");
    EXPECT_EQ(seal.picData, nullptr);
    EXPECT_EQ(seal.picLen, 0);
    EXPECT_EQ(seal.picWidth, 0);
}

TEST_F(SealFilesTest, AFileThatTheSealLibraryRefusesIsOfferedToNoOtherReader) {
    fakes::AddFile("cert-1", "GBESEAL", fakes::EsSeal("picture"));
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Seals(), IsEmpty());
    EXPECT_THAT(Failures(),
                ElementsAre("TVK_Get_Pic_From_Eseal error:" + std::to_string(fakes::kUnknownSeal)));
}

TEST_F(SealFilesTest, ASealWithoutAReadableNameIsLeftOut) {
    AddNational("SEAL01", "a");
    fakes::On("TVK_Get_SealName_From_Eseal").Returns(6);
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Seals(), IsEmpty());
    EXPECT_THAT(Failures(), ElementsAre("TVK_Get_SealName_From_Eseal error:6"));
}

TEST_F(SealFilesTest, ASealThatFailsAtItsSecondReadingIsLeftOut) {
    AddNational("SEAL01", "a");
    fakes::On("TVK_Get_Pic_From_Eseal_Ex").ReturnsAt(3, 6);
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Seals(), IsEmpty());
}

TEST_F(SealFilesTest, AFileThatCannotBeReadIsSkipped) {
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("picture", "one"));
    fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("picture", "two"));
    fakes::AddFile("cert-1", "ESEAL03", fakes::EsSeal("picture", "three"));
    fakes::On("SOF_ReadFile").ReturnsAt(1, 31).ReturnsAt(3, 32);
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Seals(), ElementsAre("three"));
    EXPECT_THAT(Failures(), ElementsAre("[ReadKeyFile]SOF_ReadFile: error:31",
                                        "[ReadKeyFile]SOF_ReadFile: error:32"));
}

TEST_F(SealFilesTest, TheResultIsThatOfTheLastFile) {
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("picture"));
    fakes::AddFile("cert-1", "ESEAL02", "no old file");
    ASSERT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_EQ(m_list.GetEsealList({"ESEAL02", "ESEAL01"}, 0, "cert-1"), 0);
    EXPECT_EQ(m_list.GetEsealList({"ESEAL01", "ESEAL02"}, 0, "cert-1"), TESMARK_SEAL_FORMAT);
    EXPECT_EQ(m_list.GetEsealList({"missing"}, 0, "cert-1"), TESMARK_KEY_FILE_FAILED);
    EXPECT_EQ(m_list.GetEsealList({}, 0, "cert-1"), 0);
}

TEST_F(SealFilesTest, AFileOfANegativeSizeIsSkipped) {
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("picture"));
    fakes::On("SOF_ReadFile").ReportsSizeAt(1, -2);
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Seals(), IsEmpty());
}

TEST_F(SealFilesTest, AnEmptyFileIsABarePictureOfLengthZero) {
    fakes::AddFile("cert-1", "HLVQSEAL", "");
    EXPECT_EQ(OnlySeal().picLen, 0);
}

}  // namespace
