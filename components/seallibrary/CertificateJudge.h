// CertificateJudge.h - who says whether a certificate is to be trusted, and what the answers mean.
#pragma once

#include <string>

class CertificateJudge {
public:
    virtual ~CertificateJudge() = default;

    // As SOF_ValidateCert: 0 good, -1 not trusted, -2 and -5 out of its validity now, -3 and -6
    // revoked; a SealCode if nobody can be asked. Trust is judged before validity: an expired
    // certificate of a stranger is -1, and so is one that outlives an expired authority above it.
    // So whoever forgives -2 and -5 need ask no other dates than the certificate's own.
    virtual int Validate(const std::string& certificate) = 0;
    // The same with a revocation list (DER) of the certificate's issuer in force.
    virtual int ValidateWithList(const std::string& certificate, const std::string& list) = 0;
};

// kOther: none of these, a code to pass through.
enum class Trust { kGood, kOutOfValidity, kNotTrusted, kRevoked, kOther };

// What an answer of Validate comes to.
Trust TrustOf(int result);
