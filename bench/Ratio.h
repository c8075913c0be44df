// Ratio.h - benchmarks whose outcome is not a time but how it stands to a peer's in the same run.
#pragma once

#include <string>
#include <vector>

// `ours` and `peer` are names of benchmarks in the same unit of time; `goal` is the largest ratio
// of their times that is good enough. With `more`, it is by how much longer ours may take at most,
// in that unit, and the ratio is told only.
struct Ratio {
    std::string title;
    std::string ours;
    std::string peer;
    double goal;
    bool more = false;
};

// Runs all benchmarks of the program `repetitions` times in mixed order (options of Google
// Benchmark go before that), then prints a line for each ratio of the medians of wall time, and
// beside it that of processor time, which stands still while others have the machine. 0 if
// all goals are reached, 1 if not, 2 for options that are not understood.
int RunRatios(int count, char** arguments, const std::vector<Ratio>& ratios, int repetitions = 9);
