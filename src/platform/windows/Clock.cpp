#include "platform/Clock.h"

#include "platform/windows/Win32.h"

namespace platform {

// The C library counts wall time here.
int MillisecondsSinceStart() {
    return static_cast<int>(static_cast<double>(std::clock()) * 1000.0 / CLOCKS_PER_SEC);
}

int CurrentThreadId() { return static_cast<int>(GetCurrentThreadId()); }

std::tm LocalTime(std::time_t time) {
    std::tm local{};
    localtime_s(&local, &time);
    return local;
}

std::tm UtcTime(std::time_t time) {
    std::tm utc{};
    gmtime_s(&utc, &time);
    return utc;
}

}  // namespace platform
