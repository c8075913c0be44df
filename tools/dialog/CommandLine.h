// CommandLine.h - what a dialog program says to a person who starts it by hand.
#pragma once

#include <optional>
#include <string>

// With --help or --version among the arguments: that is said on standard output, and the exit code
// is given, 0 unless it can't be written. Nothing without them. `purpose` is a clause that goes on
// behind the program's name ("shows ..."). Needs neither a display nor a terminal.
std::optional<int> AnswerPerson(int count, const char* const* arguments, const std::string& name,
                                const std::string& purpose);
