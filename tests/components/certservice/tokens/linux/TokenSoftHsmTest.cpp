#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/tokens/linux/SoftHsm.h"
#include "components/crypto/Signature.h"

namespace {

using testing::ElementsAre;
using testing::StartsWith;

constexpr char kLiLeiUtf8[] = "\xE6\x9D\x8E\xE9\x9B\xB7";

class TokenSoftHsmTestOnLinux : public testing::Test {
protected:
    void SetUp() override { SetServicePath("Pkcs11Modules", SoftHsm::ModulePath()); }

    void Open() {
        m_device = OpenOnlyDevice();
        ASSERT_NE(m_device, nullptr);
    }
    std::vector<DeviceCertificate> List() {
        std::vector<DeviceCertificate> certificates;
        EXPECT_EQ(m_device->ListCertificates(certificates), kServiceOk);
        return certificates;
    }
    // The certId of the only certificate.
    std::string OnlyCertId() {
        const std::vector<DeviceCertificate> certificates = List();
        EXPECT_EQ(certificates.size(), 1u);
        return certificates.empty() ? std::string() : certificates[0].certId;
    }
    std::string Content(const std::string& certId, const std::string& name) {
        std::string content;
        EXPECT_EQ(m_device->ReadFile(certId, name, content), kServiceOk) << name;
        return content;
    }

