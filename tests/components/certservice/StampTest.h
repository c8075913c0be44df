// StampTest.h - the service's calls about time stamps, with a signed message to put them on.
#pragma once

#include <utility>
#include <vector>

#include "components/certservice/ServiceTest.h"
#include "components/certservice/StampAuthority.h"
#include "components/crypto/Hex.h"
#include "components/crypto/Signature.h"

class StampTest : public ServiceTest {
protected:
    // A message over "data", signed with a new key of that kind.
    std::string Message(KeyKind kind = KeyKind::kRsa) {
        const std::string certId = MakeKey(kind, kind == KeyKind::kSm2 ? "sm2" : "rsa");
        EXPECT_EQ(SOF_Login(m_context, certId.c_str(), kPin), 0);
        return SignMessage(m_context, certId, "data").data;
    }
    std::string SignatureValue(const std::string& message) {
        return TwoSteps([&](unsigned char* out, int* outLen) {
                   return SOF_GetInfoFromSignedMessage(m_context, Bytes(message), Size(message), 3,
                                                       out, outLen);
               })
            .data;
    }
    std::string Imprint(const std::string& message) {
        return Digest(HashAlgorithm::kSha256, SignatureValue(message));
    }
    // In hexadecimal, as programs take it.
    std::string StampDigest(const std::string& message) { return LowerHexOf(Imprint(message)); }
    Answer Request(const std::string& hash, int algorithm = 4, int flag = 1) {
        return TwoSteps([&](unsigned char* out, int* outLen) {
            return SOF_TSGenREQ(m_context, Bytes(hash), Size(hash), algorithm, flag, 0, 0, 0, 0, 0,
                                out, outLen);
        });
    }
    Answer Stamp(const std::string& response, const std::string& message) {
        return TwoSteps([&](unsigned char* out, int* outLen) {
            return SOF_TSGenPDFSignature(m_context, Bytes(response), Size(response), Bytes(message),
                                         Size(message), out, outLen);
        });
    }
    int VerifyStamp(const std::string& message) {
        return SOF_TSVerifyPDFSignature(m_context, Bytes(message), Size(message));
    }
    int VerifyMessage(const std::string& message, const std::string& data = "data") {
        return SOF_VerifySignedMessage(m_context, Bytes(message), Size(message), Bytes(data),
                                       Size(data));
    }
    Answer StampField(const std::string& message, int field) {
        return TwoSteps([&](unsigned char* out, int* outLen) {
            return SOF_TSGetPDFSignatureInfo(m_context, Bytes(message), Size(message), field, out,
                                             outLen);
        });
    }
    StampAuthority Stamper(KeyKind kind, const CertificateRequest& request = {}) {
        return StampAuthority(Authority(kind), kind, request);
    }

    void* m_context = Open();
};
