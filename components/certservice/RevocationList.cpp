#include "components/certservice/RevocationList.h"

#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <climits>
#include <optional>

#include "components/certservice/SignatureAlgorithm.h"
#include "components/crypto/PassPhrase.h"
#include "components/crypto/Signature.h"

namespace {

constexpr int kAbsent = -1;   // of X509_CRL_get_ext_d2i
constexpr int kFullName = 0;  // of a DIST_POINT_NAME

using ScopeHandle = OpenSslHandle<ISSUING_DIST_POINT, ISSUING_DIST_POINT_free>;
using PointsHandle = OpenSslHandle<CRL_DIST_POINTS, CRL_DIST_POINTS_free>;
using EnumHandle = OpenSslHandle<ASN1_ENUMERATED, ASN1_ENUMERATED_free>;

// The first element of the outer SEQUENCE, header and all; empty if there is none.
std::string FirstElement(std::string_view der) {
    const auto* start = reinterpret_cast<const unsigned char*>(der.data());
    const unsigned char* cursor = start;
    long length = 0;
    int tag = 0;
    int kind = 0;
    if (ASN1_get_object(&cursor, &length, &tag, &kind, static_cast<long>(der.size())) & 0x80) {
        return {};
    }
    const unsigned char* element = cursor;
    const long left = static_cast<long>(der.size()) - (cursor - start);
    if (ASN1_get_object(&cursor, &length, &tag, &kind, left) & 0x80) return {};
    return std::string(reinterpret_cast<const char*>(element),
                       static_cast<size_t>(cursor - element + length));
}

std::string FromPem(std::string_view content) {
    const BioHandle in(BIO_new_mem_buf(content.data(), static_cast<int>(content.size())));
    if (!in) return {};
    const RevocationListHandle list(
        PEM_read_bio_X509_CRL(in.get(), nullptr, NoPassPhrase, nullptr));
    return list ? DerOf<i2d_X509_CRL>(list.get()) : std::string();
}

bool HasUnknownCondition(const X509_CRL* list) {
    for (int i = -1; (i = X509_CRL_get_ext_by_critical(list, 1, i)) >= 0;) {
        X509_EXTENSION* extension = X509_CRL_get_ext(list, i);
        if (OBJ_obj2nid(X509_EXTENSION_get_object(extension)) != NID_issuing_distribution_point) {
            return true;
        }
    }
    return false;
}

bool HasCommonName(const GENERAL_NAMES* one, const GENERAL_NAMES* other) {
    for (int i = 0; i < sk_GENERAL_NAME_num(one); ++i) {
        for (int j = 0; j < sk_GENERAL_NAME_num(other); ++j) {
            if (GENERAL_NAME_cmp(sk_GENERAL_NAME_value(one, i), sk_GENERAL_NAME_value(other, j)) ==
                0) {
                return true;
            }
        }
    }
    return false;
}

// One of several lists of an issuer is for the certificates that name its place. Names relative to
// the issuer's aren't looked into.
bool IsNamedBy(const DIST_POINT_NAME& place, X509* certificate) {
    const PointsHandle points(static_cast<CRL_DIST_POINTS*>(
        X509_get_ext_d2i(certificate, NID_crl_distribution_points, nullptr, nullptr)));
    if (place.type != kFullName) return false;
    for (int i = 0; i < sk_DIST_POINT_num(points.get()); ++i) {
        const DIST_POINT_NAME* name = sk_DIST_POINT_value(points.get(), i)->distpoint;
        if (name && name->type == kFullName &&
            HasCommonName(name->name.fullname, place.name.fullname)) {
            return true;
        }
    }
    return false;
}

// RFC 5280, section 5.2.5. What an indirect list, or one for some reasons alone, leaves out isn't
// known.
bool ScopeCovers(const ISSUING_DIST_POINT& scope, X509* certificate) {
    if (scope.indirectCRL > 0 || scope.onlyattr > 0 || scope.onlysomereasons) return false;
    const bool authority = X509_get_extension_flags(certificate) & EXFLAG_CA;
    if (authority ? scope.onlyuser > 0 : scope.onlyCA > 0) return false;
    return !scope.distpoint || IsNamedBy(*scope.distpoint, certificate);
}

bool Outlives(std::time_t stamped, const X509_REVOKED* entry) {
    const EnumHandle reason(static_cast<ASN1_ENUMERATED*>(
        X509_REVOKED_get_ext_d2i(entry, NID_crl_reason, nullptr, nullptr)));
    if (!reason) return false;
    switch (ASN1_ENUMERATED_get(reason.get())) {
        case CRL_REASON_UNSPECIFIED:
        case CRL_REASON_AFFILIATION_CHANGED:
        case CRL_REASON_SUPERSEDED:
        case CRL_REASON_CESSATION_OF_OPERATION: break;
        default: return false;
    }
    return ASN1_TIME_cmp_time_t(X509_REVOKED_get0_revocationDate(entry), stamped) > 0;
}

}  // namespace

