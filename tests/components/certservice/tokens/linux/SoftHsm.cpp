#include "components/certservice/tokens/linux/SoftHsm.h"

#include <openssl/pem.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

const char* SoftHsm::ModulePath() { return SOFTHSM_MODULE; }

SoftHsm::SoftHsm() {
    std::filesystem::create_directory(m_folder.Below("tokens"));
    SetVariable(
        "SOFTHSM2_CONF",
        WriteScratch("softhsm2.conf", "directories.tokendir = " + m_folder.Below("tokens") +
                                          "\nobjectstore.backend = file\nlog.level = ERROR\n"));
}

void SoftHsm::Run(const std::string& command) {
    if (std::system((command + " >/dev/null 2>&1").c_str()) != 0)
        throw std::runtime_error("failed: " + command);
}

std::string SoftHsm::WriteScratch(const std::string& name, const std::string& content) const {
    const std::string path = m_folder.Below(name);
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
    for (const auto& token : std::filesystem::directory_iterator(m_folder.Below("tokens")))
        std::filesystem::remove_all(token.path());
}

void SoftHsm::StoreKey(const std::string& token, EVP_PKEY* key, const std::string& id) {
    const std::string path = m_folder.Below("key.pem");
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
