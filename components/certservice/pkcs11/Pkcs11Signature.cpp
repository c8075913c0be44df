#include "components/certservice/pkcs11/Pkcs11Signature.h"

#include <openssl/ec.h>
#include <openssl/x509.h>

#include "components/certservice/ServiceCodes.h"
#include "components/crypto/ErrorMark.h"
#include "components/crypto/Handles.h"
#include "components/crypto/Signature.h"

namespace {

using SignatureHandle = OpenSslHandle<ECDSA_SIG, ECDSA_SIG_free>;
using DigestInfoHandle = OpenSslHandle<X509_SIG, X509_SIG_free>;

constexpr std::size_t kSm2Number = 32;
constexpr std::size_t kSm2Digest = 32;

const unsigned char* Bytes(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

bool IsSignatureDer(std::string_view text) {
    const ErrorMark mark;
    const unsigned char* bytes = Bytes(text);
    const SignatureHandle signature(d2i_ECDSA_SIG(nullptr, &bytes, static_cast<long>(text.size())));
    return signature && bytes == Bytes(text) + text.size();
}

int FindPrivateKey(Pkcs11Token& token, const std::string& id, CK_OBJECT_HANDLE& key,
                   CK_ULONG& keyType) {
    std::vector<CK_OBJECT_HANDLE> keys;
    if (const int code = token.Find(
            {NumberAttribute(CKA_CLASS, CKO_PRIVATE_KEY), BytesAttribute(CKA_ID, id)}, keys))
        return code;
    if (keys.empty()) {
        if (!token.IsPresent()) return kServiceKeyRemoved;
        return token.IsLoggedIn() ? kServiceKeyDamaged : kServicePinUnavailable;
    }
    Pkcs11Attributes attributes{WantedAttribute(CKA_KEY_TYPE, sizeof(CK_ULONG))};
    if (const int code = token.Read(keys.front(), attributes)) return code;
    key = keys.front();
    keyType = NumberOf(attributes[0].value, CK_UNAVAILABLE_INFORMATION);
    return kServiceOk;
}

bool IsSm2(CK_ULONG keyType, const Pkcs11Settings& settings) {
    if (settings.sm2Mechanism == 0) return false;
    return settings.sm2KeyType == 0 || settings.sm2KeyType == keyType;
}

int SignRsa(Pkcs11Token& token, CK_OBJECT_HANDLE key, HashAlgorithm hash, std::string_view digest,
            std::string& signature) {
    const std::string info = DigestInfo(hash, digest);
    if (info.empty()) return kServiceBadArgument;
    return token.Sign(CKM_RSA_PKCS, key, info, signature);
}

int SignSm2(Pkcs11Token& token, CK_MECHANISM_TYPE mechanism, CK_OBJECT_HANDLE key,
            std::string_view digest, std::string& signature) {
    if (digest.size() != kSm2Digest) return kServiceBadArgument;
    std::string made;
    if (const int code = token.Sign(mechanism, key, std::string(digest), made)) return code;
    std::string der = Sm2SignatureDer(made);
    if (der.empty()) return kServiceTokenFailure;
    signature = std::move(der);
    return kServiceOk;
}

}  // namespace

std::string DigestInfo(HashAlgorithm hash, std::string_view digest) {
    const EVP_MD* const method = MessageDigest(hash);
    if (!method || digest.size() != DigestSize(hash)) return {};
    const DigestInfoHandle info(X509_SIG_new());
    if (!info) return {};
    X509_ALGOR* algorithm = nullptr;
    ASN1_OCTET_STRING* value = nullptr;
    X509_SIG_getm(info.get(), &algorithm, &value);
    if (!X509_ALGOR_set0(algorithm, OBJ_nid2obj(EVP_MD_get_type(method)), V_ASN1_NULL, nullptr) ||
        !ASN1_OCTET_STRING_set(value, Bytes(digest), static_cast<int>(digest.size())))
        return {};
    return DerOf<i2d_X509_SIG>(info.get());
}

std::string Sm2SignatureDer(std::string_view signature) {
    if (signature.size() != 2 * kSm2Number)
        return IsSignatureDer(signature) ? std::string(signature) : std::string();
    BignumHandle r(BN_bin2bn(Bytes(signature), kSm2Number, nullptr));
    BignumHandle s(BN_bin2bn(Bytes(signature) + kSm2Number, kSm2Number, nullptr));
    const SignatureHandle both(ECDSA_SIG_new());
    if (!r || !s || !both || !ECDSA_SIG_set0(both.get(), r.get(), s.get())) return {};
    r.release();
    s.release();
    return DerOf<i2d_ECDSA_SIG>(both.get());
}

int SignWithToken(Pkcs11Token& token, const Pkcs11Settings& settings, const std::string& id,
                  HashAlgorithm hash, std::string_view digest, std::string& signature) {
    CK_OBJECT_HANDLE key = CK_INVALID_HANDLE;
    CK_ULONG keyType = 0;
    if (const int code = FindPrivateKey(token, id, key, keyType)) return code;
    if (keyType == CKK_RSA) return SignRsa(token, key, hash, digest, signature);
    if (!IsSm2(keyType, settings)) return kServiceAlgorithmUnknown;
    return SignSm2(token, settings.sm2Mechanism, key, digest, signature);
}
