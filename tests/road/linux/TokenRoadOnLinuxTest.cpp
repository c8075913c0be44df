// The road with a SoftHSM 2 token as the key.

#include "components/certservice/tokens/linux/SoftHsm.h"
#include "foundation/Text.h"
#include "library/bridge/ExportCalls.h"
#include "platform/closed/SealLibrary.h"
#include "road/RoadTest.h"

namespace {

constexpr char kData[] = "the bytes of the document";
constexpr char kOwner[] = "--application-label 01";

class TokenRoadOnLinux : public RoadTest {
protected:
    TokenRoadOnLinux() {
        SetServicePath("Pkcs11Modules", SoftHsm::ModulePath());
        const KeyHandle key = MakeRsaKey();
        CertificateRequest request;
        request.commonName = "Token Holder";
        m_certificate = Authority(KeyKind::kRsa).Issue(key.get(), request);
        m_token.MakeToken("stamp");
        m_token.StoreKey("stamp", key.get(), "01");
        m_token.StoreCertificate("stamp", m_certificate, "01", "holder");
        m_path = WriteFile("document.pdf", kData);
    }
    ~TokenRoadOnLinux() override { UnInitKVLLib(); }

    // As the service lists it; the serial number is SoftHSM's own.
    static std::string TokensCertId() {
        const auto device = OpenOnlyDevice();
        std::vector<DeviceCertificate> certificates;
        if (device) device->ListCertificates(certificates);
        return certificates.size() == 1 ? certificates[0].certId : "none";
    }

    SoftHsm m_token;
    std::string m_certificate;
    std::string m_path;
};

TEST_F(TokenRoadOnLinux, AnEsSealOnTheTokenMakesAMessageThatOpenSslAccepts) {
    m_token.StoreFile("stamp", "ESEAL01", MadeEsSeal(), kOwner);
    ASSERT_EQ(Login(TokensCertId()), 0);
    const Handed picture = Picture();
    ASSERT_EQ(picture.code, 0);
    EXPECT_EQ(picture.bytes, SealPicture());
    EXPECT_EQ(GetEsealMode(), 0);
    const Handed fromData = SignP7(kData);
    ASSERT_EQ(fromData.code, 0);
    EXPECT_TRUE(CmsAccepts(fromData.bytes, m_path));
    const Handed fromFile = SignP7File(m_path);
    ASSERT_EQ(fromFile.code, 0);
    EXPECT_TRUE(CmsAccepts(fromFile.bytes, m_path));
    const Handed plain = SignP1(kData);
    ASSERT_EQ(plain.code, 0);
    EXPECT_TRUE(DigestAccepts(plain.bytes, m_path, m_certificate));
}

TEST_F(TokenRoadOnLinux, ANationalSealOnTheTokenMakesASealSignature) {
    const std::string seal = MadeSeal(SealForm::kGb2020, Authority(KeyKind::kRsa), m_certificate);
    m_token.StoreFile("stamp", "GBESEAL01", seal, kOwner);
    ASSERT_EQ(Login(TokensCertId()), 0);
    ASSERT_EQ(Picture().code, 0);
    EXPECT_EQ(GetEsealMode(), 2);
    const Handed signature = SignP7File(m_path);
    ASSERT_EQ(signature.code, 0);
    EXPECT_EQ(TVK_Verify_SES_Sign_BigFile(AsBytes(signature.bytes), AsLength(signature.bytes),
                                          m_path.c_str()),
              0);
    const std::string other = Base64Encode("other bytes");
    EXPECT_EQ(TVK_Verify_SES_Sign(AsBytes(signature.bytes), AsLength(signature.bytes),
                                  AsBytes(other), AsLength(other)),
              0x0C000042);
}

TEST_F(TokenRoadOnLinux, AWrongPinOpensNothing) {
    EXPECT_EQ(Login(TokensCertId(), "000000"), TESMARK_LOGIN_FAILED);
}

}  // namespace
