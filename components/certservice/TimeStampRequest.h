// TimeStampRequest.h - what passes between a client and a time-stamp authority (RFC 3161, sections
// 2.4.1 and 2.4.2).
#pragma once

#include <string>
#include <string_view>

#include "components/crypto/Algorithm.h"

// A TimeStampReq in DER for `digest`, which `hash` made, with a random nonce of 64 bits.
// `wantsCertificate`: the token shall hold the authority's certificate. A ServiceCode.
int MakeTimeStampRequest(HashAlgorithm hash, std::string_view digest, bool wantsCertificate,
                         std::string& request);

// The token of a TimeStampResp, unjudged. kServiceTimeStampRefused: the authority granted none;
// kServiceTimeStampDamaged: no response, or one that grants and holds no token.
int TokenOfResponse(std::string_view response, std::string& token);
