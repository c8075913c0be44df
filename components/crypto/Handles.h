// Handles.h - owners of OpenSSL's objects, each freed by its own function.
#pragma once

#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/evp.h>
#include <openssl/x509.h>

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

// The DER of `object` by its own i2d function; empty on failure.
template <auto Encode, typename T>
std::string DerOf(T* object) {
    unsigned char* der = nullptr;
    const int length = Encode(object, &der);
    if (length <= 0) return {};
    std::string result(reinterpret_cast<char*>(der), static_cast<size_t>(length));
    OPENSSL_free(der);
    return result;
}
