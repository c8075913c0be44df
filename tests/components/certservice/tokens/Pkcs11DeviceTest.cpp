#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/pkcs11/Pkcs11Attribute.h"
#include "components/certservice/pkcs11/Pkcs11Device.h"
#include "components/certservice/tokens/FakePkcs11.h"
#include "components/certservice/tokens/TokenFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kCertId[] = "P11/0001/01";
constexpr CK_KEY_TYPE kVendorKey = CKK_VENDOR_DEFINED | 0x51;
constexpr CK_MECHANISM_TYPE kVendorMechanism = CKM_VENDOR_DEFINED | 0x103;

// For certificates whose key doesn't matter.
KeyHandle QuickKey() { return KeyHandle(EVP_EC_gen("P-256")); }

std::string Number(CK_ULONG number) { return NumberAttribute(0, number).value; }

class Pkcs11DeviceTest : public testing::Test {
protected:
    void SetUp() override {
        TheFakeToken() = FakeToken();
        SetServicePath("Pkcs11Modules", FAKE_PKCS11_MODULE);
        m_certificate = MakeCertificate(QuickKey().get());
        m_certificateObject = Fake().Add({{CKA_CLASS, Number(CKO_CERTIFICATE)},
                                          {CKA_ID, "\1"},
                                          {CKA_LABEL, "label"},
                                          {CKA_VALUE, m_certificate}});
        m_keyObject = Fake().Add({{CKA_CLASS, Number(CKO_PRIVATE_KEY)},
                                  {CKA_ID, "\1"},
                                  {CKA_KEY_TYPE, Number(CKK_RSA)},
                                  {CKA_PRIVATE, "\1"}});
    }
    void TearDown() override {
        m_device.reset();
        EXPECT_FALSE(Fake().initialised);
        EXPECT_THAT(Fake().sessions, IsEmpty());
    }

    static FakeToken& Fake() { return TheFakeToken(); }
    KeyDevice& Device() {
        if (!m_device) m_device = OpenOnlyDevice();
        if (!m_device) throw std::runtime_error("no device");
        return *m_device;
    }
    CK_OBJECT_HANDLE AddFile(const std::string& name, const std::string& content) {
        return Fake().Add({{CKA_CLASS, Number(CKO_DATA)},
                           {CKA_LABEL, name},
                           {CKA_OBJECT_ID, "\1"},
                           {CKA_VALUE, content}});
    }
    int Sign(std::string& signature) {
        return Device().SignDigest(kCertId, HashAlgorithm::kSha256, std::string(32, 'd'),
                                   signature);
    }
    std::vector<DeviceCertificate> List() {
        std::vector<DeviceCertificate> certificates;
        EXPECT_EQ(Device().ListCertificates(certificates), kServiceOk);
        return certificates;
    }

    TemporaryPrefix m_prefix;
    std::string m_certificate;
    CK_OBJECT_HANDLE m_certificateObject = 0;
    CK_OBJECT_HANDLE m_keyObject = 0;
    std::unique_ptr<KeyDevice> m_device;
};

TEST_F(Pkcs11DeviceTest, ACertIdOfAnEarlierProcessNeedsNoListing) {
    EXPECT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    EXPECT_TRUE(Device().Owns(kCertId));
    EXPECT_FALSE(Device().Owns("P11/0002/01"));
    EXPECT_EQ(Device().Login("P11/0001/02", "123456"), kServiceNoSuchCertificate);
}

TEST_F(Pkcs11DeviceTest, AfterThreeWrongPinsTheKeyIsLocked) {
    EXPECT_EQ(Device().RetriesLeft(kCertId), -1);
    EXPECT_EQ(Device().Login(kCertId, "1"), kServicePinWrong);
    EXPECT_EQ(Device().Login(kCertId, "2"), kServicePinWrong);
    EXPECT_EQ(Device().RetriesLeft(kCertId), 1);
    EXPECT_EQ(Device().Login(kCertId, "3"), kServicePinWrong);
    EXPECT_EQ(Device().RetriesLeft(kCertId), 0);
    EXPECT_EQ(Device().Login(kCertId, "123456"), kServiceKeyLocked);
}

