// One log record against the bare open, write, lseek and close of a record of the same length.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "bench/Ratio.h"
#include "foundation/Logger.h"

namespace {

constexpr char kPrefix[] = "VELMORA_PREFIX";
constexpr char kInner[] = "VELMORA_BENCH_INNER";

std::string LogFile() {
    return std::string(std::getenv(kPrefix)) + "/Velmora/ESealLog/Fenmoor.log";
}

void LogRecord(benchmark::State& state) {
    for (auto _ : state) WriteLog("AppOpt", 3233, kLogTrace, 0, "[%s start]", "HttpPost");
}
BENCHMARK(LogRecord);

void BareAppend(benchmark::State& state) {
    constexpr std::string_view kRecord =
        "[Sat Nov 14 19:56:26 2026] [trace ] [tId:4312] AppOpt(3233): status(0), [HttpPost "
        "start]\n";
    const std::string path = LogFile() + ".bare";
    for (auto _ : state) {
        const int file = open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
        if (write(file, kRecord.data(), kRecord.size()) < 0) state.SkipWithError("write");
        off_t size = lseek(file, 0, SEEK_END);
        close(file);
        benchmark::DoNotOptimize(size);
        // As the log is: neither file grows without end.
        if (size > 0xA00000) rename(path.c_str(), (path + "1").c_str());
    }
}
BENCHMARK(BareAppend);

// The log's place is settled when the program is loaded: the program starts itself anew with a
// place of its own.
int StartInner(char** arguments) {
    std::string folder = (std::filesystem::temp_directory_path() / "velmora-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) return 2;
    setenv(kPrefix, folder.c_str(), 1);
    setenv(kInner, "1", 1);
    execv("/proc/self/exe", arguments);
    return 2;
}

}  // namespace

int main(int count, char** arguments) {
    if (std::getenv(kInner) == nullptr) return StartInner(arguments);
    const int result =
        RunRatios(count, arguments, {{"log record", "LogRecord", "BareAppend", 1.15}});
    if (!std::filesystem::exists(LogFile())) std::printf("the log was not written\n");
    std::filesystem::remove_all(std::getenv(kPrefix));
    return result;
}
