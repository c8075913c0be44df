#include "components/seallibrary/SealSignature.h"

#include <openssl/ts.h>

#include <algorithm>
#include <utility>

#include "components/crypto/Handles.h"
#include "components/seallibrary/Asn1Text.h"
#include "components/seallibrary/SealAsn1.h"
#include "components/seallibrary/SealCertificate.h"
#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealLimits.h"
#include "components/seallibrary/SealTime.h"

namespace {

// What GM/T 0031 and GB/T 38540 have given out so far.
constexpr long kOldestVersion = 1;
constexpr long kNewestVersion = 5;

// The time out of a time-stamp token: the TSTInfo (RFC 3161, section 2.4.2) stands behind its
// content type inside an OCTET STRING behind [0]. The token's own signature isn't judged; it is a
// part of what the signer signed.
std::optional<std::time_t> TimeOfToken(std::string_view token) {
    // id-ct-TSTInfo, 1.2.840.113549.1.9.16.1.4.
    constexpr std::string_view kContentType("\x06\x0B\x2A\x86\x48\x86\xF7\x0D\x01\x09\x10\x01\x04",
                                            13);
    const std::size_t found = token.find(kContentType);
    if (found == token.npos) return std::nullopt;
    const std::string_view rest = token.substr(found + kContentType.size());
    const auto* at = reinterpret_cast<const unsigned char*>(rest.data());
    const auto* end = at + rest.size();
    long length = 0;
    int tag = 0;
    int tagClass = 0;
    if (ASN1_get_object(&at, &length, &tag, &tagClass, end - at) & 0x80) return std::nullopt;
    const OpenSslHandle<ASN1_OCTET_STRING, ASN1_OCTET_STRING_free> content(
        d2i_ASN1_OCTET_STRING(nullptr, &at, end - at));
    if (!content) return std::nullopt;
    const unsigned char* inner = content->data;
    const OpenSslHandle<TS_TST_INFO, TS_TST_INFO_free> info(
        d2i_TS_TST_INFO(nullptr, &inner, content->length));
    std::time_t time = 0;
    if (!info || !TimeOf(TS_TST_INFO_get_time(info.get()), time)) return std::nullopt;
    return time;
}

// A BIT STRING of 2014 holds the text of a time, the DER of one, or a time-stamp token.
std::optional<std::time_t> TimeOfBits(const ASN1_STRING* timeInfo) {
    std::string bytes;
    if (!BitsOf(timeInfo, bytes)) return std::nullopt;
    if (const auto time = ReadAsn1Time(bytes)) return time;
    const auto* at = reinterpret_cast<const unsigned char*>(bytes.data());
    const OpenSslHandle<ASN1_TIME, ASN1_TIME_free> text(
        d2i_ASN1_TIME(nullptr, &at, static_cast<long>(bytes.size())));
    std::time_t time = 0;
    if (text && TimeOf(text.get(), time)) return time;
    return TimeOfToken(bytes);
}

bool ReadSignedPart(const SesToSign& toSign, SealSignature& signature) {
    long version = 0;
    if (!NumberOf(toSign.version, kOldestVersion, kNewestVersion, version)) return false;
    signature.sealDer = BytesOf(toSign.rawSeal);
    if (ReadSeal(signature.sealDer, signature.seal) != kSealOk) return false;
    signature.time = toSign.timeInfo->type == V_ASN1_BIT_STRING
                         ? TimeOfBits(toSign.timeInfo)
                         : ReadAsn1Time(BytesOf(toSign.timeInfo));
    signature.property = BytesOf(toSign.propertyInfo);
    signature.signedPart = Encode(toSign);
    return BitsOf(toSign.dataHash, signature.dataHash);
}

bool Read2014(std::string_view der, SealSignature& signature) {
    const auto read = Decode<SesSignature2014>(der);
    if (!read || !read->toSign->certificate || !read->toSign->algorithm) return false;
    signature.signerCertificate = BytesOf(read->toSign->certificate);
    signature.algorithm = DottedOf(read->toSign->algorithm);
    return ReadSignedPart(*read->toSign, signature) && signature.seal.form == SealForm::kGm2014 &&
           BitsOf(read->signature, signature.signature);
}

bool ReadOfFour(std::string_view der, SealSignature& signature) {
    const auto read = Decode<SesSignature>(der);
    if (!read || read->toSign->certificate || read->toSign->algorithm) return false;
    signature.signerCertificate = BytesOf(read->certificate);
    signature.algorithm = DottedOf(read->algorithm);
    signature.timeStamp = TokenIn(read->rawTimeStamp);
    return ReadSignedPart(*read->toSign, signature) && signature.seal.form != SealForm::kGm2014 &&
           BitsOf(read->signature, signature.signature);
}

// `der` without the zero bytes behind its outer element; as it is if anything else stands there.
std::string_view WithoutPadding(std::string_view der) {
    const auto* begin = reinterpret_cast<const unsigned char*>(der.data());
    const auto* at = begin;
    long length = 0;
    int tag = 0;
    int tagClass = 0;
    const long size = static_cast<long>(der.size());
    if (size == 0 || ASN1_get_object(&at, &length, &tag, &tagClass, size) & 0x81) return der;
    const std::size_t end = static_cast<std::size_t>(at - begin + length);
    return der.find_first_not_of('\0', end) == der.npos ? der.substr(0, end) : der;
}

bool SetTime(const SealSignatureOrder& order, ASN1_STRING* timeInfo) {
    const std::string text = GeneralizedTimeText(order.time);
    if (text.empty()) return false;
    return order.form == SealForm::kGm2014 ? SetBits(timeInfo, text)
                                           : SetText(timeInfo, V_ASN1_GENERALIZEDTIME, text);
}

bool SetSigner2014(const SealSignatureOrder& order, SesToSign& toSign) {
    toSign.certificate = ASN1_OCTET_STRING_new();
    return toSign.certificate &&
           SetText(toSign.certificate, V_ASN1_OCTET_STRING, order.signerCertificate) &&
           SetObject(toSign.algorithm, std::string(order.algorithm).c_str());
}

}  // namespace

