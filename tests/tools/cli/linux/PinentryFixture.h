// PinentryFixture.h - somebody who is asked for PINs, and the shell.
#pragma once

#include <filesystem>
#include <string>

#include "tools/cli/CliFixture.h"

class PinentryFixture : public CliTest {
protected:
    // Through the shell, for what only it can do; $TESMARK is the program.
    ProgramOutcome Shell(const std::string& command) const {
        ProgramOptions options;
        options.folder = m_prefix.Path();
        options.environment = {{"TESMARK", kTesmark}};
        return RunProgram({"/bin/sh", "-c", command}, options);
    }

    // A program that asks for PINs in the place of a person: its answer is always 123456, and
    // `beforeIt` is a line of shell that it runs first.
    void ScriptPinentry(const std::string& beforeIt) const {
        const std::string path = InPrefix("pinentry");
        WriteFile(
            path,
            "#!/bin/sh\necho OK\nwhile read -r command rest; do\n  case $command in\n"
            "    GETPIN) " +
                beforeIt +
                "; echo 'D 123456'; echo OK ;;\n    BYE) echo OK; exit ;;\n    *) echo OK ;;\n"
                "  esac\ndone\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        ASSERT_EQ(Tesmark({"config", "set", "PinentryProgram", path}).exitCode, 0);
    }
};
