// `tesmark stamp` of a PDF of 100 MB as a whole process, against a process that only copies it into
// an output and hashes that once. Three ratios for each kind of key:
// - the whole: of a tesmark that starts, opens the key with its PIN, draws the seal and waits until
//   the output is on the disk, against a peer that waits as well;
// - the file's part: of what it takes longer than the stamp of a page without content;
// - the same against a peer that leaves its output to the system to write later.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "bench/processes/BigPdf.h"
#include "bench/processes/Process.h"
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
    const bool ready = SetUp(prefix, which) && WriteBigPdf(bigFile, kBigContent) &&
                       WriteBigPdf(smallFile, kSmallContent);
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
