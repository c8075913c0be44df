#include "components/seallibrary/SealMaker.h"

#include <algorithm>

#include "components/crypto/Signature.h"
#include "components/seallibrary/Asn1Text.h"
#include "components/seallibrary/Seal.h"
#include "components/seallibrary/SealAsn1.h"
#include "components/seallibrary/SealCertificate.h"
#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealLimits.h"
#include "components/seallibrary/SealTime.h"

namespace {

constexpr long kCertificateList = 1;
constexpr long kDigestList = 2;

bool IsAscii(std::string_view text) {
    for (const char character : text)
        if (static_cast<unsigned char>(character) > 0x7F || character == '\0') return false;
    return true;
}

bool AreReadable(const std::vector<std::string>& certificates) {
    return std::all_of(certificates.begin(), certificates.end(), [](const std::string& der) {
        CSealCertificate certificate;
        return certificate.Read(der);
    });
}

std::string DateText(SealForm form, std::time_t time) {
    return form == SealForm::kGm2014 ? UtcTimeText(time) : GeneralizedTimeText(time);
}

long HeaderVersion(SealForm form) {
    switch (form) {
        case SealForm::kGm2014: return 1;
        case SealForm::kGb2020: return 4;
        case SealForm::kGm2025: return 5;
    }
    return 0;
}

// The sentence about the first thing in `order` that no seal can be made of; null if there is none.
const char* Complaint(const SealOrder& order) {
    if (order.esId.empty() || !IsAscii(order.esId)) return "The seal's number must be ASCII text.";
    if (order.vendorId.empty() || !IsAscii(order.vendorId))
        return "The vendor's id must be ASCII text.";
    if (order.pictureType.empty() || !IsAscii(order.pictureType))
        return "The picture's type must be ASCII text.";
    if (order.name.empty()) return "The seal has no name.";
    if (order.type < 1) return "The seal's type must be a positive number.";
    if (order.picture.empty()) return "The seal has no picture.";
    if (order.picture.size() > kMaxSealBytes / 2) return "The picture is too large for a seal.";
    if (order.widthMm < 1 || order.widthMm > kMaxSealMillimetres || order.heightMm < 1 ||
        order.heightMm > kMaxSealMillimetres)
        return "Width and height must be 1 to 10000 millimetres.";
    if (order.signerCertificates.empty()) return "The seal names nobody who may sign with it.";
    if (order.signerCertificates.size() > kMaxSigners) return "The seal names too many signers.";
    if (order.form == SealForm::kGm2014 && order.signerList == SignerList::kDigests)
        return "A seal of GM/T 0031-2014 names its signers by their certificates only.";
    if (!AreReadable(order.signerCertificates)) return "A signer's certificate can't be read.";
    for (const std::time_t time : {order.created, order.validFrom, order.validTo})
        if (DateText(order.form, time).empty())
            return "A date lies outside the years that the form can tell.";
    if (order.validTo < order.validFrom) return "The seal's validity ends before it begins.";
    return nullptr;
}

// One element of a universal type around `content`.
std::string DerString(int tag, std::string_view content) {
    const OpenSslHandle<ASN1_STRING, ASN1_STRING_free> text(ASN1_STRING_type_new(tag));
    if (!text || !SetText(text.get(), tag, content)) return {};
    if (tag == V_ASN1_OCTET_STRING) return DerOf<i2d_ASN1_OCTET_STRING>(text.get());
    return DerOf<i2d_ASN1_PRINTABLESTRING>(text.get());
}

std::string DerSequence(std::string_view content) {
    const int length = static_cast<int>(content.size());
    std::string der(static_cast<std::size_t>(ASN1_object_size(1, length, V_ASN1_SEQUENCE)), '\0');
    auto* at = reinterpret_cast<unsigned char*>(der.data());
    ASN1_put_object(&at, 1, length, V_ASN1_SEQUENCE, V_ASN1_UNIVERSAL);
    der.resize(der.size() - content.size());
    return der.append(content);
}

std::string DigestElement(const CSealCertificate& read, std::string_view certificate) {
    const bool sm3 = read.Hash() == HashAlgorithm::kSm3;
    return DerSequence(DerString(V_ASN1_PRINTABLESTRING, sm3 ? "SM3" : "SHA256") +
                       DerString(V_ASN1_OCTET_STRING, Digest(read.Hash(), certificate)));
}

bool FillSigners(const SealOrder& order, SesProperty& property) {
    std::string elements;
    for (const std::string& certificate : order.signerCertificates) {
        CSealCertificate read;
        if (!read.Read(certificate)) return false;
        elements += order.signerList == SignerList::kDigests
                        ? DigestElement(read, certificate)
                        : DerString(V_ASN1_OCTET_STRING, certificate);
    }
    return SetText(property.rawCertList, V_ASN1_SEQUENCE, DerSequence(elements));
}

bool FillDate(const SealOrder& order, std::time_t time, ASN1_STRING* date) {
    const bool utc = order.form == SealForm::kGm2014;
    return SetText(date, utc ? V_ASN1_UTCTIME : V_ASN1_GENERALIZEDTIME, DateText(order.form, time));
}

bool FillProperty(const SealOrder& order, SesProperty& property) {
    if (order.form != SealForm::kGm2014) {
        property.certListType = ASN1_INTEGER_new();
        const bool digests = order.signerList == SignerList::kDigests;
        if (!property.certListType ||
            !SetNumber(property.certListType, digests ? kDigestList : kCertificateList))
            return false;
    }
    return SetNumber(property.type, order.type) && FillSigners(order, property) &&
           SetText(property.name, V_ASN1_UTF8STRING, order.name) &&
           FillDate(order, order.created, property.createDate) &&
           FillDate(order, order.validFrom, property.validStart) &&
           FillDate(order, order.validTo, property.validEnd);
}

bool FillInfo(const SealOrder& order, SesInfo& info) {
    return SetText(info.header->id, V_ASN1_IA5STRING, "ES") &&
           SetNumber(info.header->version, HeaderVersion(order.form)) &&
           SetText(info.header->vendorId, V_ASN1_IA5STRING, order.vendorId) &&
           SetText(info.esId, V_ASN1_IA5STRING, order.esId) &&
           FillProperty(order, *info.property) &&
           SetText(info.picture->type, V_ASN1_IA5STRING, order.pictureType) &&
           ASN1_STRING_set(info.picture->data, order.picture.data(),
                           static_cast<int>(order.picture.size())) == 1 &&
           SetNumber(info.picture->width, order.widthMm) &&
           SetNumber(info.picture->height, order.heightMm);
}

bool SetOctets(ASN1_OCTET_STRING* target, const std::string& bytes) {
    return SetText(target, V_ASN1_OCTET_STRING, bytes);
}

std::string Assemble2014(const SealOrder& order, const std::string& maker,
                         const std::string& algorithm, const SealSigner& sign) {
    const auto seal = NewAsn1<SesSeal2014>();
    if (!seal || !FillInfo(order, *seal->info)) return {};
    SesSignInfo& signInfo = *seal->signInfo;
    if (!SetOctets(signInfo.certificate, maker)) return {};
    if (!SetObject(signInfo.algorithm, algorithm.c_str())) return {};
    const std::string signature =
        sign(Encode(SesSealToSign2014{seal->info, signInfo.certificate, signInfo.algorithm}));
    if (signature.empty() || !SetBits(signInfo.signature, signature)) return {};
    return Encode(*seal);
}

std::string AssembleOfFour(const SealOrder& order, const std::string& maker,
                           const std::string& algorithm, const SealSigner& sign) {
    const auto seal = NewAsn1<SesSeal>();
    if (!seal || !FillInfo(order, *seal->info) || !SetOctets(seal->certificate, maker)) return {};
    if (!SetObject(seal->algorithm, algorithm.c_str())) return {};
    const std::string signature = sign(Encode(*seal->info));
    if (signature.empty() || !SetBits(seal->signature, signature)) return {};
    return Encode(*seal);
}

std::string Refuse(std::string& error, const char* sentence) {
    error = sentence;
    return {};
}

}  // namespace

std::string MakeSeal(const SealOrder& order, const std::string& makerCertificate,
                     const SealSigner& sign, std::string& error) {
    error.clear();
    if (const char* complaint = Complaint(order)) return Refuse(error, complaint);
    CSealCertificate maker;
    if (!maker.Read(makerCertificate))
        return Refuse(error, "The seal maker's certificate can't be read.");
    const std::string algorithm = maker.SignatureAlgorithm();
    if (algorithm.empty()) return Refuse(error, "The seal maker's key is neither SM2 nor RSA.");
    const std::string der = order.form == SealForm::kGm2014
                                ? Assemble2014(order, makerCertificate, algorithm, sign)
                                : AssembleOfFour(order, makerCertificate, algorithm, sign);
    Seal seal;
    if (der.empty() || ReadSeal(der, seal) != kSealOk)
        return Refuse(error, "The seal couldn't be signed.");
    if (!maker.Verify(seal.algorithm, seal.signedPart, seal.signature))
        return Refuse(error, "The signature doesn't fit the seal maker's certificate.");
    return der;
}
