// The scan by phone through the service's exports.

#include <filesystem>

#include "components/certservice/FileRights.h"
#include "components/certservice/ScanDevice.h"
#include "components/certservice/ScanPhone.h"
#include "components/certservice/ServiceTest.h"
#include "components/crypto/Signature.h"
#include "foundation/Text.h"

namespace {

std::string Request(const std::string& type = "1") {
    return Base64Encode(R"({"appid":"a","cardid":"","cardimage":"","cardname":"",)"
                        R"("showselectcertwnd":"1","type":")" +
                        type + "\"}");
}

class ScanDeviceTest : public ServiceTest {
protected:
    ScanDeviceTest() : m_phone(ScanFolderIn(Path("keys"))) {}

    // A person with a key on the phone, who answers.
    void MakePhone(const std::string& person = "zhang", KeyKind kind = KeyKind::kSm2) {
        MakePerson(person, kind);
        SetPhone({person, kPin, ScanAnswer::kAccept});
    }
    void MakePerson(const std::string& person, KeyKind kind = KeyKind::kSm2) {
        const KeyHandle key(GenerateKey(kind, 2048));
        CertificateRequest request;
        request.commonName = person;
        std::string certId;
        ASSERT_EQ(m_phone.Store(person, key.get(), Authority(kind).Issue(key.get(), request), kPin,
                                certId),
                  kServiceOk);
    }
    void SetPhone(const ScanPhone& phone) {
        ASSERT_EQ(WriteScanPhone(Path("keys"), phone), kServiceOk);
    }
    void Bring(const std::string& name, const std::string& content,
               const std::string& person = "zhang") {
        ASSERT_EQ(m_phone.WriteFile(kKeyFolderPrefix + person, name, content), kServiceOk);
    }
    std::string RecordPath() const { return Path("keys/.scan/phone.json"); }

    Answer UserList(void* context) {
        return TwoSteps(
            [&](unsigned char* out, int* outLen) { return SOF_GetUserList(context, out, outLen); });
    }
    Answer Files(void* context) {
        return TwoSteps([&](unsigned char* out, int* outLen) {
            return EnumFilesInDevice(context, kScanCertId, out, outLen);
        });
    }
    Answer File(void* context, const std::string& name) {
        return TwoSteps([&](unsigned char* out, int* outLen) {
            return SOF_ReadFile(context, kScanCertId, name.c_str(), out, outLen);
        });
    }
    int Count(void* context) {
        int count = -1;
        EXPECT_EQ(GetDeviceCountEx(context, 1, &count), 0);
        return count;
    }
    int Scan(void* context, const std::string& pin = Request()) {
        return SOF_Login(context, kScanCertId, pin.c_str());
    }
    int Logout(void* context) { return SOF_Logout(context, kScanCertId); }

    KeyFolder m_phone;
};

TEST_F(ScanDeviceTest, AMachineWithoutAPhoneHasNoDeviceAndKnowsNoSuchCertificate) {
    const std::string certId = MakeKey(KeyKind::kSm2);
    void* context = Open();
    EXPECT_EQ(Count(context), 1);
    EXPECT_EQ(UserList(context), (Answer{0, "张三||" + certId + "&&&"}));
    EXPECT_EQ(Scan(context), kServiceNoSuchCertificate);
    EXPECT_EQ(Logout(context), kServiceNoSuchCertificate);
    EXPECT_EQ(Export(context, kScanCertId).code, kServiceNoSuchCertificate);
    EXPECT_EQ(Files(context).code, kServiceNoSuchCertificate);
    EXPECT_EQ(File(context, "SEAL01").code, kServiceNoSuchCertificate);
    EXPECT_EQ(SignData(context, kScanCertId, "data").code, kServiceNoSuchCertificate);
}

TEST_F(ScanDeviceTest, WithAPhoneThereIsOneMoreDeviceAndItsPlaceholderBehindTheKeys) {
    const std::string certId = MakeKey(KeyKind::kSm2);
    MakePhone();
    void* context = Open();
    EXPECT_EQ(Count(context), 2);
    EXPECT_EQ(UserList(context),
              (Answer{0, "张三||" + certId +
                             "&&&手机扫码||HLVQDefaultContainer/hlvqDev000000000000000000&&&"}));
}

TEST_F(ScanDeviceTest, ItsKindIsHardAsTheLibraryWantsIt) {
    MakePhone();
    unsigned char kind[32] = {};
    int length = sizeof kind;
    ASSERT_EQ(GetDeviceInfo(Open(), kScanCertId, 7, kind, &length), 0);
    EXPECT_STREQ(reinterpret_cast<char*>(kind), "HARD");
}

