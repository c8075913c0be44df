// SealTimeStamp.h - the time stamps that seals and seal signatures carry over their signatures.
#pragma once

#include <ctime>
#include <string>
#include <string_view>

#include "components/seallibrary/CertificateJudge.h"

// Judges a time-stamp token over `stamped`, the bytes of a signature value as they stand in the
// seal. 0 with its time in `time`, or one of the kSealTimeStamp codes; what the judge says about
// the authority's certificate beyond those comes through. That the certificate has expired since
// the time of the token is no fault; that `revocationList` (DER, may be empty), if it is of its
// issuer, names it is one, whenever it was revoked: who has the key writes any time.
int JudgeTimeStamp(std::string_view token, std::string_view stamped,
                   const std::string& revocationList, CertificateJudge& judge, std::time_t& time);
