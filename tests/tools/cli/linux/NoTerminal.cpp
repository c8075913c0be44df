#include "tools/cli/CliFixture.h"

ProgramOutcome BareCliTest::TesmarkWithoutTerminal(
    const std::vector<std::string>& arguments) const {
    std::vector<std::string> all = {"/usr/bin/setsid", "--wait", kTesmark};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunProgram(all);
}
