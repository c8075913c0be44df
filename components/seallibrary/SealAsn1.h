// SealAsn1.h - the ASN.1 types of seals and seal signatures, as OpenSSL's templates read them.
//
// One type serves all forms where they differ by one field: that field is optional here, and who
// reads checks that it is there exactly where the form has it. Fields named "raw" keep the bytes
// of the whole element, tag and length included.
#pragma once

#include <openssl/asn1t.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct SesHeader {
    ASN1_STRING* id;
    ASN1_INTEGER* version;
    ASN1_STRING* vendorId;
};

struct SesProperty {
    ASN1_INTEGER* type;
    ASN1_STRING* name;
    ASN1_INTEGER* certListType;  // not in kGm2014
    ASN1_STRING* rawCertList;
    ASN1_STRING* createDate;
    ASN1_STRING* validStart;
    ASN1_STRING* validEnd;
};

struct SesPicture {
    ASN1_STRING* type;
    ASN1_OCTET_STRING* data;
    ASN1_INTEGER* width;
    ASN1_INTEGER* height;
};

struct SesInfo {
    SesHeader* header;
    ASN1_STRING* esId;
    SesProperty* property;
    SesPicture* picture;
    ASN1_STRING* rawExtDatas;        // as the standards have it
    ASN1_STRING* rawTaggedExtDatas;  // behind [0], as some makers write it
    ASN1_ENCODING received;          // so that the maker's signature is checked over what came in
};

struct SesSignInfo {
    ASN1_OCTET_STRING* certificate;
    ASN1_OBJECT* algorithm;
    ASN1_BIT_STRING* signature;
};

struct SesSeal2014 {
    SesInfo* info;
    SesSignInfo* signInfo;
};

// What the maker of a seal of 2014 signs.
struct SesSealToSign2014 {
    SesInfo* info;
    ASN1_OCTET_STRING* certificate;
    ASN1_OBJECT* algorithm;
};

struct SesSeal {
    SesInfo* info;
    ASN1_OCTET_STRING* certificate;
    ASN1_OBJECT* algorithm;
    ASN1_BIT_STRING* signature;
    ASN1_STRING* rawTimeStamp;
};

struct SesToSign {
    ASN1_INTEGER* version;
    ASN1_STRING* rawSeal;
    ASN1_STRING* timeInfo;
    ASN1_BIT_STRING* dataHash;
    ASN1_STRING* propertyInfo;
    ASN1_OCTET_STRING* certificate;  // kGm2014 alone
    ASN1_OBJECT* algorithm;          // kGm2014 alone
    ASN1_STRING* rawExtDatas;
    ASN1_ENCODING received;
};

struct SesSignature2014 {
    SesToSign* toSign;
    ASN1_BIT_STRING* signature;
};

struct SesSignature {
    SesToSign* toSign;
    ASN1_OCTET_STRING* certificate;
    ASN1_OBJECT* algorithm;
    ASN1_BIT_STRING* signature;
    ASN1_STRING* rawTimeStamp;
};

// An element of a list of digests.
struct SesDigest {
    ASN1_STRING* type;
    ASN1_OCTET_STRING* value;
};

const ASN1_ITEM* ItemOf(const SesInfo*);
const ASN1_ITEM* ItemOf(const SesSeal2014*);
const ASN1_ITEM* ItemOf(const SesSealToSign2014*);
const ASN1_ITEM* ItemOf(const SesSeal*);
const ASN1_ITEM* ItemOf(const SesToSign*);
const ASN1_ITEM* ItemOf(const SesSignature2014*);
const ASN1_ITEM* ItemOf(const SesSignature*);
const ASN1_ITEM* ItemOf(const SesDigest*);

ASN1_VALUE* DecodeAsn1(std::string_view der, const ASN1_ITEM* item);
std::string EncodeAsn1(const ASN1_VALUE* value, const ASN1_ITEM* item);

template <typename T>
struct Asn1Free {
    void operator()(T* value) const {
        ASN1_item_free(reinterpret_cast<ASN1_VALUE*>(value), ItemOf(value));
    }
};
template <typename T>
using Asn1Pointer = std::unique_ptr<T, Asn1Free<T>>;

// Null unless `der` is one element of that type and nothing else.
template <typename T>
Asn1Pointer<T> Decode(std::string_view der) {
    const T* type = nullptr;
    return Asn1Pointer<T>(reinterpret_cast<T*>(DecodeAsn1(der, ItemOf(type))));
}

template <typename T>
Asn1Pointer<T> NewAsn1() {
    const T* type = nullptr;
    return Asn1Pointer<T>(reinterpret_cast<T*>(ASN1_item_new(ItemOf(type))));
}

// DER; empty on failure.
template <typename T>
std::string Encode(const T& value) {
    return EncodeAsn1(reinterpret_cast<const ASN1_VALUE*>(&value), ItemOf(&value));
}

// What stands in the BIT STRING behind the tag of `rawTimeStamp`, or in an OCTET STRING in its
// place, or a bare token. None if the field is absent; empty if it holds anything else.
std::optional<std::string> TokenIn(const ASN1_STRING* rawTimeStamp);

struct DerElement {
    int tag;  // of the universal class; -1 for any other
    std::string_view content;
    std::string_view whole;
};

// The elements inside the constructed element that `der` begins with. False if the lengths don't
// add up, a length is indefinite, or there are more than `limit`. Bytes behind it are refused.
bool SplitSequence(std::string_view der, std::size_t limit, std::vector<DerElement>& elements);
