#include "platform/Clock.h"

#include <pthread.h>
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

// Asking the system costs more than a log record's text. A fork leaves one thread, with a new id.
thread_local pid_t t_threadId = 0;
const int g_forkHandler = pthread_atfork(nullptr, nullptr, [] { t_threadId = 0; });

}  // namespace

int MillisecondsSinceStart() { return static_cast<int>(MonotonicMilliseconds() - g_start); }

int CurrentThreadId() {
    // Without the handler the number might be stale.
    if (t_threadId == 0 || g_forkHandler != 0) t_threadId = gettid();
    return static_cast<int>(t_threadId);
}

std::tm LocalTime(std::time_t time) {
    // Else the zone would be that of the first call, whatever the host has set since.
    tzset();
    std::tm local{};
    localtime_r(&time, &local);
    return local;
}

std::tm UtcTime(std::time_t time) {
    std::tm utc{};
    gmtime_r(&time, &utc);
    return utc;
}

std::time_t TimeFromLocal(std::tm local) { return std::mktime(&local); }

}  // namespace platform
