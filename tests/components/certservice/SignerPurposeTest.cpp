#include "components/certservice/SignerPurpose.h"

#include <openssl/pem.h>

#include "components/certservice/Certificate.h"
#include "components/certservice/StampTest.h"

namespace {

constexpr KeyKind kKinds[] = {KeyKind::kSm2, KeyKind::kRsa};

// What a signer's certificate is for, by its keyUsage and extendedKeyUsage.
class SignerPurposeTest : public StampTest {
protected:
    bool MaySign(const CertificateRequest& request) {
        const std::string der = Authority(KeyKind::kSm2).Issue(m_key.get(), request);
        const CertificateHandle certificate = ParseCertificate(der);
        EXPECT_TRUE(certificate) << request.keyUsage << request.extendedKeyUsage;
        return certificate && MaySignDocuments(certificate.get());
    }
    bool MaySignFor(const std::string& purposes) {
        return MaySign({.commonName = "Signer", .extendedKeyUsage = purposes});
    }
    int VerifyPlain(const std::string& certificate, std::string_view data,
                    const std::string& signature) {
        return SOF_VerifySignedData(m_context, Bytes(certificate), Size(certificate), Bytes(data),
                                    Size(data), Bytes(signature), Size(signature));
    }
    int VerifyHash(const std::string& message, const std::string& hash) {
        return SOF_VerifySignedHashMessage(m_context, Bytes(message), Size(message), Bytes(hash),
                                           Size(hash));
    }
    std::string Login(KeyKind kind, const CertificateRequest& request) {
        const std::string certId = MakeKey(kind, "k" + std::to_string(m_keysMade++), request);
        EXPECT_EQ(SOF_Login(m_context, certId.c_str(), kPin), 0);
        return certId;
    }

    int m_keysMade = 0;
    KeyHandle m_key{GenerateKey(KeyKind::kSm2, 0)};
};

TEST_F(SignerPurposeTest, OneOfTheTwoUsagesForSignaturesIsEnough) {
    for (const char* usage : {"digitalSignature", "critical,nonRepudiation",
                              "critical,digitalSignature,keyEncipherment"}) {
        EXPECT_TRUE(MaySign({.commonName = "Signer", .keyUsage = usage})) << usage;
    }
    for (const char* usage : {"keyEncipherment", "critical,keyEncipherment,dataEncipherment",
                              "keyAgreement", "critical,keyCertSign,cRLSign"}) {
        EXPECT_FALSE(MaySign({.commonName = "Signer", .keyUsage = usage})) << usage;
    }
}

TEST_F(SignerPurposeTest, ACertificateThatSaysNothingMaySign) {
    const CertificateHandle plain =
        ParseCertificate(Authority(KeyKind::kSm2).Issue(m_key.get(), {.keyUsage = "keyAgreement"}));
    while (X509_get_ext_count(plain.get()) > 0) {
        X509_EXTENSION_free(X509_delete_ext(plain.get(), 0));
    }
    EXPECT_TRUE(MaySignDocuments(plain.get()));
}

TEST_F(SignerPurposeTest, CriticalPurposesNeedOneForDocuments) {
    for (const char* purposes :
         {"critical,anyExtendedKeyUsage", "critical,emailProtection", "critical,clientAuth",
          "critical,1.3.6.1.5.5.7.3.36", "critical,1.2.840.113583.1.1.5",
          "critical,1.3.6.1.4.1.311.10.3.12", "critical,serverAuth,clientAuth"}) {
        EXPECT_TRUE(MaySignFor(purposes)) << purposes;
    }
    for (const char* purposes :
         {"critical,serverAuth", "critical,codeSigning", "critical,timeStamping",
          "critical,OCSPSigning", "critical,1.3.6.1.5.5.7.3.360", "critical,serverAuth,1.2.3"}) {
        EXPECT_FALSE(MaySignFor(purposes)) << purposes;
    }
}

TEST_F(SignerPurposeTest, PurposesThatArentCriticalArentAsked) {
    for (const char* purposes : {"serverAuth", "timeStamping", "codeSigning,1.2.3"}) {
        EXPECT_TRUE(MaySignFor(purposes)) << purposes;
    }
}

TEST_F(SignerPurposeTest, ASignatureByAnUnfitKeyIsMadeButNotAccepted) {
    for (const KeyKind kind : kKinds) {
        for (const CertificateRequest& request :
             {CertificateRequest{.keyUsage = "critical,keyEncipherment"},
              CertificateRequest{.extendedKeyUsage = "critical,serverAuth"}}) {
            const std::string certId = Login(kind, request);
            const std::string certificate = Export(m_context, certId).data;
            const Answer message = SignMessage(m_context, certId, "data");
            ASSERT_EQ(message.code, 0);
            EXPECT_EQ(VerifyMessage(message.data), kServiceSignerUnfit);
            const CertificateHandle parsed = ParseCertificate(certificate);
            const EVP_PKEY* key = X509_get0_pubkey(parsed.get());
            const auto hash = kind == KeyKind::kSm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256;
            EXPECT_EQ(VerifyHash(message.data, DigestForKey(key, hash, "data")),
                      kServiceSignerUnfit);
            const Answer plain = SignData(m_context, certId, "data");
            ASSERT_EQ(plain.code, 0);
            EXPECT_EQ(VerifyPlain(certificate, "data", plain.data), kServiceSignerUnfit);
        }
    }
}

TEST_F(SignerPurposeTest, AWrongSignatureIsToldBeforeItsUnfitSigner) {
    const std::string certId = Login(KeyKind::kRsa, {.keyUsage = "keyEncipherment"});
    const Answer message = SignMessage(m_context, certId, "data");
    EXPECT_EQ(VerifyMessage(message.data, "other data"), kServiceDigestMismatch);
    const Answer plain = SignData(m_context, certId, "data");
    EXPECT_EQ(VerifyPlain(Export(m_context, certId).data, "other data", plain.data),
              kServiceSignatureInvalid);
}

TEST_F(SignerPurposeTest, OneUnfitSignerOfSeveralSpoilsTheMessage) {
    const auto made = [&](const std::string& name, const CertificateRequest& request) {
        const KeyHandle key(GenerateKey(KeyKind::kRsa, 2048));
        const CertificateHandle certificate =
            ParseCertificate(Authority(KeyKind::kRsa).Issue(key.get(), request));
        const BioHandle out(BIO_new_file(Path(name).c_str(), "w"));
        PEM_write_bio_X509(out.get(), certificate.get());
        PEM_write_bio_PrivateKey(out.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    };
    made("fit.pem", {.commonName = "Fit"});
    made("unfit.pem", {.commonName = "Unfit", .keyUsage = "keyEncipherment"});
    WriteFile(Path("data"), "data");
    for (const auto& [signers, code] :
         {std::pair("-signer fit.pem", 0 + kServiceOk),
          std::pair("-signer unfit.pem", 0 + kServiceSignerUnfit),
          std::pair("-signer fit.pem -signer unfit.pem", 0 + kServiceSignerUnfit)}) {
        const ProgramRun run =
            OpenSsl(std::string("cms -sign -binary -outform DER -in data -out message ") + signers);
        ASSERT_EQ(run.status, 0) << run.output;
        EXPECT_EQ(VerifyMessage(ReadFile(Path("message"))), code) << signers;
    }
}

}  // namespace
