// HandMade.h - seals and seal signatures put together byte by byte, as other makers write them and
// as nobody should.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "tests/components/seallibrary/TestPki.h"

// One DER element: the tag's byte as it stands, the length, the content.
std::string Der(int tag, std::string_view content);
std::string DerBits(std::string_view bytes, char unusedBits = 0);

// The DER of the two algorithms' identifiers.
extern const std::string kSm2Oid;
extern const std::string kRsaOid;

// Makes an element of a signature's value, for the place behind it.
using BehindValue = std::function<std::string(std::string_view value)>;

struct HandMadeSeal {
    bool form2014 = false;
    std::string mark = Der(0x16, "ES");
    char version = 4;
    int textTag = 0x16;  // IA5String
    int nameTag = 0x0C;  // UTF8String
    std::string name = "seal";
    int dateTag = 0x18;  // GeneralizedTime
    std::string createDate = "20260601000000Z";
    std::string validStart = "20260601000000Z";
    std::string validEnd = "20361231235959Z";
    std::string certListType = Der(0x02, "\x01");
    std::string certList;  // the whole element; none: the signer's certificate
    std::string extDatas;  // the whole element
    std::string pictureType = "ofd";
    std::string picture = "picture";
    std::string width = Der(0x02, "\x2A");
    std::string height = Der(0x02, "\x2A");
    std::string algorithm = kSm2Oid;
    bool bareSignature = false;
    char unusedBits = 0;
    std::string behindSignature;  // elements behind the last one
    BehindValue stamp;            // what stands there, for the value of the signature
};

std::string Build(const HandMadeSeal& seal, const TestIdentity& maker, const TestIdentity& signer);

struct HandMadeSignature {
    bool form2014 = false;
    std::string version{};  // the content of the INTEGER; empty: 1 for 2014, 4 otherwise
    std::string seal;
    std::string timeInfo = Der(0x18, "20260615120000Z");
    std::string dataHash;
    std::string property = Der(0x16, "");
    std::string algorithm = kSm2Oid;
    bool bareSignature = false;
    char unusedBits = 0;
    std::string behindSignature;
    BehindValue stamp;
};

std::string Build(const HandMadeSignature& signature, const TestIdentity& signer);
