#include <openssl/core_names.h>

#include "components/crypto/Handles.h"
#include "components/crypto/Signature.h"
#include "components/crypto/Sm3.h"

namespace {

// a, b, and the base point's x and y of the recommended curve (GB/T 32918.5).
constexpr unsigned char kSm2Curve[] = {
    0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
    0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFC,
    0x28, 0xE9, 0xFA, 0x9E, 0x9D, 0x9F, 0x5E, 0x34, 0x4D, 0x5A, 0x9E, 0x4B, 0xCF, 0x65, 0x09, 0xA7,
    0xF3, 0x97, 0x89, 0xF5, 0x15, 0xAB, 0x8F, 0x92, 0xDD, 0xBC, 0xBD, 0x41, 0x4D, 0x94, 0x0E, 0x93,
    0x32, 0xC4, 0xAE, 0x2C, 0x1F, 0x19, 0x81, 0x19, 0x5F, 0x99, 0x04, 0x46, 0x6A, 0x39, 0xC9, 0x94,
    0x8F, 0xE3, 0x0B, 0xBF, 0xF2, 0x66, 0x0B, 0xE1, 0x71, 0x5A, 0x45, 0x89, 0x33, 0x4C, 0x74, 0xC7,
    0xBC, 0x37, 0x36, 0xA2, 0xF4, 0xF6, 0x77, 0x9C, 0x59, 0xBD, 0xCE, 0xE3, 0x6B, 0x69, 0x21, 0x53,
    0xD0, 0xA9, 0x87, 0x7C, 0xC6, 0x2A, 0x47, 0x40, 0x02, 0xDF, 0x32, 0xE5, 0x21, 0x39, 0xF0, 0xA0};

bool Coordinate(const EVP_PKEY* key, const char* name, unsigned char (&out)[32]) {
    BIGNUM* value = nullptr;
    if (EVP_PKEY_get_bn_param(key, name, &value) != 1) return false;
    const BignumHandle owner(value);
    return BN_bn2binpad(value, out, sizeof out) == sizeof out;
}

std::string_view Bytes(const unsigned char* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace

const EVP_MD* MessageDigest(HashAlgorithm algorithm) {
    switch (algorithm) {
        case HashAlgorithm::kSm3: return EVP_sm3();
        case HashAlgorithm::kSha1: return EVP_sha1();
        case HashAlgorithm::kSha256: return EVP_sha256();
        case HashAlgorithm::kSha384: return EVP_sha384();
        case HashAlgorithm::kSha512: return EVP_sha512();
    }
    return nullptr;
}

size_t DigestSize(HashAlgorithm algorithm) {
    const EVP_MD* digest = MessageDigest(algorithm);
    return digest ? static_cast<size_t>(EVP_MD_get_size(digest)) : 0;
}

std::string Digest(HashAlgorithm algorithm, std::string_view data) {
    if (algorithm == HashAlgorithm::kSm3) {
        Sm3 hash;
        hash.Update(data);
        return hash.Finish();
    }
    unsigned char out[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    const EVP_MD* digest = MessageDigest(algorithm);
    if (!digest || EVP_Digest(data.data(), data.size(), out, &size, digest, nullptr) != 1)
        return {};
    return std::string(Bytes(out, size));
}

bool IsDigest(std::string_view told, HashAlgorithm algorithm, std::string_view data) {
    return !told.empty() && told == Digest(algorithm, data);
}

std::string Sm2Za(const EVP_PKEY* publicKey, std::string_view id) {
    // The id's length is told in bits, in two bytes.
    if (KindOfKey(publicKey) != KeyKind::kSm2 || id.size() >= 8192) return {};
    unsigned char x[32];
    unsigned char y[32];
    if (!Coordinate(publicKey, OSSL_PKEY_PARAM_EC_PUB_X, x)) return {};
    if (!Coordinate(publicKey, OSSL_PKEY_PARAM_EC_PUB_Y, y)) return {};
    const size_t bits = id.size() * 8;
    const unsigned char length[] = {static_cast<unsigned char>(bits >> 8),
                                    static_cast<unsigned char>(bits)};
    Sm3 hash;
    hash.Update(Bytes(length, sizeof length));
    hash.Update(id);
    hash.Update(Bytes(kSm2Curve, sizeof kSm2Curve));
    hash.Update(Bytes(x, sizeof x));
    hash.Update(Bytes(y, sizeof y));
    return hash.Finish();
}

std::string Sm2Digest(const EVP_PKEY* publicKey, std::string_view data, std::string_view id) {
    const std::string za = Sm2Za(publicKey, id);
    if (za.empty()) return {};
    Sm3 hash;
    hash.Update(za);
    hash.Update(data);
    return hash.Finish();
}

std::string DigestForKey(const EVP_PKEY* publicKey, HashAlgorithm hash, std::string_view data) {
    if (KindOfKey(publicKey) != KeyKind::kSm2) return Digest(hash, data);
    return hash == HashAlgorithm::kSm3 ? Sm2Digest(publicKey, data) : std::string();
}
