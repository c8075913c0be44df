#include "foundation/Logger.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "foundation/LogFolder.h"
#include "foundation/LogTime.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace {

struct LevelRow {
    const char* name;
    int value;
};

constexpr LevelRow kLevels[] = {
    {"emerg ", 0}, {"alert ", 1}, {"crit  ", 2}, {"error ", 3}, {"warn  ", 4},
    {"notice", 5}, {"info  ", 6}, {"debug ", 7}, {"trace ", 8}, {nullptr, -1},
};

constexpr std::size_t kRecordSize = 8192;
// Longer than any path: what follows it always fits.
constexpr std::size_t kLongestName = 4096;
constexpr std::int32_t kRotationSize = 0xA00000;

std::int32_t g_logLevel = kLogTrace;

// An array, so that a record that comes after the release still finds it, empty.
char g_logFilePath[4097] = {};

// The rows are padded to six characters, so "trace" matches none and the threshold stays what it
// is. It is meant to.
void LookUpLevel(std::string_view name) {
    for (const LevelRow* row = kLevels; row->name != nullptr; ++row) {
        if (name == row->name) g_logLevel = row->value;
    }
}

class LogState {
public:
    LogState() {
        const std::string path = GetLogFolder("") + "Fenmoor.log";
        if (path.size() < sizeof g_logFilePath)
            std::memcpy(g_logFilePath, path.data(), path.size());
        LookUpLevel("trace");
    }
    ~LogState() { g_logFilePath[0] = '\0'; }
};

const LogState g_logState;

// The record under construction. What stands in front of the message is cut at the buffer's end,
// one byte being kept back for the line feed.
class Record {
public:
    void Append(std::string_view text) {
        const std::size_t length = std::min(text.size(), Left() - 1);
        std::memcpy(m_text + m_length, text.data(), length);
        m_length += length;
    }

    template <typename Number>
    void AppendNumber(Number number, int base = 10) {
        char digits[16];
        const auto end = std::to_chars(digits, digits + sizeof digits, number, base).ptr;
        Append({digits, static_cast<std::size_t>(end - digits)});
    }

    // A message that doesn't fit vanishes whole, and its line feed takes the place of the blank
    // in front of it.
    PRINTF_FORMAT(2, 0) void AppendMessage(const char* format, va_list arguments) {
        const int length = std::vsnprintf(m_text + m_length, Left(), format, arguments);
        if (length < 0 || static_cast<std::size_t>(length) >= Left()) {
            --m_length;
        } else {
            m_length += static_cast<std::size_t>(length);
        }
    }

    std::string_view Finish() {
        m_text[m_length++] = '\n';
        return {m_text, m_length};
    }

private:
    std::size_t Left() const { return kRecordSize - m_length; }

    char m_text[kRecordSize];
    std::size_t m_length = 0;
};

const char* LevelName(int level) { return level < 0 ? "      " : kLevels[level].name; }

// What follows the last "/", or without one the last "\", or the whole if nothing follows; without
// a ")" at its end.
std::string_view ShortName(std::string_view file) {
    const auto slash = file.rfind('/');
    const auto separator = slash != std::string_view::npos ? slash : file.rfind('\\');
    std::string_view name = file;
    if (separator != std::string_view::npos && separator + 1 < file.size()) {
        name = file.substr(separator + 1);
    }
    if (name.ends_with(')')) name.remove_suffix(1);
    return name;
}

// As "[%s] [%s] [tId:%d] ", "%s(%d): " and "status(%0x), " would: printf costs more than all of it.
void AppendPrefix(Record& record, const char* file, int line, int level, unsigned int status) {
    record.Append("[");
    record.Append(CurrentLogTime().text);
    record.Append("] [");
    record.Append(LevelName(level));
    record.Append("] [tId:");
    record.AppendNumber(platform::CurrentThreadId());
    record.Append("] ");
    if (file != nullptr && level >= 0) {
        record.Append(ShortName(file).substr(0, kLongestName));
        record.Append("(");
        record.AppendNumber(line);
        record.Append("): ");
    }
    record.Append("status(");
    record.AppendNumber(status, 16);
    record.Append("), ");
}

void WriteToStandardOutput(std::string_view record) {
    std::fwrite(record.data(), 1, record.size(), stdout);
    std::fflush(stdout);
}

void RotateLog() {
    char older[sizeof g_logFilePath + 1];
    std::snprintf(older, sizeof older, "%s1", g_logFilePath);
    platform::RemoveFile(older);
    platform::RenameFile(g_logFilePath, older);
}

void WriteRecord(std::string_view record) {
    const bool toFile = g_logFilePath[0] != '\0';
    const auto size = toFile ? platform::AppendTextRecord(g_logFilePath, record) : -1;
    if (size < 0) return WriteToStandardOutput(record);
    if (static_cast<std::int32_t>(size) > kRotationSize) RotateLog();
}

void CopyName(std::string_view name, char (&field)[256]) {
    std::memcpy(field, name.data(), std::min(name.size(), sizeof field - 1));
}

}  // namespace

void WriteLog(const char* file, int line, int level, unsigned int status, const char* format, ...) {
    if (level > g_logLevel) return;
    const int lastError = errno;
    Record record;
    AppendPrefix(record, file, line, level, status);
    va_list arguments;
    va_start(arguments, format);
    record.AppendMessage(format, arguments);
    va_end(arguments);
    WriteRecord(record.Finish());
    errno = lastError;
}

LogScope::LogScope(const char* file, const char* function, int line)
    : m_line(line), m_startMs(platform::MillisecondsSinceStart()) {
    const std::string_view name = file;
    CopyName(name.substr(name.rfind('\\') + 1), m_file);
    CopyName(function, m_function);
    WriteLog(m_file, m_line, kLogTrace, 0, "[%s start]", m_function);
}

LogScope::~LogScope() {
    const auto elapsed = static_cast<unsigned int>(platform::MillisecondsSinceStart()) -
                         static_cast<unsigned int>(m_startMs);
    WriteLog(m_file, m_line, kLogTrace, 0, "[%s end][Time consume %d ms]", m_function,
             static_cast<int>(elapsed));
}
