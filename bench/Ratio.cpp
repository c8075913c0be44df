#include "bench/Ratio.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>

namespace {

class MedianReporter : public benchmark::ConsoleReporter {
public:
    MedianReporter() : benchmark::ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                m_medians[run.run_name.str()] = run.GetAdjustedRealTime();
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }

    // 0 if it was not run.
    double Median(const std::string& name) { return m_medians[name]; }

private:
    std::map<std::string, double> m_medians;
};

// Both must be in the same unit of time.
bool PrintRatio(const Ratio& ratio, MedianReporter& reporter) {
    const double ours = reporter.Median(ratio.ours);
    const double peer = reporter.Median(ratio.peer);
    if (ours == 0 || peer == 0) {
        std::printf("%-40s not measured\n", ratio.title.c_str());
        return false;
    }
    const double found = ours / peer;
    const bool reached = found <= ratio.goal;
    std::printf("%-40s %5.2f of %s, goal %.2f%s\n", ratio.title.c_str(), found, ratio.peer.c_str(),
                ratio.goal, reached ? "" : ": MISSED");
    return reached;
}

}  // namespace

int RunRatios(int count, char** arguments, const std::vector<Ratio>& ratios) {
    std::vector<std::string> options{
        arguments[0], "--benchmark_repetitions=9", "--benchmark_min_time=0.05",
        "--benchmark_enable_random_interleaving=true", "--benchmark_report_aggregates_only=true"};
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
