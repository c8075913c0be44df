// The program around a fuzz target: runs the corpus, then mutations of it.
//
//   <target> [-seconds N] [-seed N] [-crash FILE] [FILE or FOLDER]...
//
// An input that ends the process stands in the crash file, which is made only then. Given as an
// argument, it alone is run again.

#include <signal.h>
#include <time.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/driver/Mutator.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

struct Options {
    double seconds = 0;
    std::uint64_t seed = 1;
    std::string crashFile;
    std::vector<std::string> paths;
};

// What the handlers of a dying process need: no allocation there.
const char* g_crashFile = nullptr;
const std::string* g_input = nullptr;

void KeepInput() {
    if (g_crashFile == nullptr || g_input == nullptr) return;
    std::FILE* file = std::fopen(g_crashFile, "wb");
    if (file == nullptr) return;
    std::fwrite(g_input->data(), 1, g_input->size(), file);
    std::fclose(file);
    std::fprintf(stderr, "input kept in %s\n", g_crashFile);
    g_input = nullptr;
}

void OnSignal(int number) {
    KeepInput();
    signal(number, SIG_DFL);
    raise(number);
}

// An exact copy on the heap, so that the sanitizers see a read behind its end.
void RunOne(const std::string& input) {
    g_input = &input;
    std::vector<std::uint8_t> copy(input.begin(), input.end());
    copy.shrink_to_fit();
    LLVMFuzzerTestOneInput(copy.data(), copy.size());
    g_input = nullptr;
}

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "can't read %s\n", path.c_str());
        std::exit(2);
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> ReadInputs(const std::vector<std::string>& paths) {
    std::vector<std::filesystem::path> files;
    for (const auto& path : paths) {
        if (!std::filesystem::is_directory(path)) {
            files.emplace_back(path);
            continue;
        }
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
            if (entry.is_regular_file()) files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    std::vector<std::string> inputs;
    for (const auto& file : files) inputs.push_back(ReadFile(file));
    return inputs;
}

double Now() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

Options ReadOptions(int count, char** arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        const bool takesValue = argument.starts_with('-');
        if (takesValue && ++i == count) {
            std::fprintf(stderr, "%s needs a value\n", argument.c_str());
            std::exit(2);
        }
        if (argument == "-seconds") {
            options.seconds = std::atof(arguments[i]);
        } else if (argument == "-seed") {
            options.seed = std::strtoull(arguments[i], nullptr, 10);
        } else if (argument == "-crash") {
            options.crashFile = arguments[i];
        } else if (takesValue) {
            std::fprintf(stderr, "unknown option %s\n", argument.c_str());
            std::exit(2);
        } else {
            options.paths.push_back(argument);
        }
    }
    return options;
}

}  // namespace

// The sanitizers ask for these: a finding ends the process as a failed property does, by SIGABRT.
#define VISIBLE extern "C" __attribute__((visibility("default")))
VISIBLE const char* __asan_default_options() { return "abort_on_error=1"; }
VISIBLE const char* __ubsan_default_options() { return "abort_on_error=1:print_stacktrace=1"; }

int main(int count, char** arguments) {
    const Options options = ReadOptions(count, arguments);
    if (!options.crashFile.empty()) g_crashFile = options.crashFile.c_str();
    for (const int number : {SIGABRT, SIGILL, SIGFPE}) signal(number, OnSignal);
    const std::vector<std::string> inputs = ReadInputs(options.paths);
    for (const std::string& input : inputs) RunOne(input);
    CMutator mutator(inputs, options.seed);
    std::uint64_t runs = 0;
    for (const double end = Now() + options.seconds; Now() < end; ++runs) RunOne(mutator.Next());
    std::printf("%zu inputs and %llu mutations of them\n", inputs.size(),
                static_cast<unsigned long long>(runs));
}
