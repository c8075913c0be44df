// Failure.h - how a command ends: the exit codes, and the failure that ends it early.
#pragma once

#include <optional>
#include <string>

// What the program tells the shell. Scripts may rely on the numbers.
enum class ExitCode : int {
    kOk = 0,
    kFailed = 1,        // the operation itself failed
    kUsage = 2,         // the command line can't be understood
    kSetup = 3,         // this machine lacks something: a component, a key, a right
    kFile = 4,          // an input can't be read or used, or an output can't be written
    kChoice = 5,        // several certificates or seals would do; name one
    kPin = 6,           // the PIN is wrong, missing or locked
    kNotGood = 7,       // a signature isn't good, or there is none where one is looked for
    kNotCovered = 8,    // all signatures are good, but the document was changed after one of them
    kInterrupted = 130  // by a signal; nothing was written
};

// Thrown by a command and told by the program's end: one sentence on standard error, or an object
// with --json.
struct Failure {
    ExitCode exitCode;
    std::string sentence;          // English, UTF-8, with its full stop
    std::optional<int> code = {};  // the result of the library or a component that is behind it
    std::string hint = {};         // what to do about it; may take several lines
};
