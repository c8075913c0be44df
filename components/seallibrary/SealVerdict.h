// SealVerdict.h - the checks of a seal and of a seal signature, and at which step one ended.
#pragma once

#include <ctime>
#include <functional>
#include <string>
#include <string_view>

#include "components/crypto/Algorithm.h"
#include "components/seallibrary/CertificateJudge.h"
#include "components/seallibrary/CertificateShelf.h"
#include "components/seallibrary/SealCodes.h"

// In the order in which they run; the first that fails ends the check.
enum class SealStep {
    kNone,              // nothing failed
    kStructure,         // both: the DER can be read
    kDigest,            // signature: it was made over this data
    kSignatureValue,    // signature: the signer's key made it
    kTimeStamp,         // signature: the time stamp over it, if it has one
    kSignerInSeal,      // signature: the seal names the signer
    kMakerSignature,    // both: the seal maker's key made the seal
    kMakerCertificate,  // both: that certificate is trusted, and was valid when the seal was made
    kSealTimeStamp,     // both: the time stamp over the maker's signature, if there is one
    kSealValidity,      // both: the seal is in force, at the time of signing or now
    kSealPicture,       // both: the seal's picture can be shown
    kSignerValidity,    // signature: the signer is trusted, and was valid at the time of signing
};

struct SealVerdict {
    int code = kSealOk;  // a SealCode, or the certificate service's own
    SealStep failed = SealStep::kNone;
    std::time_t signedAt = 0;   // what the signer wrote, of a signature that could be read
    std::time_t stampedAt = 0;  // of a time stamp over the signature that was found good
};

// Puts the plain hash of the signed data into `digest`, by the algorithm that the signature names.
// Returns 0 or a SealCode.
using DataDigest = std::function<int(HashAlgorithm algorithm, std::string& digest)>;

// With a shelf, certificates are looked for there first.
SealVerdict JudgeSeal(std::string_view seal, std::time_t now, CertificateJudge& judge,
                      CCertificateShelf* shelf = nullptr);

// `revocationList` (DER), of the signer's issuer, may be empty; the certificates of the seal's
// maker and of time-stamp authorities are looked for on it too where it is of their issuer. Whether
// anything has expired since the signing plays no part: the seal and both certificates are judged
// by the time that the signature tells. The time of a good time stamp takes that one's place; only
// such a time lets a later revocation of the maker pass.
SealVerdict JudgeSealSignature(std::string_view signature, const DataDigest& dataDigest,
                               const std::string& revocationList, CertificateJudge& judge,
                               CCertificateShelf* shelf = nullptr);

// A short English text (ASCII) for the step, such as "the signature value".
const char* StepText(SealStep step);
