// SignatureVerdict.h - whether a signature is good, step by step, by the library's exports.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

enum class SignatureKind {
    kPkcs7,  // judged by the certificate service
    kSeal,   // SES_Signature, judged by the seal library
    kOther   // no signature that either reads
};

// "PKCS#7", "seal signature", "unknown form".
const char* SignatureKindText(SignatureKind kind);
// By the first elements of the DER or BER.
SignatureKind KindOf(std::string_view signature);

// Whether the signer's certificate is of an SM2 key. A LibrarySession is open.
bool SignedBySm2(std::string_view signature);

// Has the component decode the signer's certificate, which it keeps: the judgement of that
// signature has less to do then. A LibrarySession is open.
void PrepareSigner(std::string_view signature);

// One thing that was looked at.
struct VerdictStep {
    const char* name;  // "coverage", "signature", "certificate", "signing time", "time stamp"...
    bool good;
    // Which part of it failed: "digest", "signature value", "chain", "validity", "revocation",
    // "seal", "signer not in the seal", "time stamp", "form"; empty for a good step.
    std::string failed;
    int code = 0;  // the component's documented code, or the library's where none is behind it
    std::string reason;  // one clause; may be set for a good step too
};

// Texts are UTF-8, times local.
struct SignerInfo {
    std::string certificate;  // DER; empty if it can't be had
    std::string name;
    std::string serial;
    std::string issuer;
    std::string subject;
    std::string keyType;
    std::string notBefore;
    std::string notAfter;
};

struct TimeStampInfo {
    std::string time;
    std::string authority;
    std::string serial;
    std::string policy;
    std::string hash;
};

struct SealInfoOfSignature {
    std::string name;
    std::string number;
    std::string form;       // "GM/T 0031", "GB/T 38540"
    std::string picture;    // the image file
    std::string extension;  // ".png"
    int widthMm = 0;
    int heightMm = 0;
    std::string property;
    // Subject of the certificate whose key made the seal. Whose seal it says to be is that one's
    // word: any certificate below the trust folder makes seals with any name.
    std::string maker;
    bool madeBySigner = false;  // the maker's certificate is the signer's
};

struct SignatureVerdict {
    SignatureKind kind = SignatureKind::kOther;
    std::vector<VerdictStep> steps;
    SignerInfo signer;
    std::string signingTime;  // what the signer claims; empty if the signature tells none
    // Whether the signer's certificate was looked for on its revocation list (`bVerifyCRL`).
    bool revocationChecked = false;
    std::optional<TimeStampInfo> timeStamp;
    std::optional<SealInfoOfSignature> seal;

    bool Good() const;
};

// What is signed: the bytes, or the path of a file that holds them and nothing else.
struct SignedData {
    std::string_view bytes;
    std::string path;  // the file system's bytes
    // Nothing was named, so what the message itself holds is judged. Otherwise empty bytes are data
    // like any other, and a message that holds something else doesn't fit them.
    bool inMessage = false;
};

// `claimedTime` is a local time text that stands beside the signature; a seal signature's own goes
// before it. Revocation is judged by the time of a good time stamp, else by now: whoever has stolen
// a key claims any time. A LibrarySession is open. Throws a setup Failure if the certificate
// service can't be asked for a cause.
SignatureVerdict JudgeSignature(std::string_view signature, const SignedData& data,
                                const std::string& claimedTime);

// The time stamp of a PKCS#7 alone: its fields, and the step of its verification; nothing where the
// signature carries none, or is no PKCS#7.
std::optional<VerdictStep> JudgeTimeStamp(std::string_view signature, SignatureVerdict& verdict);