    TemporaryPrefix m_prefix;
    SoftHsm m_softHsm;
    std::unique_ptr<KeyDevice> m_device;
};

TEST_F(TokenSoftHsmTestOnLinux, ACertificateWithItsKeyIsListedBeforeLogin) {
    m_softHsm.MakeToken("A");
    const KeyHandle key = m_softHsm.StorePair("A", "a1b2", {.commonName = kLiLeiUtf8});
    Open();
    const std::vector<DeviceCertificate> certificates = List();
    ASSERT_EQ(certificates.size(), 1u);
    EXPECT_THAT(certificates[0].certId, StartsWith("P11/"));
    EXPECT_TRUE(certificates[0].certId.ends_with("/a1b2")) << certificates[0].certId;
    EXPECT_LT(certificates[0].certId.size(), 64u);
    EXPECT_EQ(certificates[0].label, "李雷");
    EXPECT_EQ(certificates[0].der, MakeCertificate(key.get(), {.commonName = kLiLeiUtf8}));
    EXPECT_EQ(List()[0].certId, certificates[0].certId);
}

TEST_F(TokenSoftHsmTestOnLinux, TheCertificateIsExportedAsItWasListed) {
    m_softHsm.MakeToken("A");
    m_softHsm.StorePair("A", "01");
    Open();
    const std::vector<DeviceCertificate> certificates = List();
    ASSERT_EQ(certificates.size(), 1u);
    std::string der;
    EXPECT_EQ(m_device->ExportCertificate(certificates[0].certId, der), kServiceOk);
    EXPECT_EQ(der, certificates[0].der);
    EXPECT_TRUE(m_device->Owns(certificates[0].certId));
}

TEST_F(TokenSoftHsmTestOnLinux, AWrongPinIsTold) {
    m_softHsm.MakeToken("A");
    m_softHsm.StorePair("A", "01");
    Open();
    const std::string certId = OnlyCertId();
    EXPECT_EQ(m_device->Login(certId, "654321"), kServicePinWrong);
    EXPECT_EQ(m_device->Login(certId, ""), kServicePinWrong);
    EXPECT_FALSE(m_device->IsLoggedIn(certId));
    EXPECT_EQ(m_device->Login(certId, "123456"), kServiceOk);
    EXPECT_TRUE(m_device->IsLoggedIn(certId));
}

TEST_F(TokenSoftHsmTestOnLinux, ALoginHoldsUntilTheLogout) {
    m_softHsm.MakeToken("A");
    m_softHsm.StorePair("A", "01");
    Open();
    const std::string certId = OnlyCertId();
    ASSERT_EQ(m_device->Login(certId, "123456"), kServiceOk);
    EXPECT_EQ(m_device->Login(certId, "123456"), kServiceOk);
    EXPECT_EQ(List().size(), 1u);
    EXPECT_TRUE(m_device->IsLoggedIn(certId));
    EXPECT_EQ(m_device->Logout(certId), kServiceOk);
    EXPECT_FALSE(m_device->IsLoggedIn(certId));
    EXPECT_EQ(m_device->Logout(certId), kServiceOk);
}

TEST_F(TokenSoftHsmTestOnLinux, AnRsaSignatureVerifiesWithEachHash) {
    m_softHsm.MakeToken("A");
    const KeyHandle key = m_softHsm.StorePair("A", "01");
    Open();
    const std::string certId = OnlyCertId();
    ASSERT_EQ(m_device->Login(certId, "123456"), kServiceOk);
    for (const HashAlgorithm hash : {HashAlgorithm::kSha1, HashAlgorithm::kSha256}) {
        const std::string digest = Digest(hash, "contract");
        std::string signature;
        ASSERT_EQ(m_device->SignDigest(certId, hash, digest, signature), kServiceOk);
        EXPECT_EQ(signature.size(), 256u);
        EXPECT_TRUE(VerifyDigest(key.get(), hash, digest, signature));
        EXPECT_FALSE(VerifyDigest(key.get(), hash, Digest(hash, "another"), signature));
    }
}

TEST_F(TokenSoftHsmTestOnLinux, SigningWithoutLoginSaysThatNobodyLoggedIn) {
    m_softHsm.MakeToken("A");
    m_softHsm.StorePair("A", "01");
    Open();
    std::string signature = "untouched";
    EXPECT_EQ(
        m_device->SignDigest(OnlyCertId(), HashAlgorithm::kSha256, std::string(32, 'd'), signature),
        kServicePinUnavailable);
    EXPECT_EQ(signature, "untouched");
}

TEST_F(TokenSoftHsmTestOnLinux, FilesWrittenByPkcs11ToolComeInTheOrderOfTheirNames) {
    m_softHsm.MakeToken("A");
    m_softHsm.StorePair("A", "2a03");
    m_softHsm.StoreFile("A", "c.esl", "third", "--application-label 2a03");
    m_softHsm.StoreFile("A", "a.esl", "first", "--application-id 1.2.3");
    m_softHsm.StoreFile("A", "b.esl", "second", "--application-label 2a03 --application-id 1.2.3");
    m_softHsm.StoreFile("A", "0.esl", "of nobody", "--application-label 99");
    Open();
    const std::string certId = OnlyCertId();
    std::vector<std::string> names;
    ASSERT_EQ(m_device->ListFiles(certId, names), kServiceOk);
    EXPECT_THAT(names, ElementsAre("a.esl", "b.esl", "c.esl"));
    EXPECT_EQ(Content(certId, "a.esl"), "first");
    EXPECT_EQ(Content(certId, "b.esl"), "second");
    EXPECT_EQ(Content(certId, "c.esl"), "third");
    std::string content = "untouched";
    EXPECT_EQ(m_device->ReadFile(certId, "0.esl", content), kServiceNoSuchFile);
    EXPECT_EQ(content, "untouched");
}

TEST_F(TokenSoftHsmTestOnLinux, AFileIsMadeReplacedAndReadByTheNextProcess) {
    m_softHsm.MakeToken("A");
    m_softHsm.StorePair("A", "01");
    Open();
    const std::string certId = OnlyCertId();
    ASSERT_EQ(m_device->Login(certId, "123456"), kServiceOk);
    const std::string large(200'000, 'x');
    EXPECT_EQ(m_device->WriteFile(certId, "合同章.esl", "old"), kServiceOk);
    EXPECT_EQ(m_device->WriteFile(certId, "合同章.esl", large), kServiceOk);
    EXPECT_EQ(m_device->WriteFile(certId, "empty", ""), kServiceOk);
    m_device.reset();
    Open();
    std::vector<std::string> names;
    ASSERT_EQ(m_device->ListFiles(certId, names), kServiceOk);
    EXPECT_THAT(names, ElementsAre("empty", "合同章.esl"));
    EXPECT_EQ(Content(certId, "合同章.esl"), large);
    EXPECT_EQ(Content(certId, "empty"), "");
}

TEST_F(TokenSoftHsmTestOnLinux, TwoTokensHaveLoginsOfTheirOwn) {
    m_softHsm.MakeToken("A");
    m_softHsm.MakeToken("B");
    m_softHsm.StorePair("A", "01");
    m_softHsm.StorePair("B", "01", {.commonName = "Han Meimei"});
    Open();
    EXPECT_EQ(m_device->CountKeys(), 2);
    const std::vector<DeviceCertificate> certificates = List();
    ASSERT_EQ(certificates.size(), 2u);
    EXPECT_NE(certificates[0].certId, certificates[1].certId);
    ASSERT_EQ(m_device->Login(certificates[0].certId, "123456"), kServiceOk);
    EXPECT_TRUE(m_device->IsLoggedIn(certificates[0].certId));
    EXPECT_FALSE(m_device->IsLoggedIn(certificates[1].certId));
}

TEST_F(TokenSoftHsmTestOnLinux, TwoCertificatesOfOneTokenHaveFilesOfTheirOwn) {
    m_softHsm.MakeToken("A");
    m_softHsm.StorePair("A", "02", {.commonName = "Two"});
    m_softHsm.StorePair("A", "01", {.commonName = "One"});
    m_softHsm.StoreFile("A", "seal", "of one", "--application-label 01");
    m_softHsm.StoreFile("A", "seal", "of two", "--application-label 02");
    Open();
    EXPECT_EQ(m_device->CountKeys(), 1);
    const std::vector<DeviceCertificate> certificates = List();
    ASSERT_EQ(certificates.size(), 2u);
    EXPECT_EQ(certificates[0].label, "One");
    EXPECT_EQ(certificates[1].label, "Two");
    EXPECT_EQ(Content(certificates[0].certId, "seal"), "of one");
    EXPECT_EQ(Content(certificates[1].certId, "seal"), "of two");
}

TEST_F(TokenSoftHsmTestOnLinux, ACertificateWithoutKeyIsListedOnlyWhileItCouldHaveOne) {
    m_softHsm.MakeToken("A");
    m_softHsm.StorePair("A", "01", {.commonName = "With key"});
    const KeyHandle other = MakeRsaKey();
    m_softHsm.StoreCertificate("A", MakeCertificate(other.get(), {.commonName = "Lone"}), "02",
                               "x");
    m_softHsm.StoreCertificate(
        "A", MakeCertificate(other.get(), {.commonName = "Authority", .authority = true}), "03",
        "x");
    Open();
    const std::vector<DeviceCertificate> before = List();
    ASSERT_EQ(before.size(), 2u);
    EXPECT_EQ(before[0].label, "With key");
    EXPECT_EQ(before[1].label, "Lone");
    ASSERT_EQ(m_device->Login(before[0].certId, "123456"), kServiceOk);
    const std::vector<DeviceCertificate> after = List();
    ASSERT_EQ(after.size(), 1u);
    EXPECT_EQ(after[0].label, "With key");
}

TEST_F(TokenSoftHsmTestOnLinux, OfTwoCertificatesOfOneKeyTheOneIssuedLastCounts) {
    m_softHsm.MakeToken("A");
    const KeyHandle key = m_softHsm.StorePair("A", "01", {.commonName = "Old"});
    const std::string renewed =
        MakeCertificate(key.get(), {.commonName = "Renewed", .firstDay = 300});
    m_softHsm.StoreCertificate("A", renewed, "01", "x");
    m_softHsm.StoreCertificate(
        "A", MakeCertificate(key.get(), {.commonName = "Between", .firstDay = 100}), "01", "x");
    Open();
    const std::vector<DeviceCertificate> certificates = List();
    ASSERT_EQ(certificates.size(), 1u);
    EXPECT_EQ(certificates[0].label, "Renewed");
    std::string der;
    EXPECT_EQ(m_device->ExportCertificate(certificates[0].certId, der), kServiceOk);
    EXPECT_EQ(der, renewed);
}

TEST_F(TokenSoftHsmTestOnLinux, ATokenWhoseFolderIsGoneCountsAsPulled) {
    m_softHsm.MakeToken("A");
    m_softHsm.StorePair("A", "01");
    m_softHsm.StoreFile("A", "seal", "of one", "--application-label 01");
    Open();
    const std::string certId = OnlyCertId();
    ASSERT_EQ(m_device->Login(certId, "123456"), kServiceOk);
    m_softHsm.RemoveTokens();
    std::string out;
    std::vector<std::string> names;
    EXPECT_EQ(m_device->ExportCertificate(certId, out), kServiceKeyRemoved);
    EXPECT_EQ(m_device->Login(certId, "123456"), kServiceKeyRemoved);
    EXPECT_EQ(m_device->SignDigest(certId, HashAlgorithm::kSha256, std::string(32, 'd'), out),
              kServiceKeyRemoved);
    EXPECT_EQ(m_device->ReadFile(certId, "seal", out), kServiceKeyRemoved);
    EXPECT_EQ(m_device->ListFiles(certId, names), kServiceKeyRemoved);
    EXPECT_FALSE(m_device->IsLoggedIn(certId));
    EXPECT_TRUE(List().empty());
    EXPECT_EQ(m_device->CountKeys(), 0);
    EXPECT_TRUE(m_device->Owns(certId));
}

TEST_F(TokenSoftHsmTestOnLinux, AProcessMayEndWithItsDeviceOpen) {
    m_softHsm.MakeToken("A");
    m_softHsm.StorePair("A", "01");
    const auto useAndEnd = [this] {
        static auto* const device = OpenOnlyDevice().release();
        std::vector<DeviceCertificate> certificates;
        device->ListCertificates(certificates);
        std::exit(device->Login(certificates.at(0).certId, "123456") == kServiceOk ? 0 : 1);
    };
    EXPECT_EXIT(useAndEnd(), testing::ExitedWithCode(0), "");
}

TEST_F(TokenSoftHsmTestOnLinux, ADeviceMayBeClosedByAnExitHandlerThatRunsBehindTheModulesOwn) {
    m_softHsm.MakeToken("A");
    m_softHsm.StorePair("A", "01");
    const auto useAndEnd = [] {
        static std::unique_ptr<KeyDevice> device;
        // Registered before the module's own handlers, so it runs after them.
        std::atexit([] {
            std::vector<DeviceCertificate> certificates;
            if (device->ListCertificates(certificates) != kServiceTokenFailure) std::_Exit(2);
            device.reset();
        });
        device = OpenOnlyDevice();
        std::vector<DeviceCertificate> certificates;
        device->ListCertificates(certificates);
        std::exit(device->Login(certificates.at(0).certId, "123456") == kServiceOk ? 0 : 1);
    };
    EXPECT_EXIT(useAndEnd(), testing::ExitedWithCode(0), "");
}

TEST_F(TokenSoftHsmTestOnLinux, NoTokenIsNoFailure) {
    Open();
    EXPECT_TRUE(List().empty());
    EXPECT_EQ(m_device->CountKeys(), 0);
    EXPECT_EQ(m_device->Login("P11/0123456789abcdef/01", "123456"), kServiceNoSuchCertificate);
    EXPECT_EQ(m_device->Login("DevKeys/one", "123456"), kServiceNoSuchCertificate);
    EXPECT_FALSE(m_device->Owns("P11/0123456789abcdef/01"));
    EXPECT_FALSE(m_device->Owns("DevKeys/one"));
}

}  // namespace
