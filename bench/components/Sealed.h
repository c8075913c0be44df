// Sealed.h - a seal signature to verify, and the calls of OpenSSL that no verification of it can do
// without.
#pragma once

#include <openssl/x509_vfy.h>

#include <string>
#include <string_view>

#include "components/certservice/Certificate.h"
#include "components/seallibrary/SealSignature.h"

// 1 KiB: what is signed.
const std::string& SealedData();

// A seal, a signature with it, and what the peer needs of them.
struct Sealed {
    explicit Sealed(KeyKind keyKind);

    KeyKind kind;
    HashAlgorithm hash;
    std::string seal;
    std::string signature;
    SealSignature read;
    OpenSslHandle<X509_STORE, X509_STORE_free> anchors;

private:
    void MakeTheSeal(const std::string& maker, const std::string& signer, EVP_PKEY* key);
    void Sign(const std::string& signer, EVP_PKEY* key);
};

// One of each kind, made at the first need with the development authority of the prefix.
const Sealed& SealedBy(KeyKind kind);

// Decoded anew.
struct SealCertificates {
    explicit SealCertificates(const Sealed& sealed);

    CertificateHandle signer;
    CertificateHandle maker;
};

const unsigned char* Bytes(std::string_view text);
bool BareVerify(X509* certificate, bool sm2, std::string_view data, std::string_view signature);
bool BareChain(X509_STORE* anchors, X509* certificate);
// The data's hash and both signatures, by the parts that were read before.
bool BareCalls(const Sealed& sealed, const SealCertificates& certificates, std::string_view data);
