#include "components/seallibrary/SealAsn1.h"

#include <climits>
#include <cstddef>

#include "components/crypto/Handles.h"

namespace {

constexpr unsigned long kTextTypes = B_ASN1_UTF8STRING | B_ASN1_IA5STRING | B_ASN1_PRINTABLESTRING |
                                     B_ASN1_VISIBLESTRING | B_ASN1_T61STRING | B_ASN1_BMPSTRING;
constexpr unsigned long kDateTypes = B_ASN1_UTCTIME | B_ASN1_GENERALIZEDTIME;

}  // namespace

// clang-format off
IMPLEMENT_ASN1_MSTRING(SesText, kTextTypes)
IMPLEMENT_ASN1_MSTRING(SesDate, kDateTypes)
IMPLEMENT_ASN1_MSTRING(SesTimeInfo, kDateTypes | B_ASN1_BIT_STRING)

ASN1_SEQUENCE(SesHeader) = {
    ASN1_SIMPLE(SesHeader, id, SesText),
    ASN1_SIMPLE(SesHeader, version, ASN1_INTEGER),
    ASN1_SIMPLE(SesHeader, vendorId, SesText)
} static_ASN1_SEQUENCE_END(SesHeader)

ASN1_SEQUENCE(SesProperty) = {
    ASN1_SIMPLE(SesProperty, type, ASN1_INTEGER),
    ASN1_SIMPLE(SesProperty, name, SesText),
    ASN1_OPT(SesProperty, certListType, ASN1_INTEGER),
    ASN1_SIMPLE(SesProperty, rawCertList, ASN1_SEQUENCE),
    ASN1_SIMPLE(SesProperty, createDate, SesDate),
    ASN1_SIMPLE(SesProperty, validStart, SesDate),
    ASN1_SIMPLE(SesProperty, validEnd, SesDate)
} static_ASN1_SEQUENCE_END(SesProperty)

ASN1_SEQUENCE(SesPicture) = {
    ASN1_SIMPLE(SesPicture, type, SesText),
    ASN1_SIMPLE(SesPicture, data, ASN1_OCTET_STRING),
    ASN1_SIMPLE(SesPicture, width, ASN1_INTEGER),
    ASN1_SIMPLE(SesPicture, height, ASN1_INTEGER)
} static_ASN1_SEQUENCE_END(SesPicture)

ASN1_SEQUENCE_enc(SesInfo, received, nullptr) = {
    ASN1_SIMPLE(SesInfo, header, SesHeader),
    ASN1_SIMPLE(SesInfo, esId, SesText),
    ASN1_SIMPLE(SesInfo, property, SesProperty),
    ASN1_SIMPLE(SesInfo, picture, SesPicture),
    ASN1_OPT(SesInfo, rawExtDatas, ASN1_SEQUENCE),
    ASN1_IMP_OPT(SesInfo, rawTaggedExtDatas, ASN1_SEQUENCE, 0)
} ASN1_SEQUENCE_END_enc(SesInfo, SesInfo)

ASN1_SEQUENCE(SesSignInfo) = {
    ASN1_SIMPLE(SesSignInfo, certificate, ASN1_OCTET_STRING),
    ASN1_SIMPLE(SesSignInfo, algorithm, ASN1_OBJECT),
    ASN1_SIMPLE(SesSignInfo, signature, ASN1_BIT_STRING)
} static_ASN1_SEQUENCE_END(SesSignInfo)

ASN1_SEQUENCE(SesSeal2014) = {
    ASN1_SIMPLE(SesSeal2014, info, SesInfo),
    ASN1_SIMPLE(SesSeal2014, signInfo, SesSignInfo)
} static_ASN1_SEQUENCE_END(SesSeal2014)

ASN1_SEQUENCE(SesSealToSign2014) = {
    ASN1_SIMPLE(SesSealToSign2014, info, SesInfo),
    ASN1_SIMPLE(SesSealToSign2014, certificate, ASN1_OCTET_STRING),
    ASN1_SIMPLE(SesSealToSign2014, algorithm, ASN1_OBJECT)
} static_ASN1_SEQUENCE_END(SesSealToSign2014)

ASN1_SEQUENCE(SesSeal) = {
    ASN1_SIMPLE(SesSeal, info, SesInfo),
    ASN1_SIMPLE(SesSeal, certificate, ASN1_OCTET_STRING),
    ASN1_SIMPLE(SesSeal, algorithm, ASN1_OBJECT),
    ASN1_SIMPLE(SesSeal, signature, ASN1_BIT_STRING),
    ASN1_IMP_OPT(SesSeal, rawTimeStamp, ASN1_SEQUENCE, 0)
} static_ASN1_SEQUENCE_END(SesSeal)

ASN1_SEQUENCE_enc(SesToSign, received, nullptr) = {
    ASN1_SIMPLE(SesToSign, version, ASN1_INTEGER),
    ASN1_SIMPLE(SesToSign, rawSeal, ASN1_SEQUENCE),
    ASN1_SIMPLE(SesToSign, timeInfo, SesTimeInfo),
    ASN1_SIMPLE(SesToSign, dataHash, ASN1_BIT_STRING),
    ASN1_SIMPLE(SesToSign, propertyInfo, SesText),
    ASN1_OPT(SesToSign, certificate, ASN1_OCTET_STRING),
    ASN1_OPT(SesToSign, algorithm, ASN1_OBJECT),
    ASN1_IMP_OPT(SesToSign, rawExtDatas, ASN1_SEQUENCE, 0)
} ASN1_SEQUENCE_END_enc(SesToSign, SesToSign)

