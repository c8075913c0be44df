// How long a dialog takes to come up, as a whole process, against a window of Qt's with one word in
// it: from the start to the word that it has been painted. On Qt's screen in memory and on an X
// server of its own.
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "support/TemporaryFolder.h"
#include "support/linux/XServer.h"

namespace {

constexpr int kRounds = 41;
constexpr double kGoal = 1.15;

using Pipe = std::unique_ptr<std::FILE, decltype(&pclose)>;

double Now() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1000 + static_cast<double>(now.tv_nsec) / 1e6;
}

// Milliseconds from the start of `command` to its line "shown"; negative without one.
double UntilShown(const std::string& command) {
    const double start = Now();
    const Pipe pipe(popen(command.c_str(), "r"), &pclose);
    char line[256];
    while (pipe && std::fgets(line, sizeof line, pipe.get())) {
        if (std::string(line) == "shown\n") return Now() - start;
    }
    return -1;
}

double Median(std::vector<double>& times) {
    const auto middle = times.begin() + std::ssize(times) / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

// Dialogs as the library opens them, without what the library does in between.
std::string CertificateList() {
    return "tesmark-dialog\t1\ndialog\t101\nrow\t1001\t-----\u8BF7\u9009\u62E9-----\n"
           "row\t1001\talice\nrow\t1001\tbob\nselect\t1001\t0\nshow\n";
}

std::string SealTree() {
    return "tesmark-dialog\t1\ndialog\t104\nnode\t1004\t0\t\u8BF7\u9009\u62E9\u5370\u7AE0\n"
           "node\t1004\t1\talice\nnode\t1004\t2\tVelmora Ltd\nnode\t1004\t2\tContracts\n"
           "expand\t1004\t2\nexpand\t1004\t1\nmove\t177\t135\nshow\n";
}

// False if the goal is missed or a window doesn't come up.
bool Compare(const char* what, const std::string& ours, const std::string& peer) {
    std::vector<double> our;
    std::vector<double> bare;
    for (int i = 0; i < kRounds; ++i) {
        our.push_back(UntilShown(ours));
        bare.push_back(UntilShown(peer));
        if (our.back() < 0 || bare.back() < 0) return false;
    }
    const double ratio = Median(our) / Median(bare);
    std::printf("%s: %.2f of a bare window (%.1f ms to %.1f), goal %.2f%s\n", what, ratio,
                Median(our), Median(bare), kGoal, ratio <= kGoal ? "" : ": MISSED");
    return ratio <= kGoal;
}

bool CompareOn(const char* platform, const TemporaryFolder& folder) {
    setenv("QT_QPA_PLATFORM", platform, 1);
    const std::string on = std::string(" on ") + platform;
    const auto ours = [&](const char* script) {
        return std::string(DIALOG) + " <" + folder.Below(script) + " 2>/dev/null";
    };
    const std::string peer = std::string(BARE_WINDOW) + " </dev/null 2>/dev/null";
    const bool list = Compare(("dialog 101" + on).c_str(), ours("101"), peer);
    const bool tree = Compare(("dialog 104" + on).c_str(), ours("104"), peer);
    return list && tree;
}

}  // namespace

int main() {
    const TemporaryFolder folder;
    std::ofstream(folder.Below("101")) << CertificateList();
    std::ofstream(folder.Below("104")) << SealTree();
    const XServer server;
    if (server.Display().empty()) return 2;
    setenv("DISPLAY", server.Display().c_str(), 1);
    const bool inMemory = CompareOn("offscreen", folder);
    const bool onServer = CompareOn("xcb", folder);
    return inMemory && onServer ? 0 : 1;
}
