// Declare.h - how a command file puts its command into the command line.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "Commands.h"

// Of all arguments of the command but for those whose texts may be none: an empty value comes of a
// shell's variable that isn't set.
void RefuseEmptyValues(CLI::App& command);

// A command without a command below it. When the line names it, `bind` ties its arguments to the
// options, which live as long as the command line, and `run` gets them; a line names one of some
// twenty, and their arguments are half of what reading it would take. `examples` stands at the end
// of its help text, and --json is understood behind it too.
template <typename Options>
CLI::App* AddCommand(CLI::App& parent, Invocation& invocation, const char* name,
                     const char* description, const char* examples,
                     void (*bind)(CLI::App&, Options&), Report (*run)(const Options&)) {
    CLI::App* command = parent.add_subcommand(name, description);
    auto options = std::make_shared<Options>();
    command->preparse_callback([&invocation, command, options, bind](std::size_t) {
        bind(*command, *options);
        command->add_flag("--json", invocation.json, "Print one JSON document, for scripts");
        RefuseEmptyValues(*command);
    });
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
