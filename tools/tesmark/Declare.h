// Declare.h - how a command file puts its command into the command line.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "Commands.h"

// A command without a command below it. `bind` ties its arguments to the options, which live as
// long as the command line; `run` gets them when the line named the command. `examples` stands at
// the end of its help text, and --json is understood behind it too.
template <typename Options>
CLI::App* AddCommand(CLI::App& parent, Invocation& invocation, const char* name,
                     const char* description, const char* examples,
                     void (*bind)(CLI::App&, Options&), Report (*run)(const Options&)) {
    CLI::App* command = parent.add_subcommand(name, description);
    auto options = std::make_shared<Options>();
    bind(*command, *options);
    command->add_flag("--json", invocation.json, "Print one JSON document, for scripts");
    command->footer(std::string("\nExamples:\n") + examples);
    command->callback([&invocation, options, run] {
        invocation.command = [options, run] { return run(*options); };
    });
    return command;
}

// A command that only holds others.
inline CLI::App* AddGroup(CLI::App& parent, const char* name, const char* description,
                          const char* examples) {
    CLI::App* group = parent.add_subcommand(name, description);
    group->require_subcommand(1);
    group->footer(std::string("\nExamples:\n") + examples);
    return group;
}
