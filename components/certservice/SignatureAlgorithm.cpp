#include "components/certservice/SignatureAlgorithm.h"

#include <string_view>

namespace {

std::string OidOf(const X509_ALGOR* algorithm) {
    const ASN1_OBJECT* object = nullptr;
    X509_ALGOR_get0(&object, nullptr, nullptr, algorithm);
    return OidText(object);
}

struct NamedHash {
    const char* oid;
    HashAlgorithm hash;
};

constexpr NamedHash kHashes[] = {
    {"1.2.156.10197.1.401", HashAlgorithm::kSm3},
    {"1.3.14.3.2.26", HashAlgorithm::kSha1},
    {"2.16.840.1.101.3.4.2.1", HashAlgorithm::kSha256},
    {"2.16.840.1.101.3.4.2.2", HashAlgorithm::kSha384},
    {"2.16.840.1.101.3.4.2.3", HashAlgorithm::kSha512},
};

constexpr NamedHash kRsaSignatures[] = {
    {"1.2.840.113549.1.1.5", HashAlgorithm::kSha1},
    {"1.2.840.113549.1.1.11", HashAlgorithm::kSha256},
    {"1.2.840.113549.1.1.12", HashAlgorithm::kSha384},
    {"1.2.840.113549.1.1.13", HashAlgorithm::kSha512},
};

constexpr char kRsaEncryption[] = "1.2.840.113549.1.1.1";

// SM2-with-SM3, SM2's signature algorithm, and SM2 itself; makers use them without distinction.
constexpr std::string_view kSm2Signatures[] = {"1.2.156.10197.1.501", "1.2.156.10197.1.301.1",
                                               "1.2.156.10197.1.301"};

template <size_t Count>
std::optional<HashAlgorithm> Find(const NamedHash (&table)[Count], std::string_view oid) {
    for (const NamedHash& entry : table) {
        if (entry.oid == oid) return entry.hash;
    }
    return std::nullopt;
}

}  // namespace

std::string OidText(const ASN1_OBJECT* object) {
    char text[80];
    const int length = OBJ_obj2txt(text, sizeof text, object, 1);
    if (length <= 0 || static_cast<size_t>(length) >= sizeof text) return {};
    return text;
}

std::optional<HashAlgorithm> HashByNumber(int number) {
    switch (number) {
        case static_cast<int>(HashAlgorithm::kSm3): return HashAlgorithm::kSm3;
        case static_cast<int>(HashAlgorithm::kSha1): return HashAlgorithm::kSha1;
        case static_cast<int>(HashAlgorithm::kSha256): return HashAlgorithm::kSha256;
    }
    return std::nullopt;
}

bool IsCollisionResistant(HashAlgorithm hash) { return hash != HashAlgorithm::kSha1; }

const char* OidOfHash(HashAlgorithm hash) {
    for (const NamedHash& entry : kHashes) {
        if (entry.hash == hash) return entry.oid;
    }
    return "";
}

bool HasNoParameters(const X509_ALGOR* algorithm) {
    int type = V_ASN1_UNDEF;
    X509_ALGOR_get0(nullptr, &type, nullptr, algorithm);
    return type == V_ASN1_UNDEF || type == V_ASN1_NULL;
}

std::optional<HashAlgorithm> HashOf(const X509_ALGOR* algorithm) {
    return Find(kHashes, OidOf(algorithm));
}

std::optional<HashAlgorithm> SignatureHash(const X509_ALGOR* algorithm, KeyKind key) {
    const std::string oid = OidOf(algorithm);
    if (key == KeyKind::kRsa) return Find(kRsaSignatures, oid);
    if (key != KeyKind::kSm2) return std::nullopt;
    for (const std::string_view name : kSm2Signatures) {
        if (oid == name) return HashAlgorithm::kSm3;
    }
    return std::nullopt;
}

bool FitsSignature(const X509_ALGOR* algorithm, KeyKind key, HashAlgorithm hash) {
    if (key == KeyKind::kRsa && OidOf(algorithm) == kRsaEncryption) return true;
    return SignatureHash(algorithm, key) == hash;
}
