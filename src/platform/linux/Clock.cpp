#include "platform/Clock.h"

#include <unistd.h>

#include <cstdint>

namespace platform {

namespace {

// Not <chrono>: in C++20 that header holds a literal which GBK lacks.
std::int64_t MonotonicMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * INT64_C(1000) + now.tv_nsec / 1'000'000;
}

const std::int64_t g_start = MonotonicMilliseconds();

}  // namespace

int MillisecondsSinceStart() { return static_cast<int>(MonotonicMilliseconds() - g_start); }

int CurrentThreadId() { return static_cast<int>(gettid()); }

std::tm LocalTime(std::time_t time) {
    std::tm local{};
    localtime_r(&time, &local);
    return local;
}

}  // namespace platform
