// HandMadeToken.h - time-stamp tokens put together byte by byte, right and wrong ones.
#pragma once

#include <string>
#include <string_view>

#include "tests/components/seallibrary/TestPki.h"

// What a token of a test authority can be told.
struct HandMadeToken {
    std::string_view stamped = {};  // hashed by SM3 or, with an RSA key, SHA-256
    bool nationalOids = false;      // those of GM/T 0010 around the TSTInfo
    bool isTstInfo = true;          // false: the content says to be plain data
    bool withCertificate = true;
    bool withNamedCertificate = true;
    bool named2 = true;  // signingCertificateV2 with SHA-256, else version 1 with SHA-1
    std::string namedCertificate = {};  // empty: the authority's own
    std::string time = "20260615120100Z";
    bool signsOtherData = false;
    bool sha1Imprint = false;
};

std::string Build(const HandMadeToken& token, const TestIdentity& authority);
// An identity whose certificate is for time stamps alone, as TestCertificateOrder changes it.
TestIdentity MakeAuthority(KeyKind kind, TestCertificateOrder order = {});
