#include "components/crypto/Signature.h"

#include <openssl/core_names.h>
#include <openssl/ec.h>
#include <openssl/rsa.h>

#include <cstring>

#include "components/crypto/Handles.h"

namespace {

constexpr size_t kBareSm2Signature = 64;

const unsigned char* Bytes(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

// Another maker's r and s as SEQUENCE { r, s }; empty if it can't be encoded.
std::string DerFromBare(std::string_view bare) {
    const OpenSslHandle<ECDSA_SIG, ECDSA_SIG_free> signature(ECDSA_SIG_new());
    BignumHandle r(BN_bin2bn(Bytes(bare), 32, nullptr));
    BignumHandle s(BN_bin2bn(Bytes(bare) + 32, 32, nullptr));
    if (!signature || !r || !s) return {};
    if (ECDSA_SIG_set0(signature.get(), r.get(), s.get()) != 1) return {};
    r.release();
    s.release();
    return DerOf<i2d_ECDSA_SIG>(signature.get());
}

// Sets the padding and hash of an RSA operation; SM2 needs neither.
bool Prepare(EVP_PKEY_CTX* context, KeyKind kind, HashAlgorithm hash) {
    if (kind != KeyKind::kRsa) return true;
    return EVP_PKEY_CTX_set_rsa_padding(context, RSA_PKCS1_PADDING) == 1 &&
           EVP_PKEY_CTX_set_signature_md(context, MessageDigest(hash)) == 1;
}

bool Fits(KeyKind kind, HashAlgorithm hash, std::string_view digest) {
    if (kind == KeyKind::kOther) return false;
    if ((kind == KeyKind::kSm2) != (hash == HashAlgorithm::kSm3)) return false;
    return !digest.empty() && digest.size() == DigestSize(hash);
}

// Null if the key can't sign. OpenSSL lets one context make any number of signatures.
KeyContextHandle SigningContext(EVP_PKEY* key, KeyKind kind, HashAlgorithm hash) {
    KeyContextHandle context(EVP_PKEY_CTX_new(key, nullptr));
    if (!context || EVP_PKEY_sign_init(context.get()) != 1) return nullptr;
    if (!Prepare(context.get(), kind, hash)) return nullptr;
    return context;
}

std::string SignWith(EVP_PKEY_CTX* context, std::string_view digest) {
    if (!context) return {};
    const int largest = EVP_PKEY_get_size(EVP_PKEY_CTX_get0_pkey(context));
    std::string signature(static_cast<size_t>(largest), '\0');
    size_t size = signature.size();
    auto* out = reinterpret_cast<unsigned char*>(signature.data());
    if (EVP_PKEY_sign(context, out, &size, Bytes(digest), digest.size()) != 1) return {};
    signature.resize(size);
    return signature;
}

bool VerifyWith(EVP_PKEY* key, KeyKind kind, HashAlgorithm hash, std::string_view digest,
                std::string_view signature) {
    const KeyContextHandle context(EVP_PKEY_CTX_new(key, nullptr));
    if (!context || EVP_PKEY_verify_init(context.get()) != 1) return false;
    if (!Prepare(context.get(), kind, hash)) return false;
    return EVP_PKEY_verify(context.get(), Bytes(signature), signature.size(), Bytes(digest),
                           digest.size()) == 1;
}

}  // namespace

KeyKind KindOfKey(const EVP_PKEY* key) {
    if (!key) return KeyKind::kOther;
    // A look at the number is far cheaper than at the name, and most keys have one.
    if (EVP_PKEY_get_id(key) == EVP_PKEY_SM2) return KeyKind::kSm2;
    if (EVP_PKEY_get_id(key) == EVP_PKEY_RSA) return KeyKind::kRsa;
    if (EVP_PKEY_is_a(key, "SM2")) return KeyKind::kSm2;
    if (EVP_PKEY_is_a(key, "RSA")) return KeyKind::kRsa;
    return KeyKind::kOther;
}

EVP_PKEY* GenerateKey(KeyKind kind, int rsaBits) {
    switch (kind) {
        case KeyKind::kSm2: return EVP_PKEY_Q_keygen(nullptr, nullptr, "SM2");
        case KeyKind::kRsa:
            return EVP_PKEY_Q_keygen(nullptr, nullptr, "RSA", static_cast<size_t>(rsaBits));
        case KeyKind::kOther: break;
    }
    return nullptr;
}

std::string SignDigest(EVP_PKEY* privateKey, HashAlgorithm hash, std::string_view digest) {
    const KeyKind kind = KindOfKey(privateKey);
    if (!Fits(kind, hash, digest)) return {};
    const KeyContextHandle context = SigningContext(privateKey, kind, hash);
    return SignWith(context.get(), digest);
}

SigningKey::SigningKey(KeyHandle privateKey)
    : m_key(std::move(privateKey)), m_kind(KindOfKey(m_key.get())) {}

std::string SigningKey::Sign(HashAlgorithm hash, std::string_view digest) {
    if (!Fits(m_kind, hash, digest)) return {};
    if (!m_context || m_hash != hash) m_context = SigningContext(m_key.get(), m_kind, hash);
    m_hash = hash;
    return SignWith(m_context.get(), digest);
}

std::string SignData(EVP_PKEY* privateKey, HashAlgorithm hash, std::string_view data) {
    return SignDigest(privateKey, hash, DigestForKey(privateKey, hash, data));
}

bool VerifyDigest(EVP_PKEY* publicKey, HashAlgorithm hash, std::string_view digest,
                  std::string_view signature) {
    const KeyKind kind = KindOfKey(publicKey);
    if (!Fits(kind, hash, digest)) return false;
    if (VerifyWith(publicKey, kind, hash, digest, signature)) return true;
    if (kind != KeyKind::kSm2 || signature.size() != kBareSm2Signature) return false;
    return VerifyWith(publicKey, kind, hash, digest, DerFromBare(signature));
}

bool VerifyData(EVP_PKEY* publicKey, HashAlgorithm hash, std::string_view data,
                std::string_view signature) {
    return VerifyDigest(publicKey, hash, DigestForKey(publicKey, hash, data), signature);
}