RevocationList::RevocationList(RevocationListHandle list, std::string body)
    : m_list(std::move(list)), m_body(std::move(body)) {}

std::unique_ptr<RevocationList> RevocationList::Parse(std::string_view content) {
    if (content.size() > INT_MAX) return nullptr;
    std::string der(content);
    if (content.starts_with("-----")) der = FromPem(content);
    const auto* cursor = reinterpret_cast<const unsigned char*>(der.data());
    RevocationListHandle list(d2i_X509_CRL(nullptr, &cursor, static_cast<long>(der.size())));
    std::string body = list ? FirstElement(der) : std::string();
    if (body.empty()) return nullptr;
    return std::unique_ptr<RevocationList>(new RevocationList(std::move(list), std::move(body)));
}

Revocation RevocationList::Check(X509* certificate, X509* issuer, std::time_t now) const {
    return Judge(certificate, issuer, std::nullopt, now);
}

Revocation RevocationList::CheckStamper(X509* authority, X509* issuer, std::time_t stamped,
                                        std::time_t now) const {
    return Judge(authority, issuer, stamped, now);
}

Revocation RevocationList::Judge(X509* certificate, X509* issuer,
                                 std::optional<std::time_t> stamped, std::time_t now) const {
    if (X509_NAME_cmp(X509_CRL_get_issuer(m_list.get()), X509_get_issuer_name(certificate)) != 0) {
        return Revocation::kOtherIssuer;
    }
    if (!IsSignedBy(issuer)) return Revocation::kUndecided;
    X509_REVOKED* entry = nullptr;
    // 2: the entry takes an earlier revocation back.
    if (X509_CRL_get0_by_cert(m_list.get(), &entry, certificate) == 1 &&
        !(stamped && Outlives(*stamped, entry))) {
        return Revocation::kRevoked;
    }
    return IsCurrent(now) && Covers(certificate) ? Revocation::kGood : Revocation::kUndecided;
}

// A delta list (RFC 5280, section 5.2.4) tells what has changed since another one.
bool RevocationList::Covers(X509* certificate) const {
    if (X509_CRL_get_ext_by_NID(m_list.get(), NID_delta_crl, -1) >= 0) return false;
    if (HasUnknownCondition(m_list.get())) return false;
    int critical = 0;
    const ScopeHandle scope(static_cast<ISSUING_DIST_POINT*>(
        X509_CRL_get_ext_d2i(m_list.get(), NID_issuing_distribution_point, &critical, nullptr)));
    if (!scope) return critical == kAbsent;
    return ScopeCovers(*scope, certificate);
}

// OpenSSL's own check knows no signer's id for lists.
bool RevocationList::IsSignedBy(X509* issuer) const {
    if (!(X509_get_key_usage(issuer) & KU_CRL_SIGN)) return false;
    const X509_ALGOR* algorithm = nullptr;
    const ASN1_BIT_STRING* signature = nullptr;
    X509_CRL_get0_signature(m_list.get(), &signature, &algorithm);
    EVP_PKEY* key = X509_get0_pubkey(issuer);
    const std::optional<HashAlgorithm> hash = SignatureHash(algorithm, KindOfKey(key));
    if (!hash) return false;
    const std::string_view value(reinterpret_cast<const char*>(ASN1_STRING_get0_data(signature)),
                                 static_cast<size_t>(ASN1_STRING_length(signature)));
    return VerifyData(key, *hash, m_body, value);
}

bool RevocationList::IsCurrent(std::time_t now) const {
    const ASN1_TIME* from = X509_CRL_get0_lastUpdate(m_list.get());
    const ASN1_TIME* to = X509_CRL_get0_nextUpdate(m_list.get());
    if (ASN1_TIME_cmp_time_t(from, now) > 0) return false;
    // A list that doesn't say when the next one comes (RFC 5280, section 5.1.2.5, wants it) would
    // vouch for ever, also for what a later one revokes.
    return to && ASN1_TIME_cmp_time_t(to, now) >= 0;
}
