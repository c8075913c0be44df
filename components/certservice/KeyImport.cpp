#include "components/certservice/KeyImport.h"

#include <openssl/pem.h>
#include <openssl/pkcs12.h>
#include <openssl/provider.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <vector>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceCodes.h"
#include "components/crypto/ErrorMark.h"

namespace {

using Pkcs12Handle = OpenSslHandle<PKCS12, PKCS12_free>;
using ProviderHandle = OpenSslHandle<OSSL_PROVIDER, OSSL_PROVIDER_unload>;

struct StackFree {
    void operator()(STACK_OF(X509) * certificates) const {
        sk_X509_pop_free(certificates, X509_free);
    }
};
using CertificatesHandle = std::unique_ptr<STACK_OF(X509), StackFree>;

// The certificate of the key, wherever in the file it stands.
int TakePair(KeyHandle key, const std::vector<CertificateHandle>& certificates,
             ImportedKey& imported) {
    if (!key) return kServiceKeyDamaged;
    for (const CertificateHandle& certificate : certificates) {
        if (EVP_PKEY_eq(X509_get0_pubkey(certificate.get()), key.get()) != 1) continue;
        imported.certificate = DerOf<i2d_X509>(certificate.get());
        imported.key = std::move(key);
        return kServiceOk;
    }
    return kServiceCertificateDamaged;
}

int ReadPkcs12(PKCS12* file, const std::string& password, ImportedKey& imported) {
    // What a file made twenty years ago needs, RC2 and the like, is in a provider of its own.
    const ProviderHandle legacy(OSSL_PROVIDER_try_load(nullptr, "legacy", 1));
    if (PKCS12_mac_present(file) != 1) return kServiceKeyDamaged;
    if (PKCS12_verify_mac(file, password.c_str(), -1) != 1) return kServicePinWrong;
    EVP_PKEY* rawKey = nullptr;
    X509* rawCertificate = nullptr;
    STACK_OF(X509)* rawOthers = nullptr;
    const int parsed = PKCS12_parse(file, password.c_str(), &rawKey, &rawCertificate, &rawOthers);
    KeyHandle key(rawKey);
    std::vector<CertificateHandle> certificates;
    if (rawCertificate) certificates.emplace_back(rawCertificate);
    const CertificatesHandle others(rawOthers);
    if (parsed != 1) return kServiceKeyDamaged;
    while (others && sk_X509_num(others.get()) > 0) {
        certificates.emplace_back(sk_X509_pop(others.get()));
    }
    return TakePair(std::move(key), certificates, imported);
}

struct PasswordRequest {
    const std::string* password;
    bool asked = false;
};

int GivePassword(char* buffer, int size, int, void* user) {
    auto* request = static_cast<PasswordRequest*>(user);
    request->asked = true;
    const int length = static_cast<int>(std::min<size_t>(request->password->size(), INT_MAX));
    if (length > size) return -1;
    std::memcpy(buffer, request->password->data(), static_cast<size_t>(length));
    return length;
}

int ReadPem(std::string_view content, const std::string& password, ImportedKey& imported) {
    const BioHandle in(BIO_new_mem_buf(content.data(), static_cast<int>(content.size())));
    if (!in) return kServiceKeyDamaged;
    PasswordRequest request{&password};
    KeyHandle key(PEM_read_bio_PrivateKey(in.get(), nullptr, GivePassword, &request));
    if (!key) return request.asked ? kServicePinWrong : kServiceKeyDamaged;
    return TakePair(std::move(key), ReadCertificates(content), imported);
}

}  // namespace

int ReadKeyImport(std::string_view content, const std::string& password, ImportedKey& imported) {
    if (content.empty() || content.size() > INT_MAX) return kServiceKeyDamaged;
    const ErrorMark mark;
    const auto* cursor = reinterpret_cast<const unsigned char*>(content.data());
    const Pkcs12Handle file(d2i_PKCS12(nullptr, &cursor, static_cast<long>(content.size())));
    return file ? ReadPkcs12(file.get(), password, imported) : ReadPem(content, password, imported);
}
