// P7SignBigFile of a sparse file with the open components behind it, against the bare hash of the
// same file, and its peak memory against that for a small file.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "TesmarkOpt.h"
#include "bench/Ratio.h"
#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/KeyFolder.h"
#include "components/certservice/Places.h"
#include "components/crypto/Signature.h"
#include "components/crypto/Sm3.h"
#include "support/TemporaryPrefix.h"

namespace {

constexpr off_t kBigFile = off_t{4} << 30;
constexpr off_t kSmallFile = 1024;
// One pass takes seconds.
constexpr int kRepetitions = 3;
constexpr std::size_t kPiece = 64 << 10;
constexpr char kPin[] = "123456";
// The smallest throughput that is good enough is 0.95 of the hash's.
constexpr double kGoal = 1 / 0.95;
constexpr long kMemoryGoalKiB = 8 << 10;

std::string g_bigFile;
std::string g_smallFile;
std::string g_sm2Key;
std::string g_rsaKey;

bool MakeSparseFile(const std::string& path, off_t size) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const bool made = file >= 0 && ftruncate(file, size) == 0;
    close(file);
    return made;
}

// The identifier of a new development key; empty on failure.
std::string MakeKey(KeyKind kind, const char* name) {
    int code = 0;
    const auto ca = DevelopmentCa::Open(kind, CaFolderPath(), TrustFolderPath(), code);
    const KeyHandle key(GenerateKey(kind, kind == KeyKind::kRsa ? 2048 : 0));
    if (!ca || !key) return {};
    CertificateRequest request;
    request.commonName = name;
    std::string certId;
    KeyFolder folder(KeyFolderPath());
    if (folder.Store(name, key.get(), ca->Issue(key.get(), request), kPin, certId) != 0) return {};
    return LoginIn(certId.c_str(), kPin) == 0 ? certId : "";
}

bool Sign(const std::string& certId, const std::string& path) {
    unsigned char signature[16384];
    int length = sizeof signature;
    SetCurrentCertID(certId.c_str());
    return P7SignBigFile(path.c_str(), nullptr, 0, signature, &length) == 0;
}

template <typename Update>
void ReadPieces(const std::string& path, Update update) {
    static std::vector<char> piece(kPiece);
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    for (ssize_t size = read(file, piece.data(), kPiece); size > 0;
         size = read(file, piece.data(), kPiece)) {
        update(piece.data(), static_cast<std::size_t>(size));
    }
    close(file);
}

void SignSm2(benchmark::State& state) {
    for (auto _ : state) {
        if (!Sign(g_sm2Key, g_bigFile)) state.SkipWithError("not signed");
    }
}
BENCHMARK(SignSm2)->Unit(benchmark::kMillisecond);

void HashSm3(benchmark::State& state) {
    for (auto _ : state) {
        Sm3 hash;
        ReadPieces(g_bigFile, [&](const char* data, std::size_t size) {
            hash.Update({data, size});
        });
        benchmark::DoNotOptimize(hash.Finish());
    }
}
BENCHMARK(HashSm3)->Unit(benchmark::kMillisecond);

void SignRsa(benchmark::State& state) {
    for (auto _ : state) {
        if (!Sign(g_rsaKey, g_bigFile)) state.SkipWithError("not signed");
    }
}
BENCHMARK(SignRsa)->Unit(benchmark::kMillisecond);

void HashSha256(benchmark::State& state) {
    for (auto _ : state) {
        const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> hash(EVP_MD_CTX_new(),
                                                                           &EVP_MD_CTX_free);
        EVP_DigestInit_ex(hash.get(), EVP_sha256(), nullptr);
        ReadPieces(g_bigFile, [&](const char* data, std::size_t size) {
            EVP_DigestUpdate(hash.get(), data, size);
        });
        unsigned char digest[EVP_MAX_MD_SIZE];
        EVP_DigestFinal_ex(hash.get(), digest, nullptr);
        benchmark::DoNotOptimize(digest[0]);
    }
}
BENCHMARK(HashSha256)->Unit(benchmark::kMillisecond);

// The most memory that this process holds while it signs a file with both keys; negative if it
// can't. Writing "5" there lets the system begin a new maximum.
long PeakKiB(const std::string& path) {
    std::ofstream("/proc/self/clear_refs") << "5";
    if (!Sign(g_sm2Key, path) || !Sign(g_rsaKey, path)) return -1;
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        long peak = 0;
        if (word == "VmHWM:" && status >> peak) return peak;
    }
    return -1;
}

bool CheckMemory() {
    const long small = PeakKiB(g_smallFile);
    const long big = PeakKiB(g_bigFile);
    if (small < 0 || big < 0) return false;
    const long growth = big - small;
    const bool reached = growth <= kMemoryGoalKiB;
    std::printf("peak memory: %ld KiB for 1 KiB, %ld KiB more for 4 GiB, goal %ld KiB%s\n", small,
                growth, kMemoryGoalKiB, reached ? "" : ": MISSED");
    return reached;
}

}  // namespace

int main(int count, char** arguments) {
    const TemporaryPrefix prefix;
    prefix.RegisterCertService(SERVICE_FILE);
    g_bigFile = prefix.Path() + "/big";
    g_smallFile = prefix.Path() + "/small";
    if (!MakeSparseFile(g_bigFile, kBigFile) || !MakeSparseFile(g_smallFile, kSmallFile)) return 2;
    g_sm2Key = MakeKey(KeyKind::kSm2, "sm2");
    g_rsaKey = MakeKey(KeyKind::kRsa, "rsa");
    if (g_sm2Key.empty() || g_rsaKey.empty()) return 2;
    const bool lean = CheckMemory();
    const int result = RunRatios(count, arguments,
                                 {{"P7SignBigFile, SM2", "SignSm2", "HashSm3", kGoal},
                                  {"P7SignBigFile, RSA", "SignRsa", "HashSha256", kGoal}},
                                 kRepetitions);
    UnInitKVLLib();
    return lean ? result : 1;
}
