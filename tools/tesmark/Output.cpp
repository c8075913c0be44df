#include "Output.h"

#include <json/writer.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "ResultText.h"
#include "StandardOutput.h"
#include "TerminalText.h"

namespace {

using Row = std::vector<std::string>;

void Widen(std::vector<std::size_t>& widths, const Row& row) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
        widths[i] = std::max(widths[i], DisplayWidth(row[i]));
    }
}

std::string Line(const Row& row, const std::vector<std::size_t>& widths,
                 const std::string& indent) {
    std::string line = indent;
    for (std::size_t i = 0; i < row.size(); ++i) {
        line += i + 1 < row.size() ? Padded(row[i], widths[i] + 2) : row[i];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

Json::Value FailureObject(const Failure& failure, const std::string& logPath) {
    Json::Value error(Json::objectValue);
    error["exit"] = static_cast<int>(failure.exitCode);
    error["message"] = failure.sentence;
    if (!failure.hint.empty()) error["hint"] = failure.hint;
    if (failure.code) {
        error["code"] = *failure.code;
        error["meaning"] = ResultText(*failure.code);
        if (!logPath.empty()) error["log"] = logPath;
    }
    Json::Value document(Json::objectValue);
    document["error"] = error;
    return document;
}

std::string FailureText(const Failure& failure, const std::string& logPath) {
    std::string text = "tesmark: " + Printable(failure.sentence) + "\n";
    if (failure.code) {
        text += "  code " + ResultNumber(*failure.code) + ": " + ResultText(*failure.code) + "\n";
    }
    if (!failure.hint.empty()) text += failure.hint + (failure.hint.ends_with('\n') ? "" : "\n");
    if (failure.code && !logPath.empty()) text += "  log: " + logPath + "\n";
    return text;
}

// Names of files are bytes, and may hold what steers a terminal; lines and columns are this
// program's own.
std::string ForTerminal(const std::string& text) {
    std::string shown;
    std::size_t begin = 0;
    for (std::size_t end = 0; begin <= text.size(); begin = end + 1) {
        end = std::min(text.find('\n', begin), text.size());
        shown += Printable(text.substr(begin, end - begin));
        if (end < text.size()) shown += '\n';
    }
    return shown;
}

bool Write(std::FILE* stream, const std::string& text) {
    const bool whole = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    return std::fflush(stream) == 0 && whole;
}

}  // namespace

std::string Table::Text(const std::string& indent) const {
    std::vector<std::size_t> widths;
    Widen(widths, m_header);
    for (const Row& row : m_rows) Widen(widths, row);
    std::string text = m_header.empty() ? "" : Line(m_header, widths, indent);
    for (const Row& row : m_rows) text += Line(row, widths, indent);
    return text;
}

std::string JsonText(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    builder["emitUTF8"] = true;
    return WellFormed(Json::writeString(builder, value)) + "\n";
}

bool Print(const Report& report, bool json) {
    return Write(StandardOutput(), json ? JsonText(report.json) : ForTerminal(report.text));
}

void PrintFailure(const Failure& failure, bool json, const std::string& logPath) {
    if (json) Write(StandardOutput(), JsonText(FailureObject(failure, logPath)));
    Write(stderr, ForTerminal(FailureText(failure, logPath)));
}

std::string SizeText(unsigned long long bytes) {
    constexpr std::array<const char*, 4> kUnits = {"kB", "MB", "GB", "TB"};
    if (bytes < 1000) return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    double number = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    while (number >= 999.95 && unit + 1 < kUnits.size()) {
        number /= 1000;
        ++unit;
    }
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f %s", number, kUnits[unit]);
    return text.data();
}

std::string CountText(std::size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}