TEST_F(Pkcs11DeviceTest, AKeyPulledInMidSessionIsRemovedForEveryOperation) {
    AddFile("seal", "content");
    ASSERT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    Fake().Pull();
    std::string out = "untouched";
    std::vector<std::string> names;
    EXPECT_EQ(Sign(out), kServiceKeyRemoved);
    EXPECT_EQ(Device().Login(kCertId, "123456"), kServiceKeyRemoved);
    EXPECT_EQ(Device().Logout(kCertId), kServiceKeyRemoved);
    EXPECT_EQ(Device().ExportCertificate(kCertId, out), kServiceKeyRemoved);
    EXPECT_EQ(Device().ListFiles(kCertId, names), kServiceKeyRemoved);
    EXPECT_EQ(Device().ReadFile(kCertId, "seal", out), kServiceKeyRemoved);
    EXPECT_EQ(Device().WriteFile(kCertId, "seal", "x"), kServiceKeyRemoved);
    EXPECT_FALSE(Device().IsLoggedIn(kCertId));
    EXPECT_EQ(Device().RetriesLeft(kCertId), -1);
    EXPECT_EQ(out, "untouched");
    EXPECT_THAT(List(), IsEmpty());
    EXPECT_EQ(Device().CountKeys(), 0);
}

TEST_F(Pkcs11DeviceTest, AKeyPutBackWorksAgainButNobodyIsLoggedIn) {
    AddFile("seal", "content");
    ASSERT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    Fake().Pull();
    Fake().present = true;
    std::string out;
    EXPECT_FALSE(Device().IsLoggedIn(kCertId));
    EXPECT_EQ(Sign(out), kServicePinUnavailable);
    EXPECT_EQ(Device().ReadFile(kCertId, "seal", out), kServiceOk);
    EXPECT_EQ(out, "content");
    EXPECT_EQ(List().size(), 1u);
    EXPECT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    Fake().signature = std::string(256, 's');
    EXPECT_EQ(Sign(out), kServiceOk);
}

TEST_F(Pkcs11DeviceTest, AnotherTokenInTheSameSlotIsNotTheOneThatWasPulled) {
    ASSERT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    Fake().Pull();
    Fake().present = true;
    Fake().serial = "0002";
    std::string out;
    EXPECT_EQ(Sign(out), kServiceKeyRemoved);
    const std::vector<DeviceCertificate> certificates = List();
    ASSERT_EQ(certificates.size(), 1u);
    EXPECT_EQ(certificates[0].certId, "P11/0002/01");
}

TEST_F(Pkcs11DeviceTest, ADamagedCertificateIsNotListedButSaysSo) {
    Fake().objects[m_certificateObject][CKA_VALUE] = "no certificate";
    Fake().objects[m_keyObject][CKA_PRIVATE] = std::string(1, '\0');
    EXPECT_THAT(List(), IsEmpty());
    std::string out = "untouched";
    EXPECT_EQ(Device().ExportCertificate(kCertId, out), kServiceCertificateDamaged);
    EXPECT_EQ(Device().Login(kCertId, "123456"), kServiceCertificateDamaged);
    EXPECT_EQ(Sign(out), kServiceCertificateDamaged);
    EXPECT_EQ(out, "untouched");
}

TEST_F(Pkcs11DeviceTest, ACertificateDeletedFromItsTokenIsRemoved) {
    ASSERT_EQ(List().size(), 1u);
    Fake().objects.erase(m_certificateObject);
    std::string der;
    EXPECT_EQ(Device().ExportCertificate(kCertId, der), kServiceKeyRemoved);
}

TEST_F(Pkcs11DeviceTest, AKeyThatIsMissingAfterLoginIsDamaged) {
    ASSERT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    Fake().objects.erase(m_keyObject);
    std::string out;
    EXPECT_EQ(Sign(out), kServiceKeyDamaged);
}

TEST_F(Pkcs11DeviceTest, AnRsaKeySignsTheDigestInfo) {
    ASSERT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    Fake().signature = std::string(256, 's');
    std::string signature;
    ASSERT_EQ(Sign(signature), kServiceOk);
    EXPECT_EQ(signature, Fake().signature);
    EXPECT_EQ(Fake().signedBy, CKM_RSA_PKCS);
    EXPECT_EQ(Fake().signedData.size(), 51u);
    EXPECT_TRUE(Fake().signedData.ends_with(std::string(32, 'd')));
    EXPECT_EQ(Device().SignDigest(kCertId, HashAlgorithm::kSha256, "short", signature),
              kServiceBadArgument);
}

