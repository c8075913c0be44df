// RevocationList.h - one certificate revocation list (RFC 5280, section 5), SM2 or RSA.
#pragma once

#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "components/crypto/Handles.h"

enum class Revocation {
    kOtherIssuer,  // the list isn't this issuer's and says nothing about the certificate
    kGood,
    kRevoked,
    // The list can't be relied on: wrong signature, out of date or without a date, a delta list, no
    // CA's, with a critical extension that isn't known, or for other certificates
    // (issuingDistributionPoint).
    kUndecided,
};

class RevocationList {
public:
    // Takes DER or PEM. Null if it can't be read.
    static std::unique_ptr<RevocationList> Parse(std::string_view content);

    // What the list says about `certificate`, issued by `issuer`, at the moment `now`. A
    // certificate that a list out of date, or one that doesn't cover it, names stays revoked.
    Revocation Check(X509* certificate, X509* issuer, std::time_t now) const;

    // The same about an authority for its time stamp of `stamped`: it outlives a later revocation
    // for a reason that leaves the key its owner's alone (RFC 3161, section 4: unspecified,
    // affiliationChanged, superseded, cessationOfOperation); without a reason it doesn't.
    Revocation CheckStamper(X509* authority, X509* issuer, std::time_t stamped,
                            std::time_t now) const;

private:
    RevocationList(RevocationListHandle list, std::string body);
    Revocation Judge(X509* certificate, X509* issuer, std::optional<std::time_t> stamped,
                     std::time_t now) const;
    bool IsSignedBy(X509* issuer) const;
    bool IsCurrent(std::time_t now) const;
    bool Covers(X509* certificate) const;

    RevocationListHandle m_list;
    std::string m_body;  // what the signature is over, as it came in
};
