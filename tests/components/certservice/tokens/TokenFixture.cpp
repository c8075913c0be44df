#include "TokenFixture.h"

#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "components/certservice/pkcs11/Pkcs11Device.h"
#include "platform/RegistryStore.h"

namespace {

platform::RegistryKey ServiceKey() {
    return platform::CreateRegistryKey(
        platform::RegistryRootKey(platform::RegistryRoot::LocalMachine),
        "software\\Velmora\\certservice");
}

void AddExtension(X509* certificate, int kind, const char* value) {
    X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, nullptr, kind, value);
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

}  // namespace

void SetServicePath(const char* name, const std::string& path) {
    const platform::RegistryKey key = ServiceKey();
    if (!key || !platform::SetRegistryPath(key, name, path)) throw std::runtime_error(name);
    platform::CloseRegistryKey(key);
}

void SetServiceNumber(const char* name, unsigned int number) {
    const platform::RegistryKey key = ServiceKey();
    if (!key || !platform::SetRegistryNumber(key, name, number)) throw std::runtime_error(name);
    platform::CloseRegistryKey(key);
}

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

const char* SoftHsm::ModulePath() { return SOFTHSM_MODULE; }

SoftHsm::SoftHsm() {
    std::string name = std::filesystem::temp_directory_path() / "softhsm-XXXXXX";
    if (!mkdtemp(name.data())) throw std::runtime_error("mkdtemp");
    m_folder = name;
    std::filesystem::create_directory(m_folder + "/tokens");
    WriteScratch("softhsm2.conf", "directories.tokendir = " + m_folder +
                                      "/tokens\nobjectstore.backend = file\nlog.level = ERROR\n");
    setenv("SOFTHSM2_CONF", (m_folder + "/softhsm2.conf").c_str(), 1);
}

SoftHsm::~SoftHsm() {
    unsetenv("SOFTHSM2_CONF");
    std::filesystem::remove_all(m_folder);
}

void SoftHsm::Run(const std::string& command) {
    if (std::system((command + " >/dev/null 2>&1").c_str()) != 0)
        throw std::runtime_error("failed: " + command);
}

std::string SoftHsm::WriteScratch(const std::string& name, const std::string& content) const {
    const std::string path = m_folder + "/" + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

std::string SoftHsm::Tool(const std::string& token) const {
    return std::string("pkcs11-tool --module ") + ModulePath() + " --token-label " + token +
           " --login --pin 123456 ";
}

void SoftHsm::MakeToken(const std::string& label) {
    Run("softhsm2-util --init-token --free --pin 123456 --so-pin 87654321 --label " + label);
}

void SoftHsm::RemoveTokens() {
    for (const auto& token : std::filesystem::directory_iterator(m_folder + "/tokens"))
        std::filesystem::remove_all(token.path());
}

void SoftHsm::StoreKey(const std::string& token, EVP_PKEY* key, const std::string& id) {
    const std::string path = m_folder + "/key.pem";
    BioHandle file(BIO_new_file(path.c_str(), "w"));
    PEM_write_bio_PKCS8PrivateKey(file.get(), key, nullptr, nullptr, 0, nullptr, nullptr);
    file.reset();
    Run("softhsm2-util --import " + path + " --token " + token + " --pin 123456 --label key --id " +
        id);
}

void SoftHsm::StoreCertificate(const std::string& token, const std::string& der,
                               const std::string& id, const std::string& label) {
    Run(Tool(token) + "--write-object " + WriteScratch("certificate.der", der) +
        " --type cert --id " + id + " --label '" + label + "'");
}

void SoftHsm::StoreFile(const std::string& token, const std::string& name,
                        const std::string& content, const std::string& owner) {
    Run(Tool(token) + "--write-object " + WriteScratch("file", content) + " --type data --label '" +
        name + "' " + owner);
}

KeyHandle SoftHsm::StorePair(const std::string& token, const std::string& id,
                             const CertificateOptions& options) {
    KeyHandle key = MakeRsaKey();
    StoreKey(token, key.get(), id);
    StoreCertificate(token, MakeCertificate(key.get(), options), id, "certificate");
    return key;
}

std::unique_ptr<KeyDevice> OpenOnlyDevice() {
    std::vector<std::unique_ptr<KeyDevice>> devices = OpenPkcs11Devices();
    return devices.size() == 1 ? std::move(devices.front()) : nullptr;
}
