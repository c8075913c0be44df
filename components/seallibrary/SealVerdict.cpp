#include "components/seallibrary/SealVerdict.h"

#include "components/seallibrary/ListedTrust.h"
#include "components/seallibrary/RevocationTime.h"
#include "components/seallibrary/Seal.h"
#include "components/seallibrary/SealCertificate.h"
#include "components/seallibrary/SealPictureCheck.h"
#include "components/seallibrary/SealSignature.h"
#include "components/seallibrary/SealTimeStamp.h"

namespace {

// What certificates are judged by.
struct Evidence {
    CertificateJudge& judge;
    CCertificateShelf* shelf;
    const std::string& revocationList;
    std::time_t proven = 0;  // of a good time stamp over the seal signature
};

bool Read(const std::string& der, CCertificateShelf* shelf, CSealCertificate& certificate) {
    return shelf ? shelf->Read(der, certificate) : certificate.Read(der);
}

int CheckMakerSignature(const Seal& seal, CCertificateShelf* shelf, CSealCertificate& maker) {
    if (!Read(seal.makerCertificate, shelf, maker)) return kSealMakerCertificateDamaged;
    if (!maker.Verify(seal.algorithm, seal.signedPart, seal.signature))
        return kSealMakerSignatureInvalid;
    return kSealOk;
}

// A maker's certificate that has expired since is no fault of the seal's. One that was revoked is,
// unless the seal was there before: the date of making doesn't prove that, since a thief of the
// key writes it as he likes.
int CheckMakerCertificate(const Seal& seal, const CSealCertificate& maker,
                          const Evidence& evidence) {
    if (!maker.MaySign()) return kSealMakerNotTrusted;
    const ListedTrust result =
        JudgeBesideList(seal.makerCertificate, maker, evidence.revocationList,
                        evidence.proven ? evidence.proven : kNeverForgiven, evidence.judge);
    switch (result.trust) {
        case Trust::kGood: return kSealOk;
        case Trust::kOutOfValidity:
            return maker.IsValidAt(seal.created) ? kSealOk : kSealMakerExpired;
        case Trust::kNotTrusted: return kSealMakerNotTrusted;
        case Trust::kRevoked: return kSealMakerRevoked;
        case Trust::kOther: break;
    }
    return result.code;
}

// It proves since when there is this seal; whoever made it says that as well, in the part that is
// signed, and the two aren't compared.
int CheckSealTimeStamp(const Seal& seal, const Evidence& evidence) {
    std::time_t time = 0;
    if (!seal.timeStamp) return kSealOk;
    return JudgeTimeStamp(*seal.timeStamp, seal.signature, evidence.revocationList, evidence.judge,
                          time);
}

int CheckSealValidity(const Seal& seal, std::time_t time) {
    if (time < seal.validFrom) return kSealNotYetValid;
    return time > seal.validTo ? kSealExpired : kSealOk;
}

// The last steps of both checks, from the seal maker's signature on.
SealVerdict JudgeSealAt(const Seal& seal, std::time_t time, const Evidence& evidence) {
    CSealCertificate maker;
    if (const int code = CheckMakerSignature(seal, evidence.shelf, maker))
        return {code, SealStep::kMakerSignature};
    if (const int code = CheckMakerCertificate(seal, maker, evidence))
        return {code, SealStep::kMakerCertificate};
    if (const int code = CheckSealTimeStamp(seal, evidence))
        return {code, SealStep::kSealTimeStamp};
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

int CheckSigner(const SealSignature& signature, const CSealCertificate& signer, std::time_t time,
                const Evidence& evidence) {
    if (!signer.MaySign()) return kSealSignerNotTrusted;
    const std::string& list = evidence.revocationList;
    if (!list.empty() && !IsListFor(list, signer.Get())) return kSealRevocationListForeign;
    const ListedTrust result =
        JudgeListed(signature.signerCertificate, signer, list, time, evidence.judge);
    switch (result.trust) {
        case Trust::kGood:
        case Trust::kOutOfValidity: return signer.IsValidAt(time) ? kSealOk : kSealSignerExpired;
        case Trust::kNotTrusted: return kSealSignerNotTrusted;
        case Trust::kRevoked: return kSealSignerRevoked;
        case Trust::kOther: break;
    }
    return result.code;
}

int CheckStructure(std::string_view der, CCertificateShelf* shelf, SealSignature& signature,
                   CSealCertificate& signer) {
    if (const int code = ReadSealSignature(der, signature)) return code;
    if (!Read(signature.signerCertificate, shelf, signer)) return kSealSignerCertificateDamaged;
    return signature.time ? kSealOk : kSealTimeUnreadable;
}

// What it proves stays as it is without one.
int CheckTimeStamp(const SealSignature& signature, Evidence& evidence) {
    if (!signature.timeStamp) return kSealOk;
    return JudgeTimeStamp(*signature.timeStamp, signature.signature, evidence.revocationList,
                          evidence.judge, evidence.proven);
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

// The steps that ask whether the signer was allowed to make it at its time.
SealVerdict JudgeRights(const SealSignature& signature, const CSealCertificate& signer,
                        const Evidence& evidence) {
    const std::time_t time = evidence.proven ? evidence.proven : *signature.time;
    if (!NamesSigner(signature.seal, signature.signerCertificate))
        return {kSealSignerNotListed, SealStep::kSignerInSeal};
    const SealVerdict seal = JudgeSealAt(signature.seal, time, evidence);
    if (seal.code) return seal;
    if (const int code = CheckSigner(signature, signer, time, evidence))
        return {code, SealStep::kSignerValidity};
    return {};
}

}  // namespace

SealVerdict JudgeSeal(std::string_view der, std::time_t now, CertificateJudge& judge,
                      CCertificateShelf* shelf) {
    Seal seal;
    if (const int code = ReadSeal(der, seal)) return {code, SealStep::kStructure};
    const std::string noList;
    return JudgeSealAt(seal, now, {judge, shelf, noList});
}

SealVerdict JudgeSealSignature(std::string_view der, const DataDigest& dataDigest,
                               const std::string& revocationList, CertificateJudge& judge,
                               CCertificateShelf* shelf) {
    SealSignature signature;
    CSealCertificate signer;
    if (const int code = CheckStructure(der, shelf, signature, signer))
        return {code, SealStep::kStructure};
    SealVerdict verdict = JudgeValues(signature, signer, dataDigest);
    Evidence evidence{judge, shelf, revocationList};
    if (!verdict.code) verdict = {CheckTimeStamp(signature, evidence), SealStep::kTimeStamp};
    if (!verdict.code) verdict = JudgeRights(signature, signer, evidence);
    verdict.signedAt = *signature.time;
    verdict.stampedAt = evidence.proven;
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
