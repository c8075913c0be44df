// LogTime.h - the time in front of a record of the log.
#pragma once

#include <ctime>

struct LogTime {
    char text[64];
};

// Local time as ctime writes it, without the line feed.
LogTime FormatLogTime(std::time_t time);
// The same of now. Breaking a time down costs more than the rest of a record, so that each thread
// keeps its last second where memory of a thread's own is for nothing.
LogTime CurrentLogTime();
