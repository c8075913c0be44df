#include "fakes/LibraryTest.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "fakes/LogHome.h"
#include "platform/Module.h"

namespace {

constexpr const char* kLevelNames[] = {"emerg ", "alert ", "crit  ", "error ", "warn  ",
                                       "notice", "info  ", "debug ", "trace "};
constexpr int kLevelError = 3;
constexpr char kBeforeMessage[] = "status(0), ";
constexpr char kBeforeElapsed[] = "Time consume ";

std::string ReadLog() {
    std::ifstream file(fakes::LogPath(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A text file's lines end with a carriage return more on some platforms.
std::string WithoutLineEnd(std::string line) {
    if (line.ends_with('\r')) line.pop_back();
    return line;
}

// The level follows the time: "[Sat Nov 14 19:56:26 2026] [trace ] ...".
int LevelOf(const std::string& record) {
    const std::size_t name = record.find("] [") + 3;
    for (int level = 0; level < static_cast<int>(std::size(kLevelNames)); ++level) {
        if (record.compare(name, 6, kLevelNames[level]) == 0) return level;
    }
    ADD_FAILURE() << "not a log record: " << record;
    return 0;
}

// "[... end][Time consume 12 ms]" becomes "[... end][Time consume N ms]".
std::string WithoutElapsed(std::string message) {
    const std::size_t elapsed = message.find(kBeforeElapsed);
    if (elapsed == std::string::npos) return message;
    const std::size_t digits = elapsed + sizeof kBeforeElapsed - 1;
    const std::size_t end = message.find_first_not_of("0123456789", digits);
    return message.replace(digits, end - digits, "N");
}

std::string MessageOf(const std::string& record) {
    const std::size_t status = record.find(kBeforeMessage);
    if (status == std::string::npos) return record;
    return WithoutElapsed(record.substr(status + sizeof kBeforeMessage - 1));
}

}  // namespace

namespace fakes {

std::string ServicePath(Service service) {
    std::string folder = FAKES_DIR;
    switch (service) {
        case Service::Complete: break;
        case Service::WithoutTsGenReq: folder += "/no-tsgenreq"; break;
        case Service::WithoutLastLogin: folder += "/no-lastlogin"; break;
        case Service::NoLibrary: folder += "/no-library"; break;
    }
    return folder + "/" + platform::ModuleFileName("KVLAppCOM");
}

}  // namespace fakes

LibraryTest::LibraryTest() {
    fakes::Reset();
    m_prefix.RegisterCertService(fakes::ServicePath());
    ForgetLog();
}

LibraryTest::~LibraryTest() {
    fakes::Reset();
    UnInitKVLLib();
    ClearSelectKeyID();
    SetGetStampPictureMode(1);
    fakes::Reset();
}

std::vector<std::string> LibraryTest::Log(int deepest) const {
    const std::string text = ReadLog();
    std::vector<std::string> records;
    for (std::size_t start = m_logStart; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const std::string record = WithoutLineEnd(text.substr(start, end - start));
        const int level = LevelOf(record);
        if (level <= deepest) records.push_back(std::to_string(level) + " " + MessageOf(record));
        start = end + 1;
    }
    return records;
}

std::vector<std::string> LibraryTest::Errors() const {
    std::vector<std::string> messages;
    for (const std::string& record : Log()) {
        if (record[0] == '0' + kLevelError) messages.push_back(record.substr(2));
    }
    return messages;
}

std::vector<std::string> LibraryTest::Failures() const {
    std::vector<std::string> failures = Errors();
    std::erase_if(failures, [](const std::string& message) {
        return message.starts_with("[GetUserList]SOF_GetUserList: ") && message.ends_with("&&&");
    });
    return failures;
}

void LibraryTest::ForgetLog() { m_logStart = ReadLog().size(); }
