#include <algorithm>
#include <cstring>
#include <iterator>

#include "EnumerationTest.h"
#include "seal/KeyLists.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char kScanEntry[] = "box/hlvqDev000000000000000000";

class UserListTest : public EnumerationTest {
protected:
    std::vector<int> ScanModes() const {
        std::vector<int> modes;
        for (const CertRecord& cert : m_list.m_certs) modes.push_back(cert.scanMode);
        return modes;
    }
};

TEST_F(UserListTest, CertificatesStandInTheOrderOfTheList) {
    fakes::AddCertificate("zoe", "cert-3");
    fakes::AddCertificate("adam", "cert-1");
    EXPECT_EQ(m_list.GetUserList(), 0);
    EXPECT_THAT(Labels(), ElementsAre("zoe", "adam"));
    EXPECT_EQ(m_list.m_certs[0].CertIdText(), "cert-3");
    EXPECT_THAT(ScanModes(), ElementsAre(0, 0));
    EXPECT_THAT(Log(), testing::Contains("8 [CCertEsealOpt::GetUserList start]"));
}

TEST_F(UserListTest, TheEntryOfTheScanGetsItsLabelAndMode) {
    fakes::AddCertificate("any", kScanEntry);
    EXPECT_EQ(m_list.GetUserList(), 0);
    EXPECT_THAT(Labels(), ElementsAre("扫码签章"));
    EXPECT_THAT(ScanModes(), ElementsAre(1));
    EXPECT_EQ(m_list.m_certs[0].CertIdText(), kScanEntry);
}

TEST_F(UserListTest, AnotherScanDeviceKeepsTheModeOfTheEntryBefore) {
    fakes::AddCertificate("one", "hlvqDev123");
    fakes::AddCertificate("two", kScanEntry);
    fakes::AddCertificate("three", "hlvqDev123");
    fakes::AddCertificate("four", "cert-4");
    fakes::AddCertificate("five", "hlvqDev123");
    EXPECT_EQ(m_list.GetUserList(), 0);
    EXPECT_THAT(Labels(), ElementsAre("one", "扫码签章", "three", "four", "five"));
    EXPECT_THAT(ScanModes(), ElementsAre(0, 1, 1, 0, 0));
}

TEST_F(UserListTest, TheModeCarriesOverASkippedEntry) {
    fakes::AddCertificate("one", kScanEntry);
    fakes::AddCertificate("翠枫证书", "cert-2");
    fakes::AddCertificate("three", "hlvqDev123");
    EXPECT_EQ(m_list.GetUserList(), 0);
    EXPECT_THAT(ScanModes(), ElementsAre(1, 1));
}

TEST_F(UserListTest, ACertificateOfTheCloudIsLeftOutUnlessItIsAScanDevices) {
    fakes::AddCertificate("我的翠枫证书", "cert-1");
    fakes::AddCertificate("我的翠枫证书", "hlvqDev123");
    fakes::AddCertificate("two", "cert-2");
    EXPECT_EQ(m_list.GetUserList(), 0);
    EXPECT_THAT(Labels(), ElementsAre("我的翠枫证书", "two"));
}

TEST_F(UserListTest, TheSpecialTextsAreComparedWithRegardToCase) {
    fakes::AddCertificate("one", "HLVQDEV000000000000000000");
    EXPECT_EQ(m_list.GetUserList(), 0);
    EXPECT_THAT(Labels(), ElementsAre("one"));
    EXPECT_THAT(ScanModes(), ElementsAre(0));
}

TEST_F(UserListTest, ALabelOfFortyBytesIsCutToThirtyTwo) {
    fakes::AddCertificate(std::string(31, 'a') + "章" + std::string(7, 'b'), "cert-1");
    EXPECT_EQ(m_list.GetUserList(), 0);
    const std::string_view label(m_list.m_certs[0].certName, 32);
    EXPECT_EQ(label, std::string(31, 'a') + '\xD5');
    EXPECT_EQ(m_list.m_certs[0].scanMode, 0);
}

TEST_F(UserListTest, AnIdentifierOf63BytesEndsWithinItsField) {
    fakes::AddCertificate("label", std::string(63, 'c'));
    EXPECT_EQ(m_list.GetUserList(), 0);
    EXPECT_EQ(m_list.m_certs[0].CertIdText(), std::string(63, 'c'));
}

