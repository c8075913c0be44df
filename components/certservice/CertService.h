// CertService.h - one context of the certificate service: what its entry points do, without their
// pointers.
#pragma once

#include <ctime>
#include <memory>
#include <string>
#include <string_view>

#include "components/certservice/Certificate.h"
#include "components/certservice/DataOut.h"
#include "components/certservice/KeyRing.h"
#include "components/certservice/RevocationList.h"
#include "components/certservice/SignedMessage.h"
#include "components/certservice/TrustStore.h"

// SOF_SetSignMethod's numbers. With kMethodByKey SM2 keys sign SM3 and RSA keys SHA-256.
constexpr int kMethodByKey = 0;
constexpr int kMethodSm2 = 0x00020101;
constexpr int kMethodRsaSha1 = 0x00010002;
constexpr int kMethodRsaSha256 = 0x00010004;

// Shorter data that are to be stamped are no signed message.
constexpr size_t kShortestMessage = 11;

// What a process has but once, whatever the number of its contexts.
struct ServiceProcess {
    KeyRing keys;
    TrustStore trust;
};

// All return a ServiceCode unless told otherwise. Certificates are DER.
class CertService {
public:
    explicit CertService(std::shared_ptr<ServiceProcess> process);

    const std::shared_ptr<ServiceProcess>& Process() const { return m_process; }
    KeyRing& Keys() { return m_process->keys; }
    PendingResults& Pending() { return m_pending; }

    // kServiceAlgorithmUnknown for another number; the method in force then stays.
    int SetSignMethod(int method);

    // What the signing calls sign for `data`: the hash that key and method ask for.
    // kServiceAlgorithmUnknown if the method in force isn't for that kind of key.
    struct ToSign {
        std::string certificate;
        HashAlgorithm hash = HashAlgorithm::kSm3;
        std::string digest;
    };
    int PrepareData(const std::string& certId, std::string_view data, ToSign& toSign);
    // The same without a look at the key, for the certificate of the last PrepareData. False if
    // that was another one: what is kept for the fetch is found by it, and nothing new is signed.
    bool RecallData(const std::string& certId, std::string_view data, ToSign& toSign);
    // kServiceDataAmbiguous if a message over these data, which were prepared, would have no signed
    // attributes to tell it from something else.
    int CheckMessageData(const ToSign& toSign, std::string_view data) const;
    // As PrepareData, for a digest that the caller has by `algorithm`.
    int PrepareDigest(const std::string& certId, int algorithm, std::string_view digest,
                      ToSign& toSign);
    // A plain signature, or a detached message, over what was prepared. May ask for the PIN.
    int Sign(const std::string& certId, const ToSign& toSign, std::string& signature);
    int SignMessage(const std::string& certId, const ToSign& toSign, std::string& message);

    // `algorithm` 1, 2 or 4. With SM3, a certificate and an id, ZA goes in front; the certificate
    // must then be an SM2 one, else kServiceAlgorithmUnknown.
    int HashData(int algorithm, std::string_view data, std::string_view certificate,
                 std::string_view userId, std::string& hash);
    int HashFile(int algorithm, const char* path, std::string_view certificate,
                 std::string_view userId, std::string& hash);

    // kServiceSignerUnfit: the signature is good, but a signer's certificate isn't one for
    // signatures (MaySignDocuments).
    int VerifyData(std::string_view certificate, std::string_view data, std::string_view signature);
    int VerifyMessage(std::string_view message, std::string_view data);
    int VerifyMessageDigest(std::string_view message, std::string_view digest);
    int MessageField(std::string_view message, int field, std::string& value);

    int CertificateField(std::string_view certificate, int field, std::string& text);
    int CertificateExtension(std::string_view certificate, const char* oid, std::string& der);
    // A CertificateVerdict, or kServiceCertificateDamaged. A certificate whose revocation stays
    // undecided is untrusted.
    int Validate(std::string_view certificate, std::time_t now);
    // The list in force for Validate, as Base64 of DER or PEM; an empty text takes it away. Callers
    // fetch it for the certificate that they ask about next: if it is of another issuer then, that
    // one's revocation stays undecided.
    // kServiceRevocationListDamaged leaves the one before in force.
    int SetRevocationList(std::string_view base64);

    // A request to a time-stamp authority for a hash made by `algorithm` (1, 2 or 4).
    int MakeTimeStampRequest(int algorithm, std::string_view hash, bool wantsCertificate,
                             std::string& request);
    // The signed message with the response's token in it in place of one that was there before.
    // Data of less than kShortestMessage bytes are no message: the token itself comes out. The
    // token has to be sound and over the SHA-256 of the signature value, or of those data; its
    // chain isn't looked at.
    int AddTimeStamp(std::string_view response, std::string_view signedData, std::string& stamped);
    // Everything about the time stamp of a message, but nothing about its own signature.
    int VerifyTimeStamp(std::string_view message, std::time_t now);
    int TimeStampField(std::string_view message, int field, std::string& value);

private:
    // What the last PrepareData was asked and gave. Data of some length are hashed anew in place of
    // being kept.
    struct Prepared {
        std::string certId;
        int method = kMethodByKey;
        bool keepsData = false;
        std::string data;
        ToSign toSign;
    };

    // The message read; null if it is none. Several calls ask about the same one, so a message that
    // isn't long is kept.
    std::shared_ptr<const SignedMessage> ReadMessage(std::string_view message);
    int FillDigest(std::string_view data, ToSign& toSign);
    int FindCertificate(const std::string& certId, ToSign& toSign);
    int HashPrefix(int algorithm, std::string_view certificate, std::string_view userId,
                   std::string& prefix);

    std::shared_ptr<ServiceProcess> m_process;
    PendingResults m_pending;
    CertificateCache m_certificates;
    std::unique_ptr<RevocationList> m_revocationList;
    bool m_isListNew = false;  // no certificate was asked about since it was set
    Prepared m_prepared;
    std::string m_messageBytes;
    std::shared_ptr<const SignedMessage> m_message;  // what those bytes are
    int m_method = kMethodByKey;
};
