// ResponseCheck.h - does a response of a time-stamp authority answer the request? (RFC 3161)
#pragma once

#include <string>
#include <string_view>

// True if `der` is a time-stamp request and nothing else.
bool IsTimeStampRequest(std::string_view der);

struct ResponseVerdict {
    std::string fault{};    // a clause that tells what is wrong, in UTF-8; empty: it fits
    std::string summary{};  // of one that fits: status, serial number and time
};

// Compares the two DER structures: the status is granted or grantedWithMods, there is a token of
// version 1 with the request's message imprint, with its nonce and policy where it names them.
// Tokens of RFC 5652 and those whose outer type is the signed data of GM/T 0010 are read. The
// token's signature isn't checked: that is for whoever verifies the stamped signature.
ResponseVerdict CheckResponse(std::string_view request, std::string_view response);
