#include "components/certservice/DataOut.h"

#include <climits>
#include <cstring>

#include "components/certservice/ServiceCodes.h"

int HandOut(std::string_view data, unsigned char* out, int* outLen) {
    if (!outLen || (out && *outLen < 0)) return kServiceBadArgument;
    if (data.size() > INT_MAX) return kServiceUnknownFailure;
    const int size = static_cast<int>(data.size());
    const int capacity = *outLen;
    *outLen = size;
    if (!out) return kServiceOk;
    if (capacity < size) return kServiceBufferTooSmall;
    if (size > 0) std::memcpy(out, data.data(), data.size());
    if (capacity > size) out[size] = 0;
    return kServiceOk;
}

int PendingResults::Serve(TwoStep call, const std::string& arguments,
                          const std::function<int(std::string&)>& compute, unsigned char* out,
                          int* outLen) {
    if (!outLen || (out && *outLen < 0)) return kServiceBadArgument;
    Result& result = m_results[static_cast<size_t>(call)];
    if (!out || !result.kept || result.arguments != arguments) {
        result = {};
        if (const int code = compute(result.data)) return code;
        result.arguments = arguments;
        result.kept = true;
    }
    const int code = HandOut(result.data, out, outLen);
    if (out && code == kServiceOk) result = {};
    return code;
}

bool PendingResults::Holds(TwoStep call, const std::string& arguments) const {
    const Result& result = m_results[static_cast<size_t>(call)];
    return result.kept && result.arguments == arguments;
}
