#include "CommandLineFailure.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr char kHelp[] = "  help: tesmark --help, tesmark COMMAND --help";

// Letters that are put in, left out or replaced on the way from one word to the other.
std::size_t Distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

// The command that the line has come to.
const CLI::App& Innermost(const CLI::App& app) {
    const CLI::App* command = &app;
    while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
    return *command;
}

// "tesmark key " for what stands below `key`.
std::string WayTo(const CLI::App& command) {
    return (command.get_parent() ? WayTo(*command.get_parent()) : "") + command.get_name() + " ";
}

// Empty if none is so near that at least half of its letters stand.
std::string NearestBelow(const CLI::App& group, const std::string& word) {
    std::string nearest;
    std::size_t least = word.size();
    for (const CLI::App* command : group.get_subcommands({})) {
        const std::string& name = command->get_name();
        const std::size_t distance = Distance(word, name);
        if (2 * distance > name.size() || distance >= least) continue;
        nearest = name;
        least = distance;
    }
    return nearest;
}

Failure UnknownCommand(const CLI::App& group, const std::string& word) {
    Failure failure{
        ExitCode::kUsage, "No command is called \"" + WayTo(group) + word + "\".", {}, kHelp};
    const std::string nearest = NearestBelow(group, word);
    if (!nearest.empty()) {
        failure.hint = "  is \"" + WayTo(group) + nearest + "\" meant?\n" + failure.hint;
    }
    return failure;
}

}  // namespace

Failure CommandLineFailure(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App& command = Innermost(app);
    const std::vector<std::string> own = command.remaining();
    const bool isGroup = command.get_require_subcommand_min() > 0;
    if (isGroup && !own.empty() && !own.front().starts_with('-')) {
        return UnknownCommand(command, own.front());
    }
    const std::vector<std::string> rest = app.remaining(true);
    const bool surplus = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError);
    // Tells them from the last to the first.
    if (!rest.empty() && (surplus || isGroup)) {
        return {
            ExitCode::kUsage, "Not understood: " + CLI::detail::join(rest, " ") + ".", {}, kHelp};
    }
    return {ExitCode::kUsage, error.what() + std::string("."), {}, kHelp};
}
