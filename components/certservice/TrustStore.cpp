#include "components/certservice/TrustStore.h"

#include "components/certservice/Certificate.h"
#include "platform/Files.h"

namespace {

constexpr int kStrength112 = 2;  // OpenSSL's level of 112 bits: no SHA-1, no MD5
constexpr int kShortestRsa = 2048;

using StoreContextHandle = OpenSslHandle<X509_STORE_CTX, X509_STORE_CTX_free>;

void FreeStack(STACK_OF(X509) * certificates) { sk_X509_free(certificates); }

struct Findings {
    bool untrusted = false;
    bool expired = false;
    bool notYetValid = false;
};

// Lets the check go on, so that an untrusted certificate is told as such even if it is out of date.
int NoteError(int good, X509_STORE_CTX* context) {
    if (good) return 1;
    auto* findings = static_cast<Findings*>(X509_STORE_CTX_get_app_data(context));
    switch (X509_STORE_CTX_get_error(context)) {
        case X509_V_ERR_CERT_HAS_EXPIRED: findings->expired = true; break;
        case X509_V_ERR_CERT_NOT_YET_VALID: findings->notYetValid = true; break;
        default: findings->untrusted = true; break;
    }
    return 1;
}

// OpenSSL rounds the strength of a key, and takes RSA keys somewhat below as of 112 bits.
bool HasShortKey(STACK_OF(X509) * chain) {
    for (int i = 0; i < sk_X509_num(chain); ++i) {
        const EVP_PKEY* key = X509_get0_pubkey(sk_X509_value(chain, i));
        const int kind = key ? EVP_PKEY_get_base_id(key) : EVP_PKEY_NONE;
        const bool rsa = kind == EVP_PKEY_RSA || kind == EVP_PKEY_RSA_PSS;
        if (rsa && EVP_PKEY_get_bits(key) < kShortestRsa) return true;
    }
    return false;
}

bool IsNoLater(const ASN1_TIME* one, const ASN1_TIME* other) {
    const int order = ASN1_TIME_compare(one, other);
    return order == 0 || order == -1;
}

// Is `authority` valid now, or was it for as long as `certificate`? That one which has begun began
// later doesn't matter: it was renewed, and vouches for what was issued before.
bool Covers(const X509* authority, const X509* certificate, std::time_t now) {
    const ASN1_TIME* const from = X509_get0_notBefore(authority);
    const ASN1_TIME* const to = X509_get0_notAfter(authority);
    const bool begun = X509_cmp_time(from, &now) < 0;
    if (begun && X509_cmp_time(to, &now) > 0) return true;
    return IsNoLater(X509_get0_notAfter(certificate), to) &&
           (begun || IsNoLater(from, X509_get0_notBefore(certificate)));
}

// A caller that forgives the end of validity looks at the certificate's own dates: they must not
// reach beyond those of an authority above it that is out of its own.
bool IsCovered(STACK_OF(X509) * chain, std::time_t now) {
    for (int i = 1; i < sk_X509_num(chain); ++i) {
        if (!Covers(sk_X509_value(chain, i), sk_X509_value(chain, 0), now)) return false;
    }
    return true;
}

// `first` says what the list tells about the chain's first certificate, by its issuer.
template <typename First>
CertificateVerdict RevocationVerdict(STACK_OF(X509) * chain, const RevocationList& list,
                                     bool isForFirst, std::time_t now, First first) {
    bool undecided = false;
    // The anchor at the end is trusted by its own presence.
    for (int i = 0; i + 1 < sk_X509_num(chain); ++i) {
        X509* issuer = sk_X509_value(chain, i + 1);
        switch (i == 0 ? first(issuer) : list.Check(sk_X509_value(chain, i), issuer, now)) {
            case Revocation::kRevoked:
                return i == 0 ? kCertificateRevoked : kCertificateIssuerRevoked;
            case Revocation::kUndecided: undecided = true; break;
            case Revocation::kOtherIssuer: undecided |= isForFirst && i == 0; break;
            case Revocation::kGood: break;
        }
    }
    return undecided ? kCertificateRevocationUndecided : kCertificateGood;
}

}  // namespace

TrustStore::TrustStore(std::string folder) : m_folder(std::move(folder)) {}

TrustStore::~TrustStore() { sk_X509_pop_free(m_intermediates, X509_free); }

