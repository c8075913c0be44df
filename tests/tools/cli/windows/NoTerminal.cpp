#include <windows.h>

#include "tools/cli/CliFixture.h"

// What this program starts has its console, if it has one.
ProgramOutcome BareCliTest::TesmarkWithoutTerminal(
    const std::vector<std::string>& arguments) const {
    FreeConsole();
    return Tesmark(arguments);
}