TEST_F(Pkcs11DeviceTest, ASignatureLargerThanAnyKeysIsAFailureOfTheToken) {
    ASSERT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    Fake().signature = std::string(5000, 's');
    std::string signature;
    EXPECT_EQ(Sign(signature), kServiceTokenFailure);
}

class Pkcs11Sm2Test : public Pkcs11DeviceTest {
protected:
    void SetUp() override {
        Pkcs11DeviceTest::SetUp();
        Fake().objects[m_keyObject][CKA_KEY_TYPE] = Number(kVendorKey);
    }
    int SignSm2(std::string& signature) {
        EXPECT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
        return Device().SignDigest(kCertId, HashAlgorithm::kSm3, std::string(32, 'e'), signature);
    }
};

TEST_F(Pkcs11Sm2Test, WithoutAMechanismInTheStoreTheAlgorithmIsUnknown) {
    std::string signature;
    EXPECT_EQ(SignSm2(signature), kServiceAlgorithmUnknown);
    EXPECT_EQ(Fake().calls["C_SignInit"], 0);
}

TEST_F(Pkcs11Sm2Test, TheMakersMechanismSignsTheDigestAndBareNumbersBecomeDer) {
    SetServiceNumber("Pkcs11Sm2Mechanism", kVendorMechanism);
    SetServiceNumber("Pkcs11Sm2KeyType", kVendorKey);
    Fake().signature = std::string(32, '\x11') + std::string(32, '\x22');
    std::string signature;
    ASSERT_EQ(SignSm2(signature), kServiceOk);
    EXPECT_EQ(Fake().signedBy, kVendorMechanism);
    EXPECT_EQ(Fake().signedData, std::string(32, 'e'));
    EXPECT_EQ(signature,
              "\x30\x44\x02\x20" + std::string(32, '\x11') + "\x02\x20" + std::string(32, '\x22'));
}

TEST_F(Pkcs11Sm2Test, AKeyOfAnotherTypeThanTheMakersIsUnknown) {
    SetServiceNumber("Pkcs11Sm2Mechanism", kVendorMechanism);
    SetServiceNumber("Pkcs11Sm2KeyType", kVendorKey + 1);
    std::string signature;
    EXPECT_EQ(SignSm2(signature), kServiceAlgorithmUnknown);
}

TEST_F(Pkcs11Sm2Test, WithoutAKeyTypeEveryKeyButRsaIsTheMakers) {
    SetServiceNumber("Pkcs11Sm2Mechanism", kVendorMechanism);
    Fake().signature = std::string(64, '\x11');
    std::string signature;
    EXPECT_EQ(SignSm2(signature), kServiceOk);
}

TEST_F(Pkcs11Sm2Test, ADigestOfAnotherLengthIsABadArgument) {
    SetServiceNumber("Pkcs11Sm2Mechanism", kVendorMechanism);
    std::string signature;
    ASSERT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    EXPECT_EQ(Device().SignDigest(kCertId, HashAlgorithm::kSha1, std::string(20, 'e'), signature),
              kServiceBadArgument);
}

TEST_F(Pkcs11Sm2Test, ASignatureThatIsNoneIsAFailureOfTheToken) {
    SetServiceNumber("Pkcs11Sm2Mechanism", kVendorMechanism);
    Fake().signature = "short";
    std::string signature = "untouched";
    EXPECT_EQ(SignSm2(signature), kServiceTokenFailure);
    EXPECT_EQ(signature, "untouched");
}

TEST_F(Pkcs11DeviceTest, AFileReplacedByAnotherProgramIsReadAnew) {
    const CK_OBJECT_HANDLE old = AddFile("seal", "old");
    std::string content;
    ASSERT_EQ(Device().ReadFile(kCertId, "seal", content), kServiceOk);
    Fake().objects.erase(old);
    AddFile("seal", "new");
    EXPECT_EQ(Device().ReadFile(kCertId, "seal", content), kServiceOk);
    EXPECT_EQ(content, "new");
}

TEST_F(Pkcs11DeviceTest, AHandleThatNowBelongsToAnotherObjectIsNotTrusted) {
    const CK_OBJECT_HANDLE handle = AddFile("seal", "seal");
    std::vector<std::string> names;
    ASSERT_EQ(Device().ListFiles(kCertId, names), kServiceOk);
    Fake().objects[handle][CKA_LABEL] = "another name";
    std::string content;
    EXPECT_EQ(Device().ReadFile(kCertId, "seal", content), kServiceNoSuchFile);
    Fake().objects[handle][CKA_LABEL] = "seal";
    Fake().objects[handle][CKA_OBJECT_ID] = "another owner";
    EXPECT_EQ(Device().ReadFile(kCertId, "seal", content), kServiceNoSuchFile);
}

