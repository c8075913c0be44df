// Logger.h - records in the user's Fenmoor.log, always on.
#pragma once

#include <cstdarg>

#include "foundation/PrintfFormat.h"

// The levels in use, as syslog numbers them.
enum LogLevel : int {
    kLogError = 3,
    kLogWarning = 4,
    kLogInfo = 6,
    kLogDebug = 7,
    kLogTrace = 8,
};

// Appends one record: time, level, thread id, the short name of `file` with `line` (left out for a
// null file), `status` in hexadecimal, the message. The record is on disk when the call returns; a
// log that can't be opened goes to standard output. A message that doesn't fit into what is left of
// 8,192 bytes vanishes whole. Past 10,485,760 bytes the file is renamed to "Fenmoor.log1". Never
// fails and never throws. Texts are in the ANSI code page and written as they come, so that a
// record is one line but for the line breaks of its message.
void WriteLog(const char* file, int line, int level, unsigned int status, const char* format, ...)
    PRINTF_FORMAT(5, 6);

#define TESMARK_LOG(level, ...) WriteLog(__FILE__, __LINE__, (level), 0, __VA_ARGS__)

// Writes "[<function> start]" when it opens and "[<function> end][Time consume <ms> ms]" on every
// way out of the block, both with the line of the opening.
class LogScope {
public:
    LogScope(const char* file, const char* function, int line);
    ~LogScope();
    LogScope(const LogScope&) = delete;
    LogScope& operator=(const LogScope&) = delete;

private:
    char m_file[256] = {};
    char m_function[256] = {};
    int m_line;
    int m_startMs;
};

#define TESMARK_LOG_SCOPE(function) const LogScope logScope(__FILE__, (function), __LINE__)
