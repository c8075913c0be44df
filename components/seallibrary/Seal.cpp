#include "components/seallibrary/Seal.h"

#include <algorithm>
#include <climits>

#include "components/crypto/Signature.h"
#include "components/seallibrary/Asn1Text.h"
#include "components/seallibrary/SealAsn1.h"
#include "components/seallibrary/SealCertificate.h"
#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealLimits.h"

namespace {

constexpr int kListOfCertificates = 1;
constexpr int kListOfDigests = 2;

// A bare certificate in place of an OCTET STRING around it is some makers' slip.
bool ReadCertificates(const std::vector<DerElement>& elements, Seal& seal) {
    for (const DerElement& element : elements) {
        if (element.tag != V_ASN1_OCTET_STRING && element.tag != V_ASN1_SEQUENCE) return false;
        seal.signerCertificates.emplace_back(element.tag == V_ASN1_OCTET_STRING ? element.content
                                                                                : element.whole);
    }
    return true;
}

bool ReadDigests(const std::vector<DerElement>& elements, Seal& seal) {
    for (const DerElement& element : elements) {
        const auto digest = Decode<SesDigest>(element.whole);
        if (!digest) return false;
        seal.signerDigests.push_back(BytesOf(digest->value));
    }
    return true;
}

bool ReadSigners(const SesProperty& property, Seal& seal) {
    long kind = kListOfCertificates;
    if (seal.form == SealForm::kGm2014) {
        if (property.certListType) return false;
    } else if (!NumberOf(property.certListType, kListOfCertificates, kListOfDigests, kind)) {
        return false;
    }
    const std::string list = BytesOf(property.rawCertList);
    std::vector<DerElement> elements;
    if (!SplitSequence(list, kMaxSigners, elements) || elements.empty()) return false;
    return kind == kListOfCertificates ? ReadCertificates(elements, seal)
                                       : ReadDigests(elements, seal);
}

bool ReadProperty(const SesProperty& property, Seal& seal) {
    long type = 0;
    if (!NumberOf(property.type, 0, INT_MAX, type)) return false;
    seal.type = static_cast<int>(type);
    seal.name = Utf8Of(property.name);
    return ReadSigners(property, seal) && TimeOf(property.createDate, seal.created) &&
           TimeOf(property.validStart, seal.validFrom) && TimeOf(property.validEnd, seal.validTo);
}

bool ReadPicture(const SesPicture& picture, Seal& seal) {
    long width = 0;
    long height = 0;
    if (!NumberOf(picture.width, 0, kMaxSealMillimetres, width)) return false;
    if (!NumberOf(picture.height, 0, kMaxSealMillimetres, height)) return false;
    seal.pictureType = Utf8Of(picture.type);
    seal.picture = BytesOf(picture.data);
    seal.widthMm = static_cast<int>(width);
    seal.heightMm = static_cast<int>(height);
    return true;
}

// An IA5String by the standards, and as DER has it. The other texts of a seal may be of other
// types; this one keeps data that aren't meant for a seal from being taken for a signed one.
bool HasMark(const SesInfo& info) {
    constexpr std::string_view kMark = "\x16\x02\x45\x53";
    constexpr std::size_t kMostElements = 6;
    constexpr std::size_t kHeaderElements = 3;
    const std::string_view received(reinterpret_cast<const char*>(info.received.enc),
                                    static_cast<std::size_t>(info.received.len));
    std::vector<DerElement> parts;
    std::vector<DerElement> header;
    return SplitSequence(received, kMostElements, parts) && !parts.empty() &&
           SplitSequence(parts[0].whole, kHeaderElements, header) && !header.empty() &&
           header[0].whole == kMark;
}

// `outerElements` tells the year; the header's version tells the two later forms apart.
bool ReadInfo(const SesInfo& info, std::size_t outerElements, Seal& seal) {
    constexpr long kVersion2025 = 5;
    if (!HasMark(info)) return false;
    if (!NumberOf(info.header->version, 0, INT_MAX, seal.version)) return false;
    if (outerElements == 2)
        seal.form = SealForm::kGm2014;
    else
        seal.form = seal.version < kVersion2025 ? SealForm::kGb2020 : SealForm::kGm2025;
    seal.vendorId = Utf8Of(info.header->vendorId);
    seal.esId = Utf8Of(info.esId);
    return ReadProperty(*info.property, seal) && ReadPicture(*info.picture, seal);
}

bool ReadSeal2014(std::string_view der, Seal& seal) {
    const auto read = Decode<SesSeal2014>(der);
    if (!read || !ReadInfo(*read->info, 2, seal)) return false;
    const SesSignInfo& signInfo = *read->signInfo;
    seal.makerCertificate = BytesOf(signInfo.certificate);
    seal.algorithm = DottedOf(signInfo.algorithm);
    seal.signedPart =
        Encode(SesSealToSign2014{read->info, signInfo.certificate, signInfo.algorithm});
    return BitsOf(signInfo.signature, seal.signature);
}

bool ReadSealOfFour(std::string_view der, Seal& seal) {
    const auto read = Decode<SesSeal>(der);
    if (!read || !ReadInfo(*read->info, 4, seal)) return false;
    seal.makerCertificate = BytesOf(read->certificate);
    seal.algorithm = DottedOf(read->algorithm);
    seal.signedPart = Encode(*read->info);
    seal.timeStamp = TokenIn(read->rawTimeStamp);
    return BitsOf(read->signature, seal.signature);
}

}  // namespace

int ReadSeal(std::string_view der, Seal& seal) {
    constexpr std::size_t kMostElements = 5;
    seal = {};
    if (der.size() > kMaxSealBytes) return kSealTooLarge;
    std::vector<DerElement> elements;
    if (!SplitSequence(der, kMostElements, elements)) return kSealDamaged;
    const bool read = elements.size() == 2   ? ReadSeal2014(der, seal)
                      : elements.size() >= 4 ? ReadSealOfFour(der, seal)
                                             : false;
    return read ? kSealOk : kSealDamaged;
}

bool NamesSigner(const Seal& seal, std::string_view certificate) {
    const auto& certificates = seal.signerCertificates;
    if (std::find(certificates.begin(), certificates.end(), certificate) != certificates.end())
        return true;
    if (seal.signerDigests.empty()) return false;
    const std::string digests[] = {Digest(HashAlgorithm::kSm3, certificate),
                                   Digest(HashAlgorithm::kSha256, certificate)};
    return std::any_of(seal.signerDigests.begin(), seal.signerDigests.end(),
                       [&](const std::string& listed) {
                           return !listed.empty() && (listed == digests[0] || listed == digests[1]);
                       });
}