TEST_F(ScanDeviceTest, TheKeysOnThePhoneAreNoKeysOfTheMachine) {
    MakePhone();
    void* context = Open();
    EXPECT_EQ(Export(context, "DevKeys/zhang").code, kServiceNoSuchCertificate);
    EXPECT_EQ(Export(context, "DevKeys/.scan").code, kServiceNoSuchCertificate);
}

TEST_F(ScanDeviceTest, AnotherIdentifierOfTheScansKindIsNobodys) {
    MakePhone();
    void* context = Open();
    EXPECT_EQ(Export(context, "HLVQDefaultContainer/hlvqDev000000000000000001").code,
              kServiceNoSuchCertificate);
    EXPECT_EQ(Export(context, "hlvqDev000000000000000000").code, kServiceNoSuchCertificate);
}

TEST_F(ScanDeviceTest, TheFilesAreThereFromTheLoginToTheLogout) {
    MakePhone();
    Bring("SEAL01", "one");
    Bring("HLVQSEAL_2", "two");
    Bring("ESEAL3", "three");
    void* context = Open();
    EXPECT_EQ(Files(context), (Answer{0, ""}));
    EXPECT_EQ(File(context, "SEAL01").code, kServiceNoSuchFile);
    ASSERT_EQ(Scan(context), 0);
    EXPECT_EQ(Files(context), (Answer{0, "ESEAL3&&&HLVQSEAL_2&&&SEAL01&&&"}));
    EXPECT_EQ(File(context, "SEAL01"), (Answer{0, "one"}));
    EXPECT_EQ(File(context, "SEAL02").code, kServiceNoSuchFile);
    ASSERT_EQ(Logout(context), 0);
    EXPECT_EQ(Files(context), (Answer{0, ""}));
    EXPECT_EQ(File(context, "SEAL01").code, kServiceNoSuchFile);
}

TEST_F(ScanDeviceTest, TheSessionIsOfTheProcessAndEndsWithItsLastContext) {
    MakePhone();
    Bring("SEAL01", "one");
    void* context = nullptr;
    ASSERT_EQ(SOF_Initialize(&context), 0);
    ASSERT_EQ(Scan(context), 0);
    void* other = nullptr;
    ASSERT_EQ(SOF_Initialize(&other), 0);
    EXPECT_EQ(Files(other), (Answer{0, "SEAL01&&&"}));
    ASSERT_EQ(SOF_Finalize(context), 0);
    ASSERT_EQ(SOF_Finalize(other), 0);
    EXPECT_EQ(Files(Open()), (Answer{0, ""}));
}

TEST_F(ScanDeviceTest, ALogoutWithoutALoginIsNoFailure) {
    MakePhone();
    EXPECT_EQ(Logout(Open()), 0);
}

TEST_F(ScanDeviceTest, TheCertificateOfThePersonCanBeHadAtAnyTime) {
    MakePhone();
    void* context = Open();
    const Answer before = Export(context, kScanCertId);
    ASSERT_EQ(before.code, 0);
    EXPECT_EQ(Field(context, before.data, 17), (Answer{0, "zhang"}));
    EXPECT_EQ(Validate(context, before.data), 0);
    ASSERT_EQ(Scan(context), 0);
    EXPECT_EQ(Export(context, kScanCertId), before);
}

TEST_F(ScanDeviceTest, ASessionSignsWithThePersonsKeyAndWithoutOneAScanIsNeeded) {
    for (const KeyKind kind : {KeyKind::kSm2, KeyKind::kRsa}) {
        MakePhone(kind == KeyKind::kSm2 ? "sm2" : "rsa", kind);
        void* context = Open();
        EXPECT_EQ(SignData(context, kScanCertId, "data").code, kServiceScanNeeded);
        ASSERT_EQ(Scan(context), 0);
        const Answer signature = SignData(context, kScanCertId, "data");
        ASSERT_EQ(signature.code, 0);
        const Answer certificate = Export(context, kScanCertId);
        EXPECT_EQ(
            SOF_VerifySignedData(context, Bytes(certificate.data), Size(certificate.data),
                                 Bytes("data"), 4, Bytes(signature.data), Size(signature.data)),
            0);
        const Answer message = SignMessage(context, kScanCertId, "data");
        ASSERT_EQ(message.code, 0);
        EXPECT_EQ(SOF_VerifySignedMessage(context, Bytes(message.data), Size(message.data),
                                          Bytes("data"), 4),
                  0);
        ASSERT_EQ(Logout(context), 0);
        EXPECT_EQ(SignData(context, kScanCertId, "data").code, kServiceScanNeeded);
    }
}

