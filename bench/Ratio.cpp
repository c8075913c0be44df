#include "bench/Ratio.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>

namespace {

struct Times {
    double wall = 0;
    double processor = 0;
};

class MedianReporter : public benchmark::ConsoleReporter {
public:
    MedianReporter() : benchmark::ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                m_medians[run.run_name.str()] = {run.GetAdjustedRealTime(),
                                                 run.GetAdjustedCPUTime()};
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }

    // Zeros if it was not run.
    Times Median(const std::string& name) { return m_medians[name]; }

private:
    std::map<std::string, Times> m_medians;
};

bool PrintRatio(const Ratio& ratio, MedianReporter& reporter) {
    const Times ours = reporter.Median(ratio.ours);
    const Times peer = reporter.Median(ratio.peer);
    if (ours.wall == 0 || peer.wall == 0) {
        std::printf("%-40s not measured\n", ratio.title.c_str());
        return false;
    }
    const double found = ours.wall / peer.wall;
    const double more = ours.wall - peer.wall;
    const bool reached = (ratio.more ? more : found) <= ratio.goal;
    std::printf("%-40s %5.2f of %s (processor time %.2f)", ratio.title.c_str(), found,
                ratio.peer.c_str(), ours.processor / peer.processor);
    if (ratio.more) {
        std::printf(", longer by %.1f (%.1f)", more, ours.processor - peer.processor);
    }
    std::printf(", goal %.2f%s\n", ratio.goal, reached ? "" : ": MISSED");
    return reached;
}

}  // namespace

int RunRatios(int count, char** arguments, const std::vector<Ratio>& ratios, int repetitions) {
    std::vector<std::string> options{
        arguments[0], "--benchmark_repetitions=" + std::to_string(repetitions),
        "--benchmark_min_time=0.05", "--benchmark_enable_random_interleaving=true",
        "--benchmark_report_aggregates_only=true"};
    options.insert(options.end(), arguments + 1, arguments + count);
    std::vector<char*> pointers;
    for (std::string& option : options) pointers.push_back(option.data());
    int number = static_cast<int>(pointers.size());
    pointers.push_back(nullptr);
    benchmark::Initialize(&number, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(number, pointers.data())) return 2;
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n");
    bool reached = true;
    for (const Ratio& ratio : ratios) reached = PrintRatio(ratio, reporter) && reached;
    return reached ? 0 : 1;
}
