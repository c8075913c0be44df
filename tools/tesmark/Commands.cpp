#include "Commands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "CommandLineFailure.h"
#include "Failure.h"
#include "Library.h"
#include "Output.h"
#include "Version.h"
#include "foundation/StringFailure.h"

namespace {

// In the order of the help text: what a day's work needs first.
constexpr std::array<DeclareCommand, 13> kCommands = {
    DeclareStamp, DeclareSign,   DeclareVerify, DeclareTimestamp, DeclareHash,
    DeclareList,  DeclareLogin,  DeclareLogout, DeclarePresent,   DeclareKey,
    DeclareSeal,  DeclareConfig, DeclareDoctor};

constexpr char kDescription[] =
    "Stamps PDFs with electronic seals, signs and hashes files with the keys of this machine, and "
    "verifies signatures.";

constexpr char kFooter[] =
    "\nExamples:\n"
    "  tesmark key new --name \"Velmora Ltd\"        a development key, to begin with\n"
    "  tesmark seal new --name \"Velmora Ltd\"       and a seal in it\n"
    "  tesmark stamp contract.pdf stamped.pdf      stamp and sign the last page\n"
    "  tesmark verify stamped.pdf                  are its signatures good?\n"
    "  tesmark doctor                              what is set up, and what is wrong\n"
    "\n"
    "Exit codes: 0 done; 1 failed; 2 the command line; 3 something is missing on this machine;\n"
    "4 a file; 5 name a certificate or seal; 6 the PIN; 7 a signature isn't good; 8 the document "
    "was\n"
    "changed after it; 130 interrupted.\n"
    "\"tesmark COMMAND --help\" tells more.";

void Declare(CLI::App& app, Invocation& invocation) {
    app.require_subcommand(1);
    // Else "/a" would be an option on Windows, and no path.
    app.allow_windows_style_options(false);
    app.set_version_flag("--version", "tesmark " TESMARK_VERSION);
    app.footer(kFooter);
    for (const DeclareCommand declare : kCommands) declare(app, invocation);
}

Failure UnwritableOutput() { return {ExitCode::kFile, "Standard output can't be written."}; }

// Before there is a log.
ExitCode FailAtStart(const Failure& failure, bool json) {
    PrintFailure(failure, json, "");
    return failure.exitCode;
}

// Help and version are no errors: they go to standard output, with exit code 0.
ExitCode EndOfParsing(const CLI::App& app, const CLI::ParseError& error, bool json) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
        std::ostringstream text;
        app.exit(error, text, text);
        if (Print({text.str()}, false)) return ExitCode::kOk;
        return FailAtStart(UnwritableOutput(), json);
    }
    // Where the line stumbles before a command has it.
    const std::vector<std::string> rest = app.remaining(true);
    const bool asked = std::find(rest.begin(), rest.end(), "--json") != rest.end();
    return FailAtStart(CommandLineFailure(app, error), json || asked);
}

ExitCode Fail(const Failure& failure, bool json) {
    PrintFailure(failure, json, LogPath());
    return failure.exitCode;
}

ExitCode Run(const Invocation& invocation) {
    const Report report = invocation.command();
    if (!Print(report, invocation.json)) throw UnwritableOutput();
    return report.exitCode;
}

ExitCode RunGuarded(const Invocation& invocation) {
    try {
        return Run(invocation);
    } catch (const Failure& failure) {
        return Fail(failure, invocation.json);
    } catch (const StringFailure& failure) {
        return Fail({ExitCode::kFailed, "The library met an impossible text operation.",
                     static_cast<int>(failure.Value())},
                    invocation.json);
    } catch (const std::bad_alloc&) {
        return Fail({ExitCode::kFailed, "There is not enough memory."}, invocation.json);
    } catch (const std::exception& failure) {
        return Fail({ExitCode::kFailed, std::string("Unexpected: ") + failure.what() + "."},
                    invocation.json);
    }
}

}  // namespace

ExitCode RunCommandLine(int argumentCount, const char* const* arguments) {
    CLI::App app(kDescription, "tesmark");
    Invocation invocation;
    Declare(app, invocation);
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        return EndOfParsing(app, error, invocation.json);
    }
    return RunGuarded(invocation);
}
