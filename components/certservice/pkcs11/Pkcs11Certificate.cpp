#include "components/certservice/pkcs11/Pkcs11Certificate.h"

#include <openssl/x509v3.h>

#include <set>

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/pkcs11/Pkcs11Text.h"
#include "components/crypto/ErrorMark.h"
#include "components/crypto/Handles.h"
#include "components/crypto/Hex.h"
#include "platform/CodePage.h"

namespace {

constexpr std::size_t kExpectedId = 64;
constexpr std::size_t kExpectedLabel = 256;
constexpr std::size_t kExpectedCertificate = 4096;

std::string CommonName(X509_NAME* subject) {
    const int index = X509_NAME_get_index_by_NID(subject, NID_commonName, -1);
    if (index < 0) return {};
    unsigned char* utf8 = nullptr;
    const int length =
        ASN1_STRING_to_UTF8(&utf8, X509_NAME_ENTRY_get_data(X509_NAME_get_entry(subject, index)));
    return platform::AnsiFromUtf8(TakeBytes(utf8, length));
}

std::string TimeText(const ASN1_TIME* time) {
    const OpenSslHandle<ASN1_TIME, ASN1_TIME_free> full(
        ASN1_TIME_to_generalizedtime(time, nullptr));
    if (!full) return {};
    return {reinterpret_cast<const char*>(ASN1_STRING_get0_data(full.get())),
            static_cast<std::size_t>(ASN1_STRING_length(full.get()))};
}

// What is to be seen of the token's keys, by their CKA_ID.
struct VisibleKeys {
    std::set<std::string> withPrivate;
    std::set<std::string> withPublic;
    bool privateHidden = false;
};

int CollectKeyIds(Pkcs11Token& token, CK_OBJECT_CLASS keyClass, std::set<std::string>& ids) {
    std::vector<CK_OBJECT_HANDLE> keys;
    if (const int code = token.Find({NumberAttribute(CKA_CLASS, keyClass)}, keys)) return code;
    for (const CK_OBJECT_HANDLE key : keys) {
        Pkcs11Attributes attributes{WantedAttribute(CKA_ID, kExpectedId)};
        if (const int code = token.Read(key, attributes)) return code;
        if (!attributes[0].value.empty()) ids.insert(attributes[0].value);
    }
    return kServiceOk;
}

int LookAtKeys(Pkcs11Token& token, VisibleKeys& keys) {
    if (const int code = CollectKeyIds(token, CKO_PRIVATE_KEY, keys.withPrivate)) return code;
    keys.privateHidden = !token.IsLoggedIn();
    if (!keys.privateHidden) return kServiceOk;
    return CollectKeyIds(token, CKO_PUBLIC_KEY, keys.withPublic);
}

bool HasKey(const VisibleKeys& keys, const std::string& id, const CertificateFacts& facts) {
    if (keys.withPrivate.contains(id)) return true;
    if (!keys.privateHidden) return false;
    return keys.withPublic.contains(id) || !facts.isAuthority;
}

struct Candidate {
    Pkcs11Certificate certificate;
    std::string notBefore;
};

int ReadCertificate(Pkcs11Token& token, CK_OBJECT_HANDLE object, Pkcs11Certificate& certificate) {
    Pkcs11Attributes attributes{WantedAttribute(CKA_ID, kExpectedId),
                                WantedAttribute(CKA_LABEL, kExpectedLabel),
                                WantedAttribute(CKA_VALUE, kExpectedCertificate)};
    if (const int code = token.Read(object, attributes)) return code;
    certificate.id = std::move(attributes[0].value);
    certificate.label = TextOfToken(attributes[1].value);
    certificate.der = std::move(attributes[2].value);
    return kServiceOk;
}

const CertificateFacts& FactsOf(const std::string& der, CertificateFactsCache& cache) {
    const auto known = cache.find(der);
    if (known != cache.end()) return known->second;
    return cache.emplace(der, InspectCertificate(der)).first->second;
}

void AddCandidate(Pkcs11Certificate certificate, const CertificateFacts& facts,
                  std::map<std::string, Candidate>& candidates) {
    certificate.damaged = !facts.readable;
    if (!facts.commonName.empty()) certificate.label = facts.commonName;
    if (certificate.label.empty()) certificate.label = LowerHexOf(certificate.id);
    const std::string id = certificate.id;
    const auto rival = candidates.find(id);
    if (rival != candidates.end() && rival->second.notBefore >= facts.notBefore) return;
    candidates[id] = {std::move(certificate), facts.notBefore};
}

}  // namespace

CertificateFacts InspectCertificate(const std::string& der) {
    CertificateFacts facts;
    const ErrorMark mark;
    auto* bytes = reinterpret_cast<const unsigned char*>(der.data());
    const CertificateHandle certificate(d2i_X509(nullptr, &bytes, static_cast<long>(der.size())));
    if (!certificate) return facts;
    facts.readable = true;
    facts.isAuthority = X509_check_ca(certificate.get()) != 0;
    facts.notBefore = TimeText(X509_get0_notBefore(certificate.get()));
    facts.commonName = CommonName(X509_get_subject_name(certificate.get()));
    return facts;
}

int ListTokenCertificates(Pkcs11Token& token, CertificateFactsCache& cache,
                          std::vector<Pkcs11Certificate>& certificates) {
    VisibleKeys keys;
    if (const int code = LookAtKeys(token, keys)) return code;
    std::vector<CK_OBJECT_HANDLE> objects;
    if (const int code = token.Find({NumberAttribute(CKA_CLASS, CKO_CERTIFICATE)}, objects))
        return code;
    std::map<std::string, Candidate> candidates;
    for (const CK_OBJECT_HANDLE object : objects) {
        Pkcs11Certificate certificate;
        if (const int code = ReadCertificate(token, object, certificate)) return code;
        if (certificate.id.empty()) continue;
        const CertificateFacts& facts = FactsOf(certificate.der, cache);
        if (HasKey(keys, certificate.id, facts))
            AddCandidate(std::move(certificate), facts, candidates);
    }
    certificates.clear();
    for (auto& [id, candidate] : candidates)
        certificates.push_back(std::move(candidate.certificate));
    return kServiceOk;
}

int FindTokenCertificate(Pkcs11Token& token, const std::string& id, CertificateFactsCache& cache,
                         Pkcs11Certificate& certificate, bool& found) {
    std::vector<CK_OBJECT_HANDLE> objects;
    if (const int code = token.Find(
            {NumberAttribute(CKA_CLASS, CKO_CERTIFICATE), BytesAttribute(CKA_ID, id)}, objects))
        return code;
    std::map<std::string, Candidate> candidates;
    for (const CK_OBJECT_HANDLE object : objects) {
        Pkcs11Certificate read;
        if (const int code = ReadCertificate(token, object, read)) return code;
        const CertificateFacts& facts = FactsOf(read.der, cache);
        if (read.id == id) AddCandidate(std::move(read), facts, candidates);
    }
    found = !candidates.empty();
    if (found) certificate = std::move(candidates.begin()->second.certificate);
    return kServiceOk;
}