ASN1_SEQUENCE(SesSignature2014) = {
    ASN1_SIMPLE(SesSignature2014, toSign, SesToSign),
    ASN1_SIMPLE(SesSignature2014, signature, ASN1_BIT_STRING)
} static_ASN1_SEQUENCE_END(SesSignature2014)

ASN1_SEQUENCE(SesSignature) = {
    ASN1_SIMPLE(SesSignature, toSign, SesToSign),
    ASN1_SIMPLE(SesSignature, certificate, ASN1_OCTET_STRING),
    ASN1_SIMPLE(SesSignature, algorithm, ASN1_OBJECT),
    ASN1_SIMPLE(SesSignature, signature, ASN1_BIT_STRING),
    ASN1_IMP_OPT(SesSignature, rawTimeStamp, ASN1_SEQUENCE, 0)
} static_ASN1_SEQUENCE_END(SesSignature)

ASN1_SEQUENCE(SesDigest) = {
    ASN1_SIMPLE(SesDigest, type, SesText),
    ASN1_SIMPLE(SesDigest, value, ASN1_OCTET_STRING)
} static_ASN1_SEQUENCE_END(SesDigest)
                                                            // clang-format on

                                                            const ASN1_ITEM
                                                            * ItemOf(const SesInfo*) {
    return ASN1_ITEM_rptr(SesInfo);
}
const ASN1_ITEM* ItemOf(const SesSeal2014*) { return ASN1_ITEM_rptr(SesSeal2014); }
const ASN1_ITEM* ItemOf(const SesSealToSign2014*) { return ASN1_ITEM_rptr(SesSealToSign2014); }
const ASN1_ITEM* ItemOf(const SesSeal*) { return ASN1_ITEM_rptr(SesSeal); }
const ASN1_ITEM* ItemOf(const SesToSign*) { return ASN1_ITEM_rptr(SesToSign); }
const ASN1_ITEM* ItemOf(const SesSignature2014*) { return ASN1_ITEM_rptr(SesSignature2014); }
const ASN1_ITEM* ItemOf(const SesSignature*) { return ASN1_ITEM_rptr(SesSignature); }
const ASN1_ITEM* ItemOf(const SesDigest*) { return ASN1_ITEM_rptr(SesDigest); }

ASN1_VALUE* DecodeAsn1(std::string_view der, const ASN1_ITEM* item) {
    if (der.size() > LONG_MAX) return nullptr;
    const auto* at = reinterpret_cast<const unsigned char*>(der.data());
    const auto* end = at + der.size();
    ASN1_VALUE* value = ASN1_item_d2i(nullptr, &at, static_cast<long>(der.size()), item);
    if (value && at == end) return value;
    ASN1_item_free(value, item);
    return nullptr;
}

std::string EncodeAsn1(const ASN1_VALUE* value, const ASN1_ITEM* item) {
    unsigned char* der = nullptr;
    const int length = ASN1_item_i2d(value, &der, item);
    return TakeBytes(der, length);
}

namespace {

// Takes the element at the front of `rest` off.
bool TakeElement(std::string_view& rest, DerElement& element) {
    const auto* begin = reinterpret_cast<const unsigned char*>(rest.data());
    const auto* at = begin;
    long length = 0;
    int tag = 0;
    int tagClass = 0;
    const int flags =
        ASN1_get_object(&at, &length, &tag, &tagClass, static_cast<long>(rest.size()));
    constexpr int kBadOrIndefinite = 0x80 | 0x01;
    if (flags & kBadOrIndefinite) return false;
    const std::size_t headerSize = at - begin;
    element.tag = tagClass == V_ASN1_UNIVERSAL ? tag : -1;
    element.content = rest.substr(headerSize, length);
    element.whole = rest.substr(0, headerSize + length);
    rest.remove_prefix(headerSize + length);
    return true;
}

}  // namespace

bool SplitSequence(std::string_view der, std::size_t limit, std::vector<DerElement>& elements) {
    elements.clear();
    DerElement outer;
    if (der.empty() || !TakeElement(der, outer) || !der.empty()) return false;
    for (std::string_view rest = outer.content; !rest.empty();) {
        DerElement element;
        if (elements.size() == limit || !TakeElement(rest, element)) return false;
        elements.push_back(element);
    }
    return true;
}

std::optional<std::string> TokenIn(const ASN1_STRING* rawTimeStamp) {
    if (!rawTimeStamp) return std::nullopt;
    const std::string_view raw(reinterpret_cast<const char*>(rawTimeStamp->data),
                               static_cast<std::size_t>(rawTimeStamp->length));
    std::vector<DerElement> elements;
    if (!SplitSequence(raw, 1, elements) || elements.empty()) return std::string();
    const auto& [tag, content, whole] = elements[0];
    if (tag == V_ASN1_BIT_STRING && content.starts_with('\0'))
        return std::string(content.substr(1));
    if (tag == V_ASN1_OCTET_STRING) return std::string(content);
    return std::string(tag == V_ASN1_SEQUENCE ? whole : std::string_view());
}
