#include "Declare.h"
#include "commands/ExamineSources.h"
#include "commands/Findings.h"

namespace {

struct Options {};

Report Examine(const Options&) {
    Findings findings;
    ExamineMachine(findings);
    ExamineSources(findings);
    ExamineTimeStamps(findings);
    ExaminePersonalSeals(findings);
    ExamineKeys(findings);
    return findings.ToReport();
}

void Bind(CLI::App&, Options&) {}

}  // namespace

void DeclareDoctor(CLI::App& parent, Invocation& invocation) {
    AddCommand<Options>(parent, invocation, "doctor",
                        "Tell what is set up on this machine, and what is wrong; exit code 0 when "
                        "all is well",
                        "  tesmark doctor\n"
                        "  tesmark doctor --json",
                        Bind, Examine);
}
