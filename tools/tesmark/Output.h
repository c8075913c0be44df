// Output.h - what a command says: text in columns for people, one JSON document for scripts.
#pragma once

#include <json/value.h>

#include <string>
#include <vector>

#include "Failure.h"

// Rows of cells; every column is as wide as its widest cell, two blanks between columns.
class Table {
public:
    // An empty header prints no header line.
    explicit Table(std::vector<std::string> header) : m_header(std::move(header)) {}
    void Add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }
    bool Empty() const { return m_rows.empty(); }
    std::string Text(const std::string& indent = "") const;

private:
    std::vector<std::string> m_header;
    std::vector<std::vector<std::string>> m_rows;
};

// What a command found out: `text` goes to standard output, or with --json `json`.
struct Report {
    std::string text;
    Json::Value json{Json::objectValue};
    ExitCode exitCode = ExitCode::kOk;
};

// The document as it is printed: indented by two, characters as they are, a line end behind it.
std::string JsonText(const Json::Value& value);

// Print to standard output and error. False if standard output took not all of it.
bool Print(const Report& report, bool json);
// With `json` the failure goes to standard output as {"error": {...}}, and to standard error as
// without. `logPath` is told for failures with a code behind them; it may be empty.
void PrintFailure(const Failure& failure, bool json, const std::string& logPath);

// "12 bytes", "3.4 MB"; decimal units.
std::string SizeText(unsigned long long bytes);
// "1 seal", "2 seals".
std::string CountText(std::size_t count, const std::string& noun);
