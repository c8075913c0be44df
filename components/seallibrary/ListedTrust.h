// ListedTrust.h - what a certificate comes to when a revocation list is at hand beside the judge.
#pragma once

#include <ctime>
#include <limits>
#include <string>

#include "components/seallibrary/CertificateJudge.h"
#include "components/seallibrary/SealCertificate.h"

// Later than any revocation: no revocation on a list is late enough to be forgiven.
constexpr std::time_t kNeverForgiven = std::numeric_limits<std::time_t>::max();

struct ListedTrust {
    // kOutOfValidity also for a certificate that was revoked later than the time asked about: what
    // remains to be asked is whether it was valid then.
    Trust trust;
    int code;  // of kOther, to pass through
};

// Judges `certificate` (DER `der`). A `list` (DER) that isn't of its issuer, or is empty, plays no
// part. One that is decides by what stands in it, whatever the judge says of the validity: revoked
// at `time` or before it is kRevoked. A revocation that no list dates is kRevoked as well.
ListedTrust JudgeListed(const std::string& der, const CSealCertificate& certificate,
                        const std::string& list, std::time_t time, CertificateJudge& judge);

// The same with a list that was fetched for another certificate: where the judge can't rely on it
// for this one (-4, as with lists for a part of an issuer's certificates), it plays no part.
ListedTrust JudgeBesideList(const std::string& der, const CSealCertificate& certificate,
                            const std::string& list, std::time_t time, CertificateJudge& judge);
