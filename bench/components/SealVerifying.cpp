// Verifying a seal signature over 1 KiB, against OpenSSL's own calls on the same signature: the
// hash of the data, and the signatures of the signer and of the seal's maker with the certificates
// that come with them. "Judge" asks nobody about the certificates; "Verify" is TVK_Verify_SES_Sign
// with the certificate service behind it, and its peer checks both chains and decodes the Base64.
// The seal library keeps certificates decoded, so one peer of "Judge" does as well.

#include <benchmark/benchmark.h>

#include <cstdlib>

#include "bench/Ratio.h"
#include "bench/components/Sealed.h"
#include "components/seallibrary/DataDigest.h"
#include "components/seallibrary/SealVerdict.h"
#include "foundation/Text.h"
#include "platform/closed/SealLibrary.h"
#include "support/TemporaryPrefix.h"

namespace {

class TrustingJudge : public CertificateJudge {
public:
    int Validate(const std::string&) override { return 0; }
    int ValidateWithList(const std::string&, const std::string&) override { return 0; }
};

void Judge(benchmark::State& state, KeyKind kind) {
    const Sealed& sealed = SealedBy(kind);
    TrustingJudge judge;
    CCertificateShelf shelf;
    for (auto _ : state) {
        if (JudgeSealSignature(sealed.signature, DigestOfData(SealedData()), {}, judge, &shelf)
                .code)
            std::abort();
    }
}

void JudgePeer(benchmark::State& state, KeyKind kind) {
    const Sealed& sealed = SealedBy(kind);
    for (auto _ : state) {
        if (!BareCalls(sealed, SealCertificates(sealed), SealedData())) std::abort();
    }
}

void JudgeKeptPeer(benchmark::State& state, KeyKind kind) {
    const Sealed& sealed = SealedBy(kind);
    const SealCertificates certificates(sealed);
    for (auto _ : state) {
        if (!BareCalls(sealed, certificates, SealedData())) std::abort();
    }
}

void Verify(benchmark::State& state, KeyKind kind) {
    const Sealed& sealed = SealedBy(kind);
    const std::string text = Base64Encode(SealedData());
    for (auto _ : state) {
        const int code =
            TVK_Verify_SES_Sign(Bytes(sealed.signature), static_cast<int>(sealed.signature.size()),
                                Bytes(text), static_cast<int>(text.size()));
        if (code != 0) std::abort();
    }
}

void VerifyPeer(benchmark::State& state, KeyKind kind) {
    const Sealed& sealed = SealedBy(kind);
    const std::string text = Base64Encode(SealedData());
    for (auto _ : state) {
        unsigned char data[2048];
        EVP_DecodeBlock(data, Bytes(text), static_cast<int>(text.size()));
        const std::string_view view(reinterpret_cast<char*>(data), SealedData().size());
        const SealCertificates certificates(sealed);
        if (!BareCalls(sealed, certificates, view) ||
            !BareChain(sealed.anchors.get(), certificates.signer.get()) ||
            !BareChain(sealed.anchors.get(), certificates.maker.get())) {
            std::abort();
        }
    }
}

}  // namespace

BENCHMARK_CAPTURE(Judge, sm2, KeyKind::kSm2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(JudgePeer, sm2, KeyKind::kSm2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(JudgeKeptPeer, sm2, KeyKind::kSm2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Judge, rsa, KeyKind::kRsa)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(JudgePeer, rsa, KeyKind::kRsa)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(JudgeKeptPeer, rsa, KeyKind::kRsa)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Verify, sm2, KeyKind::kSm2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(VerifyPeer, sm2, KeyKind::kSm2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Verify, rsa, KeyKind::kRsa)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(VerifyPeer, rsa, KeyKind::kRsa)->Unit(benchmark::kMicrosecond);

int main(int count, char** arguments) {
    const TemporaryPrefix prefix;
    prefix.RegisterCertService(SERVICE_FILE);
    return RunRatios(count, arguments,
                     {{"Seal signature, SM2", "Judge/sm2", "JudgePeer/sm2", 1.01},
                      {"Seal signature, RSA", "Judge/rsa", "JudgePeer/rsa", 1.06},
                      {"certificates kept, SM2", "Judge/sm2", "JudgeKeptPeer/sm2", 1.01},
                      {"certificates kept, RSA", "Judge/rsa", "JudgeKeptPeer/rsa", 1.15},
                      {"with chains, SM2", "Verify/sm2", "VerifyPeer/sm2", 1.01},
                      {"with chains, RSA", "Verify/rsa", "VerifyPeer/rsa", 1.03}});
}
