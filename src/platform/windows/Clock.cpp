#include "platform/Clock.h"

#include "platform/windows/Win32.h"

namespace platform {

namespace {

// The C library knows the years 1970 to 3000 alone, but the calendar repeats after 400 years.
constexpr int kCycleYears = 400;
constexpr std::time_t kCycle = std::time_t{146'097} * 86'400;

// Rounded down.
std::time_t Cycles(std::time_t value, std::time_t cycle) {
    return value / cycle - (value % cycle < 0 ? 1 : 0);
}

}  // namespace

// The C library counts wall time here.
int MillisecondsSinceStart() {
    return static_cast<int>(static_cast<double>(std::clock()) * 1000.0 / CLOCKS_PER_SEC);
}

int CurrentThreadId() { return static_cast<int>(GetCurrentThreadId()); }

std::tm LocalTime(std::time_t time) {
    const std::time_t cycles = Cycles(time, kCycle);
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

std::time_t TimeFromLocal(std::tm local) {
    // From a year on that is known in every time zone.
    constexpr int kFirstYear = 1971 - 1900;
    const std::time_t cycles = Cycles(local.tm_year - kFirstYear, kCycleYears);
    local.tm_year -= static_cast<int>(cycles) * kCycleYears;
    return std::mktime(&local) + cycles * kCycle;
}

}  // namespace platform
