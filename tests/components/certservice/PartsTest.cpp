#include "components/certservice/Certificate.h"
#include "components/certservice/DataOut.h"
#include "components/certservice/KeyImport.h"
#include "components/certservice/KeyRing.h"
#include "components/certservice/Places.h"
#include "components/certservice/ServiceSettings.h"
#include "components/certservice/ServiceTest.h"
#include "components/crypto/Signature.h"

namespace {

// One certificate whose PIN is kPin.
class FakeDevice : public KeyDevice {
public:
    int CountKeys() override { return 1; }
    int ListCertificates(std::vector<DeviceCertificate>& certificates) override {
        if (listCode == kServiceOk) certificates.push_back({"fake/1", "标签", "der"});
        return listCode;
    }
    bool Owns(const std::string& certId) override { return certId == "fake/1"; }
    int ExportCertificate(const std::string&, std::string& der) override {
        der = "der";
        return exportCode;
    }
    int Login(const std::string&, std::string_view pin) override {
        if (retries == 0) return kServiceKeyLocked;
        if (pin != kPin) return --retries == 0 ? kServiceKeyLocked : kServicePinWrong;
        loggedIn = true;
        return kServiceOk;
    }
    int Logout(const std::string&) override {
        loggedIn = false;
        return kServiceOk;
    }
    bool IsLoggedIn(const std::string&) override { return loggedIn; }
    int RetriesLeft(const std::string&) override { return retries; }
    int SignDigest(const std::string&, HashAlgorithm, std::string_view digest,
                   std::string& signature) override {
        signature = "signed " + std::string(digest);
        return kServiceOk;
    }
    int ListFiles(const std::string&, std::vector<std::string>& names) override {
        names = files;
        return kServiceOk;
    }
    int ReadFile(const std::string&, const std::string&, std::string&) override {
        return kServiceNoSuchFile;
    }
    int WriteFile(const std::string&, const std::string&, std::string_view) override {
        return kServiceNotSupported;
    }

    std::vector<std::string> files;
    int listCode = kServiceOk;
    int exportCode = kServiceOk;
    int retries = 3;
    bool loggedIn = false;
};

// Types what the test says; without an answer left the user closes the entry.
class FakePinEntry : public PinEntry {
public:
    explicit FakePinEntry(std::vector<std::string>& questions) : m_questions(questions) {}
    int Ask(const std::string& label, int retries, const std::string& error,
            std::string& pin) override {
        m_questions.push_back(label + "," + std::to_string(retries) + "," + error);
        if (answers.empty()) return kServicePinCancelled;
        pin = answers.front();
        answers.erase(answers.begin());
        return kServiceOk;
    }
    std::vector<std::string> answers;

private:
    std::vector<std::string>& m_questions;
};

class KeyRingTest : public testing::Test {
protected:
    KeyRingTest() {
        auto device = std::make_unique<FakeDevice>();
        m_device = device.get();
        auto entry = std::make_unique<FakePinEntry>(m_questions);
        m_entry = entry.get();
        std::vector<std::unique_ptr<KeyDevice>> devices;
        devices.push_back(std::move(device));
        m_ring = std::make_unique<KeyRing>(std::move(devices), std::move(entry));
    }
    int Sign() { return m_ring->SignDigest("fake/1", HashAlgorithm::kSm3, "digest", m_signature); }

