#include "FailedStep.h"

#include "components/certservice/ServiceCodes.h"
#include "components/seallibrary/SealCodes.h"
#include "include/TesmarkOpt.h"

namespace {

const char* OfLibrary(int code) {
    switch (code) {
        case TESMARK_NOT_TRUSTED: return "chain";
        case TESMARK_CERT_EXPIRED:
        case TESMARK_TIME_OUTSIDE_VALIDITY: return "validity";
        case TESMARK_CERT_REVOKED:
        case TESMARK_CRL_FAILED:
        case TESMARK_CRL_NOT_ACCEPTED: return "revocation";
        case TESMARK_SIGNED_MESSAGE_FAILED: return "form";
        case TESMARK_FILE_NOT_VERIFIED: return "signature value";
        default: return nullptr;
    }
}

const char* OfService(int code) {
    // Time stamps have a range of their own.
    if (code >= kServiceTimeStampMissing && code <= kServiceTimeStampRevocationUndecided) {
        return "time stamp";
    }
    switch (code) {
        case kServiceDigestMismatch: return "digest";
        case kServiceSignatureInvalid:
        case kServiceAlgorithmUnknown: return "signature value";
        case kServiceMessageDamaged:
        case kServiceSignerMissing:
        case kServiceDataAmbiguous:
        case kServiceCertificateDamaged: return "form";
        case kServiceSignerUnfit: return "purpose";
        case kServiceRevocationListDamaged: return "revocation";
        case kServiceFileUnreadable: return "file";
        default: return nullptr;
    }
}

const char* OfSealLibrary(int code) {
    switch (code) {
        case kSealDigestMismatch: return "digest";
        case kSealSignatureInvalid: return "signature value";
        case kSealSignatureDamaged:
        case kSealTimeUnreadable:
        case kSealTooLarge:
        case kSealSignerCertificateDamaged: return "form";
        case kSealSignerNotTrusted: return "chain";
        case kSealSignerExpired: return "validity";
        case kSealSignerRevoked:
        case kSealRevocationListDamaged:
        case kSealRevocationListForeign: return "revocation";
        case kSealSignerNotListed: return "signer not in the seal";
        case kSealDamaged:
        case kSealMakerCertificateDamaged:
        case kSealMakerSignatureInvalid:
        case kSealMakerNotTrusted:
        case kSealMakerExpired:
        case kSealMakerRevoked:
        case kSealNotYetValid:
        case kSealExpired: return "seal";
        case kSealPictureUnusable: return "picture";
        case kSealTimeStampDamaged:
        case kSealTimeStampForeign:
        case kSealTimeStampInvalid:
        case kSealTimeStampAuthorityUnfit:
        case kSealTimeStampNotTrusted:
        case kSealTimeStampAuthorityExpired:
        case kSealTimeStampRevoked: return "time stamp";
        case kSealFileUnreadable: return "file";
        default: return nullptr;
    }
}

}  // namespace

std::string FailedStepOf(int code) {
    for (const auto table : {OfLibrary, OfService, OfSealLibrary}) {
        if (const char* step = table(code)) return step;
    }
    return "component";
}
