// TimeStampAuthority.h - a time-stamp authority (RFC 3161) for development, tests and the demo. Its
// clock is the machine's: nobody else may trust it.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "components/crypto/Handles.h"

// The policy of its tokens, one of OpenSSL's examples.
constexpr char kAuthorityPolicy[] = "1.2.3.4.1";

class TimeStampAuthority {
public:
    // Makes an RSA key of 2048 bits and a certificate for it that `issuer`, whose key is
    // `issuerKey`, has signed. Null on failure.
    static std::unique_ptr<TimeStampAuthority> Make(X509* issuer, EVP_PKEY* issuerKey);
    ~TimeStampAuthority();

    // The response to a request, both in DER: a token signed with SHA-256, with the certificates if
    // the request wants them; the nonce and the imprint are the request's. A refusal for what is no
    // request, for a hash other than SHA-256, SHA-384, SHA-512 and SM3, and for another policy than
    // kAuthorityPolicy. Empty on failure. One thread at a time.
    std::string Answer(std::string_view request);
    // The same as an HTTP answer, head included, to a POST of `request`.
    std::string HttpAnswer(std::string_view request);

    std::string Certificate() const;  // PEM

private:
    class Context;
    explicit TimeStampAuthority(std::unique_ptr<Context> context);

    std::unique_ptr<Context> m_context;
};
