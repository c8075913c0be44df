// SealSigning.h - makes seal signatures with a key of the certificate service.
#pragma once

#include <ctime>
#include <string>
#include <string_view>

#include "components/seallibrary/Seal.h"
#include "components/seallibrary/ServiceLink.h"

// The arguments of TVK_Sign.
struct SealSignRequest {
    std::string_view certId;
    std::string_view property;
    std::string_view algorithm;
    std::string_view hash;
    std::string_view time;
    std::string_view seal;
};

// Signs when the size is asked for and keeps the result for the fetch, since the length of a
// signature changes from one to the next and every signature may ask for a PIN.
class CSealSigning {
public:
    explicit CSealSigning(CServiceLink& service) : m_service(service) {}

    // Makes the signature, or finds the one that is kept: of the same arguments, but for the time,
    // which may have gone on by up to five minutes between a query and its fetch. Returns 0, a
    // SealCode or the service's own code.
    int Obtain(const SealSignRequest& request);
    // What the last successful Obtain gave.
    const std::string& Signature() const { return m_signature; }
    // Once it has been handed out, the next Obtain makes a new one.
    void Forget();

private:
    int Make(const SealSignRequest& request, std::time_t time, std::string& signature);

    CServiceLink& m_service;
    std::string m_requestDigest;
    std::time_t m_time = 0;
    std::string m_signature;
};
