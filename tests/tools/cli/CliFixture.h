// CliFixture.h - runs the built program as a user would, with real components in a private prefix.
#pragma once

#include <gtest/gtest.h>
#include <json/value.h>
#include <json/writer.h>

#include <string>
#include <vector>

#include "support/Program.h"
#include "support/TemporaryPrefix.h"

// The example document: three pages.
extern const char* const kContract;

class CliTest : public testing::Test {
protected:
    // Registers the open certificate service in the prefix.
    CliTest();

    ProgramOutcome Tesmark(const std::vector<std::string>& arguments) const;
    // Through the shell, for what only it can do; $TESMARK is the program.
    ProgramOutcome Shell(const std::string& command) const;
    // The document that the command prints with --json; a null value if it prints none.
    Json::Value Json(std::vector<std::string> arguments) const;

    // Keys with the PIN 123456; the certId is "DevKeys/" and the name.
    void MakeKey(const std::string& name, const std::string& algorithm) const;
    void MakeSeal(const std::string& cert, const std::string& form, const std::string& name) const;

    // A program that asks for PINs in the place of a person: its answer is always 123456, and
    // `beforeIt` is a line of shell that it runs first.
    void ScriptPinentry(const std::string& beforeIt) const;

    std::string InPrefix(const std::string& name) const { return m_prefix.Path() + "/" + name; }
    static std::string FileContent(const std::string& path);
    void WriteFile(const std::string& path, const std::string& content) const;
    // The names of the files in the prefix that begin with `start`.
    std::vector<std::string> FilesBeginningWith(const std::string& start) const;

    TemporaryPrefix m_prefix;
};

// The same, before anything is registered.
class BareCliTest : public CliTest {
protected:
    BareCliTest();
};
