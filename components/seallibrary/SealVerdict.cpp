#include "components/seallibrary/SealVerdict.h"

#include "components/seallibrary/RevocationTime.h"
#include "components/seallibrary/Seal.h"
#include "components/seallibrary/SealCertificate.h"
#include "components/seallibrary/SealPictureCheck.h"
#include "components/seallibrary/SealSignature.h"
#include "components/seallibrary/SealTimeStamp.h"

namespace {

bool Read(const std::string& der, CCertificateShelf* shelf, CSealCertificate& certificate) {
    return shelf ? shelf->Read(der, certificate) : certificate.Read(der);
}

int CheckMakerSignature(const Seal& seal, CCertificateShelf* shelf, CSealCertificate& maker) {
    if (!Read(seal.makerCertificate, shelf, maker)) return kSealMakerCertificateDamaged;
    if (!maker.Verify(seal.algorithm, seal.signedPart, seal.signature))
        return kSealMakerSignatureInvalid;
    return kSealOk;
}

// A maker's certificate that has expired since is no fault of the seal's.
int CheckMakerCertificate(const Seal& seal, const CSealCertificate& maker,
                          CertificateJudge& judge) {
    if (!maker.MaySign()) return kSealMakerNotTrusted;
    const int result = judge.Validate(seal.makerCertificate);
    switch (TrustOf(result)) {
        case Trust::kGood: return kSealOk;
        case Trust::kOutOfValidity:
            return maker.IsValidAt(seal.created) ? kSealOk : kSealMakerExpired;
        case Trust::kNotTrusted: return kSealMakerNotTrusted;
        case Trust::kRevoked: return kSealMakerRevoked;
        case Trust::kOther: break;
    }
    return result;
}

// It proves since when there is this seal; whoever made it says that as well, in the part that is
// signed, and the two aren't compared.
int CheckSealTimeStamp(const Seal& seal, CertificateJudge& judge) {
    std::time_t time = 0;
    return seal.timeStamp ? JudgeTimeStamp(*seal.timeStamp, seal.signature, judge, time) : kSealOk;
}

int CheckSealValidity(const Seal& seal, std::time_t time) {
    if (time < seal.validFrom) return kSealNotYetValid;
    return time > seal.validTo ? kSealExpired : kSealOk;
}

// The last steps of both checks, from the seal maker's signature on.
SealVerdict JudgeSealAt(const Seal& seal, std::time_t time, CertificateJudge& judge,
                        CCertificateShelf* shelf) {
    CSealCertificate maker;
    if (const int code = CheckMakerSignature(seal, shelf, maker))
        return {code, SealStep::kMakerSignature};
    if (const int code = CheckMakerCertificate(seal, maker, judge))
        return {code, SealStep::kMakerCertificate};
    if (const int code = CheckSealTimeStamp(seal, judge)) return {code, SealStep::kSealTimeStamp};
    if (const int code = CheckSealValidity(seal, time)) return {code, SealStep::kSealValidity};
    if (!HasUsablePicture(seal)) return {kSealPictureUnusable, SealStep::kSealPicture};
    return {};
}

int CheckDigest(const SealSignature& signature, const CSealCertificate& signer,
                const DataDigest& dataDigest) {
    std::string digest;
    if (const int code = dataDigest(signer.Hash(), digest)) return code;
    return !digest.empty() && digest == signature.dataHash ? kSealOk : kSealDigestMismatch;
}

// A certificate out of its validity now may have been revoked before: the list is asked whatever
// the judge says.
int CheckSigner(const SealSignature& signature, const CSealCertificate& signer, std::time_t time,
                const std::string& revocationList, CertificateJudge& judge) {
    if (!signer.MaySign()) return kSealSignerNotTrusted;
    const std::string& der = signature.signerCertificate;
    const bool hasList = !revocationList.empty();
    if (hasList && !IsListFor(revocationList, signer.Get())) return kSealRevocationListForeign;
    const int result = hasList ? judge.ValidateWithList(der, revocationList) : judge.Validate(der);
    const Trust trust = TrustOf(result);
    if (trust == Trust::kOther) return result;
    if (trust == Trust::kNotTrusted) return kSealSignerNotTrusted;
    if (trust == Trust::kRevoked && !hasList) return kSealSignerRevoked;
    if (hasList) {
        const int listed = CheckRevocationTime(revocationList, signer.SerialNumber(), time);
        const bool unlisted = listed == kSealSerialNotListed;
        if (listed == kSealRevokedBefore || (unlisted && trust == Trust::kRevoked))
            return kSealSignerRevoked;
        if (listed != kSealOk && !unlisted) return listed;
    }
    return signer.IsValidAt(time) ? kSealOk : kSealSignerExpired;
}

int CheckStructure(std::string_view der, CCertificateShelf* shelf, SealSignature& signature,
                   CSealCertificate& signer) {
    if (const int code = ReadSealSignature(der, signature)) return code;
    if (!Read(signature.signerCertificate, shelf, signer)) return kSealSignerCertificateDamaged;
    return signature.time ? kSealOk : kSealTimeUnreadable;
}

// `proven` becomes the time of a good time stamp and stays as it is without one.
int CheckTimeStamp(const SealSignature& signature, CertificateJudge& judge, std::time_t& proven) {
    if (!signature.timeStamp) return kSealOk;
    return JudgeTimeStamp(*signature.timeStamp, signature.signature, judge, proven);
}

// The steps that ask whether the signature is this one and over these data.
SealVerdict JudgeValues(const SealSignature& signature, const CSealCertificate& signer,
                        const DataDigest& dataDigest) {
    if (const int code = CheckDigest(signature, signer, dataDigest))
        return {code, SealStep::kDigest};
    if (!signer.Verify(signature.algorithm, signature.signedPart, signature.signature))
        return {kSealSignatureInvalid, SealStep::kSignatureValue};
    return {};
}

// The steps that ask whether the signer was allowed to make it at `time`.
SealVerdict JudgeRights(const SealSignature& signature, const CSealCertificate& signer,
                        std::time_t time, const std::string& revocationList,
                        CertificateJudge& judge, CCertificateShelf* shelf) {
    if (!NamesSigner(signature.seal, signature.signerCertificate))
        return {kSealSignerNotListed, SealStep::kSignerInSeal};
    const SealVerdict seal = JudgeSealAt(signature.seal, time, judge, shelf);
    if (seal.code) return seal;
    if (const int code = CheckSigner(signature, signer, time, revocationList, judge))
        return {code, SealStep::kSignerValidity};
    return {};
}

}  // namespace

