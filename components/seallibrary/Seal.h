// Seal.h - an electronic seal of one of the national forms, read.
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/seallibrary/SealForm.h"

// A seal's parts as they came in. Texts are UTF-8 (or what the maker put into a UTF8String).
struct Seal {
    SealForm form = SealForm::kGm2014;
    long version = 0;
    std::string vendorId;
    std::string esId;
    int type = 0;
    std::string name;
    // One of the two lists is filled: the signers' certificates (DER), or digests of them.
    std::vector<std::string> signerCertificates;
    std::vector<std::string> signerDigests;
    std::time_t created = 0;
    std::time_t validFrom = 0;
    std::time_t validTo = 0;
    std::string pictureType;
    std::string picture;
    int widthMm = 0;
    int heightMm = 0;

    // The maker's signature, and the very bytes that it is over.
    std::string makerCertificate;
    std::string algorithm;  // dotted
    std::string signedPart;
    std::string signature;

    // The token of the time stamp over `signature`; empty if what stands there can't be read.
    std::optional<std::string> timeStamp;
};

// Returns 0, kSealTooLarge or kSealDamaged. Nothing is judged but the structure: signature,
// validity and certificates may be anything. Bytes behind the seal are refused.
int ReadSeal(std::string_view der, Seal& seal);

// Does the seal name this certificate (DER), by itself or by its SM3 or SHA-256 digest?
bool NamesSigner(const Seal& seal, std::string_view certificate);
