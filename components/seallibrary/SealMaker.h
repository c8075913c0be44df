// SealMaker.h - makes electronic seals of the national forms, as a seal maker would.
#pragma once

#include <ctime>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "components/seallibrary/SealForm.h"

// How a seal names those who may sign with it.
enum class SignerList {
    kCertificates,  // their certificates
    kDigests,  // digests of them (SM3 for SM2 certificates, SHA-256 for others); not in kGm2014
};

// What goes into a seal. Texts are UTF-8; where the form wants an IA5String they must be ASCII.
struct SealOrder {
    SealForm form = SealForm::kGb2020;
    std::string esId;                  // the seal's number, unique at its maker; ASCII
    std::string vendorId = "VELMORA";  // ASCII
    std::string name;                  // shown to the user, such as the company's
    int type = 1;                      // the national numbers: 1 a unit's seal, 2 a person's
    std::vector<std::string> signerCertificates;  // DER, at least one
    SignerList signerList = SignerList::kCertificates;
    std::string picture;              // the picture file's bytes
    std::string pictureType = "GIF";  // ASCII
    int widthMm = 0;
    int heightMm = 0;
    std::time_t created = 0;
    std::time_t validFrom = 0;
    std::time_t validTo = 0;
};

// Signs `tbs` with the seal maker's key: the DER of SEQUENCE { r, s } (SM2 with SM3 over ZA and
// `tbs`, signer id "1234567812345678"), or RSASSA-PKCS1-v1_5 with SHA-256. Empty on failure.
using SealSigner = std::function<std::string(std::string_view tbs)>;

// The DER of the seal (SESeal). `makerCertificate` is DER, and its key decides the algorithm that
// the seal names; the maker's signature is checked against it before the seal is given out.
// Empty on failure, with one sentence about it in `error` (English, ASCII).
std::string MakeSeal(const SealOrder& order, const std::string& makerCertificate,
                     const SealSigner& sign, std::string& error);
