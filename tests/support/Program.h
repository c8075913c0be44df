// Program.h - runs a program to its end and keeps what it wrote.
#pragma once

#include <string>
#include <utility>
#include <vector>

struct ProgramOutcome {
    int exitCode = -1;  // -1 if it could not be started or was ended by a signal
    std::string out;    // standard output
    std::string error;  // standard error
};

struct ProgramOptions {
    std::string folder{};  // working directory; empty: ours
    std::vector<std::pair<std::string, std::string>> environment{};  // in addition to ours
    std::string input{};                                             // standard input
    bool hasTerminal = true;  // if we have one; without it the program can ask nobody
};

// `arguments` begins with the program's path.
ProgramOutcome RunProgram(const std::vector<std::string>& arguments,
                          const ProgramOptions& options = {});
