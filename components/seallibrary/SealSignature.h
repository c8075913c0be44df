// SealSignature.h - a seal signature of one of the national forms: read, or built step by step.
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "components/seallibrary/Seal.h"

// A seal signature's parts as they came in.
struct SealSignature {
    std::string sealDer;
    Seal seal;
    std::string dataHash;
    std::string property;
    std::optional<std::time_t> time;  // none if timeInfo holds nothing that tells one
    std::string signerCertificate;
    std::string algorithm;  // dotted

    // The signer's signature, and the very bytes that it is over.
    std::string signedPart;
    std::string signature;

    // The token of the time stamp over `signature`; empty if what stands there can't be read.
    std::optional<std::string> timeStamp;
};

// Returns 0, kSealTooLarge or kSealSignatureDamaged. Nothing is judged but the structure, that of
// the seal inside included, and that the version is one of 1 to 5. Zero bytes behind the signature
// are allowed, as a field of fixed size in a document has them; any other byte is not.
int ReadSealSignature(std::string_view der, SealSignature& signature);

// What a seal signature is made from.
struct SealSignatureOrder {
    std::string_view sealDer;
    SealForm form = SealForm::kGb2020;  // the seal's
    long version = 4;                   // the seal's; written as one of 1 to 5
    std::time_t time = 0;
    std::string_view dataHash;
    std::string_view property;  // ASCII
    std::string_view signerCertificate;
    std::string_view algorithm;  // dotted
};

// The DER of the part that the signer signs (toSign); empty on failure.
std::string BuildSignedPart(const SealSignatureOrder& order);
// The whole seal signature around a part that BuildSignedPart gave for the same order. `signature`
// is the DER of SEQUENCE { r, s } for SM2 and the bare value for RSA. Empty on failure.
std::string AssembleSealSignature(const SealSignatureOrder& order, std::string_view signedPart,
                                  std::string_view signature);
