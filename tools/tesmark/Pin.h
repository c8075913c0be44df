// Pin.h - where a PIN comes from.
#pragma once

#include <optional>
#include <string>

namespace CLI {
class App;
}

// --pin and --pin-file of a command line. At most one of the two is set.
struct PinOptions {
    std::string pin;
    std::string file;  // a path, or "-" for standard input
};

// Ties both to the command.
void BindPin(CLI::App& command, PinOptions& options);

// The PIN of the command line, none if neither option is there. Throws a Failure if the file can't
// be read or its first line is empty, and for a PIN that isn't printable ASCII.
std::optional<std::string> GivenPin(const PinOptions& options);

// The same for a new key; without the options it is asked for twice on the terminal. Throws a
// Failure without a terminal, for two different PINs, or for fewer than four characters.
std::string NewPin(const PinOptions& options);
