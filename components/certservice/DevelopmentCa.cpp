#include "components/certservice/DevelopmentCa.h"

#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include "components/certservice/Certificate.h"
#include "components/certservice/DurableFile.h"
#include "components/certservice/ServiceCodes.h"
#include "components/crypto/PassPhrase.h"
#include "components/crypto/Signature.h"
#include "platform/CodePage.h"
#include "platform/Files.h"

namespace {

constexpr int kAuthorityRsaBits = 2048;
constexpr std::time_t kDay = 86'400;
constexpr std::time_t kAuthorityLife = 20 * 365 * kDay;
constexpr std::time_t kCertificateLife = 3 * 365 * kDay;
constexpr int kMaximumSerial = 20;

using NameHandle = OpenSslHandle<X509_NAME, X509_NAME_free>;
using SerialHandle = OpenSslHandle<ASN1_INTEGER, ASN1_INTEGER_free>;
using TimeHandle = OpenSslHandle<ASN1_TIME, ASN1_TIME_free>;
using ExtensionHandle = OpenSslHandle<X509_EXTENSION, X509_EXTENSION_free>;
using OctetsHandle = OpenSslHandle<ASN1_OCTET_STRING, ASN1_OCTET_STRING_free>;

bool AddName(X509_NAME* name, const char* part, const std::string& text) {
    if (text.empty()) return true;
    const std::string utf8 = platform::Utf8FromAnsi(text);
    return X509_NAME_add_entry_by_txt(name, part, MBSTRING_UTF8,
                                      reinterpret_cast<const unsigned char*>(utf8.data()),
                                      static_cast<int>(utf8.size()), -1, 0) == 1;
}

NameHandle NameOf(const CertificateRequest& request) {
    NameHandle name(X509_NAME_new());
    const bool done = name && AddName(name.get(), "C", request.country) &&
                      AddName(name.get(), "O", request.organization) &&
                      AddName(name.get(), "OU", request.organizationalUnit) &&
                      AddName(name.get(), "CN", request.commonName);
    return done ? std::move(name) : nullptr;
}

// A random number is positive and of full length; one that was asked for is taken as it stands.
SerialHandle SerialFrom(const std::string& hex) {
    BIGNUM* parsed = nullptr;
    if (hex.empty()) {
        const BignumHandle number(BN_new());
        if (!number || BN_rand(number.get(), 127, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY) != 1) {
            return nullptr;
        }
        return SerialHandle(BN_to_ASN1_INTEGER(number.get(), nullptr));
    }
    const bool whole = BN_hex2bn(&parsed, hex.c_str()) == static_cast<int>(hex.size());
    const BignumHandle number(parsed);
    if (!whole || !number || BN_num_bytes(number.get()) > kMaximumSerial) return nullptr;
    return SerialHandle(BN_to_ASN1_INTEGER(number.get(), nullptr));
}

// Sets `time`, or makes one of null. Counted from 1970, since the C library of Windows knows no
// calendar behind the year 3000.
ASN1_TIME* SetTime(ASN1_TIME* time, std::time_t when) {
    return ASN1_TIME_adj(time, 0, static_cast<int>(when / kDay), static_cast<long>(when % kDay));
}

bool AddExtension(X509* certificate, X509* issuer, int kind, const std::string& value) {
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer ? issuer : certificate, certificate, nullptr, nullptr, 0);
    const ExtensionHandle extension(X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()));
    return extension && X509_add_ext(certificate, extension.get(), -1) == 1;
}

bool AddRawExtension(X509* certificate, const std::string& oid, const std::string& der) {
    const ObjectIdHandle object(OBJ_txt2obj(oid.c_str(), 1));
    const OctetsHandle value(ASN1_OCTET_STRING_new());
    if (!object || !value) return false;
    ASN1_OCTET_STRING_set(value.get(), reinterpret_cast<const unsigned char*>(der.data()),
                          static_cast<int>(der.size()));
    const ExtensionHandle extension(
        X509_EXTENSION_create_by_OBJ(nullptr, object.get(), 0, value.get()));
    return extension && X509_add_ext(certificate, extension.get(), -1) == 1;
}

std::string KeyUsage(const CertificateRequest& request, bool authority) {
    if (authority) return "critical,keyCertSign,cRLSign";
    if (!request.keyUsage.empty()) return request.keyUsage;
    return "critical,digitalSignature,nonRepudiation";
}

