#include "foundation/LogTime.h"

LogTime CurrentLogTime() {
    thread_local std::time_t second = -1;
    thread_local LogTime last;
    const std::time_t now = std::time(nullptr);
    if (now != second) {
        last = FormatLogTime(now);
        second = now;
    }
    return last;
}
