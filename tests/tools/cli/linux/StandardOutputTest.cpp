// A standard output that takes nothing.

#include "tools/cli/CliFixture.h"

namespace {

class StandardOutputOnLinux : public CliTest {
protected:
    ProgramOutcome TesmarkIntoFullDevice(const std::string& arguments) const {
        return RunProgram({"/bin/sh", "-c", "\"$0\" " + arguments + " > /dev/full", kTesmark});
    }
};

TEST_F(StandardOutputOnLinux, WhatCannotBeWrittenIsTold) {
    for (const char* const arguments : {"--version", "--help", "stamp --help", "list"}) {
        const ProgramOutcome outcome = TesmarkIntoFullDevice(arguments);
        EXPECT_EQ(outcome.exitCode, 4) << arguments;
        EXPECT_NE(outcome.error.find("Standard output can't be written."), std::string::npos)
            << arguments << outcome.error;
    }
}

}  // namespace