TEST_F(UserListTest, AnIdentifierOf64BytesOrMoreRunsOnIntoTheLabel) {
    fakes::AddCertificate("label", std::string(64, 'c'));
    fakes::AddCertificate("second", std::string(100, 'd'));
    EXPECT_EQ(m_list.GetUserList(), 0);
    EXPECT_EQ(m_list.m_certs[0].CertIdText(), std::string(64, 'c') + "label");
    EXPECT_EQ(m_list.m_certs[1].CertIdText(), std::string(64, 'd') + "second");
}

TEST_F(UserListTest, AnUnterminatedIdentifierAndLabelRunOnIntoTheScanMode) {
    CertRecord record;
    std::fill(std::begin(record.certId), std::end(record.certId), 'c');
    std::fill(std::begin(record.certName), std::end(record.certName), 'n');
    EXPECT_EQ(record.CertIdText(), std::string(64, 'c') + std::string(32, 'n'));
    record.scanMode = 1;
    EXPECT_EQ(record.CertIdText(), std::string(64, 'c') + std::string(32, 'n') + '\1');
    record.scanMode = 0x41414141;
    EXPECT_EQ(record.CertIdText().size(), 100u);
}

TEST_F(UserListTest, AnUnterminatedLabelRunsOnIntoTheScanMode) {
    CertRecord record;
    std::strcpy(record.certName, "label");
    EXPECT_EQ(record.CertNameText(), "label");
    std::fill(std::begin(record.certName), std::end(record.certName), 'n');
    EXPECT_EQ(record.CertNameText(), std::string(32, 'n'));
    record.scanMode = 1;
    EXPECT_EQ(record.CertNameText(), std::string(32, 'n') + '\1');
    record.scanMode = 0x41414141;
    EXPECT_EQ(record.CertNameText().size(), 36u);
}

TEST_F(UserListTest, AFailureOfTheServiceLeavesTheOldList) {
    fakes::AddCertificate("label", "cert-1");
    ASSERT_EQ(m_list.GetUserList(), 0);
    ForgetLog();
    fakes::On("GetDeviceInfo").Returns(4);
    EXPECT_EQ(m_list.GetUserList(), TESMARK_CERT_LIST_FAILED);
    EXPECT_EQ(Failures().back(), "GetUserList error:-3026");
    EXPECT_THAT(Labels(), ElementsAre("label"));
}

TEST_F(UserListTest, EachEnumerationBuildsTheListAnew) {
    fakes::AddCertificate("one", "cert-1");
    ASSERT_EQ(m_list.GetUserList(), 0);
    fakes::ResetWorld();
    fakes::AddCertificate("two", "cert-2");
    ASSERT_EQ(m_list.GetUserList(), 0);
    EXPECT_THAT(Labels(), ElementsAre("two"));
}

TEST_F(UserListTest, AListWithoutAWholeEntryIsEmpty) {
    EXPECT_TRUE(ReadUserList("label||cert-1").empty());
    EXPECT_TRUE(ReadUserList("label&&&").empty());
    EXPECT_TRUE(ReadUserList("").empty());
}

TEST_F(UserListTest, TextBehindTheLastEndIsNoEntry) {
    EXPECT_EQ(ReadUserList("one||cert-1&&&two||cert-2").size(), 1u);
    EXPECT_EQ(ReadUserList("one||cert-1&&&two&&&").size(), 1u);
}

TEST_F(UserListTest, EmptyLabelsAndIdentifiersAreEntriesToo) {
    const std::vector<CertRecord> certs = ReadUserList("||&&&label||&&&");
    ASSERT_EQ(certs.size(), 2u);
    EXPECT_EQ(certs[0].CertIdText(), "");
    EXPECT_STREQ(certs[1].certName, "label");
}

TEST_F(UserListTest, ALabelWithAnEndInItTearsTheEntryApart) {
    GiveUserList("a&&&b||cert-1&&&");
    EXPECT_EQ(m_list.GetUserList(), 0);
    EXPECT_THAT(Labels(), ElementsAre("a&&&b", "b"));
    EXPECT_EQ(m_list.m_certs[0].CertIdText(), "");
    EXPECT_EQ(m_list.m_certs[1].CertIdText(), "cert-1");
}

}  // namespace