TEST_F(ScanDeviceTest, ARequestThatIsWrongIsRefusedWithItsOwnCodeAndBeginsNoSession) {
    MakePhone();
    Bring("SEAL01", "one");
    void* context = Open();
    EXPECT_EQ(Scan(context, ""), kServiceScanNotJson);
    EXPECT_EQ(Scan(context, "123456"), kServiceScanNotBase64);
    EXPECT_EQ(Scan(context, Base64Encode("[]")), kServiceScanNotJson);
    EXPECT_EQ(Scan(context, Base64Encode("{}")), kServiceScanMemberMissing);
    EXPECT_EQ(Scan(context, Request("2")), kServiceScanMemberValue);
    EXPECT_EQ(Files(context), (Answer{0, ""}));
}

TEST_F(ScanDeviceTest, AFailedLoginLeavesASessionAsItWas) {
    MakePhone();
    Bring("SEAL01", "one");
    void* context = Open();
    ASSERT_EQ(Scan(context), 0);
    EXPECT_EQ(Scan(context, Request("2")), kServiceScanMemberValue);
    EXPECT_EQ(Files(context), (Answer{0, "SEAL01&&&"}));
    EXPECT_EQ(SignData(context, kScanCertId, "data").code, 0);
}

TEST_F(ScanDeviceTest, APhoneThatRefusesAndOneThatDoesntAnswerAreToldApart) {
    MakePhone();
    void* context = Open();
    SetPhone({"zhang", kPin, ScanAnswer::kRefuse});
    EXPECT_EQ(Scan(context), kServiceScanRefused);
    EXPECT_EQ(Scan(context, "x"), kServiceScanNotBase64) << "the request comes before the answer";
    SetPhone({"zhang", kPin, ScanAnswer::kSilent});
    EXPECT_EQ(Scan(context), kServiceScanUnanswered);
    EXPECT_EQ(SignData(context, kScanCertId, "data").code, kServiceScanNeeded);
    SetPhone({"zhang", kPin, ScanAnswer::kAccept});
    EXPECT_EQ(Scan(context), 0);
}

TEST_F(ScanDeviceTest, ASessionStaysWithThePersonWhoBeganItUntilTheNextScan) {
    MakePhone();
    Bring("SEAL01", "one");
    MakePerson("li");
    Bring("SEAL01", "two", "li");
    void* context = Open();
    ASSERT_EQ(Scan(context), 0);
    SetPhone({"li", kPin, ScanAnswer::kAccept});
    EXPECT_EQ(Field(context, Export(context, kScanCertId).data, 17), (Answer{0, "zhang"}));
    EXPECT_EQ(File(context, "SEAL01"), (Answer{0, "one"}));
    ASSERT_EQ(Scan(context), 0);
    EXPECT_EQ(Field(context, Export(context, kScanCertId).data, 17), (Answer{0, "li"}));
    EXPECT_EQ(File(context, "SEAL01"), (Answer{0, "two"}));
}

TEST_F(ScanDeviceTest, ARecordThatIsWrongIsADamagedKeyAndNotListed) {
    MakePhone();
    void* context = Open();
    for (const char* record :
         {"", "x", "[]", R"({"person":"zhang"})", R"({"pin":"12345678"})",
          R"({"person":1,"pin":"12345678"})", R"({"person":"zhang","pin":12345678})",
          R"({"person":"zhang","pin":"12345678","answer":"perhaps"})",
          R"({"person":"zhang","pin":"12345678","answer":1})",
          R"({"person":"zhang","pin":"12345678","more":""})",
          R"({"person":"zhang","pin":"12345678"/* mine */})",
          R"({"person":"wang","pin":"12345678"})", R"({"person":"../zhang","pin":"12345678"})"}) {
        WriteFile(RecordPath(), record);
        EXPECT_EQ(Scan(context), kServiceKeyDamaged) << record;
        EXPECT_EQ(Export(context, kScanCertId).code, kServiceKeyDamaged) << record;
        EXPECT_EQ(UserList(context), (Answer{0, ""})) << record;
    }
    WriteFile(RecordPath(), R"({"person":"zhang","pin":"12345678"})");
    EXPECT_EQ(Scan(context), 0) << "without an answer it accepts";
}

TEST_F(ScanDeviceTest, AWrongPinInTheRecordIsADamagedKeyAndNoWrongPin) {
    MakePhone();
    SetPhone({"zhang", "wrong", ScanAnswer::kAccept});
    void* context = Open();
    for (int i = 0; i < 7; ++i) EXPECT_EQ(Scan(context), kServiceKeyDamaged);
    EXPECT_EQ(m_phone.RetriesLeft("DevKeys/zhang"), 0);
}

