// Handles.h - owners of OpenSSL's objects, each freed by its own function.
#pragma once

#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/evp.h>
#include <openssl/x509.h>

#include <cstring>
#include <memory>
#include <string>

template <auto Free>
struct OpenSslFree {
    template <typename T>
    void operator()(T* object) const {
        Free(object);
    }
};

template <typename T, auto Free>
using OpenSslHandle = std::unique_ptr<T, OpenSslFree<Free>>;

using BioHandle = OpenSslHandle<BIO, BIO_free_all>;
using BignumHandle = OpenSslHandle<BIGNUM, BN_free>;
using KeyHandle = OpenSslHandle<EVP_PKEY, EVP_PKEY_free>;
using KeyContextHandle = OpenSslHandle<EVP_PKEY_CTX, EVP_PKEY_CTX_free>;
using DigestContextHandle = OpenSslHandle<EVP_MD_CTX, EVP_MD_CTX_free>;
using CertificateHandle = OpenSslHandle<X509, X509_free>;
using RevocationListHandle = OpenSslHandle<X509_CRL, X509_CRL_free>;
using ObjectIdHandle = OpenSslHandle<ASN1_OBJECT, ASN1_OBJECT_free>;

struct OpenSslMemoryFree {
    void operator()(void* memory) const { OPENSSL_free(memory); }
};

// The `size` bytes that OpenSSL has allocated, freed in any case. Empty for a null pointer or a
// negative size.
inline std::string TakeBytes(void* memory, int size) {
    const std::unique_ptr<void, OpenSslMemoryFree> owner(memory);
    if (!memory || size <= 0) return {};
    return std::string(static_cast<const char*>(memory), static_cast<std::size_t>(size));
}

// The same of a text with a terminator.
inline std::string TakeText(char* text) {
    return TakeBytes(text, text ? static_cast<int>(std::strlen(text)) : 0);
}

// The DER of `object` by its own i2d function; empty on failure.
template <auto Encode, typename T>
std::string DerOf(T* object) {
    unsigned char* der = nullptr;
    const int length = Encode(object, &der);
    return TakeBytes(der, length);
}
