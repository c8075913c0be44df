#include "fakes/Recorder.h"
#include "platform/closed/CertService.h"

int SOF_TSGenREQ(void* context, const unsigned char* hash, int hashLen, int algorithm, int flag,
                 std::uint64_t zero1, std::uint64_t zero2, std::uint64_t zero3, std::uint64_t zero4,
                 std::uint64_t zero5, unsigned char* out, int* outLen) {
    fakes::Recorder recorder("SOF_TSGenREQ");
    recorder.Context(context).Bytes(hash, hashLen).Number(algorithm).Number(flag);
    for (const std::uint64_t zero : {zero1, zero2, zero3, zero4, zero5}) {
        recorder.Number(static_cast<std::int64_t>(zero));
    }
    return recorder.Output(out, outLen).Finish();
}
