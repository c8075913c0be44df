// What the library signs is verified by the library, on real cryptography.
#include <ctime>

#include "foundation/Text.h"
#include "library/bridge/ExportCalls.h"
#include "platform/Clock.h"
#include "road/RoadTest.h"
#include "support/LoopbackServer.h"

namespace {

constexpr char kData[] = "the bytes of the document";
constexpr std::time_t kDay = 86'400;
constexpr char kSerial[] = "0A0B0C";

int VerifyP7(const std::string& data, const std::string& signature) {
    return P7VerifyData(AsBytes(data), AsLength(data), AsBytes(signature), AsLength(signature));
}

int VerifyFile(const std::string& path, const std::string& signature) {
    return P7VerifyBigFile(path.c_str(), AsBytes(signature), AsLength(signature));
}

int VerifyCert(const std::string& cert, std::time_t time) {
    const std::tm local = platform::LocalTime(time);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return VerifySignCert(AsBytes(cert), AsLength(cert), text);
}

class VerifyRoadTest : public RoadTest {
protected:
    ~VerifyRoadTest() override {
        UnInitKVLLib();
        SetPackHashCert(nullptr, 0);
    }

    // Logged in and selected with a seal of the old form, so that messages are signed.
    std::string SelectedKey(KeyKind kind, const CertificateRequest& request = {}) {
        const std::string certId = MakeKey(kind, "key", request);
        AddEsSeal(certId);
        EXPECT_EQ(Login(certId), 0);
        EXPECT_EQ(Picture().bytes, SealPicture());
        return certId;
    }
    // The same with a seal of a national form, so that seal signatures are made.
    std::string SelectedSeal(KeyKind kind, const CertificateRequest& request = {}) {
        const std::string certId = MakeKey(kind, "key", request);
        AddSeal(certId, SealForm::kGb2020);
        EXPECT_EQ(Login(certId), 0);
        EXPECT_EQ(Picture().bytes, SealPicture());
        return certId;
    }
    std::string Certificate(const std::string& certId) {
        std::string certificate;
        EXPECT_EQ(m_keys.ExportCertificate(certId, certificate), 0);
        return certificate;
    }
    static Handed Signer(const std::string& signature) {
        return InTwoSteps([&](unsigned char* out, int* outLen) {
            return ParseP7FieldData(AsBytes(signature), AsLength(signature), 2, out, outLen);
        });
    }
};

TEST_F(VerifyRoadTest, AMessageAndItsSignerAreVerifiedAndOtherDataIsRefused) {
    for (const KeyKind kind : {KeyKind::kRsa, KeyKind::kSm2}) {
        const std::string certId = MakeKey(kind, kind == KeyKind::kRsa ? "rsa" : "sm2");
        ASSERT_EQ(Login(certId), 0);
        const Handed message = SignP7(kData);
        ASSERT_EQ(message.code, 0);
        EXPECT_EQ(VerifyP7(kData, message.bytes), 0);
        EXPECT_NE(VerifyP7("other data", message.bytes), 0);
        EXPECT_EQ(Signer(message.bytes).bytes, Certificate(certId));
    }
}

TEST_F(VerifyRoadTest, APlainSignatureIsVerifiedByItsSignersCertificate) {
    const std::string certificate = Certificate(SelectedKey(KeyKind::kSm2));
    // Two signatures of SM2 may differ in length, so the size of a query isn't that of a fetch.
    OutPair out(512);
    ASSERT_EQ(P1Sign(kData, out.buffer, &out.length), 0);
    const std::string signature = out.Bytes();
    const auto verify = [&](const std::string& data) {
        return P1VerifySignData(AsBytes(certificate), AsLength(certificate), AsBytes(data),
                                AsLength(data), AsBytes(signature), AsLength(signature));
    };
    EXPECT_EQ(verify(kData), 0);
    EXPECT_NE(verify("other data"), 0);
}

TEST_F(VerifyRoadTest, ASealSignatureAndItsSignerAreVerifiedBehindTheService) {
    const std::string certId = SelectedSeal(KeyKind::kSm2);
    const Handed signature = SignP7(kData);
    ASSERT_EQ(signature.code, 0);
    EXPECT_EQ(VerifyP7(kData, signature.bytes), 0);
    EXPECT_NE(VerifyP7("other data", signature.bytes), 0);
    EXPECT_EQ(Signer(signature.bytes).bytes, Certificate(certId));
    const std::string path = WriteFile("document.pdf", kData);
    EXPECT_EQ(VerifyFile(path, signature.bytes), 0);
    WriteFile("document.pdf", "other bytes");
    EXPECT_EQ(VerifyFile(path, signature.bytes), TESMARK_SIGNED_MESSAGE_FAILED);
}

TEST_F(VerifyRoadTest, AnSm2MessageOverAFileIsVerified) {
    SelectedKey(KeyKind::kSm2);
    const std::string path = WriteFile("document.pdf", kData);
    const Handed message = SignP7File(path);
    ASSERT_EQ(message.code, 0);
    EXPECT_EQ(VerifyFile(path, message.bytes), 0);
    WriteFile("document.pdf", "other bytes");
    EXPECT_EQ(VerifyFile(path, message.bytes), TESMARK_FILE_NOT_VERIFIED);
}

// Signed over SHA-256, checked over SHA-1, as is required.
TEST_F(VerifyRoadTest, AnRsaMessageOverAFileIsRefusedThoughItIsGood) {
    SelectedKey(KeyKind::kRsa);
    const std::string path = WriteFile("document.pdf", kData);
    const Handed message = SignP7File(path);
    ASSERT_EQ(message.code, 0);
    ASSERT_TRUE(CmsAccepts(message.bytes, path));
    EXPECT_EQ(VerifyFile(path, message.bytes), TESMARK_FILE_NOT_VERIFIED);
    EXPECT_EQ(VerifyP7(kData, message.bytes), 0);
}

TEST_F(VerifyRoadTest, ATimeIsHeldAgainstTheValidityOfARealCertificate) {
    const std::string certificate = Certificate(MakeKey(KeyKind::kRsa, "rsa"));
    const auto verify = [&](const char* time) {
        return VerifySignTime(AsBytes(certificate), AsLength(certificate), time);
    };
    const std::tm now = platform::LocalTime(std::time(nullptr) + kDay);
    char text[64];
    std::strftime(text, sizeof text, "D:%Y%m%d%H%M%S+08'00'", &now);
    EXPECT_EQ(verify(text), 0);
    EXPECT_EQ(verify("2001年1月1日0时0分0秒"), TESMARK_TIME_OUTSIDE_VALIDITY);
}

TEST_F(VerifyRoadTest, TheHashOfAPdfIsTheOneThatItsExportGives) {
    const std::string path = WriteFile("document.pdf", kData);
    const std::string certificate = Certificate(MakeKey(KeyKind::kSm2, "sm2"));
    const auto kept = [] {
        std::string text(100, '\0');
        int length = 0;
        GetOriginalSignPdfHash(nullptr, &length);
        GetOriginalSignPdfHash(reinterpret_cast<unsigned char*>(text.data()), nullptr);
        return Base64Decode(text.substr(0, static_cast<std::size_t>(length)));
    };
    const auto hash = [&](const char* name, const std::string& cert) {
        return InTwoSteps([&](unsigned char* out, int* outLen) {
                   return GetHashData(name, AsBytes(kData), sizeof kData - 1,
                                      cert.empty() ? nullptr : AsBytes(cert), AsLength(cert), out,
                                      outLen);
               })
            .bytes;
    };
    ASSERT_EQ(GenerateOriginalSignPdfFileHash(path.c_str()), 0);
    EXPECT_EQ(kept(), hash("SHA1", ""));
    SetPackHashCert(AsBytes(certificate), AsLength(certificate));
    ASSERT_EQ(GenerateOriginalSignPdfFileHash(path.c_str()), 0);
    EXPECT_EQ(kept(), hash("SM3", certificate));
    ASSERT_EQ(GenerateOriginalSignPdfHash(AsBytes(kData), sizeof kData - 1), 0);
    EXPECT_EQ(kept(), hash("SM3", certificate));
    EXPECT_NE(GenerateOriginalSignPdfFileHash((path + ".gone").c_str()), 0);
    EXPECT_EQ(kept(), std::string(64, '\0'));
    ASSERT_EQ(GenerateOriginalSignPdfFileHash(path.c_str()), 0);
    EXPECT_EQ(kept(), hash("SHA1", ""));
}

// An authority's list, on a server of the certificates' distribution point.
class RevocationRoadTest : public VerifyRoadTest {
protected:
    RevocationRoadTest() { m_prefix.SetNumber("bVerifyCRL", 1); }