SealVerdict JudgeSeal(std::string_view der, std::time_t now, CertificateJudge& judge,
                      CCertificateShelf* shelf) {
    Seal seal;
    if (const int code = ReadSeal(der, seal)) return {code, SealStep::kStructure};
    return JudgeSealAt(seal, now, judge, shelf);
}

SealVerdict JudgeSealSignature(std::string_view der, const DataDigest& dataDigest,
                               const std::string& revocationList, CertificateJudge& judge,
                               CCertificateShelf* shelf) {
    SealSignature signature;
    CSealCertificate signer;
    if (const int code = CheckStructure(der, shelf, signature, signer))
        return {code, SealStep::kStructure};
    SealVerdict verdict = JudgeValues(signature, signer, dataDigest);
    std::time_t proven = 0;
    if (!verdict.code) verdict = {CheckTimeStamp(signature, judge, proven), SealStep::kTimeStamp};
    if (!verdict.code)
        verdict = JudgeRights(signature, signer, proven ? proven : *signature.time, revocationList,
                              judge, shelf);
    verdict.signedAt = *signature.time;
    verdict.stampedAt = proven;
    return verdict;
}

const char* StepText(SealStep step) {
    switch (step) {
        case SealStep::kNone: return "none";
        case SealStep::kStructure: return "the structure";
        case SealStep::kDigest: return "the digest of the data";
        case SealStep::kSignatureValue: return "the signature value";
        case SealStep::kTimeStamp: return "the time stamp";
        case SealStep::kSignerInSeal: return "the signer in the seal's list";
        case SealStep::kMakerSignature: return "the seal maker's signature";
        case SealStep::kMakerCertificate: return "the seal maker's certificate";
        case SealStep::kSealTimeStamp: return "the seal's time stamp";
        case SealStep::kSealValidity: return "the seal's validity";
        case SealStep::kSealPicture: return "the seal's picture";
        case SealStep::kSignerValidity: return "the signer's certificate";
    }
    return "";
}
