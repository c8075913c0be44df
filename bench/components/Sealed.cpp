#include "bench/components/Sealed.h"

#include <cstdlib>
#include <ctime>

#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/Places.h"
#include "components/crypto/Signature.h"
#include "components/seallibrary/SealForm.h"
#include "components/seallibrary/SealMaker.h"

namespace {

HashAlgorithm HashFor(KeyKind kind) {
    return kind == KeyKind::kSm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256;
}

}  // namespace

const std::string& SealedData() {
    static const std::string data(1024, 'x');
    return data;
}

const unsigned char* Bytes(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

Sealed::Sealed(KeyKind keyKind) : kind(keyKind), hash(HashFor(keyKind)) {
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

void Sealed::MakeTheSeal(const std::string& maker, const std::string& signer, EVP_PKEY* key) {
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

void Sealed::Sign(const std::string& signer, EVP_PKEY* key) {
    const std::string dataHash = Digest(hash, SealedData());
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

const Sealed& SealedBy(KeyKind kind) {
    static const Sealed& sm2 = *new Sealed(KeyKind::kSm2);
    static const Sealed& rsa = *new Sealed(KeyKind::kRsa);
    return kind == KeyKind::kSm2 ? sm2 : rsa;
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

SealCertificates::SealCertificates(const Sealed& sealed)
    : signer(ParseCertificate(sealed.read.signerCertificate)),
      maker(ParseCertificate(sealed.read.seal.makerCertificate)) {}

bool BareCalls(const Sealed& sealed, const SealCertificates& certificates, std::string_view data) {
    const SealSignature& read = sealed.read;
    const bool sm2 = sealed.kind == KeyKind::kSm2;
    unsigned char hash[32];
    EVP_Digest(data.data(), data.size(), hash, nullptr, sm2 ? EVP_sm3() : EVP_sha256(), nullptr);
    return read.dataHash == std::string_view(reinterpret_cast<char*>(hash), sizeof hash) &&
           BareVerify(certificates.signer.get(), sm2, read.signedPart, read.signature) &&
           BareVerify(certificates.maker.get(), sm2, read.seal.signedPart, read.seal.signature);
}
