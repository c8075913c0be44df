#include "EnumerationTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class KeyEnumerationTest : public EnumerationTest {};

TEST_F(KeyEnumerationTest, AKeyWithoutSealsIsACertificateWithoutSeals) {
    fakes::AddCertificate("label", "cert-1");
    fakes::AddFile("cert-1", "other.dat", "content");
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Seals(), IsEmpty());
    EXPECT_THAT(Failures(), IsEmpty());
    EXPECT_EQ(fakes::CountCalls("SOF_ReadFile"), 0);
}

TEST_F(KeyEnumerationTest, AKeyWithoutAnyFileIsACertificateWithoutSealsToo) {
    fakes::AddCertificate("label", "cert-1");
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Labels(), ElementsAre("label"));
    EXPECT_THAT(Seals(), IsEmpty());
    EXPECT_THAT(Failures(), ElementsAre("praseEnumFiles error"));
}

TEST_F(KeyEnumerationTest, TheServiceIsStartedAndTheSealsAreRead) {
    fakes::AddCertificate("label", "cert-1");
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("picture", "name"));
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_EQ(m_appOpt.initialised, 1);
    EXPECT_THAT(Seals(), ElementsAre("name"));
}

TEST_F(KeyEnumerationTest, AServiceThatDoesNotStartIsTriedTwiceAndThenGivenUp) {
    fakes::On("SOF_Initialize").Returns(5);
    EXPECT_EQ(m_list.GetCertAndPic(), TESMARK_ENUMERATION_NO_SERVICE);
    EXPECT_EQ(fakes::CountCalls("SOF_Initialize"), 2);
    EXPECT_EQ(Failures().back(), "KVLInitialize error");
}

TEST_F(KeyEnumerationTest, AServiceThatStartsAtTheSecondAttemptIsUsed) {
    fakes::AddCertificate("label", "cert-1");
    fakes::On("SOF_Initialize").ReturnsAt(1, 5);
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Labels(), ElementsAre("label"));
}

TEST_F(KeyEnumerationTest, AListThatCannotBeHadIsLoggedAtBothLevels) {
    EXPECT_EQ(m_list.GetCertAndPic(), TESMARK_NO_KEY);
    EXPECT_THAT(Failures(), ElementsAre("[GetUserList]not exist key.", "GetUserList error:-3024",
                                        "GetUserList error:-3024"));
}

TEST_F(KeyEnumerationTest, TheScopesNestInTheLog) {
    fakes::AddCertificate("label", "cert-1");
    ASSERT_EQ(m_list.GetCertAndPic(), 0);
    std::vector<std::string> scopes;
    for (const std::string& record : Log()) {
        if (record.find("CCertEsealOpt") != std::string::npos) scopes.push_back(record);
    }
    EXPECT_THAT(scopes, ElementsAre("8 [CCertEsealOpt::GetCertAndPic start]",
                                    "8 [CCertEsealOpt::GetUserList start]",
                                    "8 [CCertEsealOpt::GetUserList end][Time consume N ms]",
                                    "8 [CCertEsealOpt::GetEsealInfo start]",
                                    "8 [CCertEsealOpt::GetEsealInfo end][Time consume N ms]",
                                    "8 [CCertEsealOpt::GetCertAndPic end][Time consume N ms]"));
}

TEST_F(KeyEnumerationTest, FilesThatCannotBeListedLeaveTheCertificateWithoutSeals) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("picture", "name"));
    fakes::AddCertificate("two", "cert-2");
    fakes::AddFile("cert-2", "ESEAL01", fakes::EsSeal("picture", "other"));
    fakes::On("EnumFilesInDevice").ReturnsAt(1, 21);
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Failures(), ElementsAre("EnumFilesInKey1 error:21"));
    EXPECT_THAT(Seals(), IsEmpty());
    EXPECT_EQ(m_list.m_certs[1].seals.size(), 1u);
}

TEST_F(KeyEnumerationTest, FilesWhoseListFailsAtTheSecondCallLeaveTheCertificateWithoutSeals) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("picture", "name"));
    fakes::On("EnumFilesInDevice").ReturnsAt(2, 22);
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Failures(), ElementsAre("EnumFilesInKey2 error:22"));
    EXPECT_THAT(Seals(), IsEmpty());
}

TEST_F(KeyEnumerationTest, ANameWithoutAnEndIsNoList) {
    fakes::AddCertificate("label", "cert-1");
    fakes::On("EnumFilesInDevice").Gives("ESEAL01");
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Failures(), ElementsAre("praseEnumFiles error"));
    EXPECT_THAT(Seals(), IsEmpty());
}

TEST_F(KeyEnumerationTest, OfTwoNamesWithOneEndTheFirstIsTaken) {
    fakes::AddCertificate("label", "cert-1");
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("picture", "one"));
    fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("picture", "two"));
    fakes::On("EnumFilesInDevice").Gives("ESEAL01&&&ESEAL02");
    EXPECT_EQ(m_list.GetCertAndPic(), 0);
    EXPECT_THAT(Seals(), ElementsAre("one"));
}

TEST_F(KeyEnumerationTest, TheNamesOfSealFilesAreKeptWhateverStandsAroundThem) {
    std::vector<std::string> names;
    EXPECT_EQ(m_list.praseEnumFiles("aESEALb&&&SEAL01&&&other&&&xGBESEAL2&&&HLVQSEAL.gif&&&"
                                    "eseal&&&&&&tail ESEAL",
                                    names),
              1);
    EXPECT_THAT(names, ElementsAre("aESEALb", "SEAL01", "xGBESEAL2", "HLVQSEAL.gif"));
}

TEST_F(KeyEnumerationTest, NoNameOfASealFileIsNoFailure) {
    std::vector<std::string> names;
    EXPECT_EQ(m_list.praseEnumFiles("other&&&", names), 1);
    EXPECT_EQ(m_list.praseEnumFiles("", names), 0);
    EXPECT_EQ(m_list.praseEnumFiles("ESEAL&&", names), 0);
    EXPECT_THAT(names, IsEmpty());
}

TEST_F(KeyEnumerationTest, ClearingTheListFreesAndRemovesEverything) {
    fakes::AddCertificate("label", "cert-1");
    fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("picture"));
    ASSERT_EQ(m_list.GetCertAndPic(), 0);
    m_list.ClearCertList();
    EXPECT_TRUE(m_list.m_certs.empty());
    m_list.ClearCertList();
}

}  // namespace