bool TrustStore::IsUnchanged() const {
    FileStamp stamp;
    if (!m_loaded || !m_anchors) return false;
    ReadStamp(m_folder, stamp);
    if (stamp != m_stamp) return false;
    for (const File& file : m_files) {
        FileStamp now;
        if (!ReadStamp(file.path, now) || now != file.stamp) return false;
    }
    return true;
}

void TrustStore::Load() {
    m_anchors.reset(X509_STORE_new());
    sk_X509_pop_free(m_intermediates, X509_free);
    m_intermediates = sk_X509_new_null();
    m_files.clear();
    m_stamp = {};
    m_loaded = true;
    if (m_folder.empty() || !ReadStamp(m_folder, m_stamp)) return;
    for (const std::string& name : FilesIn(m_folder)) {
        LoadFile(m_folder + platform::PathSeparator() + name);
    }
}

void TrustStore::LoadFile(const std::string& path) {
    File file{path, {}};
    std::string content;
    if (!ReadStamp(path, file.stamp)) return;
    m_files.push_back(file);
    if (!ReadWholeFile(path, content)) return;
    for (CertificateHandle& certificate : ReadCertificates(content)) {
        if (IsSelfSigned(certificate.get())) {
            X509_STORE_add_cert(m_anchors.get(), certificate.get());
        } else if (sk_X509_push(m_intermediates, certificate.get()) > 0) {
            certificate.release();
        }
    }
}

CertificateVerdict TrustStore::Validate(X509* certificate, const RevocationList* list,
                                        bool isListForIt, std::time_t now) {
    return Judge(certificate, {}, now, [&](STACK_OF(X509) * chain) {
        if (!IsCovered(chain, now)) return kCertificateUntrusted;
        if (!list) return kCertificateGood;
        return RevocationVerdict(chain, *list, isListForIt, now, [&](X509* issuer) {
            return list->Check(certificate, issuer, now);
        });
    });
}

CertificateVerdict TrustStore::ValidateStamper(X509* authority,
                                               const std::vector<CertificateHandle>& helpers,
                                               const RevocationList* list, std::time_t stamped,
                                               std::time_t now) {
    return Judge(authority, helpers, stamped, [&](STACK_OF(X509) * chain) {
        if (!list) return kCertificateGood;
        return RevocationVerdict(chain, *list, false, now, [&](X509* issuer) {
            return list->CheckStamper(authority, issuer, stamped, now);
        });
    });
}

CertificateVerdict TrustStore::Judge(X509* certificate,
                                     const std::vector<CertificateHandle>& helpers, std::time_t at,
                                     const Revoked& revoked) {
    if (!IsUnchanged()) Load();
    const StoreContextHandle context(X509_STORE_CTX_new());
    // Holds what others own.
    const OpenSslHandle<STACK_OF(X509), FreeStack> untrusted(sk_X509_dup(m_intermediates));
    if (!context || !m_anchors || !untrusted) return kCertificateUntrusted;
    for (const CertificateHandle& helper : helpers) sk_X509_push(untrusted.get(), helper.get());
    if (X509_STORE_CTX_init(context.get(), m_anchors.get(), certificate, untrusted.get()) != 1) {
        return kCertificateUntrusted;
    }
    Findings findings;
    X509_STORE_CTX_set_app_data(context.get(), &findings);
    X509_STORE_CTX_set_verify_cb(context.get(), NoteError);
    X509_STORE_CTX_set_time(context.get(), 0, at);
    X509_VERIFY_PARAM* const rules = X509_STORE_CTX_get0_param(context.get());
    X509_VERIFY_PARAM_set_auth_level(rules, kStrength112);
    // Any policy will do here, but authorities may ask for one.
    X509_VERIFY_PARAM_set_flags(rules, X509_V_FLAG_POLICY_CHECK);
    X509_VERIFY_PARAM_add0_policy(rules, OBJ_nid2obj(NID_any_policy));
    if (X509_verify_cert(context.get()) != 1 || findings.untrusted) return kCertificateUntrusted;
    STACK_OF(X509)* const chain = X509_STORE_CTX_get0_chain(context.get());
    if (HasShortKey(chain)) return kCertificateUntrusted;
    if (const CertificateVerdict verdict = revoked(chain)) return verdict;
    if (findings.expired) return kCertificateExpired;
    return findings.notYetValid ? kCertificateNotYetValid : kCertificateGood;
}