int ReadSealSignature(std::string_view der, SealSignature& signature) {
    constexpr std::size_t kMostElements = 5;
    signature = {};
    if (der.size() > kMaxSealSignatureBytes) return kSealTooLarge;
    der = WithoutPadding(der);
    std::vector<DerElement> elements;
    if (!SplitSequence(der, kMostElements, elements)) return kSealSignatureDamaged;
    const bool read = elements.size() == 2   ? Read2014(der, signature)
                      : elements.size() >= 4 ? ReadOfFour(der, signature)
                                             : false;
    return read ? kSealOk : kSealSignatureDamaged;
}

std::string BuildSignedPart(const SealSignatureOrder& order) {
    const auto toSign = NewAsn1<SesToSign>();
    if (!toSign ||
        !SetNumber(toSign->version, std::clamp(order.version, kOldestVersion, kNewestVersion)))
        return {};
    if (!SetText(toSign->rawSeal, V_ASN1_SEQUENCE, order.sealDer)) return {};
    if (!SetTime(order, toSign->timeInfo) || !SetBits(toSign->dataHash, order.dataHash)) return {};
    if (!SetText(toSign->propertyInfo, V_ASN1_IA5STRING, order.property)) return {};
    if (order.form == SealForm::kGm2014 && !SetSigner2014(order, *toSign)) return {};
    return Encode(*toSign);
}

std::string AssembleSealSignature(const SealSignatureOrder& order, std::string_view signedPart,
                                  std::string_view signature) {
    if (order.form == SealForm::kGm2014) {
        const auto whole = NewAsn1<SesSignature2014>();
        auto toSign = Decode<SesToSign>(signedPart);
        if (!whole || !toSign || !SetBits(whole->signature, signature)) return {};
        toSign.reset(std::exchange(whole->toSign, toSign.release()));
        return Encode(*whole);
    }
    const auto whole = NewAsn1<SesSignature>();
    auto toSign = Decode<SesToSign>(signedPart);
    if (!whole || !toSign || !SetBits(whole->signature, signature)) return {};
    toSign.reset(std::exchange(whole->toSign, toSign.release()));
    if (!SetText(whole->certificate, V_ASN1_OCTET_STRING, order.signerCertificate)) return {};
    if (!SetObject(whole->algorithm, std::string(order.algorithm).c_str())) return {};
    return Encode(*whole);
}
