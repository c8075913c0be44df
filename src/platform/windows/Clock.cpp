#include "platform/Clock.h"

#include "platform/windows/Win32.h"

namespace platform {

// The C library counts wall time here.
int MillisecondsSinceStart() {
    return static_cast<int>(static_cast<double>(std::clock()) * 1000.0 / CLOCKS_PER_SEC);
}

int CurrentThreadId() { return static_cast<int>(GetCurrentThreadId()); }

// The C library knows the years 1970 to 3000 alone, but the calendar repeats after 400 years.
std::tm LocalTime(std::time_t time) {
    constexpr int kCycleYears = 400;
    constexpr std::time_t kCycle = std::time_t{146'097} * 86'400;
    const std::time_t cycles = time / kCycle - (time % kCycle < 0 ? 1 : 0);
    const std::time_t within = time - cycles * kCycle;
    std::tm local{};
    localtime_s(&local, &within);
    local.tm_year += static_cast<int>(cycles * kCycleYears);
    return local;
}

std::tm UtcTime(std::time_t time) {
    std::tm utc{};
    gmtime_s(&utc, &time);
    return utc;
}

}  // namespace platform
