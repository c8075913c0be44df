// Commands.h - the table of commands, and running one.
#pragma once

#include <functional>
#include <string>

#include "Output.h"

namespace CLI {
class App;
}

// What a command line came to: the command that it names, with its arguments bound.
struct Invocation {
    bool json = false;
    std::function<Report()> command;
};

// Adds one command below `parent`. When the command line names it, `invocation.command` is set;
// nothing else happens while the line is read. Both arguments outlive the call.
using DeclareCommand = void (*)(CLI::App& parent, Invocation& invocation);

void DeclareKey(CLI::App& parent, Invocation& invocation);
void DeclareSeal(CLI::App& parent, Invocation& invocation);
void DeclareList(CLI::App& parent, Invocation& invocation);
void DeclareStamp(CLI::App& parent, Invocation& invocation);
void DeclareSign(CLI::App& parent, Invocation& invocation);
void DeclareVerify(CLI::App& parent, Invocation& invocation);
void DeclareTimestamp(CLI::App& parent, Invocation& invocation);
void DeclareHash(CLI::App& parent, Invocation& invocation);
void DeclareLogin(CLI::App& parent, Invocation& invocation);
void DeclareLogout(CLI::App& parent, Invocation& invocation);
void DeclarePresent(CLI::App& parent, Invocation& invocation);
void DeclareConfig(CLI::App& parent, Invocation& invocation);
void DeclareDoctor(CLI::App& parent, Invocation& invocation);

// Reads the command line, runs what it names and says what came of it. Never throws.
ExitCode RunCommandLine(int argumentCount, const char* const* arguments);