TEST_F(ScanDeviceTest, APhoneThatIsTakenAwayEndsTheSessionAndIsAKeyThatIsGone) {
    MakePhone();
    Bring("SEAL01", "one");
    void* context = Open();
    ASSERT_EQ(Scan(context), 0);
    ASSERT_EQ(RemoveScanPhone(Path("keys")), kServiceOk);
    EXPECT_EQ(Files(context).code, kServiceKeyRemoved);
    EXPECT_EQ(File(context, "SEAL01").code, kServiceKeyRemoved);
    EXPECT_EQ(SignData(context, kScanCertId, "data").code, kServiceKeyRemoved);
    EXPECT_EQ(Scan(context), kServiceKeyRemoved);
    EXPECT_EQ(UserList(context), (Answer{0, ""}));
    EXPECT_EQ(Count(context), 1);
    SetPhone({"zhang", kPin, ScanAnswer::kAccept});
    EXPECT_EQ(Files(context), (Answer{0, ""})) << "it needs another scan";
}

TEST_F(ScanDeviceTest, AKeyTakenOffThePhoneEndsTheSession) {
    MakePhone();
    Bring("SEAL01", "one");
    void* context = Open();
    ASSERT_EQ(Scan(context), 0);
    std::filesystem::remove_all(Path("keys/.scan/zhang"));
    EXPECT_EQ(Files(context), (Answer{0, ""}));
    EXPECT_EQ(SignData(context, kScanCertId, "data").code, kServiceKeyDamaged);
    EXPECT_EQ(Scan(context), kServiceKeyDamaged);
}

TEST_F(ScanDeviceTest, OtherKeysTakeTheirPinAsBeforeAndNoRequest) {
    const std::string certId = MakeKey(KeyKind::kSm2);
    MakePhone();
    void* context = Open();
    EXPECT_EQ(SOF_Login(context, certId.c_str(), Request().c_str()), kServicePinWrong);
    EXPECT_EQ(SOF_Login(context, certId.c_str(), kPin), 0);
    EXPECT_EQ(SignData(context, kScanCertId, "data").code, kServiceScanNeeded);
    ASSERT_EQ(Scan(context), 0);
    ASSERT_EQ(SOF_Logout(context, certId.c_str()), 0);
    EXPECT_EQ(SignData(context, kScanCertId, "data").code, 0);
}

TEST_F(ScanDeviceTest, TheLastLoginIsTheScans) {
    MakePhone();
    void* context = Open();
    ASSERT_EQ(Scan(context), 0);
    EXPECT_EQ(TwoSteps([&](unsigned char* out, int* outLen) {
                  return SOF_GetLastLoginCertID(context, "", out, outLen);
              }),
              (Answer{0, kScanCertId}));
}

TEST_F(ScanDeviceTest, ASealIsWrittenOntoThePhoneWithoutASession) {
    MakePhone();
    ScanDevice device(Path("keys"));
    ASSERT_EQ(device.WriteFile(kScanCertId, "SEAL01", "one"), kServiceOk);
    std::string content;
    EXPECT_EQ(device.ReadFile(kScanCertId, "SEAL01", content), kServiceNoSuchFile);
    ASSERT_EQ(device.Login(kScanCertId, Request()), kServiceOk);
    EXPECT_EQ(device.ReadFile(kScanCertId, "SEAL01", content), kServiceOk);
    EXPECT_EQ(content, "one");
    EXPECT_TRUE(device.IsLoggedIn(kScanCertId));
    EXPECT_EQ(device.RetriesLeft(kScanCertId), -1);
}

TEST_F(ScanDeviceTest, TheRecordIsForItsOwnerAloneAndReadsAsItWasWritten) {
    for (const ScanAnswer answer :
         {ScanAnswer::kAccept, ScanAnswer::kRefuse, ScanAnswer::kSilent}) {
        SetPhone({"zhang", "1\"2\\3", answer});
        ScanPhone phone;
        ASSERT_EQ(ReadScanPhone(Path("keys"), phone), kServiceOk);
        EXPECT_EQ(phone.person, "zhang");
        EXPECT_EQ(phone.pin, "1\"2\\3");
        EXPECT_EQ(phone.answer, answer);
    }
    EXPECT_TRUE(IsForOwnerAlone(RecordPath()));
    ASSERT_EQ(RemoveScanPhone(Path("keys")), kServiceOk);
    EXPECT_EQ(RemoveScanPhone(Path("keys")), kServiceNoSuchCertificate);
}

TEST_F(ScanDeviceTest, WithoutAFolderOfKeysThereIsNoPhone) {
    ScanDevice device("");
    std::vector<DeviceCertificate> certificates;
    EXPECT_EQ(device.CountKeys(), 0);
    EXPECT_EQ(device.ListCertificates(certificates), kServiceOk);
    EXPECT_TRUE(certificates.empty());
    EXPECT_EQ(device.Login(kScanCertId, Request()), kServiceNoSuchCertificate);
}

}  // namespace
