// Bytes of others that say they are encrypted: they are refused, and nobody is asked on the
// terminal, which a host may not even have.
#include "components/crypto/PassPhraseQuestions.h"

#include <filesystem>

#include "components/certservice/Certificate.h"
#include "components/certservice/KeyImport.h"
#include "components/certservice/KeyRecord.h"
#include "components/certservice/RevocationList.h"
#include "components/certservice/ServiceTest.h"
#include "components/crypto/Signature.h"

namespace {

class PassPhraseTest : public ServiceTest {
protected:
    ~PassPhraseTest() override { EXPECT_EQ(m_questions.Count(), 0); }

    PassPhraseQuestions m_questions;
};

TEST_F(PassPhraseTest, ARevocationListAsksForNone) {
    EXPECT_FALSE(RevocationList::Parse(EncryptedPem("X509 CRL")));
    EXPECT_EQ(SetRevocationList(Open(), EncryptedPem("X509 CRL")), kServiceRevocationListDamaged);
}

TEST_F(PassPhraseTest, ACertificateAsksForNoneAndThoseBeforeItAreRead) {
    EXPECT_TRUE(ReadCertificates(EncryptedPem("CERTIFICATE")).empty());
    const std::string good = Authority(KeyKind::kRsa).CertificatePem();
    EXPECT_EQ(ReadCertificates(good + EncryptedPem("CERTIFICATE")).size(), 1u);
    EXPECT_EQ(ReadCertificates(good + good).size(), 2u);
}

TEST_F(PassPhraseTest, AnAuthoritysKeyAsksForNone) {
    std::filesystem::create_directory(Path("ca"));
    for (const char* kind : {"PRIVATE KEY", "EC PRIVATE KEY", "ENCRYPTED PRIVATE KEY"}) {
        WriteFile(Path("ca/sm2.pem"), EncryptedPem(kind));
        int code = 0;
        EXPECT_FALSE(DevelopmentCa::Open(KeyKind::kSm2, Path("ca"), Path("trust"), code)) << kind;
        EXPECT_EQ(code, kServiceKeyDamaged);
    }
}

TEST_F(PassPhraseTest, AStoredKeyAsksForNoOtherThanItsPin) {
    KeyHandle key;
    EXPECT_EQ(DecryptKey(EncryptedPem("ENCRYPTED PRIVATE KEY"), kPin, key), kServiceKeyDamaged);
    const KeyHandle made(GenerateKey(KeyKind::kSm2, 0));
    EXPECT_EQ(DecryptKey(EncryptKey(made.get(), kPin), kPin, key), kServiceOk);
}

TEST_F(PassPhraseTest, AnImportTakesThePasswordItWasGiven) {
    ImportedKey imported;
    EXPECT_NE(ReadKeyImport(EncryptedPem("CERTIFICATE"), "password", imported), kServiceOk);
    EXPECT_NE(ReadKeyImport(EncryptedPem("PRIVATE KEY"), "password", imported), kServiceOk);
}

}  // namespace
