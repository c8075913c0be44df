// `tesmark verify` of a PDF of 10 MB as a whole process, against pdfsig, which verifies an RSA
// stamp as well but reads no seal signature. Each starts anew; both judge value and coverage, and
// tesmark the signer's certificate too.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/processes/BigPdf.h"
#include "bench/processes/Process.h"
#include "support/TemporaryPrefix.h"

namespace {

constexpr int kRounds = 31;
constexpr std::size_t kContent = 10'000'000;
constexpr double kGoal = 0.5;
constexpr char kPin[] = "12345678";

bool Done(const std::vector<std::string>& command) { return Run(command).milliseconds >= 0; }

bool MakeKey(const char* name, const char* algorithm, const char* form) {
    return Done({TESMARK, "key", "new", "--name", name, "--id", name, "--algorithm", algorithm,
                 "--pin", kPin}) &&
           Done({TESMARK, "seal", "new", "--cert", name, "--name", name, "--form", form, "--pin",
                 kPin});
}

double Median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

// In turn, so that what else the machine does meets all of them. Empty if one of the runs failed.
std::vector<double> MediansOf(const std::vector<std::vector<std::string>>& commands) {
    std::vector<std::vector<double>> times(commands.size());
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t i = 0; i < commands.size(); ++i) {
            const double time = Run(commands[i]).milliseconds;
            if (time < 0) return {};
            times[i].push_back(time);
        }
    }
    std::vector<double> medians;
    for (const auto& each : times) medians.push_back(Median(each));
    return medians;
}

}  // namespace

int main() {
    const TemporaryPrefix prefix;
    prefix.RegisterCertService(SERVICE_FILE);
    const std::string plain = prefix.Below("plain.pdf");
    const std::string rsa = prefix.Below("rsa.pdf");
    const std::string seal = prefix.Below("seal.pdf");
    const bool ready = WriteBigPdf(plain, kContent) && MakeKey("rsa", "rsa2048", "es") &&
                       MakeKey("sm2", "sm2", "gb2020") &&
                       Done({TESMARK, "stamp", plain, rsa, "--cert", "rsa", "--pin", kPin}) &&
                       Done({TESMARK, "stamp", plain, seal, "--cert", "sm2", "--pin", kPin});
    if (!ready) return 1;
    const std::vector<double> medians = MediansOf(
        {{TESMARK, "verify", rsa}, {"/usr/bin/pdfsig", "-nocert", rsa}, {TESMARK, "verify", seal}});
    if (medians.empty()) return 1;
    const double ours = medians[0];
    const double peer = medians[1];
    const double ourSeal = medians[2];
    const double ratio = ours / peer;
    std::printf("verify an RSA stamp, 10 MB: %.2f of pdfsig (%.1f ms to %.1f), goal %.2f%s\n",
                ratio, ours, peer, kGoal, ratio <= kGoal ? "" : ": MISSED");
    std::printf("verify a seal signature, 10 MB: %.1f ms, no goal: pdfsig reads none\n", ourSeal);
    return ratio <= kGoal ? 0 : 1;
}
