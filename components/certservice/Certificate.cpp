#include "components/certservice/Certificate.h"

#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <algorithm>

#include "components/crypto/PassPhrase.h"
#include "components/crypto/Signature.h"
#include "components/crypto/Sm3.h"

namespace {

// Far above any certificate; it may come with whatever stands behind it.
constexpr std::size_t kLong = 64 * 1024;

// OpenSSL checks an SM2 signature with the empty id unless told otherwise, and can't check any
// other signature with an id.
bool SetSignerId(X509* certificate) {
    if (X509_get_signature_nid(certificate) != NID_SM2_with_SM3) return true;
    ASN1_OCTET_STRING* id = ASN1_OCTET_STRING_new();
    if (!id) return false;
    if (ASN1_STRING_set(id, kSm2DefaultId, sizeof kSm2DefaultId - 1) != 1) {
        ASN1_OCTET_STRING_free(id);
        return false;
    }
    X509_set0_distinguishing_id(certificate, id);
    return true;
}

}  // namespace

CertificateHandle ParseCertificate(std::string_view der) {
    const auto* cursor = reinterpret_cast<const unsigned char*>(der.data());
    CertificateHandle certificate(d2i_X509(nullptr, &cursor, static_cast<long>(der.size())));
    if (certificate && !SetSignerId(certificate.get())) return nullptr;
    return certificate;
}

std::vector<CertificateHandle> ReadCertificates(std::string_view content) {
    std::vector<CertificateHandle> certificates;
    const BioHandle in(BIO_new_mem_buf(content.data(), static_cast<int>(content.size())));
    if (!in) return certificates;
    while (X509* next = PEM_read_bio_X509(in.get(), nullptr, NoPassPhrase, nullptr)) {
        CertificateHandle certificate(next);
        if (SetSignerId(next)) certificates.push_back(std::move(certificate));
    }
    if (certificates.empty()) {
        CertificateHandle certificate = ParseCertificate(content);
        if (certificate) certificates.push_back(std::move(certificate));
    }
    return certificates;
}

std::string PemOf(X509* certificate) {
    const BioHandle out(BIO_new(BIO_s_mem()));
    if (!out || PEM_write_bio_X509(out.get(), certificate) != 1) return {};
    char* data = nullptr;
    const long size = BIO_get_mem_data(out.get(), &data);
    return std::string(data, static_cast<size_t>(size));
}

KeyKind KindOfKey(const X509* certificate) {
    return certificate ? KindOfKey(X509_get0_pubkey(certificate)) : KeyKind::kOther;
}

bool IsSelfSigned(X509* certificate) { return X509_self_signed(certificate, 0) == 1; }

std::string SerialOf(const X509* certificate) {
    const BignumHandle serial(ASN1_INTEGER_to_BN(X509_get0_serialNumber(certificate), nullptr));
    if (!serial) return {};
    return TakeText(BN_bn2hex(serial.get()));
}

std::string CommonNameOf(const X509* certificate) {
    const X509_NAME* subject = X509_get_subject_name(certificate);
    int last = -1;
    for (int i = -1; (i = X509_NAME_get_index_by_NID(subject, NID_commonName, i)) >= 0;) last = i;
    if (last < 0) return {};
    unsigned char* utf8 = nullptr;
    const int size =
        ASN1_STRING_to_UTF8(&utf8, X509_NAME_ENTRY_get_data(X509_NAME_get_entry(subject, last)));
    return TakeBytes(utf8, size);
}

CertificateCache::Entry* CertificateCache::Find(std::string_view der) {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [der](const Entry& entry) { return entry.der == der; });
    if (found != m_entries.end()) {
        std::rotate(m_entries.begin(), found, found + 1);
        return &m_entries.front();
    }
    CertificateHandle certificate = ParseCertificate(der);
    if (!certificate) return nullptr;
    if (der.size() > kLong) m_entries.clear();
    if (m_entries.size() == kMost) m_entries.pop_back();
    m_entries.insert(m_entries.begin(), Entry{std::string(der), std::move(certificate), ""});
    return &m_entries.front();
}

X509* CertificateCache::Parse(std::string_view der) {
    const Entry* entry = Find(der);
    return entry ? entry->certificate.get() : nullptr;
}

std::string CertificateCache::DigestFor(std::string_view der, HashAlgorithm hash,
                                        std::string_view data) {
    Entry* entry = Find(der);
    if (!entry) return {};
    const EVP_PKEY* key = X509_get0_pubkey(entry->certificate.get());
    if (::KindOfKey(key) != KeyKind::kSm2) return DigestForKey(key, hash, data);
    if (entry->za.empty()) entry->za = Sm2Za(key);
    if (entry->za.empty() || hash != HashAlgorithm::kSm3) return {};
    Sm3 sum;
    sum.Update(entry->za);
    sum.Update(data);
    return sum.Finish();
}