bool AddExtensions(X509* certificate, X509* issuer, const CertificateRequest& request,
                   bool authority) {
    const bool done =
        AddExtension(certificate, issuer, NID_basic_constraints,
                     authority ? "critical,CA:TRUE" : "CA:FALSE") &&
        AddExtension(certificate, issuer, NID_key_usage, KeyUsage(request, authority)) &&
        AddExtension(certificate, issuer, NID_subject_key_identifier, "hash") &&
        (!issuer || AddExtension(certificate, issuer, NID_authority_key_identifier, "keyid")) &&
        (request.email.empty() ||
         AddExtension(certificate, issuer, NID_subject_alt_name, "email:" + request.email)) &&
        (request.extendedKeyUsage.empty() ||
         AddExtension(certificate, issuer, NID_ext_key_usage, request.extendedKeyUsage)) &&
        (request.distributionPoint.empty() ||
         AddExtension(certificate, issuer, NID_crl_distribution_points,
                      "URI:" + request.distributionPoint));
    if (!done) return false;
    for (const auto& [oid, der] : request.extensions) {
        if (!AddRawExtension(certificate, oid, der)) return false;
    }
    return true;
}

// X509_sign and X509_CRL_sign know no signer's id: `Sign` is what takes a context instead.
template <auto Sign, typename Object>
bool SignObject(Object* object, EVP_PKEY* key) {
    const KeyContextHandle keyContext(EVP_PKEY_CTX_new(key, nullptr));
    const DigestContextHandle context(EVP_MD_CTX_new());
    if (!keyContext || !context) return false;
    const bool sm2 = KindOfKey(key) == KeyKind::kSm2;
    if (sm2) {
        if (EVP_PKEY_CTX_set1_id(keyContext.get(), kSm2DefaultId, sizeof kSm2DefaultId - 1) != 1) {
            return false;
        }
        EVP_MD_CTX_set_pkey_ctx(context.get(), keyContext.get());
    }
    const EVP_MD* hash = sm2 ? EVP_sm3() : EVP_sha256();
    if (EVP_DigestSignInit(context.get(), nullptr, hash, nullptr, key) != 1) return false;
    return Sign(object, context.get()) > 0;
}

// `issuer` null: self-signed by `issuerKey`.
CertificateHandle Build(EVP_PKEY* subjectKey, const CertificateRequest& request, X509* issuer,
                        EVP_PKEY* issuerKey, bool authority) {
    CertificateHandle certificate(X509_new());
    const NameHandle name = NameOf(request);
    const SerialHandle serial = SerialFrom(request.serial);
    if (!certificate || !name || !serial) return nullptr;
    const std::time_t now = std::time(nullptr);
    const std::time_t from = request.notBefore ? request.notBefore : now - 3600;
    const std::time_t life = authority ? kAuthorityLife : kCertificateLife;
    const std::time_t to = request.notAfter ? request.notAfter : from + life;
    X509* raw = certificate.get();
    const bool done =
        X509_set_version(raw, X509_VERSION_3) == 1 &&
        X509_set_serialNumber(raw, serial.get()) == 1 &&
        X509_set_subject_name(raw, name.get()) == 1 &&
        X509_set_issuer_name(raw, issuer ? X509_get_subject_name(issuer) : name.get()) == 1 &&
        SetTime(X509_getm_notBefore(raw), from) && SetTime(X509_getm_notAfter(raw), to) &&
        X509_set_pubkey(raw, subjectKey) == 1 && AddExtensions(raw, issuer, request, authority) &&
        SignObject<X509_sign_ctx>(raw, issuerKey);
    return done ? std::move(certificate) : nullptr;
}

std::string KeyPem(EVP_PKEY* key) {
    const BioHandle out(BIO_new(BIO_s_mem()));
    if (!out ||
        PEM_write_bio_PKCS8PrivateKey(out.get(), key, nullptr, nullptr, 0, nullptr, nullptr) != 1) {
        return {};
    }
    char* data = nullptr;
    const long size = BIO_get_mem_data(out.get(), &data);
    return std::string(data, static_cast<size_t>(size));
}

CertificateRequest AuthorityName(KeyKind kind) {
    CertificateRequest request;
    request.organization = "Velmora";
    request.organizationalUnit = "Development only";
    request.commonName =
        kind == KeyKind::kSm2 ? "Velmora Development CA SM2" : "Velmora Development CA RSA";
    return request;
}

bool AddRevoked(X509_CRL* list, const RevokedCertificate& entry) {
    OpenSslHandle<X509_REVOKED, X509_REVOKED_free> revoked(X509_REVOKED_new());
    const SerialHandle serial = entry.serial.empty() ? nullptr : SerialFrom(entry.serial);
    const TimeHandle when(SetTime(nullptr, entry.when));
    if (!revoked || !serial || !when) return false;
    const bool done = X509_REVOKED_set_serialNumber(revoked.get(), serial.get()) == 1 &&
                      X509_REVOKED_set_revocationDate(revoked.get(), when.get()) == 1 &&
                      X509_CRL_add0_revoked(list, revoked.get()) == 1;
    if (done) revoked.release();
    return done;
}

}  // namespace

