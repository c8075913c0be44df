// What qpdf's archive calls of GnuTLS: its ciphers and digests, for encrypted documents alone.
// Bound at the start, GnuTLS and the eight libraries behind it would make every start of the
// program half as long again, so they come with the first call. Each function here stands for the
// one of its name; hidden, so that a module of somebody else's that brings GnuTLS meets its own.
#include <dlfcn.h>
#include <gnutls/crypto.h>
#include <gnutls/gnutls.h>

namespace {

constexpr char kLibrary[] = "libgnutls.so.30";

// Never closed: qpdf keeps handles as long as it likes.
void* Library() {
    static void* const library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
    return library;
}

// The library's own function; null without the library.
template <typename Function>
Function* Find(const char* name) {
    return Library() ? reinterpret_cast<Function*>(dlsym(Library(), name)) : nullptr;
}

constexpr int kMissing = GNUTLS_E_UNIMPLEMENTED_FEATURE;

}  // namespace

extern "C" {

int gnutls_hash_init(gnutls_hash_hd_t* digest, gnutls_digest_algorithm_t algorithm) {
    static auto* const real = Find<decltype(gnutls_hash_init)>("gnutls_hash_init");
    return real ? real(digest, algorithm) : kMissing;
}

int gnutls_hash(gnutls_hash_hd_t handle, const void* text, size_t length) {
    static auto* const real = Find<decltype(gnutls_hash)>("gnutls_hash");
    return real ? real(handle, text, length) : kMissing;
}

void gnutls_hash_deinit(gnutls_hash_hd_t handle, void* digest) {
    static auto* const real = Find<decltype(gnutls_hash_deinit)>("gnutls_hash_deinit");
    if (real) real(handle, digest);
}

int gnutls_cipher_init(gnutls_cipher_hd_t* handle, gnutls_cipher_algorithm_t cipher,
                       const gnutls_datum_t* key, const gnutls_datum_t* iv) {
    static auto* const real = Find<decltype(gnutls_cipher_init)>("gnutls_cipher_init");
    return real ? real(handle, cipher, key, iv) : kMissing;
}

int gnutls_cipher_encrypt2(gnutls_cipher_hd_t handle, const void* text, size_t textLength,
                           void* ciphertext, size_t ciphertextLength) {
    static auto* const real = Find<decltype(gnutls_cipher_encrypt2)>("gnutls_cipher_encrypt2");
    return real ? real(handle, text, textLength, ciphertext, ciphertextLength) : kMissing;
}

int gnutls_cipher_decrypt2(gnutls_cipher_hd_t handle, const void* ciphertext,
                           size_t ciphertextLength, void* text, size_t textLength) {
    static auto* const real = Find<decltype(gnutls_cipher_decrypt2)>("gnutls_cipher_decrypt2");
    return real ? real(handle, ciphertext, ciphertextLength, text, textLength) : kMissing;
}

void gnutls_cipher_deinit(gnutls_cipher_hd_t handle) {
    static auto* const real = Find<decltype(gnutls_cipher_deinit)>("gnutls_cipher_deinit");
    if (real) real(handle);
}

size_t gnutls_cipher_get_key_size(gnutls_cipher_algorithm_t algorithm) {
    static auto* const real =
        Find<decltype(gnutls_cipher_get_key_size)>("gnutls_cipher_get_key_size");
    return real ? real(algorithm) : 0;
}

int gnutls_rnd(gnutls_rnd_level_t level, void* data, size_t length) {
    static auto* const real = Find<decltype(gnutls_rnd)>("gnutls_rnd");
    return real ? real(level, data, length) : kMissing;
}

const char* gnutls_strerror(int error) {
    static auto* const real = Find<decltype(gnutls_strerror)>("gnutls_strerror");
    return real ? real(error) : "libgnutls.so.30 can't be loaded";
}
}