    CertificateRequest Listed() const {
        CertificateRequest request;
        request.serial = kSerial;
        request.distributionPoint = m_server.Url("/ca1.crl");
        return request;
    }
    void Revoke(KeyKind kind, const std::vector<RevokedCertificate>& revoked) {
        m_list = Authority(kind).RevocationList(revoked, m_now - kDay, m_now + kDay);
        ASSERT_FALSE(m_list.empty());
    }

    const std::time_t m_now = std::time(nullptr);
    std::string m_list;
    const LoopbackServer m_server{
        [this](const std::string&) { return LoopbackServer::Page("200 OK", m_list); }};
};

TEST_F(RevocationRoadTest, ARevocationBehindTheSignatureIsForgivenAndOneAheadOfItIsNot) {
    for (const KeyKind kind : {KeyKind::kRsa, KeyKind::kSm2}) {
        const std::string certificate =
            Certificate(MakeKey(kind, kind == KeyKind::kRsa ? "rsa" : "sm2", Listed()));
        Revoke(kind, {{kSerial, m_now - 600}});
        EXPECT_EQ(VerifyCert(certificate, m_now - 1200), 0);
        EXPECT_EQ(VerifyCert(certificate, m_now - 300), TESMARK_CERT_REVOKED);
        std::remove((m_prefix.CrlFolder() + "ca1.crl").c_str());
    }
}

TEST_F(RevocationRoadTest, WithoutTheSettingNoRevocationIsKnown) {
    const std::string certificate = Certificate(MakeKey(KeyKind::kRsa, "rsa", Listed()));
    Revoke(KeyKind::kRsa, {{kSerial, m_now - 600}});
    m_prefix.SetNumber("bVerifyCRL", 0);
    EXPECT_EQ(VerifyCert(certificate, m_now), 0);
}

TEST_F(RevocationRoadTest, ASealSignatureIsHeldAgainstItsSignersList) {
    Revoke(KeyKind::kSm2, {});
    SelectedSeal(KeyKind::kSm2, Listed());
    const Handed signature = SignP7(kData);
    ASSERT_EQ(signature.code, 0);
    EXPECT_EQ(VerifyP7(kData, signature.bytes), 0);
    std::remove((m_prefix.CrlFolder() + "ca1.crl").c_str());
    Revoke(KeyKind::kSm2, {{kSerial, m_now - 600}});
    EXPECT_NE(VerifyP7(kData, signature.bytes), 0);
}

TEST_F(RevocationRoadTest, AListForgedOrOutOfDateVouchesForNobody) {
    const std::string certificate = Certificate(MakeKey(KeyKind::kRsa, "rsa", Listed()));
    Revoke(KeyKind::kRsa, {});
    EXPECT_EQ(VerifyCert(certificate, m_now), 0);
    std::remove((m_prefix.CrlFolder() + "ca1.crl").c_str());
    m_list = Authority(KeyKind::kRsa).RevocationList({}, m_now - 2 * kDay, m_now - kDay);
    EXPECT_EQ(VerifyCert(certificate, m_now), TESMARK_NOT_TRUSTED);
    std::remove((m_prefix.CrlFolder() + "ca1.crl").c_str());
    Revoke(KeyKind::kRsa, {{kSerial, m_now - 600}});
    m_list.back() ^= 1;
    EXPECT_EQ(VerifyCert(certificate, m_now), TESMARK_NOT_TRUSTED);
}

TEST_F(RevocationRoadTest, AServerThatSendsRubbishRefusesTheCertificate) {
    const std::string certificate = Certificate(MakeKey(KeyKind::kRsa, "rsa", Listed()));
    m_list = "no list";
    EXPECT_EQ(VerifyCert(certificate, m_now), TESMARK_CRL_NOT_ACCEPTED);
}

}  // namespace
