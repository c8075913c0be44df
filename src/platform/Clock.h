// Clock.h - time and threads as the system counts them.
#pragma once

#include <ctime>

namespace platform {

// Wall time since the process began, or since the library was loaded where the system doesn't
// tell; wraps like any 32-bit number.
int MillisecondsSinceStart();
int CurrentThreadId();
// Broken-down time, local and of Greenwich, without the shared buffer of the C library.
std::tm LocalTime(std::time_t time);
std::tm UtcTime(std::time_t time);
// mktime for any year from 1900 on: parts that are out of range run over into the next, and
// tm_isdst is as there.
std::time_t TimeFromLocal(std::tm local);

}  // namespace platform
