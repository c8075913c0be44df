#include "components/seallibrary/SealSigning.h"

#include <openssl/ec.h>

#include "components/crypto/Handles.h"
#include "components/crypto/Signature.h"
#include "components/seallibrary/SealCertificate.h"
#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealLimits.h"
#include "components/seallibrary/SealSignature.h"
#include "components/seallibrary/SealTime.h"

namespace {

constexpr std::time_t kKeptSeconds = 300;
constexpr std::size_t kHashSize = 32;
constexpr int kMethodSm2 = 0x00020101;
constexpr int kMethodRsa = 0x00010004;

using EcdsaHandle = OpenSslHandle<ECDSA_SIG, ECDSA_SIG_free>;

// Everything but the time, each with its length in front so that none runs into the next.
std::string RequestDigest(const SealSignRequest& request) {
    std::string all;
    for (const std::string_view part :
         {request.certId, request.property, request.algorithm, request.hash, request.seal}) {
        all += std::to_string(part.size());
        all += ':';
        all += part;
    }
    return Digest(HashAlgorithm::kSm3, all);
}

int CheckRequest(const SealSignRequest& request) {
    if (request.certId.empty() || request.certId.find('\0') != request.certId.npos)
        return kSealBadArgument;
    if (request.hash.size() != kHashSize) return kSealBadArgument;
    if (request.property.size() > kMaxPropertyBytes) return kSealTooLarge;
    for (const char character : request.property)
        if (static_cast<unsigned char>(character) > 0x7F) return kSealPropertyNotAscii;
    return kSealOk;
}

// A seal that a check would refuse makes signatures that a check would refuse.
int CheckUsable(const Seal& seal, std::time_t time) {
    CSealCertificate maker;
    if (!maker.Read(seal.makerCertificate)) return kSealMakerCertificateDamaged;
    if (!maker.Verify(seal.algorithm, seal.signedPart, seal.signature))
        return kSealMakerSignatureInvalid;
    if (!maker.MaySign()) return kSealMakerNotTrusted;
    if (time < seal.validFrom) return kSealNotYetValid;
    return time > seal.validTo ? kSealExpired : kSealOk;
}

// Some keys give r and s bare; the standard stores the DER of both.
std::string StandardSm2Signature(const std::string& signature) {
    constexpr std::size_t kBareSize = 64;
    if (signature.size() != kBareSize) return signature;
    const auto* bytes = reinterpret_cast<const unsigned char*>(signature.data());
    const unsigned char* at = bytes;
    if (EcdsaHandle(d2i_ECDSA_SIG(nullptr, &at, kBareSize)) && at == bytes + kBareSize)
        return signature;
    const EcdsaHandle pair(ECDSA_SIG_new());
    BignumHandle r(BN_bin2bn(bytes, kBareSize / 2, nullptr));
    BignumHandle s(BN_bin2bn(bytes + kBareSize / 2, kBareSize / 2, nullptr));
    if (!pair || !r || !s || ECDSA_SIG_set0(pair.get(), r.get(), s.get()) != 1) return {};
    r.release();
    s.release();
    return DerOf<i2d_ECDSA_SIG>(pair.get());
}

}  // namespace

int CSealSigning::Obtain(const SealSignRequest& request) {
    if (const int code = CheckRequest(request)) return code;
    const auto time = ReadHostTime(request.time);
    if (!time) return kSealBadArgument;
    const std::string digest = RequestDigest(request);
    if (digest.empty()) return kSealNoMemory;
    const bool kept = !m_signature.empty() && digest == m_requestDigest && *time >= m_time &&
                      *time - m_time <= kKeptSeconds;
    if (kept) return kSealOk;
    Forget();
    std::string signature;
    if (const int code = Make(request, *time, signature)) return code;
    m_signature = std::move(signature);
    m_requestDigest = digest;
    m_time = *time;
    return kSealOk;
}

void CSealSigning::Forget() {
    m_signature.clear();
    m_requestDigest.clear();
}

int CSealSigning::Make(const SealSignRequest& request, std::time_t time, std::string& result) {
    Seal seal;
    if (const int code = ReadSeal(request.seal, seal)) return code;
    if (const int code = CheckUsable(seal, time)) return code;
    const std::string certId(request.certId);
    std::string certificate;
    if (const int code = m_service.ExportCertificate(certId, certificate)) return code;
    CSealCertificate signer;
    if (!signer.Read(certificate)) return kSealSignerCertificateDamaged;
    const std::string algorithm = signer.SignatureAlgorithm();
    if (algorithm.empty() || algorithm != request.algorithm) return kSealAlgorithmMismatch;
    if (!NamesSigner(seal, certificate)) return kSealSignerNotListed;
    if (!signer.MaySign()) return kSealSignerNotTrusted;

    const SealSignatureOrder order{request.seal, seal.form,        seal.version, time,
                                   request.hash, request.property, certificate,  algorithm};
    const std::string signedPart = BuildSignedPart(order);
    if (signedPart.empty()) return kSealTooLarge;
    const bool sm2 = signer.Hash() == HashAlgorithm::kSm3;
    std::string signature;
    const int method = sm2 ? kMethodSm2 : kMethodRsa;
    if (const int code = m_service.Sign(certId, method, signedPart, signature)) return code;
    if (sm2) signature = StandardSm2Signature(signature);
    if (!signer.Verify(algorithm, signedPart, signature)) return kSealServiceSignatureBad;
    result = AssembleSealSignature(order, signedPart, signature);
    return result.empty() ? kSealTooLarge : kSealOk;
}
