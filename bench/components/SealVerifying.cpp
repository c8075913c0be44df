// Verifying a seal signature over 1 KiB, against OpenSSL's own calls on the same signature: the
// hash of the data, and the signatures of the signer and of the seal's maker with the certificates
// that come with them. "Judge" asks nobody about the certificates; "Verify" is TVK_Verify_SES_Sign
// with the certificate service behind it, and its peer checks both chains and decodes the Base64.
// The seal library keeps certificates decoded, so one peer of "Judge" does as well.

#include <benchmark/benchmark.h>
#include <openssl/x509_vfy.h>

#include <cstdlib>
#include <ctime>

#include "bench/Ratio.h"
#include "components/certservice/Certificate.h"
#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/Places.h"
#include "components/crypto/Signature.h"
#include "components/seallibrary/DataDigest.h"
#include "components/seallibrary/SealForm.h"
#include "components/seallibrary/SealMaker.h"
#include "components/seallibrary/SealSignature.h"
#include "components/seallibrary/SealVerdict.h"
#include "foundation/Text.h"
#include "platform/closed/SealLibrary.h"
#include "support/TemporaryPrefix.h"

namespace {

const std::string kData(1024, 'x');

class TrustingJudge : public CertificateJudge {
public:
    int Validate(const std::string&) override { return 0; }
    int ValidateWithList(const std::string&, const std::string&) override { return 0; }
};

const unsigned char* Bytes(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

// A seal, a signature with it, and what the peer needs of them.
struct Sealed {
    explicit Sealed(KeyKind keyKind) : kind(keyKind), hash(HashFor(keyKind)) {
        int code = 0;
        const auto authority = DevelopmentCa::Open(kind, CaFolderPath(), TrustFolderPath(), code);
        anchors.reset(X509_STORE_new());
        X509_STORE_add_cert(anchors.get(), ParseCertificate(authority->Certificate()).get());
        const KeyHandle makerKey(GenerateKey(kind, 2048));
        const KeyHandle signerKey(GenerateKey(kind, 2048));
        CertificateRequest request;
        request.commonName = "Bench";
        const std::string maker = authority->Issue(makerKey.get(), request);
        const std::string signer = authority->Issue(signerKey.get(), request);
        MakeTheSeal(maker, signer, makerKey.get());
        Sign(signer, signerKey.get());
        if (ReadSealSignature(signature, read) != 0) std::abort();
    }

    static HashAlgorithm HashFor(KeyKind kind) {
        return kind == KeyKind::kSm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256;
    }
    void MakeTheSeal(const std::string& maker, const std::string& signer, EVP_PKEY* key) {
        const std::time_t now = std::time(nullptr);
        SealOrder order;
        order.esId = "1";
        order.name = "seal";
        order.signerCertificates = {signer};
        order.picture = std::string("GIF89a\x2A\0\x2A\0", 10) + std::string(10'000, 'p');
        order.widthMm = order.heightMm = 42;
        order.created = order.validFrom = now - 60;
        order.validTo = now + 86'400;
        std::string error;
        seal = MakeSeal(
            order, maker, [&](std::string_view tbs) { return SignData(key, hash, tbs); }, error);
    }
    void Sign(const std::string& signer, EVP_PKEY* key) {
        const std::string dataHash = Digest(hash, kData);
        SealSignatureOrder order;
        order.sealDer = seal;
        order.time = std::time(nullptr);
        order.dataHash = dataHash;
        order.property = "bench";
        order.signerCertificate = signer;
        order.algorithm = kind == KeyKind::kSm2 ? kSm2WithSm3 : kSha256WithRsa;
        const std::string part = BuildSignedPart(order);
        signature = AssembleSealSignature(order, part, SignData(key, hash, part));
    }

    KeyKind kind;
    HashAlgorithm hash;
    std::string seal;
    std::string signature;
    SealSignature read;
    OpenSslHandle<X509_STORE, X509_STORE_free> anchors;
};

Sealed& Of(KeyKind kind) {
    static Sealed& sm2 = *new Sealed(KeyKind::kSm2);
    static Sealed& rsa = *new Sealed(KeyKind::kRsa);
    return kind == KeyKind::kSm2 ? sm2 : rsa;
}

void Judge(benchmark::State& state, KeyKind kind) {
    const Sealed& sealed = Of(kind);
    TrustingJudge judge;
    CCertificateShelf shelf;
    for (auto _ : state) {
        if (JudgeSealSignature(sealed.signature, DigestOfData(kData), {}, judge, &shelf).code)
            std::abort();
    }
}

bool BareVerify(X509* certificate, bool sm2, std::string_view data, std::string_view signature) {
    EVP_PKEY* key = X509_get0_pubkey(certificate);
    const DigestContextHandle digest(EVP_MD_CTX_new());
    const KeyContextHandle context(EVP_PKEY_CTX_new(key, nullptr));
    if (sm2) {
        EVP_PKEY_CTX_set1_id(context.get(), kSm2DefaultId, 16);
        EVP_MD_CTX_set_pkey_ctx(digest.get(), context.get());
    }
    EVP_DigestVerifyInit(digest.get(), nullptr, sm2 ? EVP_sm3() : EVP_sha256(), nullptr, key);
    return EVP_DigestVerify(digest.get(), Bytes(signature), signature.size(), Bytes(data),
                            data.size()) == 1;
}

bool BareChain(X509_STORE* anchors, X509* certificate) {
    const OpenSslHandle<X509_STORE_CTX, X509_STORE_CTX_free> chain(X509_STORE_CTX_new());
    X509_STORE_CTX_init(chain.get(), anchors, certificate, nullptr);
    return X509_verify_cert(chain.get()) == 1;
}

struct Certificates {
    explicit Certificates(const Sealed& sealed)
        : signer(ParseCertificate(sealed.read.signerCertificate)),
          maker(ParseCertificate(sealed.read.seal.makerCertificate)) {}

    CertificateHandle signer;
    CertificateHandle maker;
};

// All that a verification can't do without, by the parts that were read before.
bool BareCalls(const Sealed& sealed, const Certificates& certificates, std::string_view data) {
    const SealSignature& read = sealed.read;
    const bool sm2 = sealed.kind == KeyKind::kSm2;
    unsigned char hash[32];
    EVP_Digest(data.data(), data.size(), hash, nullptr, sm2 ? EVP_sm3() : EVP_sha256(), nullptr);
    return read.dataHash == std::string_view(reinterpret_cast<char*>(hash), sizeof hash) &&
           BareVerify(certificates.signer.get(), sm2, read.signedPart, read.signature) &&
           BareVerify(certificates.maker.get(), sm2, read.seal.signedPart, read.seal.signature);
}

void JudgePeer(benchmark::State& state, KeyKind kind) {
    const Sealed& sealed = Of(kind);
    for (auto _ : state) {
        if (!BareCalls(sealed, Certificates(sealed), kData)) std::abort();
    }
}

void JudgeKeptPeer(benchmark::State& state, KeyKind kind) {
    const Sealed& sealed = Of(kind);
    const Certificates certificates(sealed);
    for (auto _ : state) {
        if (!BareCalls(sealed, certificates, kData)) std::abort();
    }
}

void Verify(benchmark::State& state, KeyKind kind) {
    const Sealed& sealed = Of(kind);
    const std::string text = Base64Encode(kData);
    for (auto _ : state) {
        const int code =
            TVK_Verify_SES_Sign(Bytes(sealed.signature), static_cast<int>(sealed.signature.size()),
                                Bytes(text), static_cast<int>(text.size()));
        if (code != 0) std::abort();
    }
}

void VerifyPeer(benchmark::State& state, KeyKind kind) {
    const Sealed& sealed = Of(kind);
    const std::string text = Base64Encode(kData);
    for (auto _ : state) {
        unsigned char data[2048];
        EVP_DecodeBlock(data, Bytes(text), static_cast<int>(text.size()));
        const std::string_view view(reinterpret_cast<char*>(data), kData.size());
        const Certificates certificates(sealed);
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
