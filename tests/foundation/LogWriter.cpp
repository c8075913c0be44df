// LogWriter: a program whose log is looked at by LoggerTest; the log's place is settled when a
// program is loaded, so each test starts one of its own.
//
//   record FILE LINE LEVEL STATUS TEXT    one record; FILE "-" is a null pointer
//   exactly SIZE                          two records, the second of that many bytes
//   upto SIZE                             two records that make the file that large
//   scope FILE | throw FILE               a scope left by return, or by an exception
//   threads COUNT RECORDS                 that many threads with that many records each
//   folders                               prints GetAppDataFolder and GetLogFolder

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "foundation/LogFolder.h"
#include "foundation/Logger.h"
#include "foundation/Text.h"

namespace {

void WriteRecord(char** arguments) {
    const std::string file = arguments[0];
    errno = EDOM;
    WriteLog(file == "-" ? nullptr : arguments[0], std::atoi(arguments[1]), std::atoi(arguments[2]),
             static_cast<unsigned int>(std::strtoul(arguments[3], nullptr, 10)), "%s",
             arguments[4]);
    if (errno != EDOM) std::exit(3);
}

std::size_t LogSize() {
    const std::string file = GetLogFolder("") + "Fenmoor.log";
    std::error_code absent;
    const auto size = std::filesystem::file_size(file, absent);
    return absent ? 0 : size;
}

// Text mode may have put a carriage return into the file ahead of the line feed.
std::size_t LineEndSize() {
    const std::string log = ReadFileToString(GetLogFolder("") + "Fenmoor.log");
    return log.ends_with("\r\n") ? 2 : 1;
}

// The first record, without a text, tells how long a record of this process is. True: `size` is
// that of the second record as it is built; false: it is the file's after both.
void WriteSized(std::size_t size, bool ofRecord) {
    const std::size_t before = LogSize();
    WriteLog("AppOpt", 1, kLogTrace, 0, "%s", "");
    const std::size_t empty = LogSize() - before;
    const std::size_t built = empty - (LineEndSize() - 1);
    const std::string text(ofRecord ? size - built : size - empty - (before + empty), 'x');
    WriteLog("AppOpt", 1, kLogTrace, 0, "%s", text.c_str());
}

void RunScope(const char* file, bool thrown) {
    const LogScope scope(file, "HttpPost", 77);
    if (thrown) throw 1;
}

void RunThreads(int count, int records) {
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([records] {
            for (int k = 0; k < records; ++k) WriteLog("AppOpt", k, kLogTrace, 0, "%0200d", k);
        });
    }
    for (auto& thread : threads) thread.join();
}

}  // namespace

int main(int count, char** arguments) {
    const std::string action = count > 1 ? arguments[1] : "";
    if (action == "record" && count == 7) {
        WriteRecord(arguments + 2);
    } else if (action == "exactly" && count == 3) {
        WriteSized(std::strtoul(arguments[2], nullptr, 10), true);
    } else if (action == "upto" && count == 3) {
        WriteSized(std::strtoul(arguments[2], nullptr, 10), false);
    } else if (action == "scope" && count == 3) {
        RunScope(arguments[2], false);
    } else if (action == "throw" && count == 3) {
        try {
            RunScope(arguments[2], true);
        } catch (int) {
        }
    } else if (action == "threads" && count == 4) {
        RunThreads(std::atoi(arguments[2]), std::atoi(arguments[3]));
    } else if (action == "folders") {
        std::printf("%s\n%s\n", GetAppDataFolder().c_str(), GetLogFolder("").c_str());
    } else {
        return 2;
    }
    return 0;
}
