#include "components/certservice/ExportFrame.h"
#include "platform/closed/CertService.h"

namespace {

// More than an authority's next token, and the next SM2 signature, differ in size from the ones at
// hand: the library asks for the size with one exchange and fetches with the next.
constexpr int kRoomForAnother = 64;

int AddTimeStamp(CertService& service, const In& response, const In& signedData, unsigned char* out,
                 int* outLen) {
    std::string stamped;
    if (const int code = service.AddTimeStamp(response.bytes, signedData.bytes, stamped)) {
        return code;
    }
    const int code = HandOut(stamped, out, outLen);
    if (code == kServiceOk && !out) *outLen += kRoomForAnother;
    return code;
}

}  // namespace

// The last five arguments are 0 in every call there is.
int SOF_TSGenREQ(void* context, const unsigned char* hash, int hashLen, int algorithm, int flag,
                 std::uint64_t, std::uint64_t, std::uint64_t, std::uint64_t, std::uint64_t,
                 unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In digest(hash, hashLen);
        if (!digest.Given()) return kServiceBadArgument;
        const auto make = [&](std::string& request) {
            return service.MakeTimeStampRequest(algorithm, digest.bytes, flag != 0, request);
        };
        const std::string arguments = std::to_string(algorithm) + (flag ? "+" : "-");
        return service.Pending().Serve(TwoStep::kTimeStampRequest,
                                       arguments + std::string(digest.bytes), make, out, outLen);
    });
}

int SOF_TSGenPDFSignature(void* context, const unsigned char* response, int responseLen,
                          const unsigned char* signedData, int signedDataLen, unsigned char* out,
                          int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In answer(response, responseLen);
        const In data(signedData, signedDataLen);
        if (!answer.Given() || !data.Given()) return kServiceBadArgument;
        if (!outLen || (out && *outLen < 0)) return kServiceBadArgument;
        return AddTimeStamp(service, answer, data, out, outLen);
    });
}

int SOF_TSVerifyPDFSignature(void* context, const unsigned char* signature, int signatureLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In message(signature, signatureLen);
        if (!message.Given()) return kServiceBadArgument;
        return service.VerifyTimeStamp(message.bytes, std::time(nullptr));
    });
}

int SOF_TSGetPDFSignatureInfo(void* context, const unsigned char* signature, int signatureLen,
                              int field, unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In message(signature, signatureLen);
        if (!message.Given()) return kServiceBadArgument;
        const auto read = [&](std::string& value) {
            return service.TimeStampField(message.bytes, field, value);
        };
        return HandOutFrom(read, out, outLen);
    });
}
