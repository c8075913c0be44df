// P7VerifyData over 1 KiB with the open components behind it, against OpenSSL's own calls on the
// same signature and the log records of the call, written again.
#include <benchmark/benchmark.h>
#include <openssl/cms.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "TesmarkOpt.h"
#include "bench/Ratio.h"
#include "bench/components/Sealed.h"
#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/Places.h"
#include "components/certservice/SignedMessage.h"
#include "components/crypto/Signature.h"
#include "foundation/Logger.h"
#include "platform/Files.h"
#include "support/TemporaryPrefix.h"

namespace {

constexpr double kMicrosecondsMore = 5;

constexpr char kInner[] = "VELMORA_BENCH_INNER";

std::string g_log;

struct Message {
    explicit Message(KeyKind keyKind) : kind(keyKind) {
        int code = 0;
        const auto authority = DevelopmentCa::Open(kind, CaFolderPath(), TrustFolderPath(), code);
        const KeyHandle key(GenerateKey(kind, 2048));
        CertificateRequest request;
        request.commonName = "Bench";
        certificate = authority->Issue(key.get(), request);
        const CertificateHandle parsed = ParseCertificate(certificate);
        const HashAlgorithm hash =
            kind == KeyKind::kSm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256;
        const auto sign = [&](HashAlgorithm algorithm, std::string_view digest,
                              std::string& value) {
            value = SignDigest(key.get(), algorithm, digest);
            return 0;
        };
        const std::string digest = DigestForKey(key.get(), hash, SealedData());
        if (MakeSignedMessage(parsed.get(), hash, digest, std::time(nullptr), sign, bytes) != 0 ||
            SignedMessage::Parse(bytes)->Field(3, signature) != 0) {
            std::abort();
        }
    }

    KeyKind kind;
    std::string certificate;
    std::string bytes;
    std::string signature;
};

// Of two in turn, as the service keeps the message that it read last.
const Message& MessageBy(KeyKind kind, unsigned int turn) {
    using Pair = std::array<Message, 2>;
    static const Pair& sm2 = *new Pair{Message(KeyKind::kSm2), Message(KeyKind::kSm2)};
    static const Pair& rsa = *new Pair{Message(KeyKind::kRsa), Message(KeyKind::kRsa)};
    return (kind == KeyKind::kSm2 ? sm2 : rsa)[turn % 2];
}

bool Verify(const std::string& signature) {
    return P7VerifyData(Bytes(SealedData()), static_cast<int>(SealedData().size()),
                        Bytes(signature), static_cast<int>(signature.size())) == 0;
}

struct Record {
    LogLevel level;
    std::string message;
};

// The records of one verification.
std::vector<Record> RecordsOf(const std::string& signature) {
    Verify(signature);
    std::filesystem::remove(g_log);
    Verify(signature);
    std::ifstream file(g_log, std::ios::binary);
    std::vector<Record> records;
    for (std::string line; std::getline(file, line);) {
        const auto at = line.find("status(");
        const auto message = line.find(", ", at);
        if (at == std::string::npos || message == std::string::npos) continue;
        const bool error = line.find("[error") != std::string::npos;
        records.push_back({error ? kLogError : kLogTrace, line.substr(message + 2)});
    }
    if (records.empty()) std::abort();
    return records;
}

void Write(const std::vector<Record>& records) {
    for (const Record& record : records) {
        WriteLog("AppOptVerify", 100, record.level, 0, "%s", record.message.c_str());
    }
}

void VerifyMessage(benchmark::State& state, KeyKind kind) {
    unsigned int turn = 0;
    for (auto _ : state) {
        if (!Verify(MessageBy(kind, turn++).bytes)) std::abort();
    }
}

void VerifySeal(benchmark::State& state, KeyKind kind) {
    const Sealed& sealed = SealedBy(kind);
    for (auto _ : state) {
        if (!Verify(sealed.signature)) std::abort();
    }
}

bool VerifyCms(const Message& message) {
    const auto* cursor = Bytes(message.bytes);
    const OpenSslHandle<CMS_ContentInfo, CMS_ContentInfo_free> cms(
        d2i_CMS_ContentInfo(nullptr, &cursor, static_cast<long>(message.bytes.size())));
    const BioHandle data(
        BIO_new_mem_buf(SealedData().data(), static_cast<int>(SealedData().size())));
    return CMS_verify(cms.get(), nullptr, nullptr, data.get(), nullptr,
                      CMS_NO_SIGNER_CERT_VERIFY | CMS_BINARY) == 1;
}

void MessagePeer(benchmark::State& state, KeyKind kind) {
    const std::vector<Record> records = RecordsOf(MessageBy(kind, 0).bytes);
    unsigned int turn = 0;
    for (auto _ : state) {
        const Message& message = MessageBy(kind, turn++);
        bool good = false;
        if (kind == KeyKind::kRsa) {
            good = VerifyCms(message);
        } else {
            // OpenSSL reads no message with the identifiers of GM/T 0010.
            const CertificateHandle signer = ParseCertificate(message.certificate);
            good = BareVerify(signer.get(), true, SealedData(), message.signature);
        }
        if (!good) std::abort();
        Write(records);
    }
    state.counters["records"] = static_cast<double>(records.size());
}

void SealPeer(benchmark::State& state, KeyKind kind) {
    const Sealed& sealed = SealedBy(kind);
    const std::vector<Record> records = RecordsOf(sealed.signature);
    const SealCertificates certificates(sealed);
    for (auto _ : state) {
        if (!BareCalls(sealed, certificates, SealedData()) ||
            !BareChain(sealed.anchors.get(), certificates.signer.get()) ||
            !BareChain(sealed.anchors.get(), certificates.maker.get())) {
            std::abort();
        }
        Write(records);
    }
    state.counters["records"] = static_cast<double>(records.size());
}

// The library fixes its log's place when it is loaded, so the prefix has to be there before.
int RunInner(char** arguments) {
    const TemporaryPrefix prefix;
    prefix.RegisterCertService(SERVICE_FILE);
    setenv(kInner, "1", 1);
    pid_t child = 0;
    int status = -1;
    if (posix_spawn(&child, "/proc/self/exe", nullptr, nullptr, arguments, environ) != 0) return 2;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 2;
}

}  // namespace

BENCHMARK_CAPTURE(VerifyMessage, rsa, KeyKind::kRsa)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(MessagePeer, rsa, KeyKind::kRsa)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(VerifyMessage, sm2, KeyKind::kSm2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(MessagePeer, sm2, KeyKind::kSm2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(VerifySeal, sm2, KeyKind::kSm2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SealPeer, sm2, KeyKind::kSm2)->Unit(benchmark::kMicrosecond);

int main(int count, char** arguments) {
    if (std::getenv(kInner) == nullptr) return RunInner(arguments);
    g_log = platform::UserDataFolder() + "ESealLog/Fenmoor.log";
    if (InitKVLLib() != 0) return 2;
    const int result = RunRatios(
        count, arguments,
        {{"PKCS#7, RSA", "VerifyMessage/rsa", "MessagePeer/rsa", kMicrosecondsMore, true},
         {"PKCS#7, SM2", "VerifyMessage/sm2", "MessagePeer/sm2", kMicrosecondsMore, true},
         {"seal signature, SM2", "VerifySeal/sm2", "SealPeer/sm2", kMicrosecondsMore, true}});
    UnInitKVLLib();
    return result;
}
