// Process.h - one run of a program, measured.
#pragma once

#include <string>
#include <vector>

struct Measured {
    double milliseconds = -1;
    double processorMs = 0;
    long peakKiB = 0;
};

// Negative milliseconds if it can't be started or fails. What it prints is dropped.
Measured Run(const std::vector<std::string>& command);
