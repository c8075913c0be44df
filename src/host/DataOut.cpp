#include "host/DataOut.h"

#include <cstring>

#include "TesmarkOpt.h"

int CopyOutChecked(std::string_view data, unsigned char* out, int* outLen) {
    if (out != nullptr && *outLen < static_cast<int>(data.size())) return TESMARK_NO_MEMORY;
    return CopyOutUnchecked(data, out, outLen);
}

int CopyOutUnchecked(std::string_view data, unsigned char* out, int* outLen) {
    if (out != nullptr) std::memcpy(out, data.data(), data.size());
    *outLen = static_cast<int>(data.size());
    return 0;
}

int CopyOutState(StateString& state, unsigned char* out, int* outLen) {
    if (state.Empty()) return 0;
    if (out == nullptr) {
        *outLen = state.Length();
    } else {
        state.CopyTo(out, *outLen);
    }
    return 0;
}
