#include "tools/sealserver/Password.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <stdexcept>

#include "components/crypto/Hex.h"

namespace {

constexpr std::uint64_t kCost = 1u << 15;
constexpr std::uint64_t kBlockSize = 8;
constexpr std::uint64_t kParallel = 1;
constexpr std::uint64_t kMostMemory = 64u << 20;
constexpr std::size_t kSaltBytes = 16;
constexpr std::size_t kHashBytes = 32;
constexpr char kPrefix[] = "scrypt$32768$8$1$";

std::string RandomBytes(std::size_t count) {
    std::string bytes(count, '\0');
    if (RAND_bytes(reinterpret_cast<unsigned char*>(bytes.data()), static_cast<int>(count)) != 1)
        throw std::runtime_error("no random numbers can be had");
    return bytes;
}

std::string Derived(std::string_view password, std::string_view salt) {
    std::string hash(kHashBytes, '\0');
    if (EVP_PBE_scrypt(password.data(), password.size(),
                       reinterpret_cast<const unsigned char*>(salt.data()), salt.size(), kCost,
                       kBlockSize, kParallel, kMostMemory,
                       reinterpret_cast<unsigned char*>(hash.data()), hash.size()) != 1)
        throw std::runtime_error("the password can't be hashed");
    return LowerHexOf(hash);
}

}  // namespace

// The salt goes in as its hexadecimal text, which is what is kept.
std::string HashPassword(std::string_view password) {
    const std::string salt = RandomHex(kSaltBytes);
    return kPrefix + salt + "$" + Derived(password, salt);
}

bool PasswordMatches(std::string_view password, const std::string& hash) {
    const std::size_t saltAt = sizeof kPrefix - 1;
    const std::size_t hashAt = saltAt + 2 * kSaltBytes + 1;
    if (!hash.starts_with(kPrefix) || hash.size() != hashAt + 2 * kHashBytes) return false;
    const std::string salt = hash.substr(saltAt, 2 * kSaltBytes);
    return EqualSecrets(Derived(password, salt), std::string_view(hash).substr(hashAt));
}

std::string MakePassword() {
    // 32 characters, so that every byte gives one with the same chance.
    constexpr std::string_view kAlphabet = "abcdefghijkmnpqrstuvwxyz23456789";
    static_assert(kAlphabet.size() == 32);
    std::string password = RandomBytes(20);
    for (char& c : password) c = kAlphabet[static_cast<unsigned char>(c) % kAlphabet.size()];
    return password;
}

std::string RandomHex(std::size_t bytes) { return LowerHexOf(RandomBytes(bytes)); }

bool EqualSecrets(std::string_view left, std::string_view right) {
    return left.size() == right.size() &&
           CRYPTO_memcmp(left.data(), right.data(), left.size()) == 0;
}
