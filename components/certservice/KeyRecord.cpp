#include "components/certservice/KeyRecord.h"

#include <openssl/pem.h>
#include <openssl/pkcs12.h>

#include "components/certservice/Certificate.h"
#include "components/certservice/DurableFile.h"
#include "components/certservice/ServiceCodes.h"
#include "components/crypto/Hex.h"
#include "components/crypto/PassPhrase.h"
#include "components/crypto/Signature.h"
#include "platform/Files.h"

namespace {

constexpr int kSaltBytes = 16;

using AlgorithmHandle = OpenSslHandle<X509_ALGOR, X509_ALGOR_free>;
using EncryptedHandle = OpenSslHandle<X509_SIG, X509_SIG_free>;
using PlainHandle = OpenSslHandle<PKCS8_PRIV_KEY_INFO, PKCS8_PRIV_KEY_INFO_free>;

std::string Inside(const std::string& path, const char* name) {
    return path + platform::PathSeparator() + name;
}

std::string StatePathIn(const std::string& path) { return Inside(path, "state"); }

EncryptedHandle Encrypt(EVP_PKEY* key, std::string_view pin) {
    const PlainHandle plain(EVP_PKEY2PKCS8(key));
    AlgorithmHandle algorithm(PKCS5_pbe2_set_iv(EVP_aes_256_cbc(), kPinRounds, nullptr, kSaltBytes,
                                                nullptr, NID_hmacWithSHA256));
    if (!plain || !algorithm) return nullptr;
    EncryptedHandle encrypted(
        PKCS8_set0_pbe(pin.data(), static_cast<int>(pin.size()), plain.get(), algorithm.get()));
    if (encrypted) algorithm.release();
    return encrypted;
}

}  // namespace

std::string EncryptKey(EVP_PKEY* key, std::string_view pin) {
    const EncryptedHandle encrypted = Encrypt(key, pin);
    const BioHandle out(BIO_new(BIO_s_mem()));
    if (!encrypted || !out || PEM_write_bio_PKCS8(out.get(), encrypted.get()) != 1) return {};
    char* data = nullptr;
    const long size = BIO_get_mem_data(out.get(), &data);
    return std::string(data, static_cast<size_t>(size));
}

int DecryptKey(std::string_view pem, std::string_view pin, KeyHandle& key) {
    const BioHandle in(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
    if (!in) return kServiceKeyDamaged;
    const EncryptedHandle encrypted(PEM_read_bio_PKCS8(in.get(), nullptr, NoPassPhrase, nullptr));
    if (!encrypted) return kServiceKeyDamaged;
    const PlainHandle plain(
        PKCS8_decrypt(encrypted.get(), pin.data(), static_cast<int>(pin.size())));
    if (!plain) return kServicePinWrong;
    key.reset(EVP_PKCS82PKEY(plain.get()));
    return key ? kServiceOk : kServiceKeyDamaged;
}

int ReadTries(const std::string& path, std::string_view keyPem, int& tries) {
    std::string state;
    if (!ReadWholeFile(StatePathIn(path), state)) return kServiceKeyDamaged;
    const std::string hash = CapitalHexOf(Digest(HashAlgorithm::kSha256, keyPem));
    if (state.size() < 2 || state[0] < '0' || state[0] > '9') return kServiceKeyDamaged;
    if (state.substr(1) != "\n" + hash + "\n") return kServiceKeyDamaged;
    tries = state[0] - '0';
    return kServiceOk;
}

int WriteTries(const std::string& path, std::string_view keyPem, int tries) {
    const std::string state =
        std::to_string(tries) + "\n" + CapitalHexOf(Digest(HashAlgorithm::kSha256, keyPem)) + "\n";
    return WriteDurably(StatePathIn(path), state) ? kServiceOk : kServiceFileUnreadable;
}

std::string CertificatePathIn(const std::string& path) { return Inside(path, "certificate.pem"); }
std::string KeyPathIn(const std::string& path) { return Inside(path, "key.pem"); }
std::string LockPathIn(const std::string& path) { return Inside(path, "lock"); }
std::string FilesPathIn(const std::string& path) { return Inside(path, "files"); }

int ReadRecordCertificate(const std::string& path, std::string& der) {
    std::string pem;
    if (!ReadWholeFile(CertificatePathIn(path), pem)) return kServiceKeyDamaged;
    const std::vector<CertificateHandle> certificates = ReadCertificates(pem);
    if (certificates.empty()) return kServiceCertificateDamaged;
    der = DerOf<i2d_X509>(certificates.front().get());
    return der.empty() ? kServiceCertificateDamaged : kServiceOk;
}
