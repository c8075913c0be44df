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
// The program, for a test that starts it in a way of its own.
extern const char* const kTesmark;

// Before anything is registered.
class BareCliTest : public testing::Test {
protected:
    // Arguments are UTF-8; `input` is what the program reads on standard input.
    ProgramOutcome Tesmark(const std::vector<std::string>& arguments,
                           const std::string& input = "") const;
    ProgramOutcome Tesmark(const std::vector<std::string>& arguments,
                           const ProgramOptions& options) const;
    // The document that the command prints with --json; a null value if it prints none.
    Json::Value Json(std::vector<std::string> arguments) const;

    // Keys with the PIN 123456; the certId is "DevKeys/" and the name.
    void MakeKey(const std::string& name, const std::string& algorithm) const;
    void MakeSeal(const std::string& cert, const std::string& form, const std::string& name) const;

    // `name` goes through folders with "/": a file of the test, of the folder of the keys, of that
    // of the trusted certificates.
    std::string InPrefix(const std::string& name) const { return m_prefix.Below(name); }
    static std::string InKeys(const std::string& name);
    static std::string InTrust(const std::string& name);
    static std::string FileContent(const std::string& path);
    void WriteFile(const std::string& path, const std::string& content) const;
    // The names of the files in the prefix that begin with `start`.
    std::vector<std::string> FilesBeginningWith(const std::string& start) const;

    TemporaryPrefix m_prefix;
};

// With the open certificate service registered in the prefix.
class CliTest : public BareCliTest {
protected:
    CliTest();
};
