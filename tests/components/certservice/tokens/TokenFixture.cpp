#include "components/certservice/tokens/TokenFixture.h"

#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <ctime>

#include "components/certservice/pkcs11/Pkcs11Device.h"

namespace {

void AddExtension(X509* certificate, int kind, const char* value) {
    X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, nullptr, kind, value);
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

}  // namespace

KeyHandle MakeRsaKey() { return KeyHandle(EVP_RSA_gen(2048)); }

std::string MakeCertificate(EVP_PKEY* key, const CertificateOptions& options) {
    const CertificateHandle certificate(X509_new());
    X509_set_version(certificate.get(), X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    std::time_t start = 1767225600;
    X509_time_adj_ex(X509_getm_notBefore(certificate.get()), options.firstDay, 0, &start);
    X509_time_adj_ex(X509_getm_notAfter(certificate.get()), options.firstDay + 365, 0, &start);
    X509_NAME* const name = X509_get_subject_name(certificate.get());
    if (*options.commonName)
        X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8,
                                   reinterpret_cast<const unsigned char*>(options.commonName), -1,
                                   -1, 0);
    X509_set_issuer_name(certificate.get(), name);
    X509_set_pubkey(certificate.get(), key);
    AddExtension(certificate.get(), NID_basic_constraints,
                 options.authority ? "critical,CA:TRUE" : "CA:FALSE");
    X509_sign(certificate.get(), key, EVP_sha256());
    return DerOf<i2d_X509>(certificate.get());
}

std::unique_ptr<KeyDevice> OpenOnlyDevice() {
    std::vector<std::unique_ptr<KeyDevice>> devices = OpenPkcs11Devices();
    return devices.size() == 1 ? std::move(devices.front()) : nullptr;
}
