// ExportFrame.h - what every entry point of the service has around its call of CertService.
#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "components/certservice/DataOut.h"
#include "components/certservice/Process.h"
#include "components/certservice/ServiceCodes.h"
#include "components/crypto/ErrorMark.h"

// No exception crosses the border, and the host's own OpenSSL finds none of our errors.
template <typename Body>
int Guard(Body body) noexcept {
    const ErrorMark mark;
    try {
        return body();
    } catch (const std::exception&) {
        return kServiceUnknownFailure;
    }
}

template <typename Body>
int WithContext(void* handle, Body body) {
    CertService* service = FindContext(handle);
    if (!service) return kServiceNotInitialised;
    return Guard([&] { return body(*service); });
}

// Bytes from the host; a null pointer is well formed for no bytes only.
struct In {
    In(const unsigned char* data, int size)
        : valid(size >= 0 && (data || size == 0)),
          bytes(valid && data ? std::string_view(reinterpret_cast<const char*>(data),
                                                 static_cast<size_t>(size))
                              : std::string_view()) {}
    In(const char* data, int size) : In(reinterpret_cast<const unsigned char*>(data), size) {}
    bool Given() const { return valid && !bytes.empty(); }

    bool valid;
    std::string_view bytes;
};

// A result that is the same at each call: nothing is kept between query and fetch.
template <typename Compute>
int HandOutFrom(Compute compute, unsigned char* out, int* outLen) {
    if (!outLen || (out && *outLen < 0)) return kServiceBadArgument;
    std::string result;
    if (const int code = compute(result)) return code;
    return HandOut(result, out, outLen);
}
