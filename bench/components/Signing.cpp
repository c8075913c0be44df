// Signing through the certificate service, in two calls and with the certificate's check in front,
// against OpenSSL's own calls for the chain and the signature; and the hash of a file against the
// bare hash over the same reads.

#include <benchmark/benchmark.h>
#include <gcrypt.h>
#include <openssl/x509_vfy.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include "bench/Ratio.h"
#include "components/certservice/Certificate.h"
#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/KeyFolder.h"
#include "components/crypto/Signature.h"
#include "platform/closed/CertService.h"

namespace {

constexpr char kPin[] = "12345678";
constexpr std::uintmax_t kFileSize = 64u << 20;

const std::string g_prefix = [] {
    char name[] = "/tmp/certservice-bench-XXXXXX";
    const char* made = mkdtemp(name);
    setenv("VELMORA_PREFIX", made, 1);
    return std::string(made);
}();

// One key, stored and logged in, and what the peer needs of it.
struct Signer {
    explicit Signer(KeyKind keyKind) : kind(keyKind), key(GenerateKey(keyKind, 2048)) {
        int code = 0;
        const auto authority =
            DevelopmentCa::Open(kind, g_prefix + "/ca", g_prefix + "/trust", code);
        CertificateRequest request;
        request.commonName = "Bench";
        der = authority->Issue(key.get(), request);
        certificate = ParseCertificate(der);
        anchors.reset(X509_STORE_new());
        X509_STORE_add_cert(anchors.get(), ParseCertificate(authority->Certificate()).get());
        KeyFolder(g_prefix + "/keys").Store("", key.get(), der, kPin, certId);
        // The peer's key is a decoded one, like the service's.
        const std::string stored = DerOf<i2d_PrivateKey>(key.get());
        const auto* cursor = reinterpret_cast<const unsigned char*>(stored.data());
        key.reset(d2i_AutoPrivateKey(nullptr, &cursor, static_cast<long>(stored.size())));
        if (SOF_Initialize(&context) != 0 || SOF_Login(context, certId.c_str(), kPin) != 0) {
            std::abort();
        }
    }

