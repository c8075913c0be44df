#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <filesystem>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceTest.h"
#include "components/crypto/Signature.h"
#include "foundation/Text.h"

namespace {

constexpr std::time_t kHour = 3600;
constexpr KeyKind kKinds[] = {KeyKind::kSm2, KeyKind::kRsa};

class ValidateTest : public ServiceTest {
protected:
    // A list of the authority that is in force now.
    std::string List(const DevelopmentCa& authority, const std::string& serial = {}) {
        std::vector<RevokedCertificate> revoked;
        if (!serial.empty()) revoked.push_back({serial, m_now - kHour});
        return authority.RevocationList(revoked, m_now - kHour, m_now + kHour);
    }
    CertificateRequest Named(const std::string& serial = "1234") {
        CertificateRequest request;
        request.commonName = "张三";
        request.serial = serial;
        return request;
    }
    // Below `authority`, with a key that nobody has.
    std::string IssueBelow(const DevelopmentCa& authority, KeyKind kind,
                           const CertificateRequest& request) {
        const KeyHandle key(GenerateKey(kind, 2048));
        return authority.Issue(key.get(), request);
    }

    std::time_t m_now = std::time(nullptr);
    void* m_context = Open();
};

TEST_F(ValidateTest, ACertificateOfATrustedAuthorityIsGood) {
    for (const KeyKind kind : kKinds) {
        EXPECT_EQ(Validate(m_context, MakeCertificate(kind, Named())), 0);
    }
}

TEST_F(ValidateTest, WithoutATrustFolderNobodyIsTrusted) {
    const std::string certificate = MakeCertificate(KeyKind::kSm2, Named());
    std::filesystem::remove_all(Path("trust"));
    EXPECT_EQ(Validate(m_context, certificate), -1);
}

TEST_F(ValidateTest, AnAuthorityOfTheSameNameWithAnotherKeyIsNotTrusted) {
    for (const KeyKind kind : kKinds) {
        Authority(kind);
        int code = 0;
        const auto impostor = DevelopmentCa::Open(kind, Path("other"), Path("elsewhere"), code);
        ASSERT_NE(impostor, nullptr);
        EXPECT_EQ(Validate(m_context, IssueBelow(*impostor, kind, Named())), -1);
    }
}

TEST_F(ValidateTest, TheTrustFolderIsReadAgainWhenItChanges) {
    const std::string certificate = MakeCertificate(KeyKind::kSm2, Named());
    EXPECT_EQ(Validate(m_context, certificate), 0);
    const std::string path = Path("trust/velmora-development-sm2.pem");
    const std::string pem = ReadFile(path);
    std::filesystem::remove(path);
    EXPECT_EQ(Validate(m_context, certificate), -1);
    WriteFile(Path("trust/again.crt"), Authority(KeyKind::kSm2).Certificate());
    EXPECT_EQ(Validate(m_context, certificate), 0) << "DER as well";
    WriteFile(Path("trust/again.crt"), "changed in place");
    EXPECT_EQ(Validate(m_context, certificate), -1);
    WriteFile(Path("trust/bundle"), "words\n" + pem + "more words\n");
    EXPECT_EQ(Validate(m_context, certificate), 0);
}

TEST_F(ValidateTest, OfSeveralCertificatesInTurnEachIsJudgedAnew) {
    const std::string sm2 = MakeCertificate(KeyKind::kSm2, Named("11"));
    const std::string rsa = MakeCertificate(KeyKind::kRsa, Named("22"));
    const auto both = [&] {
        const int first = Validate(m_context, sm2);
        return std::pair(first, Validate(m_context, rsa));
    };
    EXPECT_EQ(both(), std::pair(0, 0));
    ASSERT_EQ(SetRevocationList(m_context, List(Authority(KeyKind::kRsa), "22")), 0);
    EXPECT_EQ(Validate(m_context, rsa), -3);
    EXPECT_EQ(both(), std::pair(0, -3));
    ASSERT_EQ(SetRevocationList(m_context, List(Authority(KeyKind::kSm2), "11")), 0);
    EXPECT_EQ(both(), std::pair(-3, 0));
    std::filesystem::remove_all(Path("trust"));
    EXPECT_EQ(both(), std::pair(-1, -1));
}

// Whoever puts another issuer's list in the place of the one asked for would hide a revocation.
TEST_F(ValidateTest, AListOfAnotherIssuerInThePlaceOfItsOwnLeavesACertificateUntrusted) {
    for (const KeyKind kind : kKinds) {
        const std::string certificate = MakeCertificate(kind, Named("1234"));
        const auto stranger = DevelopmentCa::Make(kind, Named());
        const KeyKind other = kind == KeyKind::kSm2 ? KeyKind::kRsa : KeyKind::kSm2;
        for (const std::string& list : {List(*stranger, "99"), List(Authority(other), "99")}) {
            ASSERT_EQ(SetRevocationList(m_context, list), 0);
            EXPECT_EQ(Validate(m_context, certificate), -1);
            EXPECT_EQ(Validate(m_context, certificate), 0) << "it is left from another's check";
        }
        ASSERT_EQ(SetRevocationList(m_context, List(Authority(kind), "99")), 0);
        EXPECT_EQ(Validate(m_context, certificate), 0);
    }
}

TEST_F(ValidateTest, AListOfAnIssuerFurtherUpIsNoListOfTheCertificates) {
    CertificateRequest name = Named("5555");
    name.commonName = "Intermediate";
    const auto intermediate = Authority(KeyKind::kSm2).MakeSubordinate(KeyKind::kSm2, name);
    Trust(*intermediate, "intermediate.pem");
    const std::string certificate = IssueBelow(*intermediate, KeyKind::kSm2, Named());
    ASSERT_EQ(SetRevocationList(m_context, List(Authority(KeyKind::kSm2), "99")), 0);
    EXPECT_EQ(Validate(m_context, certificate), -1);
}

TEST_F(ValidateTest, ValidityIsJudgedOnBothSides) {
    for (const KeyKind kind : kKinds) {
        CertificateRequest expired = Named();
        expired.notBefore = m_now - 2 * kHour;
        expired.notAfter = m_now - kHour;
        EXPECT_EQ(Validate(m_context, MakeCertificate(kind, expired)), -2);
        CertificateRequest early = Named();
        early.notBefore = m_now + kHour;
        EXPECT_EQ(Validate(m_context, MakeCertificate(kind, early)), -5);
    }
}

TEST_F(ValidateTest, ARevocationWeighsMoreThanTheEndOfValidity) {
    for (const KeyKind kind : kKinds) {
        const DevelopmentCa& authority = Authority(kind);
        CertificateRequest expired = Named("1234");
        expired.notBefore = m_now - 2 * kHour;
        expired.notAfter = m_now - kHour;
        CertificateRequest early = Named("1234");
        early.notBefore = m_now + kHour;
        std::string list = List(authority, "1234");
        ASSERT_EQ(SetRevocationList(m_context, list), 0);
        EXPECT_EQ(Validate(m_context, MakeCertificate(kind, expired)), -3);
        EXPECT_EQ(Validate(m_context, MakeCertificate(kind, early)), -3);
        list.back() ^= 1;
        ASSERT_EQ(SetRevocationList(m_context, list), 0);
        EXPECT_EQ(Validate(m_context, MakeCertificate(kind, expired)), -1)
            << "nobody signed that list";
        ASSERT_EQ(SetRevocationList(m_context, List(authority, "9999")), 0);
        EXPECT_EQ(Validate(m_context, MakeCertificate(kind, expired)), -2);
    }
}

TEST_F(ValidateTest, UnderARevokedIssuerNothingIsMerelyExpired) {
    CertificateRequest name = Named("5555");
    name.commonName = "Intermediate";
    const auto intermediate = Authority(KeyKind::kSm2).MakeSubordinate(KeyKind::kSm2, name);
    Trust(*intermediate, "intermediate.pem");
    CertificateRequest expired = Named();
    expired.notBefore = m_now - 2 * kHour;
    expired.notAfter = m_now - kHour;
    const std::string certificate = IssueBelow(*intermediate, KeyKind::kSm2, expired);
    EXPECT_EQ(Validate(m_context, certificate), -2);
    ASSERT_EQ(SetRevocationList(m_context, List(Authority(KeyKind::kSm2), "5555")), 0);
    EXPECT_EQ(Validate(m_context, certificate), -6);
}

TEST_F(ValidateTest, AnExpiredCertificateOfAStrangerIsUntrusted) {
    CertificateRequest expired = Named();
    expired.notBefore = m_now - 2 * kHour;
    expired.notAfter = m_now - kHour;
    const auto stranger = DevelopmentCa::Make(KeyKind::kSm2, Named());
    EXPECT_EQ(Validate(m_context, IssueBelow(*stranger, KeyKind::kSm2, expired)), -1);
}

TEST_F(ValidateTest, AChangedCertificateIsUntrusted) {
    for (const KeyKind kind : kKinds) {
        CertificateRequest request = Named();
        request.organization = "ORGANISATION";
        std::string certificate = MakeCertificate(kind, request);
        const size_t at = certificate.find("ORGANISATION");
        ASSERT_NE(at, std::string::npos);
        certificate[at] = 'o';
        EXPECT_EQ(Validate(m_context, certificate), -1);
    }
}

TEST_F(ValidateTest, BytesThatAreNoCertificateAreUntrusted) {
    EXPECT_EQ(Validate(m_context, "no certificate"), -1);
}

TEST_F(ValidateTest, AChainThroughAnIntermediateNeedsItInTheFolder) {
    for (const KeyKind kind : kKinds) {
        CertificateRequest name;
        name.commonName = "Intermediate";
        const auto intermediate = Authority(kind).MakeSubordinate(kind, name);
        const std::string certificate = IssueBelow(*intermediate, kind, Named());
        EXPECT_EQ(Validate(m_context, certificate), -1);
        Trust(*intermediate, "intermediate.pem");
        EXPECT_EQ(Validate(m_context, certificate), 0);
        std::filesystem::remove(Path("trust/intermediate.pem"));
    }
}

TEST_F(ValidateTest, AnIntermediateAloneIsNoAnchor) {
    CertificateRequest name;
    name.commonName = "Intermediate";
    const auto root = DevelopmentCa::Make(KeyKind::kSm2, Named("77"));
    const auto intermediate = root->MakeSubordinate(KeyKind::kSm2, name);
    Trust(*intermediate, "intermediate.pem");
    EXPECT_EQ(Validate(m_context, IssueBelow(*intermediate, KeyKind::kSm2, Named())), -1);
}

TEST_F(ValidateTest, AnEndEntityCantIssue) {
    const KeyHandle key(GenerateKey(KeyKind::kRsa, 2048));
    const BioHandle out(BIO_new_file(Path("entity.key").c_str(), "w"));
    PEM_write_bio_PrivateKey(out.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    BIO_flush(out.get());
    const CertificateHandle entity =
        ParseCertificate(Authority(KeyKind::kRsa).Issue(key.get(), Named()));
    WriteFile(Path("trust/entity.pem"), PemOf(entity.get()));
    const ProgramRun request =
        OpenSsl("req -new -newkey rsa:2048 -nodes -subj /CN=x -keyout x.key -out x.csr");
    ASSERT_EQ(request.status, 0) << request.output;
    const ProgramRun run = OpenSsl(
        "x509 -req -in x.csr -CA trust/entity.pem -CAkey entity.key -set_serial 5 -outform DER "
        "-out x.cer");
    ASSERT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(Validate(m_context, ReadFile(Path("x.cer"))), -1);
}

TEST_F(ValidateTest, ARevokedCertificateIsToldAndAnotherIsNot) {
    for (const KeyKind kind : kKinds) {
        const std::string revoked = MakeCertificate(kind, Named("ABCD"));
        const std::string other = MakeCertificate(kind, Named("ABCE"));
        EXPECT_EQ(Validate(m_context, revoked), 0) << "no list yet";
        ASSERT_EQ(SetRevocationList(m_context, List(Authority(kind), "ABCD")), 0);
        EXPECT_EQ(Validate(m_context, revoked), -3);
        EXPECT_EQ(Validate(m_context, other), 0);
        ASSERT_EQ(SetUserConfig(m_context, 5, ""), 0);
        EXPECT_EQ(Validate(m_context, revoked), 0) << "taken away";
    }
}

TEST_F(ValidateTest, ARevokedIntermediateIsARevokedIssuer) {
    for (const KeyKind kind : kKinds) {
        CertificateRequest name = Named("5555");
        name.commonName = "Intermediate";
        const auto intermediate = Authority(kind).MakeSubordinate(kind, name);
        Trust(*intermediate, "intermediate.pem");
        const std::string certificate = IssueBelow(*intermediate, kind, Named());
        ASSERT_EQ(SetRevocationList(m_context, List(Authority(kind), "5555")), 0);
        EXPECT_EQ(Validate(m_context, certificate), -6);
        std::filesystem::remove(Path("trust/intermediate.pem"));
    }
}

TEST_F(ValidateTest, AListThatWasOfAnotherCertificateSaysNothingOfTheNext) {
    ASSERT_EQ(SetRevocationList(m_context, List(Authority(KeyKind::kRsa), "1234")), 0);
    ASSERT_EQ(Validate(m_context, MakeCertificate(KeyKind::kRsa, Named("99"))), 0);
    EXPECT_EQ(Validate(m_context, MakeCertificate(KeyKind::kSm2, Named("1234"))), 0);
}

TEST_F(ValidateTest, UnderAListThatTheIssuerDidntSignNobodyIsTrusted) {
    for (const KeyKind kind : kKinds) {
        const std::string certificate = MakeCertificate(kind, Named("1234"));
        int code = 0;
        const auto impostor = DevelopmentCa::Open(kind, Path("other"), Path("elsewhere"), code);
        ASSERT_EQ(SetRevocationList(m_context, List(*impostor, "1234")), 0);
        EXPECT_EQ(Validate(m_context, certificate), -1);
        std::string list = List(Authority(kind), "1234");
        list.back() ^= 1;
        ASSERT_EQ(SetRevocationList(m_context, list), 0);
        EXPECT_EQ(Validate(m_context, certificate), -1);
    }
}

TEST_F(ValidateTest, AListOutOfDateStillRevokesButVouchesForNobody) {
    const DevelopmentCa& authority = Authority(KeyKind::kSm2);
    const std::string revoked = MakeCertificate(KeyKind::kSm2, Named("1234"));
    const std::string other = MakeCertificate(KeyKind::kSm2, Named("5678"));
    const std::vector<RevokedCertificate> entries = {{"1234", m_now - 3 * kHour}};
    ASSERT_EQ(SetRevocationList(
                  m_context, authority.RevocationList(entries, m_now - 2 * kHour, m_now - kHour)),
              0);
    EXPECT_EQ(Validate(m_context, revoked), -3);
    EXPECT_EQ(Validate(m_context, other), -1);
    ASSERT_EQ(SetRevocationList(m_context,
                                authority.RevocationList({}, m_now + kHour, m_now + 2 * kHour)),
              0);
    EXPECT_EQ(Validate(m_context, other), -1);
}

// A list of that authority, with an RSA key, that doesn't say when the next one comes.
std::string EndlessList(const DevelopmentCa& authority, std::time_t from, long revokedSerial) {
    const CertificateHandle issuer = ParseCertificate(authority.Certificate());
    const RevocationListHandle list(X509_CRL_new());
    const OpenSslHandle<ASN1_TIME, ASN1_TIME_free> time(ASN1_TIME_set(nullptr, from));
    X509_CRL_set_version(list.get(), X509_CRL_VERSION_2);
    X509_CRL_set_issuer_name(list.get(), X509_get_subject_name(issuer.get()));
    X509_CRL_set1_lastUpdate(list.get(), time.get());
    X509_REVOKED* entry = X509_REVOKED_new();
    const OpenSslHandle<ASN1_INTEGER, ASN1_INTEGER_free> serial(ASN1_INTEGER_new());
    ASN1_INTEGER_set(serial.get(), revokedSerial);
    X509_REVOKED_set_serialNumber(entry, serial.get());
    X509_REVOKED_set_revocationDate(entry, time.get());
    X509_CRL_add0_revoked(list.get(), entry);
    X509_CRL_sign(list.get(), authority.Key(), EVP_sha256());
    return DerOf<i2d_X509_CRL>(list.get());
}

TEST_F(ValidateTest, AListThatDoesNotSayWhenTheNextOneComesStillRevokesButVouchesForNobody) {
    const DevelopmentCa& authority = Authority(KeyKind::kRsa);
    const std::string revoked = MakeCertificate(KeyKind::kRsa, Named("1234"));
    const std::string other = MakeCertificate(KeyKind::kRsa, Named("5678"));
    ASSERT_EQ(SetRevocationList(m_context, EndlessList(authority, m_now - kHour, 0x1234)), 0);
    EXPECT_EQ(Validate(m_context, revoked), -3);
    EXPECT_EQ(Validate(m_context, other), -1);
    ASSERT_EQ(SetRevocationList(m_context, List(authority, "1234")), 0);
    EXPECT_EQ(Validate(m_context, revoked), -3);
    EXPECT_EQ(Validate(m_context, other), 0);
}

TEST_F(ValidateTest, ACertificateSignedWithAHashThatCanBeForgedIsUntrusted) {
    const DevelopmentCa& authority = Authority(KeyKind::kRsa);
    const CertificateHandle certificate =
        ParseCertificate(MakeCertificate(KeyKind::kRsa, Named("1234")));
    for (const auto& [hash, verdict] :
         {std::pair(EVP_sha1(), -1), std::pair(EVP_md5(), -1), std::pair(EVP_sha256(), 0),
          std::pair(EVP_sha384(), 0), std::pair(EVP_sha512(), 0)}) {
        ASSERT_GT(X509_sign(certificate.get(), authority.Key(), hash), 0);
        EXPECT_EQ(Validate(m_context, DerOf<i2d_X509>(certificate.get())), verdict)
            << EVP_MD_get0_name(hash);
    }
}

TEST_F(ValidateTest, AnAnchorsOwnSignatureIsntLookedAtButAnIntermediatesIs) {
    const auto root = DevelopmentCa::Make(KeyKind::kRsa, {.commonName = "Old root"});
    const auto middle = root->MakeSubordinate(KeyKind::kRsa, {.commonName = "Intermediate"});
    const std::string certificate = IssueBelow(*middle, KeyKind::kSm2, Named());
    const auto signedAnew = [&](const DevelopmentCa& authority, const EVP_MD* hash) {
        const CertificateHandle copy = ParseCertificate(authority.Certificate());
        EXPECT_GT(X509_sign(copy.get(), root->Key(), hash), 0);
        return PemOf(copy.get());
    };
    WriteFile(Path("trust/root.pem"), signedAnew(*root, EVP_sha1()));
    WriteFile(Path("trust/middle.pem"), middle->CertificatePem());
    EXPECT_EQ(Validate(m_context, certificate), 0);
    WriteFile(Path("trust/middle.pem"), signedAnew(*middle, EVP_sha1()) + "\n");
    EXPECT_EQ(Validate(m_context, certificate), -1);
}

TEST_F(ValidateTest, AnRsaKeyBelow2048BitsIsUntrusted) {
    for (const auto& [bits, verdict] :
         {std::pair(1024, -1), std::pair(2040, -1), std::pair(2048, 0), std::pair(3072, 0)}) {
        const KeyHandle key(GenerateKey(KeyKind::kRsa, bits));
        ASSERT_TRUE(key);
        EXPECT_EQ(Validate(m_context, Authority(KeyKind::kRsa).Issue(key.get(), Named())), verdict)
            << bits;
    }
}

TEST_F(ValidateTest, AnIssuersShortKeyMakesItsCertificatesUntrusted) {
    for (const auto& [bits, verdict] : {std::pair("1024", -1), std::pair("2048", 0)}) {
        ProgramRun run = OpenSsl(std::string("req -x509 -nodes -sha256 -subj /CN=Root") + bits +
                                 " -keyout root.key -out trust/root.pem -newkey rsa:" + bits);
        ASSERT_EQ(run.status, 0) << run.output;
        run = OpenSsl("req -new -newkey rsa:2048 -nodes -subj /CN=x -keyout x.key -out x.csr");
        ASSERT_EQ(run.status, 0) << run.output;
        run = OpenSsl(
            "x509 -req -sha256 -in x.csr -CA trust/root.pem -CAkey root.key -set_serial 5 "
            "-outform DER -out x.cer");
        ASSERT_EQ(run.status, 0) << run.output;
        EXPECT_EQ(Validate(m_context, ReadFile(Path("x.cer"))), verdict) << bits;
    }
}

TEST_F(ValidateTest, ADeltaListRevokesButVouchesForNobody) {
    const DevelopmentCa& authority = Authority(KeyKind::kRsa);
    const std::string revoked = MakeCertificate(KeyKind::kRsa, Named("1234"));
    const std::string other = MakeCertificate(KeyKind::kRsa, Named("5678"));
    const std::string list = List(authority, "1234");
    const auto* cursor = reinterpret_cast<const unsigned char*>(list.data());
    const RevocationListHandle delta(
        d2i_X509_CRL(nullptr, &cursor, static_cast<long>(list.size())));
    ASSERT_TRUE(delta);
    const OpenSslHandle<ASN1_INTEGER, ASN1_INTEGER_free> base(ASN1_INTEGER_new());
    ASN1_INTEGER_set(base.get(), 7);
    ASSERT_EQ(X509_CRL_add1_ext_i2d(delta.get(), NID_delta_crl, base.get(), 1, 0), 1);
    ASSERT_GT(X509_CRL_sign(delta.get(), authority.Key(), EVP_sha256()), 0);
    ASSERT_EQ(SetRevocationList(m_context, list), 0);
    EXPECT_EQ(Validate(m_context, other), 0);
    ASSERT_EQ(SetRevocationList(m_context, DerOf<i2d_X509_CRL>(delta.get())), 0);
    EXPECT_EQ(Validate(m_context, revoked), -3);
    EXPECT_EQ(Validate(m_context, other), -1);
}

TEST_F(ValidateTest, AListForOtherCertificatesRevokesButVouchesForNobody) {
    const DevelopmentCa& authority = Authority(KeyKind::kRsa);
    CertificateRequest placed = Named("5678");
    placed.distributionPoint = "http://192.0.2.7/2.crl";
    const std::string revoked = MakeCertificate(KeyKind::kRsa, Named("1234"));
    const std::string other = MakeCertificate(KeyKind::kRsa, placed);
    for (const auto& [scope, verdict] :
         {std::pair("critical,onlyuser:TRUE", 0), std::pair("critical,onlyCA:TRUE", -1),
          std::pair("critical,onlyAA:TRUE", -1), std::pair("critical,indirectCRL:TRUE", -1),
          std::pair("critical,onlysomereasons:superseded", -1),
          std::pair("critical,fullname:URI:http://192.0.2.7/2.crl", 0),
          std::pair("critical,fullname:URI:http://192.0.2.7/1.crl", -1)}) {
        const std::string list = List(authority, "1234");
        const auto* cursor = reinterpret_cast<const unsigned char*>(list.data());
        const RevocationListHandle scoped(
            d2i_X509_CRL(nullptr, &cursor, static_cast<long>(list.size())));
        ASSERT_TRUE(scoped);
        const OpenSslHandle<X509_EXTENSION, X509_EXTENSION_free> extension(
            X509V3_EXT_conf_nid(nullptr, nullptr, NID_issuing_distribution_point, scope));
        ASSERT_TRUE(extension) << scope;
        ASSERT_EQ(X509_CRL_add_ext(scoped.get(), extension.get(), -1), 1);
        ASSERT_GT(X509_CRL_sign(scoped.get(), authority.Key(), EVP_sha256()), 0);
        ASSERT_EQ(SetRevocationList(m_context, DerOf<i2d_X509_CRL>(scoped.get())), 0);
        EXPECT_EQ(Validate(m_context, revoked), -3) << scope;
        EXPECT_EQ(Validate(m_context, other), verdict) << scope;
    }
}

TEST_F(ValidateTest, AListIsItsContextsOwn) {
    void* other = Open();
    ASSERT_EQ(SetRevocationList(m_context, List(Authority(KeyKind::kSm2), "1234")), 0);
    EXPECT_EQ(Validate(other, MakeCertificate(KeyKind::kSm2, Named("1234"))), 0);
}

TEST_F(ValidateTest, ADamagedListIsRefusedAndTheOneBeforeStaysInForce) {
    const std::string revoked = MakeCertificate(KeyKind::kSm2, Named("1234"));
    const std::string list = List(Authority(KeyKind::kSm2), "1234");
    ASSERT_EQ(SetRevocationList(m_context, list), 0);
    EXPECT_EQ(SetUserConfig(m_context, 5, "not Base64!"), kServiceRevocationListDamaged);
    EXPECT_EQ(SetRevocationList(m_context, "<html>404</html>"), kServiceRevocationListDamaged);
    EXPECT_EQ(SetRevocationList(m_context, list.substr(0, list.size() / 2)),
              kServiceRevocationListDamaged);
    EXPECT_EQ(Validate(m_context, revoked), -3);
    EXPECT_EQ(SetUserConfig(m_context, 6, "text"), kServiceNotSupported);
}

TEST_F(ValidateTest, AListInPemIsTakenAndOpenSslReadsOurs) {
    for (const KeyKind kind : kKinds) {
        const std::string certificate = MakeCertificate(kind, Named("1234"));
        WriteFile(Path("list"), List(Authority(kind), "1234"));
        const ProgramRun run = OpenSsl("crl -inform DER -in list -out list.pem");
        ASSERT_EQ(run.status, 0) << run.output;
        ASSERT_EQ(SetRevocationList(m_context, ReadFile(Path("list.pem"))), 0);
        EXPECT_EQ(Validate(m_context, certificate), -3);
    }
    const ProgramRun run =
        OpenSsl("crl -noout -inform DER -in list -CAfile trust/velmora-development-rsa.pem");
    EXPECT_NE(run.output.find("verify OK"), std::string::npos) << run.output;
}

TEST_F(ValidateTest, OpenSslAcceptsTheCertificatesOfBothAuthorities) {
    for (const auto& [kind, name, options] :
         {std::tuple(KeyKind::kRsa, "rsa", ""),
          std::tuple(KeyKind::kSm2, "sm2", " -vfyopt distid:1234567812345678")}) {
        const std::string certificate = MakeCertificate(kind, Named());
        WriteFile(Path("certificate"), certificate);
        OpenSsl("x509 -inform DER -in certificate -out certificate.pem");
        const ProgramRun run =
            OpenSsl(std::string("verify -x509_strict -CAfile trust/velmora-development-") + name +
                    ".pem" + options + " certificate.pem");
        EXPECT_EQ(run.status, 0) << run.output;
    }
}

TEST_F(ValidateTest, AnAuthorityIsMadeOnceAndFoundAgain) {
    const std::string first = Authority(KeyKind::kSm2).Certificate();
    std::filesystem::remove_all(Path("trust"));
    int code = -1;
    const auto again = DevelopmentCa::Open(KeyKind::kSm2, Path("ca"), Path("trust"), code);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(again->Certificate(), first);
    EXPECT_EQ(ReadFile(Path("trust/velmora-development-sm2.pem")), again->CertificatePem());
}

TEST_F(ValidateTest, ADamagedAuthorityIsToldAndNotReplaced) {
    Authority(KeyKind::kSm2);
    WriteFile(Path("ca/sm2.pem"), "damaged");
    int code = 0;
    EXPECT_EQ(DevelopmentCa::Open(KeyKind::kSm2, Path("ca"), Path("trust"), code), nullptr);
    EXPECT_EQ(code, kServiceKeyDamaged);
    EXPECT_EQ(ReadFile(Path("ca/sm2.pem")), "damaged");
    WriteFile(Path("file"), "");
    EXPECT_EQ(DevelopmentCa::Open(KeyKind::kSm2, Path("file"), Path("trust"), code), nullptr);
    EXPECT_EQ(code, kServiceFileUnreadable);
}

TEST_F(ValidateTest, ASerialNumberThatIsNoneIssuesNothing) {
    for (const char* serial : {"xyz", "12 34", "0x12", "-"}) {
        EXPECT_EQ(MakeCertificate(KeyKind::kSm2, Named(serial)), "") << serial;
    }
    EXPECT_EQ(MakeCertificate(KeyKind::kSm2, Named(std::string(42, 'A'))), "");
}

}  // namespace
