#include <cstdint>
#include <cstring>

#include "components/timestamp/Engine.h"
#include "platform/closed/TimeStampEngine.h"

int CreateTS(const char* requestBase64, char** responseBase64) {
    // As COM has it.
    constexpr auto kNullPointer = static_cast<std::int32_t>(0x80004003);
    if (responseBase64 == nullptr) return kNullPointer;
    *responseBase64 = nullptr;
    const auto response = CreateTimeStamp(requestBase64 != nullptr ? requestBase64 : "");
    if (response) *responseBase64 = strdup(response->c_str());
    return 0;
}