    KeyKind kind;
    KeyHandle key;
    std::string der;
    std::string certId;
    CertificateHandle certificate;
    OpenSslHandle<X509_STORE, X509_STORE_free> anchors;
    void* context = nullptr;
};

Signer& Of(KeyKind kind) {
    static Signer& sm2 = *new Signer(KeyKind::kSm2);
    static Signer& rsa = *new Signer(KeyKind::kRsa);
    return kind == KeyKind::kSm2 ? sm2 : rsa;
}

const unsigned char* Bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

void Service(benchmark::State& state, KeyKind kind) {
    Signer& signer = Of(kind);
    const std::string data(1024, 'x');
    const int size = static_cast<int>(data.size());
    for (auto _ : state) {
        const int verdict = SOF_ValidateCert(signer.context, Bytes(signer.der),
                                             static_cast<int>(signer.der.size()));
        unsigned char signature[512];
        int length = 0;
        const char* certId = signer.certId.c_str();
        int code = SOF_SignData(signer.context, certId, Bytes(data), size, nullptr, &length);
        code |= SOF_SignData(signer.context, certId, Bytes(data), size, signature, &length);
        if (verdict != 0 || code != 0) std::abort();
    }
}

void Peer(benchmark::State& state, KeyKind kind) {
    Signer& signer = Of(kind);
    const std::string data(1024, 'x');
    const bool sm2 = kind == KeyKind::kSm2;
    for (auto _ : state) {
        const OpenSslHandle<X509_STORE_CTX, X509_STORE_CTX_free> chain(X509_STORE_CTX_new());
        X509_STORE_CTX_init(chain.get(), signer.anchors.get(), signer.certificate.get(), nullptr);
        const int good = X509_verify_cert(chain.get());
        const DigestContextHandle digest(EVP_MD_CTX_new());
        const KeyContextHandle context(EVP_PKEY_CTX_new(signer.key.get(), nullptr));
        if (sm2) {
            EVP_PKEY_CTX_set1_id(context.get(), kSm2DefaultId, 16);
            EVP_MD_CTX_set_pkey_ctx(digest.get(), context.get());
        }
        EVP_DigestSignInit(digest.get(), nullptr, sm2 ? EVP_sm3() : EVP_sha256(), nullptr,
                           signer.key.get());
        unsigned char signature[512];
        size_t length = sizeof signature;
        const int done = EVP_DigestSign(digest.get(), signature, &length, Bytes(data), data.size());
        if (good != 1 || done != 1) std::abort();
    }
}

const std::string& File() {
    static const std::string& path = []() -> const std::string& {
        auto* name = new std::string(g_prefix + "/file");
        std::ofstream(*name).close();
        std::filesystem::resize_file(*name, kFileSize);
        return *name;
    }();
    return path;
}

void HashFile(benchmark::State& state, int algorithm) {
    Signer& signer = Of(KeyKind::kSm2);
    for (auto _ : state) {
        unsigned char hash[32];
        int length = sizeof hash;
        if (SOF_HashFile(signer.context, algorithm, File().c_str(), nullptr, 0, nullptr, 0, hash,
                         &length) != 0) {
            std::abort();
        }
    }
}

// `update` takes a piece of the file.
template <typename Update>
void ReadPieces(Update update) {
    std::FILE* file = std::fopen(File().c_str(), "rb");
    std::vector<char> piece(65'536);
    std::setvbuf(file, nullptr, _IONBF, 0);
    while (const size_t count = std::fread(piece.data(), 1, piece.size(), file)) {
        update(piece.data(), count);
    }
    std::fclose(file);
}

void BareSm3(benchmark::State& state) {
    Of(KeyKind::kSm2);
    for (auto _ : state) {
        gcry_md_hd_t hash = nullptr;
        gcry_md_open(&hash, GCRY_MD_SM3, 0);
        ReadPieces([&](const char* data, size_t size) { gcry_md_write(hash, data, size); });
        benchmark::DoNotOptimize(gcry_md_read(hash, GCRY_MD_SM3));
        gcry_md_close(hash);
    }
}

void BareSha256(benchmark::State& state) {
    Of(KeyKind::kSm2);
    for (auto _ : state) {
        const DigestContextHandle hash(EVP_MD_CTX_new());
        EVP_DigestInit(hash.get(), EVP_sha256());
        ReadPieces(
            [&](const char* data, size_t size) { EVP_DigestUpdate(hash.get(), data, size); });
        unsigned char result[32];
        EVP_DigestFinal(hash.get(), result, nullptr);
    }
}

}  // namespace

BENCHMARK_CAPTURE(Service, sm2, KeyKind::kSm2);
BENCHMARK_CAPTURE(Peer, sm2, KeyKind::kSm2);
BENCHMARK_CAPTURE(Service, rsa, KeyKind::kRsa);
BENCHMARK_CAPTURE(Peer, rsa, KeyKind::kRsa);
BENCHMARK_CAPTURE(HashFile, sm3, 1);
BENCHMARK(BareSm3);
BENCHMARK_CAPTURE(HashFile, sha256, 4);
BENCHMARK(BareSha256);

int main(int count, char** arguments) {
    const int result = RunRatios(count, arguments,
                                 {{"SM2, chain and signature", "Service/sm2", "Peer/sm2", 1.02},
                                  {"RSA, chain and signature", "Service/rsa", "Peer/rsa", 1.02},
                                  {"SM3 of a file", "HashFile/sm3", "BareSm3", 1.05},
                                  {"SHA-256 of a file", "HashFile/sha256", "BareSha256", 1.05}});
    std::filesystem::remove_all(g_prefix);
    return result;
}
