#include "components/seallibrary/CertificateJudge.h"

Trust TrustOf(int result) {
    switch (result) {
        case 0: return Trust::kGood;
        case -1: return Trust::kNotTrusted;
        case -2:
        case -5: return Trust::kOutOfValidity;
        case -3:
        case -6: return Trust::kRevoked;
        default: return Trust::kOther;
    }
}
