#include "components/certservice/TimeStampRequest.h"

#include <openssl/ts.h>

#include "components/certservice/BerElements.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignatureAlgorithm.h"
#include "components/crypto/Handles.h"

namespace {

constexpr int kNonceBits = 64;

using RequestHandle = OpenSslHandle<TS_REQ, TS_REQ_free>;
using ImprintHandle = OpenSslHandle<TS_MSG_IMPRINT, TS_MSG_IMPRINT_free>;
using AlgorithmHandle = OpenSslHandle<X509_ALGOR, X509_ALGOR_free>;
using IntegerHandle = OpenSslHandle<ASN1_INTEGER, ASN1_INTEGER_free>;
using StatusHandle = OpenSslHandle<TS_STATUS_INFO, TS_STATUS_INFO_free>;

bool SetImprint(TS_REQ* request, HashAlgorithm hash, std::string_view digest) {
    const ImprintHandle imprint(TS_MSG_IMPRINT_new());
    const AlgorithmHandle algorithm(X509_ALGOR_new());
    if (!imprint || !algorithm) return false;
    ObjectIdHandle oid(OBJ_txt2obj(OidOfHash(hash), 1));
    if (!oid || X509_ALGOR_set0(algorithm.get(), oid.get(), V_ASN1_NULL, nullptr) != 1)
        return false;
    oid.release();
    std::string copy(digest);
    return TS_MSG_IMPRINT_set_algo(imprint.get(), algorithm.get()) == 1 &&
           TS_MSG_IMPRINT_set_msg(imprint.get(), reinterpret_cast<unsigned char*>(copy.data()),
                                  static_cast<int>(copy.size())) == 1 &&
           TS_REQ_set_msg_imprint(request, imprint.get()) == 1;
}

bool SetNonce(TS_REQ* request) {
    const BignumHandle number(BN_new());
    if (!number || BN_rand(number.get(), kNonceBits, BN_RAND_TOP_ANY, BN_RAND_BOTTOM_ANY) != 1) {
        return false;
    }
    const IntegerHandle nonce(BN_to_ASN1_INTEGER(number.get(), nullptr));
    return nonce && TS_REQ_set_nonce(request, nonce.get()) == 1;
}

}  // namespace

int MakeTimeStampRequest(HashAlgorithm hash, std::string_view digest, bool wantsCertificate,
                         std::string& request) {
    const RequestHandle made(TS_REQ_new());
    if (!made || TS_REQ_set_version(made.get(), 1) != 1 || !SetImprint(made.get(), hash, digest) ||
        !SetNonce(made.get()) || TS_REQ_set_cert_req(made.get(), wantsCertificate ? 1 : 0) != 1) {
        return kServiceUnknownFailure;
    }
    request = DerOf<i2d_TS_REQ>(made.get());
    return request.empty() ? kServiceUnknownFailure : kServiceOk;
}

int TokenOfResponse(std::string_view response, std::string& token) {
    const auto outer = FirstBerElement(response);
    const auto parts =
        outer && outer->tag == kBerSequence ? SplitBer(outer->content) : std::nullopt;
    if (!parts || parts->empty() || parts->size() > 2) return kServiceTimeStampDamaged;
    // OpenSSL's own reader of responses knows no token with the national identifiers.
    const std::string_view first = parts->front().whole;
    const auto* cursor = reinterpret_cast<const unsigned char*>(first.data());
    const StatusHandle status(
        d2i_TS_STATUS_INFO(nullptr, &cursor, static_cast<long>(first.size())));
    if (!status) return kServiceTimeStampDamaged;
    const ASN1_INTEGER* number = TS_STATUS_INFO_get0_status(status.get());
    const long value = ASN1_INTEGER_get(number);
    if (value != TS_STATUS_GRANTED && value != TS_STATUS_GRANTED_WITH_MODS) {
        return kServiceTimeStampRefused;
    }
    if (parts->size() != 2) return kServiceTimeStampDamaged;
    token = (*parts)[1].whole;
    return kServiceOk;
}
