#include "components/seallibrary/ListedTrust.h"

#include "components/seallibrary/RevocationTime.h"
#include "components/seallibrary/SealCodes.h"

// A certificate out of its validity now may have been revoked before: the list is asked whatever
// the judge says.
ListedTrust JudgeListed(const std::string& der, const CSealCertificate& certificate,
                        const std::string& list, std::time_t time, CertificateJudge& judge) {
    const bool listed = IsListFor(list, certificate.Get());
    const int result = listed ? judge.ValidateWithList(der, list) : judge.Validate(der);
    const Trust trust = TrustOf(result);
    if (!listed || trust == Trust::kOther || trust == Trust::kNotTrusted) return {trust, result};
    const int code = CheckRevocationTime(list, certificate.SerialNumber(), time);
    if (code == kSealSerialNotListed) return {trust, result};
    if (code == kSealRevokedBefore) return {Trust::kRevoked, code};
    if (code != kSealOk) return {Trust::kOther, code};
    return {Trust::kOutOfValidity, kSealOk};
}

ListedTrust JudgeBesideList(const std::string& der, const CSealCertificate& certificate,
                            const std::string& list, std::time_t time, CertificateJudge& judge) {
    constexpr int kUndecided = -4;
    const ListedTrust result = JudgeListed(der, certificate, list, time, judge);
    if (list.empty() || result.trust != Trust::kOther || result.code != kUndecided) return result;
    return JudgeListed(der, certificate, "", time, judge);
}
