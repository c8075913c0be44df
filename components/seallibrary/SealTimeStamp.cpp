#include "components/seallibrary/SealTimeStamp.h"

#include "components/crypto/Signature.h"
#include "components/seallibrary/SealCertificate.h"
#include "components/seallibrary/SealCodes.h"
#include "components/timestamptoken/TimeStampToken.h"

namespace {

int CodeOf(TimeStampStep failed) {
    switch (failed) {
        case TimeStampStep::kNone: return kSealOk;
        case TimeStampStep::kStructure: return kSealTimeStampDamaged;
        case TimeStampStep::kImprint: return kSealTimeStampForeign;
        case TimeStampStep::kSignature: return kSealTimeStampInvalid;
        case TimeStampStep::kNamedCertificate:
        case TimeStampStep::kPurpose: break;
    }
    return kSealTimeStampAuthorityUnfit;
}

int CheckAuthority(const CTimeStampToken& token, CertificateJudge& judge) {
    CSealCertificate authority;
    if (!authority.Read(token.Certificate())) return kSealTimeStampDamaged;
    const int result = judge.Validate(token.Certificate());
    switch (TrustOf(result)) {
        case Trust::kGood:
        case Trust::kOutOfValidity:
            return authority.IsValidAt(token.Time()) ? kSealOk : kSealTimeStampAuthorityExpired;
        case Trust::kNotTrusted: return kSealTimeStampNotTrusted;
        case Trust::kRevoked: return kSealTimeStampRevoked;
        case Trust::kOther: break;
    }
    return result;
}

}  // namespace

int JudgeTimeStamp(std::string_view der, std::string_view stamped, CertificateJudge& judge,
                   std::time_t& time) {
    CTimeStampToken token;
    if (!token.Read(der)) return kSealTimeStampDamaged;
    const TimeStampStep failed =
        token.Verify([stamped](HashAlgorithm hash) { return Digest(hash, stamped); });
    if (const int code = CodeOf(failed)) return code;
    if (const int code = CheckAuthority(token, judge)) return code;
    time = token.Time();
    return kSealOk;
}
