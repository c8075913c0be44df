#include <ctime>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceTest.h"
#include "components/crypto/Signature.h"
#include "platform/CodePage.h"
#include "support/Environment.h"

namespace {

class CertificateTextTest : public ServiceTest {
protected:
    CertificateTextTest() {
        SetVariable("TZ", "CST-8");
        tzset();
    }
    ~CertificateTextTest() override {
        ClearVariable("TZ");
        tzset();
    }

    static CertificateRequest Full() {
        CertificateRequest request;
        request.organization = "翠枫公司";
        request.organizationalUnit = "法务部";
        request.commonName = "张三, Zhang \"San\"";
        request.email = "zhang@example.com";
        request.serial = "0A1B2C";
        request.notBefore = 1'767'225'600;  // 2026-01-01 00:00:00 UTC
        request.notAfter = 1'798'761'599;   // 2026-12-31 23:59:59 UTC
        request.distributionPoint = "http://192.0.2.7/ca1.crl";
        return request;
    }
    std::string Text(int field) {
        const Answer answer = Field(m_context, m_certificate, field);
        EXPECT_EQ(answer.code, 0) << field;
        return answer.data;
    }
    Answer Extension(const char* oid) {
        return TwoSteps([&](unsigned char* out, int* outLen) {
            return SOF_GetCertInfoByOid(m_context, Bytes(m_certificate), Size(m_certificate), oid,
                                        out, outLen);
        });
    }
    std::string Printed(const std::string& options) {
        WriteFile(Path("certificate"), m_certificate);
        return OpenSsl("x509 -inform DER -noout -in certificate " + options).output;
    }