DevelopmentCa::DevelopmentCa(KeyHandle key, CertificateHandle certificate)
    : m_key(std::move(key)), m_certificate(std::move(certificate)) {}

std::unique_ptr<DevelopmentCa> DevelopmentCa::Open(KeyKind kind, const std::string& caFolder,
                                                   const std::string& trustFolder, int& code) {
    const std::string name = kind == KeyKind::kSm2 ? "sm2" : "rsa";
    const std::string path = caFolder + platform::PathSeparator() + name + ".pem";
    std::unique_ptr<DevelopmentCa> authority;
    code = kServiceFileUnreadable;
    if (!MakePrivateFolder(caFolder) || !MakePrivateFolder(trustFolder)) return nullptr;
    std::string pem;
    if (ReadWholeFile(path, pem)) {
        const BioHandle in(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
        KeyHandle key(PEM_read_bio_PrivateKey(in.get(), nullptr, NoPassPhrase, nullptr));
        std::vector<CertificateHandle> certificates = ReadCertificates(pem);
        code = kServiceKeyDamaged;
        if (KindOfKey(key.get()) != kind || certificates.empty()) return nullptr;
        authority.reset(new DevelopmentCa(std::move(key), std::move(certificates.front())));
    } else {
        authority = Make(kind, AuthorityName(kind));
        code = kServiceUnknownFailure;
        if (!authority) return nullptr;
        code = kServiceFileUnreadable;
        if (!WriteDurably(path, KeyPem(authority->Key()) + authority->CertificatePem())) {
            return nullptr;
        }
    }
    const std::string trusted =
        trustFolder + platform::PathSeparator() + "velmora-development-" + name + ".pem";
    std::string present;
    code = kServiceFileUnreadable;
    if (!ReadWholeFile(trusted, present) || present != authority->CertificatePem()) {
        if (!WriteDurably(trusted, authority->CertificatePem(), true)) return nullptr;
    }
    code = kServiceOk;
    return authority;
}

std::unique_ptr<DevelopmentCa> DevelopmentCa::Make(KeyKind kind,
                                                   const CertificateRequest& subject) {
    KeyHandle key(GenerateKey(kind, kAuthorityRsaBits));
    if (!key) return nullptr;
    CertificateHandle certificate = Build(key.get(), subject, nullptr, key.get(), true);
    if (!certificate) return nullptr;
    return std::unique_ptr<DevelopmentCa>(
        new DevelopmentCa(std::move(key), std::move(certificate)));
}

std::unique_ptr<DevelopmentCa> DevelopmentCa::MakeSubordinate(KeyKind kind,
                                                              const CertificateRequest& subject) {
    KeyHandle key(GenerateKey(kind, kAuthorityRsaBits));
    if (!key) return nullptr;
    CertificateHandle certificate =
        Build(key.get(), subject, m_certificate.get(), m_key.get(), true);
    if (!certificate) return nullptr;
    return std::unique_ptr<DevelopmentCa>(
        new DevelopmentCa(std::move(key), std::move(certificate)));
}

std::string DevelopmentCa::Issue(EVP_PKEY* subjectKey, const CertificateRequest& request) const {
    const CertificateHandle certificate =
        Build(subjectKey, request, m_certificate.get(), m_key.get(), false);
    return certificate ? DerOf<i2d_X509>(certificate.get()) : std::string();
}

std::string DevelopmentCa::RevocationList(const std::vector<RevokedCertificate>& revoked,
                                          std::time_t thisUpdate, std::time_t nextUpdate) const {
    const RevocationListHandle list(X509_CRL_new());
    const TimeHandle from(SetTime(nullptr, thisUpdate));
    const TimeHandle to(SetTime(nullptr, nextUpdate));
    if (!list || !from || !to) return {};
    X509_CRL_set_version(list.get(), X509_CRL_VERSION_2);
    X509_CRL_set_issuer_name(list.get(), X509_get_subject_name(m_certificate.get()));
    X509_CRL_set1_lastUpdate(list.get(), from.get());
    X509_CRL_set1_nextUpdate(list.get(), to.get());
    for (const RevokedCertificate& entry : revoked) {
        if (!AddRevoked(list.get(), entry)) return {};
    }
    X509_CRL_sort(list.get());
    if (!SignObject<X509_CRL_sign_ctx>(list.get(), m_key.get())) return {};
    return DerOf<i2d_X509_CRL>(list.get());
}

std::string DevelopmentCa::Certificate() const { return DerOf<i2d_X509>(m_certificate.get()); }

std::string DevelopmentCa::CertificatePem() const { return PemOf(m_certificate.get()); }
