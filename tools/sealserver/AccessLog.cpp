#include "tools/sealserver/AccessLog.h"

#include <cstdio>
#include <ctime>
#include <stdexcept>
#include <string_view>

#include "platform/Clock.h"
#include "tools/sealserver/PrivateFile.h"
#include "tools/tesmark/PathText.h"

namespace {

constexpr std::size_t kLongestTarget = 512;

std::string Printable(std::string_view text) {
    std::string printable;
    for (const char c : text.substr(0, kLongestTarget)) {
        if (c > ' ' && c < '\x7F') {
            printable += c;
            continue;
        }
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned char>(c));
        printable += code;
    }
    return printable.empty() ? "-" : printable;
}

std::string TimeText(std::time_t now) {
    const std::tm utc = platform::UtcTime(now);
    char text[80];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", utc.tm_year + 1900,
                  utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec);
    return text;
}

}  // namespace

std::string AccessLine(const AccessRecord& record, std::time_t now) {
    std::string line = TimeText(now) + " " + Printable(record.address) + " " +
                       Printable(record.method) + " " + Printable(record.target) + " " +
                       std::to_string(record.status) + " " + std::to_string(record.bytes);
    return record.note.empty() ? line : line + " " + record.note;
}

AccessLog::AccessLog(const std::string& path) {
    if (path.empty()) return;
    MakePrivateFile(path);
    // Without a buffer, so that a line that can't be written is lost alone.
    m_file.rdbuf()->pubsetbuf(nullptr, 0);
    m_file.open(FileAt(path), std::ios::binary | std::ios::app);
    if (!m_file) throw std::runtime_error("the access log can't be opened: " + path);
}

void AccessLog::Write(const AccessRecord& record) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_file.is_open()) return;
    m_file.clear();
    const std::string line = AccessLine(record, std::time(nullptr)) + '\n';
    m_file.write(line.data(), static_cast<std::streamsize>(line.size()));
}
