#include "foundation/LogTime.h"

#include <cstdio>

#include "platform/Clock.h"

LogTime FormatLogTime(std::time_t time) {
    constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::tm local = platform::LocalTime(time);
    LogTime result;
    std::snprintf(result.text, sizeof result.text, "%s %s %2d %02d:%02d:%02d %d",
                  kDays[local.tm_wday], kMonths[local.tm_mon], local.tm_mday, local.tm_hour,
                  local.tm_min, local.tm_sec, 1900 + local.tm_year);
    return result;
}
