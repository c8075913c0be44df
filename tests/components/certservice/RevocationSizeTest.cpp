#include "components/certservice/ServiceTest.h"

namespace {

constexpr std::time_t kHour = 3600;
constexpr int kEntries = 12'000;

// Lists as a busy authority's are.
class RevocationSizeTest : public ServiceTest {
protected:
    static std::string Serial(int number) {
        char text[16];
        std::snprintf(text, sizeof text, "%08X", 0x10000000 + number * 7);
        return text;
    }
    void ExpectFound(KeyKind kind) {
        for (const int number : {0, 1, kEntries / 2, kEntries - 1}) {
            EXPECT_EQ(Validate(m_context, Certificate(kind, Serial(number))), -3) << number;
        }
        EXPECT_EQ(Validate(m_context, Certificate(kind, "10000001")), 0);
        EXPECT_EQ(Validate(m_context, Certificate(kind, Serial(kEntries))), 0);
    }
    std::string Certificate(KeyKind kind, const std::string& serial) {
        CertificateRequest request;
        request.commonName = "One of many";
        request.serial = serial;
        return Authority(kind).Issue(m_key.get(), request);
    }

    KeyHandle m_key{GenerateKey(KeyKind::kSm2, 0)};
    std::time_t m_now = std::time(nullptr);
    void* m_context = Open();
};

TEST_F(RevocationSizeTest, ACertificateIsFoundAnywhereInAListOfManyThousands) {
    std::vector<RevokedCertificate> revoked;
    for (int i = kEntries - 1; i >= 0; --i) revoked.push_back({Serial(i), m_now - kHour});
    for (const KeyKind kind : {KeyKind::kSm2, KeyKind::kRsa}) {
        const std::string list =
            Authority(kind).RevocationList(revoked, m_now - kHour, m_now + kHour);
        EXPECT_GT(list.size(), 250u * 1024);
        ASSERT_EQ(SetRevocationList(m_context, list), 0);
        ExpectFound(kind);
        std::string changed = list;
        changed[list.size() / 2] ^= 1;
        if (SetRevocationList(m_context, changed) == 0) {
            EXPECT_EQ(Validate(m_context, Certificate(kind, "10000001")), -1);
        }
    }
}

TEST_F(RevocationSizeTest, AListThatTheOpenSslProgramMadeIsAsGood) {
    std::string index;
    for (int i = 0; i < kEntries; ++i) {
        index += "R\t491231235959Z\t200101000000Z,superseded\t" + Serial(i) + "\tunknown\t/CN=x\n";
    }
    WriteFile(Path("index"), index);
    WriteFile(Path("number"), "01\n");
    WriteFile(Path("ca.cnf"),
              "[ca]\ndefault_ca=d\n[d]\ndatabase=index\ncrlnumber=number\ndefault_md=sha256\n"
              "default_crl_days=1\ncrl_extensions=e\n[e]\nauthorityKeyIdentifier=keyid\n");
    Authority(KeyKind::kRsa);
    const ProgramRun run = OpenSsl(
        "ca -gencrl -config ca.cnf -cert trust/velmora-development-rsa.pem -keyfile ca/rsa.pem "
        "-out list.pem");
    ASSERT_EQ(run.status, 0) << run.output;
    const std::string list = ReadFile(Path("list.pem"));
    EXPECT_GT(list.size(), 500u * 1024);
    ASSERT_EQ(SetRevocationList(m_context, list), 0);
    ExpectFound(KeyKind::kRsa);
}

}  // namespace
