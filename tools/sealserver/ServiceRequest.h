// ServiceRequest.h - what clients ask the service, read from the XML of a request's body.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

enum class RequestKind { kHello, kSealList, kAppointedSeal, kSealStatus };

// Texts in UTF-8 without control characters, entities resolved, without blanks at their ends. What
// isn't of the request's kind is empty.
struct ServiceRequest {
    RequestKind kind = RequestKind::kHello;
    std::string serial;      // SN
    std::string name;        // DN
    std::string sealNumber;  // SEALNUM
    std::string sealHash;    // SEALHASH
};

// The whole body, which has a few hundred bytes, and one of its texts.
constexpr std::size_t kMaxRequestBytes = 64u << 10;
constexpr std::size_t kMaxRequestText = 2048;

// What to answer where there is no request: STATUSCODE, and MESSAGE in UTF-8.
struct RequestFault {
    int status = 0;
    std::string message;
};

// The body is UTF-8: a root element ROOT with one element for each value, in any order. Elements of
// other names are skipped, also those of another request. Refused are: what isn't well-formed, a
// document type, an element that stands twice or has elements in it, an unknown REQUESTTYPE (501),
// the absence of an element of the request or of its text; only DN may be empty, as a certificate's
// subject may. False fills `fault`.
bool ReadServiceRequest(std::string_view body, ServiceRequest& request, RequestFault& fault);