TEST_F(Pkcs11DeviceTest, AReplacedFileLeavesOneObject) {
    AddFile("seal", "old");
    AddFile("seal", "older");
    ASSERT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    ASSERT_EQ(Device().WriteFile(kCertId, "seal", "new"), kServiceOk);
    EXPECT_EQ(Fake().objects.size(), 3u);
    std::string content;
    EXPECT_EQ(Device().ReadFile(kCertId, "seal", content), kServiceOk);
    EXPECT_EQ(content, "new");
    EXPECT_EQ(Device().WriteFile(kCertId, "", "new"), kServiceBadArgument);
}

TEST_F(Pkcs11DeviceTest, AFileThatCannotBeWrittenLeavesTheOldOne) {
    AddFile("seal", "old");
    EXPECT_EQ(Device().WriteFile(kCertId, "seal", "new"), kServicePinUnavailable);
    ASSERT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    Fake().failingCall = "C_CreateObject";
    Fake().failure = CKR_DEVICE_MEMORY;
    EXPECT_EQ(Device().WriteFile(kCertId, "seal", "new"), kServiceTokenFailure);
    std::string content;
    EXPECT_EQ(Device().ReadFile(kCertId, "seal", content), kServiceOk);
    EXPECT_EQ(content, "old");
}

TEST_F(Pkcs11DeviceTest, AModuleThatStopsAtAMissingAttributeIsReadAllTheSame) {
    Fake().stopsAtMissingAttribute = true;
    Fake().objects[m_certificateObject].erase(CKA_LABEL);
    AddFile("seal", std::string(100'000, 'x'));
    EXPECT_EQ(List().size(), 1u);
    std::string content;
    EXPECT_EQ(Device().ReadFile(kCertId, "seal", content), kServiceOk);
    EXPECT_EQ(content, std::string(100'000, 'x'));
}

TEST_F(Pkcs11DeviceTest, ACertificateWithoutNameIsCalledByItsLabelOrItsId) {
    Fake().objects[m_certificateObject][CKA_VALUE] =
        MakeCertificate(QuickKey().get(), {.commonName = ""});
    ASSERT_EQ(List().size(), 1u);
    EXPECT_EQ(List()[0].label, "label");
    Fake().objects[m_certificateObject].erase(CKA_LABEL);
    EXPECT_EQ(List()[0].label, "01");
}

TEST_F(Pkcs11DeviceTest, ACertificateWithoutIdIsNotListed) {
    Fake().objects[m_certificateObject].erase(CKA_ID);
    EXPECT_THAT(List(), IsEmpty());
}

TEST_F(Pkcs11DeviceTest, ATokenThatWantsNoLoginCountsAsLoggedIn) {
    Fake().flags &= ~static_cast<CK_FLAGS>(CKF_LOGIN_REQUIRED);
    Fake().objects[m_keyObject].erase(CKA_PRIVATE);
    EXPECT_TRUE(Device().IsLoggedIn(kCertId));
}

TEST_F(Pkcs11DeviceTest, ATokenThatIsNotInitialisedDoesNotCount) {
    Fake().flags &= ~static_cast<CK_FLAGS>(CKF_TOKEN_INITIALIZED);
    EXPECT_EQ(Device().CountKeys(), 0);
    EXPECT_THAT(List(), IsEmpty());
}

TEST_F(Pkcs11DeviceTest, AWriteProtectedTokenIsUsedForReading) {
    Fake().writeProtected = true;
    EXPECT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    EXPECT_TRUE(Device().IsLoggedIn(kCertId));
}

TEST_F(Pkcs11DeviceTest, AModuleInitialisedBySomebodyElseIsNotFinalised) {
    Fake().initialised = true;
    EXPECT_EQ(List().size(), 1u);
    m_device.reset();
    EXPECT_EQ(Fake().calls["C_Finalize"], 0);
    Fake().initialised = false;
}

TEST_F(Pkcs11DeviceTest, AModuleIsFinalisedWithItsLastDevice) {
    auto first = OpenPkcs11Devices();
    auto second = OpenPkcs11Devices();
    first.clear();
    EXPECT_TRUE(Fake().initialised);
    second.clear();
    EXPECT_FALSE(Fake().initialised);
    EXPECT_EQ(Fake().calls["C_Initialize"], 1);
    EXPECT_EQ(Fake().calls["C_Finalize"], 1);
}

TEST_F(Pkcs11DeviceTest, AModuleThatDoesNotInitialiseIsLeftOut) {
    for (const char* call : {"C_GetFunctionList", "C_Initialize"}) {
        Fake().failingCall = call;
        Fake().failure = CKR_GENERAL_ERROR;
        EXPECT_THAT(OpenPkcs11Devices(), IsEmpty()) << call;
    }
}

// Every call in turn fails for a reason of the token's own, and is told as that.
class Pkcs11FailureTest : public Pkcs11DeviceTest, public testing::WithParamInterface<const char*> {
protected:
    void Fail() {
        Fake().failingCall = GetParam();
        Fake().failure = CKR_DEVICE_ERROR;
    }
    void TearDown() override {
        Fake().failingCall.clear();
        Pkcs11DeviceTest::TearDown();
    }
};

class Pkcs11ListFailureTest : public Pkcs11FailureTest {};

TEST_P(Pkcs11ListFailureTest, FailsTheListing) {
    Device();
    Fail();
    std::vector<DeviceCertificate> certificates;
    EXPECT_EQ(m_device->ListCertificates(certificates), kServiceTokenFailure);
    EXPECT_THAT(certificates, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(EachCall, Pkcs11ListFailureTest,
                         testing::Values("C_GetSlotList", "C_OpenSession", "C_FindObjectsInit",
                                         "C_FindObjects", "C_FindObjectsFinal",
                                         "C_GetAttributeValue"));

class Pkcs11SignFailureTest : public Pkcs11FailureTest {};

TEST_P(Pkcs11SignFailureTest, FailsTheSignatureAndLeavesTheOutputAlone) {
    ASSERT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    Fake().signature = std::string(256, 's');
    Fail();
    std::string signature = "untouched";
    EXPECT_EQ(Sign(signature), kServiceTokenFailure);
    EXPECT_EQ(signature, "untouched");
    Fake().failingCall.clear();
    EXPECT_EQ(Sign(signature), kServiceOk);
}

INSTANTIATE_TEST_SUITE_P(EachCall, Pkcs11SignFailureTest,
                         testing::Values("C_FindObjectsInit", "C_FindObjects", "C_FindObjectsFinal",
                                         "C_GetAttributeValue", "C_SignInit", "C_Sign"));

class Pkcs11FileFailureTest : public Pkcs11FailureTest {};

TEST_P(Pkcs11FileFailureTest, FailsTheReplacementOfAFile) {
    AddFile("seal", "old");
    ASSERT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    Fail();
    EXPECT_EQ(Device().WriteFile(kCertId, "seal", "new"), kServiceTokenFailure);
}

INSTANTIATE_TEST_SUITE_P(EachCall, Pkcs11FileFailureTest,
                         testing::Values("C_FindObjectsInit", "C_FindObjects", "C_FindObjectsFinal",
                                         "C_GetAttributeValue", "C_CreateObject",
                                         "C_DestroyObject"));

TEST_F(Pkcs11DeviceTest, AFailingLoginIsAFailureOfTheToken) {
    Fake().failingCall = "C_Login";
    Fake().failure = CKR_DEVICE_ERROR;
    EXPECT_EQ(Device().Login(kCertId, "123456"), kServiceTokenFailure);
    Fake().failingCall = "C_GetSessionInfo";
    EXPECT_FALSE(Device().IsLoggedIn(kCertId));
    Fake().failingCall = "C_Logout";
    EXPECT_EQ(Device().Logout(kCertId), kServiceTokenFailure);
}

TEST_F(Pkcs11DeviceTest, ATokenThatCannotTellItsInfoAnyMoreIsRemoved) {
    ASSERT_EQ(Device().Login(kCertId, "123456"), kServiceOk);
    Fake().failingCall = "C_GetTokenInfo";
    Fake().failure = CKR_DEVICE_ERROR;
    EXPECT_FALSE(Device().IsLoggedIn(kCertId));
    EXPECT_EQ(Device().CountKeys(), 0);
    std::string out;
    EXPECT_EQ(Sign(out), kServiceKeyRemoved);
}

}  // namespace