    void* m_context = Open();
    std::string m_certificate = MakeCertificate(KeyKind::kSm2, Full());
};

TEST_F(CertificateTextTest, TheFieldsThatTheLibraryAsksForAreExact) {
    EXPECT_EQ(Text(2), "0A1B2C");
    EXPECT_EQ(Text(3), "SM2");
    EXPECT_EQ(Text(17), "张三, Zhang \"San\"");
    EXPECT_EQ(Text(33), "C=CN, O=翠枫公司, OU=法务部, CN=张三\\, Zhang \\\"San\\\"");
}

TEST_F(CertificateTextTest, TimesAreLocalTimeAsTheirReaderTakesThem) {
    EXPECT_EQ(Text(11), "20260101080000");
    EXPECT_EQ(Text(12), "20270101075959");
    SetVariable("TZ", "UTC");
    tzset();
    EXPECT_EQ(Text(11), "20260101000000");
}

TEST_F(CertificateTextTest, ATimeWithoutEndKeepsItsFourteenDigits) {
    CertificateRequest request = Full();
    request.notAfter = 253'402'300'799;  // 9999-12-31 23:59:59 UTC
    m_certificate = MakeCertificate(KeyKind::kSm2, request);
    EXPECT_EQ(Text(12), "99991231235959");
}

TEST_F(CertificateTextTest, AnRsaCertificateIsOne) {
    m_certificate = MakeCertificate(KeyKind::kRsa, Full());
    EXPECT_EQ(Text(3), "RSA");
    EXPECT_EQ(Text(4), "sha256WithRSAEncryption");
    EXPECT_EQ(Text(24), "2048");
}

TEST_F(CertificateTextTest, TheOtherFieldsAreWhatTheCertificateSays) {
    EXPECT_EQ(Text(1), "3");
    EXPECT_EQ(Text(4), "SM2-with-SM3");
    EXPECT_EQ(Text(5), "C=CN, O=Velmora, OU=Development only, CN=Velmora Development CA SM2");
    EXPECT_EQ(Text(6), "CN");
    EXPECT_EQ(Text(7), "Velmora");
    EXPECT_EQ(Text(8), "Development only");
    EXPECT_EQ(Text(9), "");
    EXPECT_EQ(Text(10), "Velmora Development CA SM2");
    EXPECT_EQ(Text(13), "CN");
    EXPECT_EQ(Text(14), "翠枫公司");
    EXPECT_EQ(Text(15), "法务部");
    for (const int absent : {16, 18, 19, 20, 21, 22, 28, 32}) EXPECT_EQ(Text(absent), "") << absent;
    EXPECT_EQ(Text(24), "256");
    EXPECT_EQ(Text(27), "Digital Signature, Non Repudiation");
    EXPECT_EQ(Text(29), "CA:FALSE");
    EXPECT_EQ(Text(30), "email:zhang@example.com");
    EXPECT_NE(Text(31).find("http://192.0.2.7/ca1.crl"), std::string::npos);
}

TEST_F(CertificateTextTest, OpenSslSaysTheSame) {
    EXPECT_EQ(Printed("-serial"), "serial=" + Text(2) + "\n");
    std::string fingerprint = Printed("-fingerprint -sha256");
    std::erase(fingerprint, ':');
    EXPECT_NE(fingerprint.find(Text(34)), std::string::npos);
    std::string extensions = Printed("-ext subjectKeyIdentifier,authorityKeyIdentifier");
    std::erase(extensions, ':');
    EXPECT_NE(extensions.find(Text(26)), std::string::npos);
    EXPECT_NE(extensions.find(Text(25)), std::string::npos);
    EXPECT_EQ(Text(25).size(), 40u);
    const CertificateHandle parsed = ParseCertificate(m_certificate);
    EXPECT_EQ(Text(23).size(), 2 * DerOf<i2d_PUBKEY>(X509_get0_pubkey(parsed.get())).size());
}

TEST_F(CertificateTextTest, EveryFieldOfTheTableHasAnAnswerAndNoOtherHas) {
    for (int field = 1; field <= 34; ++field) Text(field);
    for (const int field : {0, -1, 35, 1000}) {
        EXPECT_EQ(Field(m_context, m_certificate, field).code, kServiceNoSuchField);
    }
}

TEST_F(CertificateTextTest, AStatedSizeBeyondTheTextIsFineAndEndsItWithATerminator) {
    unsigned char text[260];
    std::fill(std::begin(text), std::end(text), 'x');
    int length = sizeof text;
    ASSERT_EQ(
        SOF_GetCertInfo(m_context, Bytes(m_certificate), Size(m_certificate), 3, text, &length), 0);
    EXPECT_EQ(length, 3);
    EXPECT_STREQ(reinterpret_cast<char*>(text), "SM2");
    EXPECT_EQ(text[4], 'x');
}

TEST_F(CertificateTextTest, TheDistributionPointsAreTheRawDerWithTheAddressAtTheEnd) {
    const Answer extension = Extension("2.5.29.31");
    ASSERT_EQ(extension.code, 0);
    const std::string url = "http://192.0.2.7/ca1.crl";
    ASSERT_TRUE(extension.data.ends_with(url));
    EXPECT_EQ(extension.data[0], '\x30');
    EXPECT_EQ(extension.data.size(), static_cast<size_t>(extension.data[1]) + 2);
}

TEST_F(CertificateTextTest, AnExtensionThatIsAbsentIsASuccessOfSizeZero) {
    EXPECT_EQ(Extension("1.2.156.990017.2.1.9.1"), (Answer{0, ""}));
    EXPECT_EQ(Extension("no identifier").code, kServiceBadArgument);
    EXPECT_EQ(Extension("").code, kServiceBadArgument);
}

TEST_F(CertificateTextTest, AnExtensionOfAnyNumberIsRead) {
    CertificateRequest request = Full();
    request.extensions.emplace_back("1.2.156.990017.2.1.9.1",
                                    "\x0C\x03"
                                    "abc");
    m_certificate = MakeCertificate(KeyKind::kSm2, request);
    EXPECT_EQ(Extension("1.2.156.990017.2.1.9.1"), (Answer{0,
                                                           "\x0C\x03"
                                                           "abc"}));
}

TEST_F(CertificateTextTest, BytesThatAreNoCertificateAreDamaged) {
    EXPECT_EQ(Field(m_context, "nonsense", 2).code, kServiceCertificateDamaged);
    EXPECT_EQ(Field(m_context, m_certificate.substr(0, 100), 2).code, kServiceCertificateDamaged);
    m_certificate = "nonsense";
    EXPECT_EQ(Extension("2.5.29.31").code, kServiceCertificateDamaged);
}

}  // namespace
