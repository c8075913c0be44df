#include "tests/components/seallibrary/TestPki.h"

#include <gtest/gtest.h>
#include <openssl/ec.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include "components/crypto/Signature.h"

namespace {

using NameHandle = OpenSslHandle<X509_NAME, X509_NAME_free>;
using TimeHandle = OpenSslHandle<ASN1_TIME, ASN1_TIME_free>;

NameHandle CommonName(const std::string& text) {
    NameHandle name(X509_NAME_new());
    X509_NAME_add_entry_by_txt(name.get(), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(text.c_str()), -1, -1, 0);
    return name;
}

// A context ready to sign with the key; the key's own context lives in `keyContext`.
DigestContextHandle SigningContext(EVP_PKEY* key, KeyContextHandle& keyContext) {
    DigestContextHandle context(EVP_MD_CTX_new());
    const bool sm2 = EVP_PKEY_is_a(key, "SM2");
    keyContext.reset(EVP_PKEY_CTX_new(key, nullptr));
    if (sm2) EVP_PKEY_CTX_set1_id(keyContext.get(), "1234567812345678", 16);
    EVP_MD_CTX_set_pkey_ctx(context.get(), keyContext.get());
    EVP_DigestSignInit(context.get(), nullptr, sm2 ? EVP_sm3() : EVP_sha256(), nullptr, key);
    return context;
}

void AddExtension(X509* certificate, int kind, const char* value) {
    if (!value) return;
    const OpenSslHandle<X509_EXTENSION, X509_EXTENSION_free> extension(
        X509V3_EXT_conf_nid(nullptr, nullptr, kind, value));
    X509_add_ext(certificate, extension.get(), -1);
}

void AddEntry(X509_CRL* list, long serial, std::time_t revoked) {
    const OpenSslHandle<ASN1_INTEGER, ASN1_INTEGER_free> number(ASN1_INTEGER_new());
    ASN1_INTEGER_set(number.get(), serial);
    X509_REVOKED* entry = X509_REVOKED_new();
    X509_REVOKED_set_serialNumber(entry, number.get());
    X509_REVOKED_set_revocationDate(entry, TimeHandle(ASN1_TIME_set(nullptr, revoked)).get());
    X509_CRL_add0_revoked(list, entry);
}

std::string ListOf(const TestIdentity& issuer, long first, int count, std::time_t revoked) {
    const RevocationListHandle list(X509_CRL_new());
    X509_CRL_set_version(list.get(), X509_CRL_VERSION_2);
    X509_CRL_set_issuer_name(list.get(), CommonName("Test CA").get());
    X509_CRL_set1_lastUpdate(list.get(), TimeHandle(ASN1_TIME_set(nullptr, kTestNow)).get());
    X509_CRL_set1_nextUpdate(list.get(),
                             TimeHandle(ASN1_TIME_set(nullptr, kTestNow + kTestDay)).get());
    for (int i = 0; i < count; ++i) AddEntry(list.get(), first + i, revoked);
    X509_CRL_sort(list.get());
    KeyContextHandle keyContext;
    const auto context = SigningContext(issuer.key.get(), keyContext);
    X509_CRL_sign_ctx(list.get(), context.get());
    return DerOf<i2d_X509_CRL>(list.get());
}

}  // namespace

TestIdentity MakeIdentity(KeyKind kind, const TestCertificateOrder& order) {
    TestIdentity identity;
    identity.key.reset(GenerateKey(kind, 2048));
    const CertificateHandle certificate(X509_new());
    X509_set_version(certificate.get(), X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), order.serial);
    X509_set_issuer_name(certificate.get(), CommonName(order.issuer).get());
    X509_set_subject_name(certificate.get(), CommonName(order.name).get());
    ASN1_TIME_set(X509_getm_notBefore(certificate.get()), order.notBefore);
    ASN1_TIME_set(X509_getm_notAfter(certificate.get()), order.notAfter);
    X509_set_pubkey(certificate.get(), identity.key.get());
    AddExtension(certificate.get(), NID_key_usage, order.keyUsage);
    AddExtension(certificate.get(), NID_ext_key_usage, order.extendedKeyUsage);
    KeyContextHandle keyContext;
    const auto context = SigningContext(identity.key.get(), keyContext);
    X509_sign_ctx(certificate.get(), context.get());
    identity.certificate = DerOf<i2d_X509>(certificate.get());
    return identity;
}

std::string SignAs(const TestIdentity& identity, std::string_view data) {
    KeyContextHandle keyContext;
    const auto context = SigningContext(identity.key.get(), keyContext);
    const auto* bytes = reinterpret_cast<const unsigned char*>(data.data());
    size_t size = 0;
    EVP_DigestSign(context.get(), nullptr, &size, bytes, data.size());
    std::string signature(size, '\0');
    auto* out = reinterpret_cast<unsigned char*>(signature.data());
    if (EVP_DigestSign(context.get(), out, &size, bytes, data.size()) != 1) return {};
    signature.resize(size);
    return signature;
}

SealSigner SignerOf(const TestIdentity& identity) {
    return [&identity](std::string_view tbs) { return SignAs(identity, tbs); };
}

std::string MakeRevocationList(const TestIdentity& issuer, long serial, std::time_t revoked) {
    return ListOf(issuer, serial, 1, revoked);
}

std::string MakeLongRevocationList(const TestIdentity& issuer, int count, std::time_t revoked) {
    return ListOf(issuer, 0x10000, count, revoked);
}

std::string BareSm2(const std::string& der) {
    const auto* at = reinterpret_cast<const unsigned char*>(der.data());
    const OpenSslHandle<ECDSA_SIG, ECDSA_SIG_free> pair(
        d2i_ECDSA_SIG(nullptr, &at, static_cast<long>(der.size())));
    std::string bare(64, '\0');
    auto* out = reinterpret_cast<unsigned char*>(bare.data());
    BN_bn2binpad(ECDSA_SIG_get0_r(pair.get()), out, 32);
    BN_bn2binpad(ECDSA_SIG_get0_s(pair.get()), out + 32, 32);
    return bare;
}

SealOrder UsualOrder(SealForm form, const TestIdentity& signer) {
    SealOrder order;
    order.form = form;
    order.esId = "50010001234";
    order.vendorId = "VELMORA";
    order.name = "\xE6\xB5\x8B\xE8\xAF\x95\xE7\xAB\xA0";  // a test seal, in UTF-8
    order.signerCertificates = {signer.certificate};
    order.picture = "GIF89a, as far as a seal minds";
    order.widthMm = 42;
    order.heightMm = 40;
    order.created = kTestNow - 10 * kTestDay;
    order.validFrom = kTestNow - 10 * kTestDay;
    order.validTo = kTestNow + 3000 * kTestDay;
    return order;
}

std::string MakeTestSeal(const SealOrder& order, const TestIdentity& maker) {
    std::string error;
    const std::string seal = MakeSeal(order, maker.certificate, SignerOf(maker), error);
    EXPECT_EQ(error, "");
    return seal;
}
