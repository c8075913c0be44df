#include "components/seallibrary/SealTimeStamp.h"

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/TimeStampToken.h"
#include "components/crypto/Handles.h"
#include "components/seallibrary/ListedTrust.h"
#include "components/seallibrary/SealCertificate.h"
#include "components/seallibrary/SealCodes.h"

namespace {

int CodeOf(int serviceCode) {
    switch (serviceCode) {
        case kServiceOk: return kSealOk;
        case kServiceTimeStampDigestMismatch:
        case kServiceTimeStampSignatureInvalid:
        case kServiceTimeStampAlgorithmUnknown: return kSealTimeStampInvalid;
        case kServiceTimeStampCertificateUnbound:
        case kServiceTimeStampPurpose: return kSealTimeStampAuthorityUnfit;
    }
    return kSealTimeStampDamaged;
}

int CheckAuthority(const TimeStampToken& token, const std::string& revocationList,
                   CertificateJudge& judge) {
    const std::string der = DerOf<i2d_X509>(token.Certificate());
    CSealCertificate authority;
    if (!authority.Read(der)) return kSealTimeStampDamaged;
    const ListedTrust result =
        JudgeBesideList(der, authority, revocationList, kNeverForgiven, judge);
    switch (result.trust) {
        case Trust::kGood:
        case Trust::kOutOfValidity:
            return authority.IsValidAt(token.Time()) ? kSealOk : kSealTimeStampAuthorityExpired;
        case Trust::kNotTrusted: return kSealTimeStampNotTrusted;
        case Trust::kRevoked: return kSealTimeStampRevoked;
        case Trust::kOther: break;
    }
    return result.code;
}

}  // namespace

int JudgeTimeStamp(std::string_view der, std::string_view stamped,
                   const std::string& revocationList, CertificateJudge& judge, std::time_t& time) {
    const auto token = TimeStampToken::Parse(der);
    if (!token || !token->Certificate()) return kSealTimeStampDamaged;
    if (const int code = token->CheckImprint(stamped)) {
        return code == kServiceTimeStampMismatch ? kSealTimeStampForeign : CodeOf(code);
    }
    if (const int code = CodeOf(token->CheckSignature())) return code;
    if (const int code = CheckAuthority(*token, revocationList, judge)) return code;
    time = token->Time();
    return kSealOk;
}