    std::vector<std::string> m_questions;
    FakeDevice* m_device = nullptr;
    FakePinEntry* m_entry = nullptr;
    std::unique_ptr<KeyRing> m_ring;
    std::string m_signature;
};

TEST_F(KeyRingTest, WhoHasLoggedInIsntAsked) {
    ASSERT_EQ(m_ring->Login("fake/1", kPin), 0);
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(m_signature, "signed digest");
    EXPECT_TRUE(m_questions.empty());
}

TEST_F(KeyRingTest, ThePinIsAskedForOnceAndTheLoginStands) {
    m_entry->answers = {kPin};
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(m_questions, std::vector<std::string>{"标签,3,"});
    EXPECT_EQ(m_ring->LastLogin(), "fake/1");
}

TEST_F(KeyRingTest, AWrongPinIsAskedForAgainWithWhatWentWrong) {
    m_entry->answers = {"wrong", kPin};
    EXPECT_EQ(Sign(), 0);
    EXPECT_EQ(m_questions, (std::vector<std::string>{"标签,3,", "标签,2,PIN码错误"}));
}

TEST_F(KeyRingTest, TheAskingEndsWhenTheKeyLocks) {
    m_entry->answers = {"a", "b", "c", kPin};
    EXPECT_EQ(Sign(), kServiceKeyLocked);
    EXPECT_EQ(m_questions.size(), 3u);
    EXPECT_EQ(Sign(), kServiceKeyLocked);
    EXPECT_EQ(m_questions.size(), 3u) << "a locked key isn't worth a question";
}

TEST_F(KeyRingTest, AWrongAnswerOnATokenThatNeverLocksIsAskedForThreeTimes) {
    m_device->retries = -1;
    m_entry->answers = {"a", "b", "c", kPin};
    EXPECT_EQ(Sign(), kServicePinWrong);
    EXPECT_EQ(m_questions.size(), 3u);
}

TEST_F(KeyRingTest, AFileWhoseNameTheListCantCarryIsLeftOut) {
    m_device->files = {"ESEAL", "a&&&b", "SEAL01&", "", std::string("x\0y", 3), "a&b"};
    std::string list;
    EXPECT_EQ(m_ring->FileList("fake/1", list), 0);
    EXPECT_EQ(list, "ESEAL&&&a&b&&&");
}

TEST_F(KeyRingTest, AUserWhoClosesTheEntryIsTold) {
    EXPECT_EQ(Sign(), kServicePinCancelled);
    EXPECT_EQ(m_ring->LastLogin(), "");
}

TEST_F(KeyRingTest, APulledTokenIsToldBeforeAnybodyIsAsked) {
    m_device->exportCode = kServiceKeyRemoved;
    EXPECT_EQ(Sign(), kServiceKeyRemoved);
    EXPECT_TRUE(m_questions.empty());
}

TEST_F(KeyRingTest, ADeviceThatFailsIsACodeOnlyIfNoOtherHasACertificate) {
    std::string list;
    m_device->listCode = kServiceTokenFailure;
    EXPECT_EQ(m_ring->UserList(list), kServiceTokenFailure);
    m_device->listCode = kServiceOk;
    EXPECT_EQ(m_ring->UserList(list), 0);
    EXPECT_EQ(list, "标签||fake/1&&&");
}

TEST_F(KeyRingTest, ACertIdOfNoDeviceIsUnknown) {
    std::string text;
    EXPECT_EQ(m_ring->Login("other/1", kPin), kServiceNoSuchCertificate);
    EXPECT_EQ(m_ring->Logout("other/1"), kServiceNoSuchCertificate);
    EXPECT_EQ(m_ring->SignDigest("other/1", HashAlgorithm::kSm3, "digest", text),
              kServiceNoSuchCertificate);
    EXPECT_EQ(m_ring->FileList("other/1", text), kServiceNoSuchCertificate);
    EXPECT_EQ(m_ring->ReadFile("other/1", "ESEAL", text), kServiceNoSuchCertificate);
    EXPECT_EQ(m_ring->ExportCertificate("other/1", text), kServiceNoSuchCertificate);
}

class PendingResultsTest : public testing::Test {
protected:
    int Serve(const std::string& arguments, unsigned char* out, int* outLen) {
        return m_pending.Serve(
            TwoStep::kSignData, arguments,
            [&](std::string& result) {
                result = "result " + std::to_string(++m_computed);
                return m_code;
            },
            out, outLen);
    }
    PendingResults m_pending;
    int m_computed = 0;
    int m_code = kServiceOk;
    unsigned char m_out[32] = {};
    int m_length = 0;
};

TEST_F(PendingResultsTest, AQueryComputesAndItsFetchDelivers) {
    ASSERT_EQ(Serve("a", nullptr, &m_length), 0);
    ASSERT_EQ(Serve("a", m_out, &m_length), 0);
    EXPECT_STREQ(reinterpret_cast<char*>(m_out), "result 1");
    EXPECT_EQ(m_computed, 1);
    m_length = sizeof m_out;
    ASSERT_EQ(Serve("a", m_out, &m_length), 0);
    EXPECT_EQ(m_computed, 2) << "delivered once";
}

TEST_F(PendingResultsTest, EachQueryComputesAnew) {
    ASSERT_EQ(Serve("a", nullptr, &m_length), 0);
    ASSERT_EQ(Serve("a", nullptr, &m_length), 0);
    EXPECT_EQ(m_computed, 2);
}

TEST_F(PendingResultsTest, OtherArgumentsGetNothingOfIt) {
    ASSERT_EQ(Serve("a", nullptr, &m_length), 0);
    ASSERT_EQ(Serve("b", m_out, &m_length), 0);
    EXPECT_STREQ(reinterpret_cast<char*>(m_out), "result 2");
}

TEST_F(PendingResultsTest, AFailureLeavesNothingBehind) {
    ASSERT_EQ(Serve("a", nullptr, &m_length), 0);
    m_code = kServiceKeyRemoved;
    EXPECT_EQ(Serve("a", nullptr, &m_length), kServiceKeyRemoved);
    EXPECT_EQ(Serve("a", m_out, &m_length), kServiceKeyRemoved);
}

class StoreTest : public ServiceTest {
protected:
    int Store(const std::string& name, const std::string& pin = kPin) {
        const KeyHandle key(GenerateKey(KeyKind::kSm2, 0));
        CertificateRequest request;
        request.commonName = "张三";
        const std::string certificate = Authority(KeyKind::kSm2).Issue(key.get(), request);
        return m_keys.Store(name, key.get(), certificate, pin, m_certId);
    }
    std::string m_certId;
};

TEST_F(StoreTest, ANameIsPlainAsciiAndUsedOnce) {
    EXPECT_EQ(Store("A-z_0.9"), 0);
    EXPECT_EQ(m_certId, "DevKeys/A-z_0.9");
    EXPECT_EQ(Store("A-z_0.9"), kServiceBadArgument);
    for (const char* name : {".hidden", "a/b", "a b", "张三", "a&&&b", "a|b"}) {
        EXPECT_EQ(Store(name), kServiceBadArgument) << name;
    }
    EXPECT_EQ(Store(std::string(48, 'x')), 0);
    EXPECT_EQ(Store(std::string(49, 'x')), kServiceBadArgument);
}

TEST_F(StoreTest, AKeyNeedsAPinAndACertificateOfItsOwn) {
    EXPECT_EQ(Store("key", ""), kServiceBadArgument);
    const KeyHandle key(GenerateKey(KeyKind::kSm2, 0));
    EXPECT_EQ(m_keys.Store("key", key.get(), MakeCertificate(KeyKind::kSm2, {}), kPin, m_certId),
              kServiceCertificateDamaged);
    EXPECT_EQ(m_keys.Store("key", key.get(), "nonsense", kPin, m_certId),
              kServiceCertificateDamaged);
}

TEST_F(StoreTest, OtherKindsOfKeyAreRefused) {
    const KeyHandle shortKey(GenerateKey(KeyKind::kRsa, 1024));
    const KeyHandle curve(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"));
    EXPECT_EQ(m_keys.Store("key", shortKey.get(), "x", kPin, m_certId), kServiceAlgorithmUnknown);
    EXPECT_EQ(m_keys.Store("key", curve.get(), "x", kPin, m_certId), kServiceAlgorithmUnknown);
}

TEST_F(StoreTest, AFolderThatCantBeWrittenIsTold) {
    WriteFile(Path("file"), "");
    KeyFolder keys(Path("file"));
    const KeyHandle key(GenerateKey(KeyKind::kSm2, 0));
    const std::string certificate = Authority(KeyKind::kSm2).Issue(key.get(), {});
    EXPECT_EQ(keys.Store("key", key.get(), certificate, kPin, m_certId), kServiceFileUnreadable);
    EXPECT_EQ(keys.CountKeys(), 0);
}

TEST_F(StoreTest, AFilesNameHasNoPathInItAndFitsTheList) {
    ASSERT_EQ(Store("key"), 0);
    for (const char* name : {"", ".x", "a/b", "a&&&b"}) {
        EXPECT_EQ(m_keys.WriteFile(m_certId, name, "x"), kServiceBadArgument) << name;
    }
    EXPECT_EQ(m_keys.WriteFile(m_certId, std::string(65, 'x'), "x"), kServiceBadArgument);
    EXPECT_EQ(m_keys.WriteFile(m_certId, "印章", "x"), 0);
    EXPECT_EQ(m_keys.WriteFile("DevKeys/other", "ESEAL", "x"), kServiceNoSuchCertificate);
}

TEST_F(StoreTest, AnUnlockOfAnUnknownKeyIsRefused) {
    EXPECT_EQ(m_keys.Unlock("DevKeys/other"), kServiceNoSuchCertificate);
}

class KeyImportTest : public ServiceTest {
protected:
    KeyImportTest() {
        Run("req -x509 -newkey rsa:2048 -nodes -subj /CN=a -keyout k.pem -out c.pem");
    }
    void Run(const std::string& arguments) {
        const ProgramRun run = OpenSsl(arguments);
        EXPECT_EQ(run.status, 0) << run.output;
    }
    void Join(const std::string& one, const std::string& other, const std::string& both) {
        WriteFile(Path(both), ReadFile(Path(one)) + ReadFile(Path(other)));
    }
    int Import(const std::string& file, const std::string& password) {
        m_imported = {};
        return ReadKeyImport(ReadFile(Path(file)), password, m_imported);
    }
    ImportedKey m_imported;
};

TEST_F(KeyImportTest, Pkcs12OfTodayAndOfTwentyYearsAgoIsRead) {
    for (const char* options : {"", "-legacy", "-descert -legacy"}) {
        Run(std::string("pkcs12 -export -in c.pem -inkey k.pem -out k.p12 -passout pass:secret ") +
            options);
        ASSERT_EQ(Import("k.p12", "secret"), 0) << options;
        EXPECT_NE(m_imported.key, nullptr);
        std::string certId;
        EXPECT_EQ(m_keys.Store(std::string("k") + std::to_string(Size(options)),
                               m_imported.key.get(), m_imported.certificate, kPin, certId),
                  0);
        EXPECT_EQ(Import("k.p12", "wrong"), kServicePinWrong) << options;
    }
}

TEST_F(KeyImportTest, Pkcs12WithoutAMacIsRefused) {
    Run("pkcs12 -export -nomac -in c.pem -inkey k.pem -out k.p12 -passout pass:secret");
    EXPECT_EQ(Import("k.p12", "secret"), kServiceKeyDamaged);
}

TEST_F(KeyImportTest, PemIsReadWithItsPasswordAndWithout) {
    Run("pkcs8 -topk8 -in k.pem -passout pass:secret -out e.pem");
    Join("c.pem", "k.pem", "plain.pem");
    Join("e.pem", "c.pem", "both.pem");
    EXPECT_EQ(Import("plain.pem", ""), 0);
    EXPECT_EQ(Import("both.pem", "secret"), 0);
    EXPECT_EQ(Import("both.pem", "wrong"), kServicePinWrong);
    EXPECT_EQ(Import("e.pem", "secret"), kServiceCertificateDamaged);
    EXPECT_EQ(Import("c.pem", ""), kServiceKeyDamaged);
    EXPECT_EQ(Import("absent", ""), kServiceKeyDamaged);
}

TEST_F(KeyImportTest, AnSm2KeyInPemIsRead) {
    Run("genpkey -algorithm SM2 -out s.pem");
    Run("req -x509 -key s.pem -sm3 -sigopt distid:1234567812345678 -subj /CN=a -out sc.pem");
    Join("s.pem", "sc.pem", "sm2.pem");
    ASSERT_EQ(Import("sm2.pem", ""), 0);
    EXPECT_EQ(KindOfKey(m_imported.key.get()), KeyKind::kSm2);
}

class PlacesTest : public testing::Test {
protected:
    TemporaryPrefix m_prefix;
};

TEST_F(PlacesTest, ASettingIsTakenAsItStandsButForItsLastSeparator) {
    const std::string standard = KeyFolderPath();
    SetServicePath("TrustFolder", "/srv/trust/");
    SetServicePath("KeyFolder", "");
    EXPECT_EQ(TrustFolderPath(), "/srv/trust");
    EXPECT_EQ(KeyFolderPath(), standard) << "an empty one counts as absent";
}

class CertificateCacheTest : public ServiceTest {
protected:
    std::string Make(const std::string& serial, KeyKind kind = KeyKind::kSm2) {
        CertificateRequest request;
        request.commonName = "Cached";
        request.serial = serial;
        return MakeCertificate(kind, request);
    }
    std::string SerialIn(std::string_view der) {
        const X509* certificate = m_cache.Parse(der);
        return certificate ? SerialOf(certificate) : "none";
    }

    CertificateCache m_cache;
};

TEST_F(CertificateCacheTest, OneOfSeveralIsReadOnceAndTellsItsOwn) {
    const std::string first = Make("11");
    const std::string second = Make("22");
    const X509* const object = m_cache.Parse(first);
    EXPECT_EQ(SerialIn(first), "11");
    EXPECT_EQ(SerialIn(second), "22");
    EXPECT_EQ(m_cache.Parse(first), object);
    EXPECT_EQ(SerialIn("no certificate"), "none");
    EXPECT_EQ(SerialIn(""), "none");
    EXPECT_EQ(SerialIn(first + "x"), "11");
}

TEST_F(CertificateCacheTest, TheOneAskedForLongestAgoGivesWay) {
    std::vector<std::string> ders;
    for (std::size_t i = 0; i <= CertificateCache::kMost; ++i) {
        ders.push_back(Make(std::to_string(10 + i)));
    }
    const std::vector<std::string> all(ders.begin(), ders.end() - 1);
    for (const std::string& der : all) m_cache.Parse(der);
    const X509* const first = m_cache.Parse(ders[0]);
    EXPECT_EQ(SerialIn(ders.back()), std::to_string(10 + CertificateCache::kMost));
    EXPECT_EQ(m_cache.Parse(ders[0]), first);
    for (std::size_t i = 0; i < ders.size(); ++i) {
        EXPECT_EQ(SerialIn(ders[i]), std::to_string(10 + i));
    }
}

TEST_F(CertificateCacheTest, EachDigestIsThatOfItsOwnKey) {
    const std::string ders[] = {Make("11"), Make("22"), Make("33", KeyKind::kRsa)};
    for (int i = 0; i < 2; ++i) {
        for (const std::string& der : ders) {
            const CertificateHandle parsed = ParseCertificate(der);
            const bool rsa = der == ders[2];
            const HashAlgorithm hash = rsa ? HashAlgorithm::kSha256 : HashAlgorithm::kSm3;
            EXPECT_EQ(m_cache.DigestFor(der, hash, "data"),
                      DigestForKey(X509_get0_pubkey(parsed.get()), hash, "data"));
        }
    }
    EXPECT_EQ(m_cache.DigestFor("no certificate", HashAlgorithm::kSm3, "data"), "");
}

TEST_F(CertificateCacheTest, ALongOneTakesThePlaceOfTheOthers) {
    const std::string plain = Make("11");
    const std::string longOne = Make("22") + std::string(1 << 20, 'x');
    EXPECT_EQ(SerialIn(plain), "11");
    EXPECT_EQ(SerialIn(longOne), "22");
    EXPECT_EQ(SerialIn(plain), "11");
    EXPECT_EQ(SerialIn(longOne), "22");
}

}  // namespace
