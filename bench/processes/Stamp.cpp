// `tesmark stamp` of a PDF of 100 MB as a whole process, against a process that only copies it into
// an output and hashes that once. Three ratios for each kind of key:
// - the whole: of a tesmark that starts, opens the key with its PIN, draws the seal and waits until
//   the output is on the disk, against a peer that waits as well;
// - the file's part: of what it takes longer than the stamp of a page without content;
// - the same against a peer that leaves its output to the system to write later.
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "bench/processes/StampPeer.h"
#include "support/TemporaryPrefix.h"

namespace {

constexpr int kRounds = 15;
constexpr std::size_t kBigContent = 100'000'000;
constexpr std::size_t kSmallContent = 64;
constexpr double kGoal = 1.2;
// The small file is signed from memory and the large one from the disk.
constexpr long kMemoryGoalKiB = 2 << 10;
constexpr char kPin[] = "12345678";
constexpr char kSelf[] = "/proc/self/exe";
constexpr char kPeerWord[] = "--peer";

struct Measured {
    double milliseconds = -1;
    double processorMs = 0;
    long peakKiB = 0;
};

double Now() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1000 + static_cast<double>(now.tv_nsec) / 1e6;
}

double Milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
}

// Negative milliseconds if it can't be started or fails. What it prints is dropped.
Measured Run(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const double start = Now();
    pid_t process = 0;
    const bool started =
        posix_spawn(&process, arguments[0], &actions, nullptr, arguments.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    rusage usage{};
    if (!started || wait4(process, &status, 0, &usage) != process || status != 0) return {};
    return {Now() - start, Milliseconds(usage.ru_utime) + Milliseconds(usage.ru_stime),
            usage.ru_maxrss};
}

// Writes a PDF of one page beside whose objects a stream of `size` bytes stands. Nothing in it
// repeats, so that no file system makes it smaller.
class CPdfWriter {
public:
    explicit CPdfWriter(const std::string& path) : m_file(path, std::ios::binary) {}

    bool Write(std::size_t size) {
        m_file << "%PDF-1.7\n";
        Object("<< /Type /Catalog /Pages 2 0 R >>");
        Object("<< /Type /Pages /Kids [3 0 R] /Count 1 >>");
        Object("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] >>");
        Begin();
        m_file << "<< /Length " << size << " >>\nstream\n";
        Noise(size);
        m_file << "\nendstream\nendobj\n";
        Table();
        return m_file.flush().good();
    }

private:
    void Begin() {
        m_offsets.push_back(m_file.tellp());
        m_file << m_offsets.size() << " 0 obj\n";
    }

    void Object(const char* body) {
        Begin();
        m_file << body << "\nendobj\n";
    }

    void Noise(std::size_t size) {
        unsigned long long state = 1;
        std::string piece;
        for (std::size_t left = size; left > 0; left -= piece.size()) {
            piece.resize(std::min<std::size_t>(left, 64 << 10));
            for (char& byte : piece) {
                state = state * 6364136223846793005u + 1442695040888963407u;
                byte = static_cast<char>(state >> 56);
            }
            m_file.write(piece.data(), static_cast<std::streamsize>(piece.size()));
        }
    }

    void Table() {
        const auto start = m_file.tellp();
        m_file << "xref\n0 " << m_offsets.size() + 1 << "\n0000000000 65535 f \n";
        for (const auto offset : m_offsets) {
            char line[32];
            std::snprintf(line, sizeof line, "%010lld 00000 n \n", static_cast<long long>(offset));
            m_file << line;
        }
        m_file << "trailer\n<< /Size " << m_offsets.size() + 1 << " /Root 1 0 R >>\nstartxref\n"
               << start << "\n%%EOF\n";
    }

    std::ofstream m_file;
    std::vector<std::streamoff> m_offsets;
};

// One key with its seal, the only one of its prefix.
struct KeyCase {
    const char* title;
    const char* algorithm;
    const char* form;
    const char* hash;
};

constexpr KeyCase kCases[] = {
    {"RSA, PKCS#7", "rsa2048", "es", "sha256"},
    {"SM2, PKCS#7", "sm2", "es", "sm3"},
    {"SM2, seal signature", "sm2", "gb2020", "sm3"},
};

bool SetUp(const TemporaryPrefix& prefix, const KeyCase& which) {
    prefix.RegisterCertService(SERVICE_FILE);
    return Run({TESMARK, "key", "new", "--name", "Bench", "--algorithm", which.algorithm, "--pin",
                kPin})
                   .milliseconds >= 0 &&
           Run({TESMARK, "seal", "new", "--name", "Bench", "--form", which.form, "--pin", kPin})
                   .milliseconds >= 0;
}

struct Times {
    double wall = 0;
    double processor = 0;
};

double MedianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// The times and peaks of one program over all rounds.
class CSeries {
public:
    void Add(const Measured& measured) {
        m_failed = m_failed || measured.milliseconds < 0;
        m_times.push_back(measured.milliseconds);
        m_processor.push_back(measured.processorMs);
        m_peak = std::max(m_peak, measured.peakKiB);
    }
    bool Failed() const { return m_failed; }
    long PeakKiB() const { return m_peak; }
    Times Median() const { return {MedianOf(m_times), MedianOf(m_processor)}; }

private:
    std::vector<double> m_times;
    std::vector<double> m_processor;
    long m_peak = 0;
    bool m_failed = false;
};

bool PrintRatio(const char* what, const Times& ours, const Times& peer) {
    const double ratio = ours.wall / peer.wall;
    std::printf("  %-44s %5.2f (%.0f ms to %.0f; processor time %.2f), goal %.2f%s\n", what, ratio,
                ours.wall, peer.wall, ours.processor / peer.processor, kGoal,
                ratio <= kGoal ? "" : ": MISSED");
    return ratio <= kGoal;
}

bool PrintMemory(const CSeries& big, const CSeries& small) {
    const long growth = big.PeakKiB() - small.PeakKiB();
    const bool reached = growth <= kMemoryGoalKiB;
    std::printf("  peak memory %ld KiB, %ld KiB more than for one page, goal %ld%s\n",
                big.PeakKiB(), growth, kMemoryGoalKiB, reached ? "" : ": MISSED");
    return reached;
}

// All goals reached? False as well if something could not be run.
bool Measure(const KeyCase& which) {
    const TemporaryPrefix prefix;
    const std::string bigFile = prefix.Path() + "/big.pdf";
    const std::string smallFile = prefix.Path() + "/small.pdf";
    const std::string output = prefix.Path() + "/stamped.pdf";
    const bool ready = SetUp(prefix, which) && CPdfWriter(bigFile).Write(kBigContent) &&
                       CPdfWriter(smallFile).Write(kSmallContent);
    if (!ready) return false;
    sync();
    CSeries big, small, waiting, leaving;
    for (int i = 0; i < kRounds; ++i) {
        const auto fresh = [&](const std::vector<std::string>& command) {
            // A file that is replaced costs the time to free it.
            std::filesystem::remove(output);
            sync();
            return Run(command);
        };
        big.Add(fresh({TESMARK, "stamp", bigFile, output, "--pin", kPin}));
        small.Add(fresh({TESMARK, "stamp", smallFile, output, "--pin", kPin}));
        waiting.Add(fresh({kSelf, kPeerWord, which.hash, "wait", bigFile, output}));
        leaving.Add(fresh({kSelf, kPeerWord, which.hash, "leave", bigFile, output}));
    }
    if (big.Failed() || small.Failed() || waiting.Failed() || leaving.Failed()) return false;
    const Times one = small.Median();
    std::printf("%s: one page %.0f ms, %.0f of the processor\n", which.title, one.wall,
                one.processor);
    const Times all = big.Median();
    const Times rest{all.wall - one.wall, all.processor - one.processor};
    const bool whole = PrintRatio("the whole, copy and hash on the disk", all, waiting.Median());
    const bool part =
        PrintRatio("the file's part, copy and hash on the disk", rest, waiting.Median());
    const bool bare =
        PrintRatio("the file's part, copy and hash left in memory", rest, leaving.Median());
    return PrintMemory(big, small) && whole && part && bare;
}

}  // namespace

int main(int count, char** arguments) {
    if (count == 6 && std::string_view(arguments[1]) == kPeerWord) {
        return RunStampPeer(arguments + 2);
    }
    bool reached = true;
    for (const KeyCase& which : kCases) {
        const bool good = Measure(which);
        std::fflush(stdout);
        reached = good && reached;
    }
    return reached ? 0 : 1;
}
