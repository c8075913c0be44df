#include "Pin.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fstream>
#include <iostream>

#include "Failure.h"
#include "PathText.h"
#include "Terminal.h"
#include "platform/Files.h"

namespace {

constexpr std::size_t kSmallestPin = 4;
constexpr std::size_t kLargestPin = 64;

std::string FirstLine(std::istream& input) {
    std::string line;
    std::getline(input, line);
    if (line.ends_with('\r')) line.pop_back();
    return line;
}

std::string PinFromFile(const std::string& path) {
    std::string pin;
    if (path == "-") {
        pin = FirstLine(std::cin);
    } else {
        if (platform::IsDirectory(platform::PathFromUtf8(path).c_str())) {
            throw Failure{ExitCode::kFile, "The PIN file is a folder: " + path + "."};
        }
        std::ifstream file(FileAt(path), std::ios::binary);
        if (!file) throw Failure{ExitCode::kFile, "The PIN file can't be read: " + path + "."};
        pin = FirstLine(file);
    }
    if (pin.empty()) {
        throw Failure{ExitCode::kPin, "The first line of the PIN file is empty."};
    }
    return pin;
}

void CheckCharacters(const std::string& pin) {
    // What a PIN pad, a token and a development key all take for the same bytes.
    const bool printable =
        std::all_of(pin.begin(), pin.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
    if (!printable || pin.size() > kLargestPin) {
        throw Failure{ExitCode::kUsage,
                      "A PIN has at most 64 characters, all of them printable ASCII."};
    }
}

std::string AskTwice() {
    const auto first = ReadHidden("New PIN: ");
    const auto second = first ? ReadHidden("The same again: ") : first;
    if (!first || !second) {
        throw Failure{ExitCode::kPin,
                      "There is no terminal to ask for the PIN.",
                      {},
                      "  give it with --pin-file FILE (\"-\" is standard input)"};
    }
    if (*first != *second) throw Failure{ExitCode::kPin, "The two PINs are not the same."};
    return *first;
}

}  // namespace

void BindPin(CLI::App& command, PinOptions& options) {
    auto* pin = command.add_option("--pin", options.pin,
                                   "PIN; other users see it while the command runs: for tests");
    auto* file = command.add_option("--pin-file", options.file,
                                    "File with the PIN in its first line; - is standard input");
    pin->type_name("PIN");
    file->type_name("FILE")->excludes(pin);
}

std::optional<std::string> GivenPin(const PinOptions& options) {
    if (options.pin.empty() && options.file.empty()) return {};
    std::string pin = options.pin.empty() ? PinFromFile(options.file) : options.pin;
    CheckCharacters(pin);
    return pin;
}

std::string NewPin(const PinOptions& options) {
    const auto given = GivenPin(options);
    std::string pin = given ? *given : AskTwice();
    CheckCharacters(pin);
    if (pin.size() < kSmallestPin) {
        throw Failure{ExitCode::kPin, "A PIN has at least four characters."};
    }
    return pin;
}
