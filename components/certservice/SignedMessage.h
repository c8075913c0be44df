// SignedMessage.h - signed messages (PKCS#7): RFC 5652 with an RSA key, GM/T 0010 (GB/T 35275)
// with an SM2 key.
#pragma once

#include <openssl/x509.h>

#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/certservice/Certificate.h"
#include "components/crypto/Algorithm.h"
#include "components/crypto/Handles.h"

// Signs a digest as KeyDevice::SignDigest does.
using DigestSigner =
    std::function<int(HashAlgorithm hash, std::string_view digest, std::string& signature)>;

// Makes a detached message with the signer's certificate in it. `digest` is the hash of the data
// by `hash`; for an SM2 certificate the value e. With RSA the contentType, signingTime (`now`) and
// messageDigest are signed; with SM2 there are no signed attributes. A ServiceCode.
int MakeSignedMessage(X509* certificate, HashAlgorithm hash, std::string_view digest,
                      std::time_t now, const DigestSigner& sign, std::string& message);

// A message of others as well: either set of object identifiers, attached or detached, with or
// without signed attributes, in BER, and with bytes behind it.
class SignedMessage {
public:
    // Null if no message with a signer can be read, or one with more than 64 signers, 16 digest
    // algorithms or 256 certificates. Certificates that `known` holds aren't decoded
    // again, and those that it doesn't are put there.
    static std::unique_ptr<SignedMessage> Parse(std::string_view message,
                                                CertificateCache* known = nullptr);
    ~SignedMessage();

    // kServiceOk if every signer's signature over `data` is good. The chain of the signer isn't
    // looked at. An attached message has to hold the same data, or `data` is empty and its own are
    // checked. kServiceDigestMismatch: the data are others; kServiceSignatureInvalid;
    // kServiceAlgorithmUnknown; kServiceSignerMissing; kServiceMessageDamaged: parts contradict
    // each other; kServiceDataAmbiguous: a signer has signed nothing but data that IsAmbiguous.
    int VerifyData(std::string_view data) const;
    // The same from the data's hash; with SM2 the value e. One of another length than the signer's
    // hash is a mismatch.
    int VerifyDigest(std::string_view digest) const;

    // 1: the data, empty if detached. 2: the first signer's certificate, DER. 3: the first
    // signer's signature value. kServiceNoSuchField for another number.
    int Field(int field, std::string& value) const;

    // The object identifier of what is signed, in digits and dots.
    std::string ContentType() const;
    int CountSigners() const;
    // The first signer's hash; none for an unknown one.
    std::optional<HashAlgorithm> SignerHash() const;
    // The first signer's; null if the message lacks it. Belongs to the message.
    X509* SignerCertificate() const;
    // True if every signer's certificate is in the message and MaySignDocuments.
    bool MaySignersSign() const;
    // All that stand in the message, the signers' among them.
    const std::vector<CertificateHandle>& Certificates() const;
    // All values of the first signer's attributes of a kind (OpenSSL's number), each in DER.
    std::vector<std::string> SignedAttribute(int kind) const;
    std::vector<std::string> UnsignedAttribute(int kind) const;

private:
    struct Content;
    explicit SignedMessage(std::unique_ptr<Content> content);
    int Verify(std::string_view bytes, bool fromData) const;

    std::unique_ptr<Content> m_content;
};
